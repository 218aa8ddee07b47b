"""Writes made-up folder reports in every format, in turns, and prints a table.

report_ratio [--rows N] [--rounds N]

CPU seconds are medians; "loop" is the simplest loop that writes the default columns as CSV. Memory is
the growth of the peak while the report was written, for a tenth of the rows and for all of them.
"""

import argparse
import statistics
import subprocess
import tempfile
from pathlib import Path

PROGRAM = Path(__file__).resolve().parent.parent / "build/bench/bench/report_speed"
CASES = [("default", "loop")] + [
    (columns, form) for columns in ("default", "all") for form in ("txt", "csv", "html", "xml", "xlsx")
]


def run(rows, case, folder):
    """Returns the CPU seconds, the KiB and the bytes of one report."""
    target = Path(folder) / f"report.{case[1]}"
    out = subprocess.run(
        [PROGRAM, str(rows), *case, target], check=True, capture_output=True, text=True
    ).stdout.split()
    target.unlink()
    return float(out[0]), int(out[2]), int(out[3])


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--rows", type=int, default=1_000_000)
    parser.add_argument("--rounds", type=int, default=5)
    wanted = parser.parse_args()
    results = {case: [] for case in CASES}
    with tempfile.TemporaryDirectory(dir=PROGRAM.parent) as folder:
        small = {case: run(wanted.rows // 10, case, folder) for case in CASES}
        for _ in range(wanted.rounds):
            for case in CASES:
                results[case].append(run(wanted.rows, case, folder))
    medians = {case: statistics.median(r[0] for r in runs) for case, runs in results.items()}
    print(f"{wanted.rows} rows, {wanted.rounds} rounds; CPU seconds, spread, ratio to loop, MB, KiB")
    for case, runs in results.items():
        seconds = [r[0] for r in runs]
        print(
            f"{case[0]:8}{case[1]:6}{medians[case]:8.2f}  {min(seconds):.2f}-{max(seconds):.2f}"
            f"  {medians[case] / medians[CASES[0]]:6.2f}{runs[0][2] / 1e6:9.0f}"
            f"  {small[case][1]:6} {max(r[1] for r in runs):6}"
        )


if __name__ == "__main__":
    main()
