#!/usr/bin/env python3
"""Runs programs that differ only in where their functions lie, and holds the medians of what they
measure to the targets.

layouts.py PROGRAM... [-- ARGUMENT]

Prints the lines of the first program; those of ratios are the median ones, with the least and the
greatest ratio in brackets. Exits with 1 when a median is above its target, or a program fails.
"""

import re
import statistics
import subprocess
import sys

RATIO = re.compile(r"(?P<name>.{40,}?) +\d+ +\d+ +(?P<ratio>[\d.]+) +(?P<target>[\d.]+)  (\d+) and (\d+)")


def main():
    words = sys.argv[1:]
    end = words.index("--") if "--" in words else len(words)
    programs, arguments = words[:end], words[end + 1:]
    outputs = []
    failed = False
    for number, program in enumerate(programs, 1):
        print(f"layout {number} of {len(programs)}", file=sys.stderr)
        run = subprocess.run([program, *arguments], stdout=subprocess.PIPE, text=True, check=False)
        failed |= run.returncode != 0
        outputs.append(run.stdout.splitlines())
        if run.returncode != 0 and outputs[0] is not outputs[-1]:
            print(f"{program} fails:", *outputs[-1], sep="\n")
    ratios = {}
    for line in sum(outputs, []):
        if match := RATIO.match(line):
            ratios.setdefault(match["name"], []).append((float(match["ratio"]), match[0]))
    for line in outputs[0]:
        match = RATIO.match(line)
        if not match:
            print(line)
            continue
        measured = sorted(ratios[match["name"]])
        median = statistics.median_low(measured)
        missed = median[0] > float(match["target"]) or match[4] != match[5]
        failed |= missed
        print(f"{median[1]}  ({measured[0][0]:.2f} to {measured[-1][0]:.2f})"
              + ("   MISSED" if missed else ""))
    return int(failed)


if __name__ == "__main__":
    sys.exit(main())
