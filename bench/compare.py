"""Times a silent scan, other programs and the bare walks in turns, and prints Markdown tables.

Run it as bench/compare, which builds and installs what it needs first. It makes two trees once: a
nested one of 1,000,000 files in 100,000 folders, and 1,000,000 files in one folder. Each program
runs once unmeasured before warm rounds; before each cold run the kernel drops its caches, for which
root is needed.
"""

import argparse
import os
import shlex
import statistics
import subprocess
import sys
from pathlib import Path

from scan_ratio import (BUILD, KIB_PER_MIB, Contender, Failure, file_system, machine,
                        private_environment)

DROP_CACHES = Path("/proc/sys/vm/drop_caches")
GROWTH = (10_000, 100_000, 1_000_000, 5_000_000)
FILES_A_FOLDER = 10
FREE_BYTES_A_FILE = 700  # disk space of a file, with its share of the folders and the file system's tables


def program(words):
    return shlex.join([str(BUILD / "src" / "ombrelian"), *words, "-s0"]) + " {target} {tree}"


def contenders(tree, reports, environment):
    """The programs in the order of the table; all ratios refer to the first one."""
    threads = os.cpu_count()
    walks = BUILD / "bench"
    target = reports / "report.csv"
    commands = (
        ("program", program([])),
        ("without helpers", program(["--helpers", "0"])),
        ("du", "du -s {tree}"),
        ("ncdu", "ncdu -0o- {tree}"),
        ("gdu", "gdu -npc {tree}"),
        ("bare walk", f"{walks / 'bare_walk'} {{tree}}"),
        (f"bare, {threads} threads", f"{walks / 'parallel_walk'} {{tree}} {threads}"),
        ("bare, 9 threads", f"{walks / 'parallel_walk'} {{tree}} 9"),
    )
    return [Contender(name, command, tree, target, environment) for name, command in commands]


def drop_caches():
    os.sync()
    DROP_CACHES.write_text("3\n")


def make_tree(files, folders):
    tree = BUILD / (f"tree-{files}" if folders else f"tree-{files}-one-folder")
    command = [str(BUILD / "bench" / "make_tree"), str(tree), str(files), str(folders)]
    if subprocess.run(command, check=False).returncode != 0:
        raise Failure("the tree could not be made")
    return tree


def race(tree, reports, environment, rounds, cold):
    racers = contenders(tree, reports, environment)
    if not cold:
        for racer in racers:
            racer.run(reports)
    for _ in range(rounds):
        for racer in racers:
            if cold:
                drop_caches()
            racer.measure(reports)
    return racers


def print_race(title, racers):
    first = statistics.median(racers[0].walls)
    print(f"\n{title}\n")
    print("| | median s | least | most | CPU s | peak MiB | program to it |")
    print("|---|---:|---:|---:|---:|---:|---:|")
    for racer in racers:
        median = statistics.median(racer.walls)
        print(f"| {racer.name} | {median:.2f} | {min(racer.walls):.2f} | {max(racer.walls):.2f} "
              f"| {statistics.median(racer.cpus):.2f} | {max(racer.peaks) / KIB_PER_MIB:.0f} "
              f"| {first / median:.2f} |")
    sys.stdout.flush()


def print_growth(reports, environment, rounds):
    """Time and memory for each file, from ten thousand files on, as far as the disk has room."""
    print("\nGrowth, warm\n")
    print("| files | median s | µs a file | peak MiB | peak bytes a file |")
    print("|---:|---:|---:|---:|---:|")
    for files in GROWTH:
        room = os.statvfs(BUILD)
        made = (BUILD / f"tree-{files}.made").exists()
        if not made and room.f_bavail * room.f_frsize < 2 * files * FREE_BYTES_A_FILE:
            print(f"| {files:,} | no room | | | |")
            continue
        tree = make_tree(files, files // FILES_A_FOLDER)
        runner = Contender("program", program([]), tree, reports / "report.csv", environment)
        runner.run(reports)
        for _ in range(rounds if files >= 1_000_000 else 4 * rounds):
            runner.measure(reports)
        median = statistics.median(runner.walls)
        peak = max(runner.peaks)
        print(f"| {files:,} | {median:.3f} | {median * 1e6 / files:.2f} | {peak / KIB_PER_MIB:.1f} "
              f"| {peak * 1024 / files:.1f} |")
        sys.stdout.flush()


def version(command):
    found = subprocess.run(command, capture_output=True, text=True, check=False)
    return next(iter(found.stdout.splitlines()), "?").replace("\t", " ")


def parse_arguments():
    parser = argparse.ArgumentParser(prog="bench/compare", description=__doc__)
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--warm-only", action="store_true", help="drop no caches")
    parser.add_argument("--growth", action="store_true",
                        help="show how time and memory grow with the number of files instead")
    options = parser.parse_args()
    if options.rounds < 1:
        parser.error("at least one round")
    return options


def compare(options):
    reports = BUILD / "reports"
    reports.mkdir(parents=True, exist_ok=True)
    environment = private_environment(reports, "plain")
    print(f"{machine()}; {file_system(BUILD)}; {options.rounds} rounds in turns")
    if options.growth:
        print_growth(reports, environment, options.rounds)
        return
    print("; ".join(version(command) for command in
                    (["du", "--version"], ["ncdu", "--version"], ["gdu", "--version"])))
    for title, tree in (("1,000,000 files in 100,000 folders", make_tree(1_000_000, 100_000)),
                        ("1,000,000 files in one folder", make_tree(1_000_000, 0))):
        print_race(f"{title}, warm", race(tree, reports, environment, options.rounds, False))
        if options.warm_only:
            continue
        if not os.access(DROP_CACHES, os.W_OK):
            print("\nNo cold rounds: the caches may not be dropped here.")
            continue
        print_race(f"{title}, cold", race(tree, reports, environment, options.rounds, True))


def main():
    options = parse_arguments()
    try:
        compare(options)
    except Failure as failure:
        print(failure, file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
