#!/usr/bin/env bash
# Makes the packages, unpacks them where nothing else is, and uses what lies there as its users do: a program of their own
# on the library, the examples, what the README types in a shell, and the demo's story with the window.
#
# usage: packages.sh BUILD-DIRECTORY VERSION
set -eu
cd "$(dirname "$0")/../.."
build=$(realpath "$1") version=$2
work=$build/packages-test
rm -rf "$work"
trap 'echo "packages.sh: failed; what was made is in $work" >&2' ERR

(cd "$build" && cpack -G DEB -D CPACK_DEBIAN_COMPRESSION_TYPE=none -B "$work")
for package in norvik-producer norvik norvikctl libtlclass-dev; do
    dpkg-deb --extract "$work/${package}_${version}"_*.deb "$work/root"
done
prefix=$work/root/usr
if command -v desktop-file-validate >/dev/null; then
    desktop-file-validate "$prefix/share/applications/norvik.desktop"
fi

# Nothing of this environment may be what makes them work.
empty=(env -i "PATH=$PATH")
[[ $("${empty[@]}" "$prefix/bin/norvikctl" --version) == *"$version"* ]]
[ "$("${empty[@]}" "$prefix/bin/norvik" --version)" = "norvik $version" ]
gzip -dc "$prefix"/share/man/man1/norvikctl.1.gz | grep -q '^\.B \\-\\-keep$'

"${empty[@]}" cmake -S tests/packaging/outside -B "$work/outside" -DCMAKE_PREFIX_PATH="$prefix" -DVERSION="$version"
"${empty[@]}" cmake --build "$work/outside"
cp -r "$prefix/share/doc/libtlclass-dev/examples" "$work"
"${empty[@]}" cmake -S "$work/examples" -B "$work/examples/build" -DCMAKE_PREFIX_PATH="$prefix"
"${empty[@]}" cmake --build "$work/examples/build" --parallel 2
own=(unshare --net)
[ "$(id -u)" -eq 0 ] || own=(unshare --user --map-root-user --net)
if ! "${own[@]}" true 2>/dev/null; then
    echo "packages.sh: this user may not make network namespaces, so nothing was run" >&2
    exit 1
fi
cti=GENICAM_GENTL64_PATH=$prefix/lib/norvik/cti
[ "$("${empty[@]}" "$cti" "${own[@]}" "$work/outside/outside")" = "$version" ]
demo() { "${empty[@]}" scripts/demo/start.sh "$prefix" "$work/demo" "$@"; }
demo -- env -C "$work" "$PWD/tests/packaging/transcript.py" "$PWD/README.md"
demo -- env -C "$work" "$cti" "$PWD/tests/packaging/examples.sh" "$work/examples/build" settings.txt
if command -v Xvfb >/dev/null && command -v xdotool >/dev/null; then
    demo
fi
rm -rf "$work"
