#!/usr/bin/env python3
"""Times the scripts of benchmarks/scripts in gantry script and in mujs, in turn.

    benchmarks/script-vs-mujs.py [ROOT] [--runs N]

ROOT is an installation, build/release/root unless given. Each script leaves its result in a variable
of that name; both engines must agree on it. Prints the medians of N runs (5 unless given) of the
whole process, start included, and their ratio.
"""

import argparse
import pathlib
import statistics
import subprocess
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent


def timed(words):
    start = time.perf_counter()
    result = subprocess.run([str(word) for word in words], capture_output=True, text=True)
    if result.returncode != 0:
        raise SystemExit(f"{words[0]}: {result.stdout}{result.stderr}")
    return time.perf_counter() - start, result.stdout


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("root", nargs="?", type=pathlib.Path,
                        default=HERE.parent / "build/release/root")
    parser.add_argument("--runs", type=int, default=5)
    options = parser.parse_args()
    print(f"{'script':<12} {'gantry':>9} {'mujs':>9} {'ratio':>6}")
    with tempfile.TemporaryDirectory() as folder:
        for script in sorted((HERE / "scripts").glob("*.js")):
            ours = pathlib.Path(folder, "ours.js")
            theirs = pathlib.Path(folder, "theirs.js")
            ours.write_text(script.read_text() + "WScript.Echo(result);\n")
            theirs.write_text(script.read_text() + "print(result);\n")
            times = ([], [])
            for _ in range(options.runs):
                seconds, output = timed([options.root / "bin/gantry", "script", ours])
                other_seconds, other_output = timed(["mujs", theirs])
                if output != other_output:
                    raise SystemExit(f"{script.name}: {output!r} here, {other_output!r} in mujs")
                times[0].append(seconds)
                times[1].append(other_seconds)
            mine, other = map(statistics.median, times)
            print(f"{script.stem:<12} {mine * 1000:6.0f} ms {other * 1000:6.0f} ms "
                  f"{mine / other:6.2f}")


main()
