#!/usr/bin/env python3
"""Times kld against ld.lld --gc-sections on the same program, in turn, and kcc against clang.

    benchmarks/link-vs-lld.py [ROOT] [--objects N] [--runs N]

ROOT is an installation, build/release/root unless given. The program has N objects (500 unless
given) with debugging information, and calls the C library. The library's ELF equivalent is made
from the same sources by the same compiler.
"""

import argparse
import pathlib
import statistics
import subprocess
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent.parent
CLANG = ["clang", "--target=msp430", "-mhwmult=none", "-nostdlibinc", "-ffunction-sections",
         "-fdata-sections", "-fno-addrsig", "-fno-common", "-Os"]
DEBUG = ["-gdwarf-5", "-glldb", "-gno-column-info"]
LIBRARIES = ["libc", "libm", "libdebugio", "libc_targetio_impl", "lib_vfprintf_int",
             "lib_vfscanf_int", "libc_user_libc"]

SOURCE = """
#include <string.h>
struct record {{ struct record *next; int value; char name[6]; }};
static int table{n}[] = {{{n}, {n} + 1, {n} + 2}};
int function{m}(int, struct record *);
static int local{n}(int x) {{ int s = 0; for (int i = 0; i < 3; i++) s += table{n}[i] ^ x; return s; }}
int unused{n}(int x) {{ return local{n}(x) * x; }}
int function{n}(int x, struct record *r)
{{
    struct record here = {{ r, local{n}(x), "r{n}" }};
    if (x > {limit})
        return (int)strlen(here.name) + here.value;
    return function{m}(x + 1, &here);
}}
"""
MAIN = """
#include <stdio.h>
int function0(int, void *);
int main(void) { printf("%d\\n", function0(480, 0)); return 0; }
"""


def run(words, **options):
    subprocess.run([str(word) for word in words], check=True, **options)


def make_objects(root, folder, count):
    include = f"-isystem{root / 'include'}"
    elf, native = [], []
    for n in range(count + 1):
        source = folder / (f"object{n}.c" if n < count else "main.c")
        source.write_text(SOURCE.format(n=n, m=(n + 1) % count, limit=count - 2) if n < count
                          else MAIN)
        run([*CLANG, *DEBUG, include, "-c", source, "-o", source.with_suffix(".o")])
        run([root / "bin/kcc", "-g", source.with_suffix(".o"), "-o", source.with_suffix(".kvo")])
        elf.append(source.with_suffix(".o"))
        native.append(source.with_suffix(".kvo"))
    return elf, native


def make_elf_library(root, folder):
    """The library's C sources, compiled to ELF, in one archive."""
    commands = subprocess.run(["ninja", "-C", root.parent, "-t", "commands", "runtime"],
                              check=True, capture_output=True, text=True).stdout
    members = []
    for command in commands.splitlines():
        words = command.split("&&")[-1].split()
        if not words or not words[0].endswith("/kcc"):
            continue
        flags = [word.replace("-J", "-isystem") for word in words[1:]
                 if word[:2] in ("-D", "-I", "-J") or word == "-w"]
        source = next(word for word in words[1:] if word.endswith(".c"))
        member = folder / f"member{len(members)}.o"
        run([*CLANG, *flags, "-c", source, "-o", member])
        members.append(member)
    archive = folder / "libc.a"
    run(["llvm-ar", "crs", archive, *members])
    return archive


def timed(words):
    started = time.perf_counter()
    result = subprocess.run([str(word) for word in words], capture_output=True, text=True)
    if result.returncode != 0:
        raise SystemExit(f"{words[0]}: {(result.stdout + result.stderr)[:1000]}")
    return time.perf_counter() - started


def compare(name, ours, peer, runs):
    timed(ours), timed(peer)
    pairs = [(timed(ours), timed(peer)) for _ in range(runs)]
    a, b = (statistics.median(column) for column in zip(*pairs))
    ratio = statistics.median(x / y for x, y in pairs)
    print(f"{name}: {a * 1000:.1f} ms against {b * 1000:.1f} ms, ratio {ratio:.2f} "
          f"(medians of {runs} pairs)")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("root", nargs="?", type=pathlib.Path, default=HERE / "build/release/root")
    parser.add_argument("--objects", type=int, default=500)
    parser.add_argument("--runs", type=int, default=15)
    options = parser.parse_args()
    root = options.root.resolve()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        elf, native = make_objects(root, folder, options.objects)
        library = make_elf_library(root, folder)
        script = folder / "memory.ld"
        script.write_text("SECTIONS { .data 0x200 : { *(.data*) } .bss : { *(.bss*) } "
                          ".text 0x1100 : { *(.text*) } .rodata : { *(.rodata*) } }")
        kld = [root / "bin/kld", *native, "-g",
               *(root / f"lib/{name}_soft_single.kva" for name in LIBRARIES),
               "-TCODE,CONST=1100-ffe0", "-TIDATA0,UDATA0=200-1000", "-TRESET=fffe-ffff",
               "-o", folder / "program.kvx"]
        lld = ["ld.lld", "--gc-sections", "-e", "main", "--unresolved-symbols=ignore-all",
               "-T", script, *elf, library, "-o", folder / "program.elf"]
        compare(f"link of {options.objects} objects, kld against ld.lld", kld, lld, options.runs)
        source = folder / "object0.c"
        include = root / "include"
        compare("compile, kcc against clang",
                [root / "bin/kcc", "-g", "-O-9", source, "-o", folder / "x.kvo"],
                [*CLANG, *DEBUG, f"-isystem{include}", "-c", source, "-o", folder / "x.o"],
                options.runs * 3)


if __name__ == "__main__":
    main()
