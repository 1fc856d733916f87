#!/usr/bin/env python3
"""Types what the README shows of the demo's shell, and holds what is printed to what stands there. Runs on the demo's
machine. Only how fast the frames came may differ.

usage: transcript.py README
"""

import re
import subprocess
import sys
from pathlib import Path

RATES = re.compile(r"[\d.]+ frames/s, [\d.]+ MB/s")


def main():
    block = re.search(r"^```console\n(.*?)^```", Path(sys.argv[1]).read_text(encoding="utf-8"), re.M | re.S)[1]
    steps = re.findall(r"^\$ (.*)\n((?:[^$].*\n)*)", block, re.M)
    for command, shown in steps:
        run = subprocess.run(command, shell=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=60)
        print(f"$ {command}\n{run.stdout}", end="")
        if run.returncode or RATES.sub("", run.stdout) != RATES.sub("", shown):
            sys.exit(f"It ended with {run.returncode}, and the page shows\n{shown}")
    return 0 if steps else 1


if __name__ == "__main__":
    sys.exit(main())
