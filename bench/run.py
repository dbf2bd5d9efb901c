"""Runs the benchmark programs one after the other and prints what they print.

usage: run.py FOLDER [NAME...]     a NAME is a program without its "bench_", such as queue; default: all
"""
import subprocess
import sys
from pathlib import Path


def main(folder, names):
    programs = sorted(path for path in Path(folder).glob("bench_*") if not path.suffix)
    known = [path.name.removeprefix("bench_") for path in programs]
    unknown = [name for name in names if name not in known]
    if unknown:
        print(f"no benchmark called {', '.join(unknown)}; there are: {', '.join(known)}", file=sys.stderr)
        return 2
    failed = 0
    for path, name in zip(programs, known):
        if names and name not in names:
            continue
        print(f"\n== {name}", flush=True)
        failed |= subprocess.run([str(path)]).returncode != 0
    return int(failed)


sys.exit(main(sys.argv[1], sys.argv[2:]))
