#!/usr/bin/env python3
"""Times Forth programs: gantry forth against gforth, in turn.

    benchmarks/forth-vs-gforth.py [ROOT] [--runs N] [--only NAME]

ROOT is an installation, build/release/root unless given. Both run the same text and have to print the
same. The time of an empty program is taken off each.
"""

import argparse
import pathlib
import statistics
import subprocess
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent.parent

# One address unit is a cell for one system and a byte for the other.
PRELUDE = """
here 0 , here swap - constant /cell
: cell* /cell * ;
"""

PROGRAMS = {
    "nested DO loops": """
: run 0 20000 0 do 1000 0 do 1+ loop loop . ;
run
""",
    "arithmetic": """
: step dup 7 * 13 + over xor 65535 and swap 3 / max ;
: run 1 5000000 0 do step i + 1023 and loop . ;
run
""",
    "variables and an array": """
variable sum
create table 1000 cell* allot
: at cell* table + ;
: fill-it 1000 0 do i i at ! loop ;
: add-it 1000 0 do i at @ sum +! loop ;
: run fill-it 3000 0 do add-it loop sum @ . ;
run
""",
    "recursion": """
: fib dup 2 < if exit then dup 1- recurse swap 2 - recurse + ;
: run 31 fib . ;
run
""",
    "CASE": """
: choose case 0 of 10 endof 1 of 21 endof 2 of 32 endof 3 of 43 endof dup 100 + swap endcase ;
: run 0 3000000 0 do i 7 and choose + loop . ;
run
""",
    "BEGIN loops": """
: collatz 0 swap begin dup 1 > while dup 1 and if 3 * 1+ else 2/ then swap 1+ swap repeat drop ;
: run 0 50000 1 do i collatz max loop . ;
run
""",
    "sieve": """
8190 constant size
create flags size cell* allot
: flag cell* flags + ;
: clear size 0 do 1 i flag ! loop ;
: strike ( step first -- ) begin dup size < while 0 over flag ! over + repeat 2drop ;
: primes 0 size 0 do i flag @ if i 2* 3 + dup i + strike 1+ then loop ;
: run 0 200 0 do drop clear primes loop . ;
run
""",
}


def run(words):
    started = time.perf_counter()
    result = subprocess.run([str(word) for word in words], capture_output=True, text=True)
    seconds = time.perf_counter() - started
    if result.returncode != 0:
        raise SystemExit(f"{words[0]}: {(result.stdout + result.stderr)[-1000:]}")
    return seconds, result.stdout.strip()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("root", nargs="?", type=pathlib.Path, default=HERE / "build/release/root")
    parser.add_argument("--runs", type=int, default=9)
    parser.add_argument("--only", help="programs whose name holds this text")
    options = parser.parse_args()
    gantry = options.root.resolve() / "bin/gantry"
    with tempfile.TemporaryDirectory() as name:
        source = pathlib.Path(name) / "program.fs"

        def timed(text):
            source.write_text(PRELUDE + text + "bye\n")
            (a, printed), (b, expected) = run([gantry, "forth", source]), run(["gforth", source])
            if printed != expected:
                raise SystemExit(f"different output: {printed!r} and {expected!r}")
            return a, b

        pairs = [timed("") for _ in range(options.runs)]
        empty = [statistics.median(column) for column in zip(*pairs)]
        print(f"start: {empty[0] * 1000:.1f} ms against {empty[1] * 1000:.1f} ms")
        for title, text in PROGRAMS.items():
            if options.only and options.only not in title:
                continue
            pairs = [timed(text) for _ in range(options.runs)]
            a, b = (statistics.median(column) - start
                    for column, start in zip(zip(*pairs), empty))
            print(f"{title}: {a * 1000:.1f} ms against {b * 1000:.1f} ms, ratio {a / b:.1f}")


if __name__ == "__main__":
    main()
