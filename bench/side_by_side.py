#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
# Times two commands side by side, interleaved: each round runs ours and the peer's once, in alternating order, so
# a change of load or CPU clock during the run falls on both alike. Prints the medians and their ratio.
#   side_by_side.py NAME RUNS OURS PEER [PREPARE]
# OURS, PEER and PREPARE are command lines (split like a shell would, no shell in between); PREPARE runs before
# every timed run. Output goes to /dev/null; the time is from spawn to exit, measured here.
import os
import shlex
import statistics
import sys
import time


def run(argv, devnull):
    start = time.perf_counter_ns()
    pid = os.posix_spawnp(argv[0], argv, os.environ,
                          file_actions=[(os.POSIX_SPAWN_DUP2, devnull, 1), (os.POSIX_SPAWN_DUP2, devnull, 2)])
    _, status = os.waitpid(pid, 0)
    elapsed = (time.perf_counter_ns() - start) / 1e6
    if os.waitstatus_to_exitcode(status) != 0:
        sys.exit(f"{shlex.join(argv)} failed with {os.waitstatus_to_exitcode(status)}")
    return elapsed


def main():
    name, runs, ours, peer = sys.argv[1], int(sys.argv[2]), shlex.split(sys.argv[3]), shlex.split(sys.argv[4])
    prepare = shlex.split(sys.argv[5]) if len(sys.argv) > 5 and sys.argv[5] else None
    devnull = os.open(os.devnull, os.O_WRONLY)
    times = {"ours": [], "peer": []}
    for round_ in range(runs + 3):  # three warm-up rounds, not counted
        order = [("ours", ours), ("peer", peer)]
        if round_ % 2:
            order.reverse()
        for side, argv in order:
            if prepare:
                run(prepare, devnull)
            elapsed = run(argv, devnull)
            if round_ >= 3:
                times[side].append(elapsed)
    mine, theirs = statistics.median(times["ours"]), statistics.median(times["peer"])
    print(f"{name:<14} {mine:8.2f}ms {theirs:8.2f}ms {mine / theirs:7.2f}")


if __name__ == "__main__":
    main()
