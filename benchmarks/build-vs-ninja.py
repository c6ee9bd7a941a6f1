#!/usr/bin/env python3
"""Times a build that has nothing to do: gantry build against ninja, in turn.

    benchmarks/build-vs-ninja.py [ROOT] [--sources N] [--headers N] [--runs N]

ROOT is an installation, build/release/root unless given. The project has N sources (400 unless
given), each of which includes ten of the headers (40 unless given). Ninja's build file has the same
steps with clang and lld, and takes the headers from the compiler's dependency files. Both compile
everything once before anything is timed.
"""

import argparse
import pathlib
import statistics
import subprocess
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent.parent
INCLUDES = 10

SOLUTION = """<!DOCTYPE GantryBench_Project_File>
<solution Name="many" version="2">
  <configuration Name="Debug"/>
  <project Name="many">
    <configuration Name="Common" link_IOLibraryName="none"/>
    <folder Name="Source Files">
{files}
    </folder>
  </project>
</solution>
"""

NINJA = """rule cc
  command = clang --target=msp430 -Os -ffreestanding -MD -MF $out.d -c $in -o $out
  deps = gcc
  depfile = $out.d
rule link
  command = ld.lld -e main -r $in -o $out
{objects}
build ninja/many.elf: link {all}
"""


def run(words):
    result = subprocess.run([str(word) for word in words], capture_output=True, text=True)
    if result.returncode != 0:
        raise SystemExit(f"{words[0]}: {(result.stdout + result.stderr)[-1000:]}")
    return result.stdout


def write_sources(folder, sources, headers):
    for n in range(headers):
        (folder / f"header{n}.h").write_text(f"int shared{n}(int);\n")
    names = []
    for n in range(sources):
        lines = [f'#include "header{(n * 7 + i) % headers}.h"\n' for i in range(INCLUDES)]
        lines.append(f"int function{n}(int x) {{ return x + {n}; }}\n" if n else
                     "int main(void) { return 0; }\n")
        names.append(f"source{n}")
        (folder / f"{names[-1]}.c").write_text("".join(lines))
    return names


def write_builds(folder, names):
    solution = folder / "many.kvp"
    files = "\n".join(f'      <file file_name="{name}.c"/>' for name in names)
    solution.write_text(SOLUTION.format(files=files))
    objects = "\n".join(f"build ninja/{name}.o: cc {name}.c" for name in names)
    everything = " ".join(f"ninja/{name}.o" for name in names)
    (folder / "build.ninja").write_text(NINJA.format(objects=objects, all=everything))
    return solution


def timed(words, expected):
    started = time.perf_counter()
    output = run(words)
    seconds = time.perf_counter() - started
    if expected not in output:
        raise SystemExit(f"{words[0]} had something to do: {output[-1000:]}")
    return seconds


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("root", nargs="?", type=pathlib.Path, default=HERE / "build/release/root")
    parser.add_argument("--sources", type=int, default=400)
    parser.add_argument("--headers", type=int, default=40)
    parser.add_argument("--runs", type=int, default=25)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        solution = write_builds(folder, write_sources(folder, options.sources, options.headers))
        ours = [options.root.resolve() / "bin/gantry", "build", solution]
        peer = ["ninja", "-C", folder]
        run(ours), run(peer)
        pairs = [(timed(ours, "Build up to date"), timed(peer, "no work to do"))
                 for _ in range(options.runs)]
    a, b = (statistics.median(column) for column in zip(*pairs))
    ratio = statistics.median(x / y for x, y in pairs)
    print(f"nothing to do for {options.sources} sources, gantry build against ninja: "
          f"{a * 1000:.1f} ms against {b * 1000:.1f} ms, ratio {ratio:.2f} "
          f"(medians of {options.runs} pairs)")


if __name__ == "__main__":
    main()
