#!/usr/bin/env python3
"""Holds the includes of the tree to its layout: who may include whom, no circle, platform headers in one place.

Prints each offence as FILE:LINE: what is wrong, and fails if there is any.
"""

import os
import re
import subprocess
import sys
from pathlib import Path, PurePosixPath

# Folder (the longest that fits a file counts) -> what it may include beside itself: folders or files of the tree, and
# in angle brackets the families of libraries below. The standard library is everybody's.
MAY_INCLUDE = {
    "support": {"<boost>"},
    "GenTL": set(),
    "GenApi": {"<pugixml>"},
    "TLClass/TLClassLoadTL": {"support", "GenTL"},
    "TLClass/TLClassInfo": {"support", "GenTL", "TLClass/TLClassLoadTL", "TLClass/TLClassFeature", "GenApi", "<boost>"},
    "TLClass/TLClassXML": {"support", "GenTL", "TLClass/TLClassLoadTL", "TLClass/TLClassInfo", "GenApi", "<zlib>",
                           "<boost>"},
    "TLClass/TLClassFeature": {"support", "GenApi", "<boost>"},
    "TLClass/TLClassFeature/FeatureFile": {"support", "GenApi", "TLClass", "<boost>"},
    "TLClass/TLClassEvent": {"support", "GenTL", "GenApi", "TLClass/TLClassLoadTL", "TLClass/TLClassInfo",
                             "TLClass/TLClassXML", "TLClass/TLClassFeature", "<boost>"},
    "TLClass/TLClassMain": {"support", "GenTL", "GenApi", "TLClass", "<boost>"},
    "app": {"TLClass", "support", "app/Recovery", "<qt>", "<boost>"},
    "app/Recovery": {"support", "<qt-network>"},
    "gev": set(),
    "producer": {"GenTL", "gev", "support"},
    "producer/wire": {"GenTL", "gev", "support", "producer/ProducerError"},
    "producer/stream": {"GenTL", "gev", "support", "producer/ProducerError", "producer/wire"},
    "producer/modules": {"GenTL", "gev", "support", "producer/ProducerError", "producer/wire", "producer/stream"},
    "producer/entries": {"GenTL", "gev", "support", "producer/ProducerError", "producer/modules"},
    "camera": {"gev", "support", "<zlib>", "<cli11>"},
    # The categories of a camera's features stand in its node map, which a device hands out.
    "ctl": {"TLClass", "GenApi", "GenTL", "support", "app/Recovery", "<boost>", "<qt-network>", "<cli11>", "<json>", "<png>"},
    "examples": {"TLClass", "GenApi", "support", "<boost>"},
    "tests": {"*"},
    "bench": {"*"},
}

# Leaves of a folder that others may include although the rest of the folder stands above them.
LEAVES = {
    "TLClass/TLClassMain/Agency": {"TLClass", "producer"},
    "TLClass/TLClassMain/Buffer": {"TLClass"},
    "TLClass/TLClassMain/BufferInitInfo": {"TLClass"},
    "TLClass/TLClassMain/IBufferInitInfo": {"TLClass"},
    "TLClass/TLClassMain/UnCopyable": {"TLClass"},
    "TLClass/TLClassMain/GenTLErrrorCodeVerifier": {"TLClass"},
}

LIBRARIES = {
    "<boost>": re.compile(r"boost/"),
    "<pugixml>": re.compile(r"pugixml\.hpp"),
    "<zlib>": re.compile(r"zlib\.h"),
    "<cli11>": re.compile(r"CLI/"),
    "<json>": re.compile(r"nlohmann/"),
    "<png>": re.compile(r"png\.h"),
    "<qt-network>": re.compile(r"Q(ByteArray|CoreApplication|HostAddress|Network\w+|String\w*|Thread|UdpSocket)$"),
    "<qt>": re.compile(r"Q\w+$|Qt\w*/"),
}

# Only files that exist to hide a platform may include its headers.
PLATFORM = re.compile(
    r"(pthread|sched|dlfcn|unistd|fcntl|poll|signal|ifaddrs|semaphore|spawn|termios|windows)\.h"
    r"|(sys|net|netinet|netpacket|arpa|linux|asm)/")
# ctl/StandardOutput keeps what the library prints apart from what the program does, which takes descriptors.
HIDES_PLATFORM = re.compile(
    r"support/|TLClass/TLClassLoadTL/DynamicLibrary\.|(producer|camera)/(\w+/)*\w*Socket\w*\.|"
    r"producer/modules/LibraryPath\.|ctl/StandardOutput\.|tests/|bench/")

INCLUDE = re.compile(r'^\s*#\s*include\s+([<"])([^>"]+)[>"]')


def tracked_sources():
    listing = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard", "--", "*.cpp", "*.h"],
                             check=True, capture_output=True, text=True).stdout
    return sorted(name for name in listing.split("\0") if name and Path(name).exists())


def folder_of(name):
    """The longest row of the table that fits: a folder, or the start of a file's name."""
    rows = [row for row in MAY_INCLUDE
            if name.startswith(row + "/") or ("/" in row and name.startswith(row) and not Path(row).is_dir())]
    return max(rows, key=len, default=None)


def is_allowed(name, target, row):
    allowed = MAY_INCLUDE[row]
    if "*" in allowed or folder_of(target) == row:
        return True
    for leaf, friends in LEAVES.items():
        if target.startswith(leaf + ".") and any(name.startswith(friend + "/") for friend in friends):
            return True
    return any(target.startswith(entry + "/") or target.startswith(entry) and "/" in entry
               for entry in allowed if not entry.startswith("<"))


def library_of(header):
    return next((family for family, pattern in LIBRARIES.items() if pattern.match(header)), None)


def check_file(name, lines, tree, report):
    """Reports each offence of one file, and gives the files of the tree that it includes."""
    row = folder_of(name)
    if row is None:
        report(name, 1, "this folder has no row in the table of who may include whom")
        return []
    included = []
    for number, line in enumerate(lines, 1):
        match = INCLUDE.match(line)
        if not match:
            continue
        bracket, header = match.groups()
        if bracket == '"':
            if header.endswith(".moc"):
                continue
            if header not in tree:
                report(name, number, f"{header} is no file of the tree; includes start at its root")
            elif not is_allowed(name, header, row):
                report(name, number, f"{row} may not include {header}")
            else:
                included.append(header)
            continue
        if PLATFORM.match(header) and not HIDES_PLATFORM.match(name):
            report(name, number, f"<{header}> is a platform's; only files that hide the platform include it")
        family = library_of(header)
        allowed = MAY_INCLUDE[row]
        if family and "*" not in allowed and family not in allowed and not (family == "<qt-network>" and "<qt>" in allowed):
            report(name, number, f"{row} may not use {family[1:-1]}")
    return included


def unit_of(name):
    """A header and its source are one."""
    return str(PurePosixPath(name).with_suffix(""))


def find_circles(graph):
    """A circle for every knot of units that reach each other, as a list that begins and ends with the same unit."""
    circles, done, knotted = [], set(), set()

    def visit(unit, path):
        if unit in path:
            circle = path[path.index(unit):] + [unit]
            if not knotted.intersection(circle):
                circles.append(circle)
            knotted.update(circle)
            return
        if unit in done:
            return
        for target in sorted(graph.get(unit, ())):
            visit(target, path + [unit])
        done.add(unit)

    for unit in sorted(graph):
        visit(unit, [])
    return circles


def main():
    sys.setrecursionlimit(10000)
    names = tracked_sources()
    tree = set(names)
    offences = []

    def report(name, number, what):
        offences.append(f"{name}:{number}: {what}")

    graph = {}
    for name in names:
        included = check_file(name, Path(name).read_text(encoding="utf-8").splitlines(), tree, report)
        graph.setdefault(unit_of(name), set()).update(unit_of(header) for header in included if unit_of(header) != unit_of(name))

    for circle in find_circles(graph):
        offences.append("these files include each other in a circle: " + " -> ".join(circle))
    print("\n".join(offences) if offences else f"{len(names)} files include only what they may")
    return 1 if offences else 0


if __name__ == "__main__":
    os.chdir(Path(__file__).resolve().parent.parent)
    sys.exit(main())
