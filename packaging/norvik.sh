#!/bin/sh
# Starts the window with the bundled producer first, then whatever the user has. Finds it beside itself, wherever the
# whole was installed.
case ${1:-} in
    -h | --help)
        echo "norvik shows its window, and takes no options. \"man norvik\" tells more; norvikctl does the same at a" \
            "terminal."
        exit
        ;;
    --version)
        echo "norvik @PROJECT_VERSION@"
        exit
        ;;
esac
if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}${QT_QPA_PLATFORM:-}" ]; then
    echo "norvik: there is no display: neither DISPLAY nor WAYLAND_DISPLAY is set. Start it from a desktop session, or" \
        "over ssh -X. norvikctl does the same at a terminal." >&2
    exit 1
fi
norvik=$(dirname "$(readlink -f "$0")")/../lib/norvik
GENICAM_GENTL64_PATH=$norvik/cti${GENICAM_GENTL64_PATH:+:$GENICAM_GENTL64_PATH}
export GENICAM_GENTL64_PATH
exec "$norvik/bin/norvik" "$@"
