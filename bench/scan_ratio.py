"""Times a silent scan and the bare walk of one tree in turns and prints the ratio of the medians.

Run it as bench/scan_ratio, which builds what it needs first. Both programs run once unmeasured, so
caches are warm; taking turns gives both the same share of whatever else the machine is doing.
"""

import argparse
import os
import platform
import shlex
import shutil
import statistics
import subprocess
import sys
from pathlib import Path

BUILD = Path(__file__).resolve().parent.parent / "build" / "bench"
KIB_PER_MIB = 1024


# These patterns exclude little, so that nearly every name is compared with all of them.
FILTERS = (
    "FolderList_FilterFolderExclude_Active=1",
    "FolderList_FilterFolderExclude_Text=no such,*/node_modules/*,[x-z]?none*,*äöü,temp#",
    "FolderList_FilterFolderInclude_Active=1",
    "FolderList_FilterFolderInclude_Text=*,*/*,*e*,*t*,*",
    "FolderList_FilterFilesInclude_Active=0",
    "FolderList_FilterFilesInclude_Text=*,*/*,*e*,*t*,*",
    "FolderList_FilterFilesExclude_Active=1",
    "FolderList_FilterFilesExclude_Text=*.nosuch,no such.*,*/cache/*.tmp,[!a-z0-9]#*,thumbs.db",
)


class Failure(Exception):
    """A program failed, so there is nothing to compare."""


class Contender:
    """A measured program: its command line, and the seconds and memory of each round."""

    def __init__(self, name, template, tree, target, environment):
        self.name = name
        self.environment = environment
        self.command = [
            word.replace("{tree}", str(tree)).replace("{target}", str(target))
            for word in shlex.split(template)
        ]
        self.target = target if "{target}" in template else None
        self.walls, self.cpus, self.peaks = [], [], []

    def run(self, reports):
        """One run from start to end: seconds of wall clock, seconds of CPU, peak KiB. Its output
        goes to a file, as a terminal would slow it."""
        if self.target:
            self.target.unlink(missing_ok=True)
        result, output = reports / "result", reports / "output"
        command = [str(BUILD / "bench" / "measure"), str(result), str(output), *self.command]
        if subprocess.run(command, env=self.environment, check=False).returncode != 0:
            raise Failure(f"{self.name} could not be measured")
        code, wall, cpu, peak = result.read_text().split()
        self.verify(int(code), output)
        return float(wall), float(cpu), int(peak)

    def verify(self, code, output):
        if code == 0 and (self.target is None or self.target.exists()):
            return
        fault = f"ended with status {code}" if code else f"left no {self.target}"
        said = output.read_text(errors="replace").strip() or "(nothing)"
        raise Failure(f"{self.name} failed: {shlex.join(self.command)}\n  {fault}; it said: {said}")

    def measure(self, reports):
        wall, cpu, peak = self.run(reports)
        self.walls.append(wall)
        self.cpus.append(cpu)
        self.peaks.append(peak)

    def row(self):
        walls = self.walls
        return (f"{self.name:<12} {statistics.median(walls):>9.3f} {min(walls):>9.3f} "
                f"{max(walls):>9.3f} {statistics.median(self.cpus):>9.3f} "
                f"{max(self.peaks) / KIB_PER_MIB:>11.1f}")


def parse_arguments():
    parser = argparse.ArgumentParser(prog="bench/scan_ratio", description=__doc__)
    parser.add_argument("--files", type=int, default=1_000_000)
    parser.add_argument("--folders", type=int, default=100_000)
    parser.add_argument("--flat", action="store_true", help="put all folders into the top folder")
    parser.add_argument("--tree", type=Path, help="where to make the tree (once)")
    parser.add_argument("--rounds", type=int, default=7)
    parser.add_argument("--save", choices=["none", "csv", "txt"], default="none",
                        help="save all levels in this format; by default only the top level, as CSV")
    parser.add_argument("--lists", action="store_true",
                        help="also measure a scan that prints every list")
    parser.add_argument("--filters", action="store_true",
                        help="also measure a scan with five patterns in each filter list")
    parser.add_argument("--program", metavar="COMMAND",
                        help='another command to measure, with "{tree}" and, where it writes a '
                             'report, "{target}" in it')
    options = parser.parse_args()
    if options.rounds < 1:
        parser.error("at least one round")
    if not options.tree:
        options.tree = BUILD / f"tree-{options.files}{'-flat' if options.flat else ''}"
    options.tree = options.tree.resolve()
    return options


def make_tree(options):
    options.tree.parent.mkdir(parents=True, exist_ok=True)
    command = [BUILD / "bench" / "make_tree", options.tree, options.files, options.folders]
    command += ["--flat"] if options.flat else []
    if subprocess.run([str(word) for word in command], check=False).returncode != 0:
        raise Failure("the tree could not be made")


def private_environment(reports, name, options=()):
    """An environment in which the caller's settings neither affect a scan nor are changed."""
    settings = reports / f"settings-{name}"
    shutil.rmtree(settings, ignore_errors=True)
    (settings / "Ombrelian").mkdir(parents=True)
    lines = "".join(f"{line}\r\n" for line in ("[Optionen]", *options))
    (settings / "Ombrelian" / "Ombrelian3.ini").write_bytes(lines.encode("utf-16"))
    return {**os.environ, "XDG_CONFIG_HOME": str(settings), "XDG_DATA_HOME": str(settings),
            "XDG_CACHE_HOME": str(settings)}


def machine():
    model = platform.machine()
    for line in Path("/proc/cpuinfo").read_text().splitlines():
        if line.startswith("model name"):
            model = line.split(":", 1)[1].strip()
            break
    return f"{model}, {os.cpu_count()} CPUs; Linux {platform.release()}"


def file_system(path):
    found = subprocess.run(["findmnt", "-n", "-o", "FSTYPE", "--target", str(path)],
                           capture_output=True, text=True, check=False)
    return found.stdout.strip() or "unknown file system"


def contest(options):
    make_tree(options)
    reports = BUILD / "reports"
    reports.mkdir(parents=True, exist_ok=True)
    plain = private_environment(reports, "plain")
    target = reports / f"report.{'txt' if options.save == 'txt' else 'csv'}"
    levels = "-s0" if options.save == "none" else "-s"
    own = f"{shlex.quote(str(BUILD / 'src' / 'ombrelian'))} {levels} {{target}} {{tree}}"
    walk = f"{shlex.quote(str(BUILD / 'bench' / 'bare_walk'))} {{tree}}"
    contenders = [Contender("bare walk", walk, options.tree, target, plain),
                  Contender("program", options.program or own, options.tree, target, plain)]
    if options.lists:
        lists = f"{shlex.quote(str(BUILD / 'src' / 'ombrelian'))} --lists {{tree}}"
        contenders.append(Contender("every list", lists, options.tree, target, plain))
    if options.filters:
        filtered = private_environment(reports, "filters", FILTERS)
        contenders.append(Contender("with filters", own, options.tree, target, filtered))
    for contender in contenders:
        contender.run(reports)
    for _ in range(options.rounds):
        for contender in contenders:
            contender.measure(reports)
    return contenders


def ratio(contender, base):
    return statistics.median(contender.walls) / statistics.median(base.walls)


def report(options, contenders):
    walk, program, *others = contenders
    print(machine())
    print(f"{options.files} files in {options.folders} folders, "
          f"{'flat, ' if options.flat else ''}{file_system(options.tree)}; "
          f"{options.rounds} rounds in turns, warm caches")
    print(shlex.join(program.command))
    if program.target:
        print(f"report: {program.target.stat().st_size} bytes")
    print(f"{'':<12} {'median s':>9} {'least s':>9} {'most s':>9} {'CPU s':>9} {'peak MiB':>11}")
    for contender in contenders:
        print(contender.row())
    print(f"ratio of the medians: {ratio(program, walk):.3f}")
    for other in others:
        print(f"{other.name} to program: {ratio(other, program):.3f}")


def main():
    options = parse_arguments()
    try:
        report(options, contest(options))
    except Failure as failure:
        print(failure, file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
