#!/usr/bin/env python3
"""Compiles every program here for the target at each level of optimisation, links it, runs it on
the simulator and compares its output and exit status with what the host's compiler makes of the
same source, or with NAME.expected and NAME.status where a program is for the target only.
Programs without output, silent_*, run under mspdebug as well, if that is installed.

NAME.in is a program's standard input, NAME.arguments its arguments, NAME.link what its link is told
besides."""

import argparse
import concurrent.futures
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

HERE = pathlib.Path(__file__).resolve().parent

# The host's scanf takes a whole line of the terminal, so that what it leaves can't be read on.
TARGET_FORMATTING_ONLY = {"input"}

LEVELS = {"O0": "-O0", "O1": "-O1", "Os": "-O-9", "O2": "-O+9"}
MAX_CYCLES = 400_000_000


class Failure(Exception):
    pass


def run(arguments, cwd, **options):
    return subprocess.run([str(a) for a in arguments], cwd=cwd, capture_output=True, timeout=300,
                          **options)


def succeed(arguments, cwd):
    result = run(arguments, cwd)
    if result.returncode != 0:
        raise Failure(f"{arguments[0].name if hasattr(arguments[0], 'name') else arguments[0]}: " +
                      (result.stdout + result.stderr).decode(errors="replace").strip()[:400])
    return result


def number(text):
    return int(text, 0)


def segment_options(element, sections):
    """The link's options for one memory segment, with the sections placed in it."""
    start, size = number(element.get("start")), number(element.get("size"))
    name = element.get("name")
    options = [f"-D___{name}_Address={start}", f"-D___{name}_Size={size}"]
    if element.get("address_symbol"):
        options.append(f"-D{element.get('address_symbol')}={start}")
    used, free = [], []
    for section in sections:
        if section.get("start"):
            first = number(section.get("start"))
            last = first + number(section.get("size")) - 1
            options.append(f"-T{section.get('name')}={first:x}-{last:x}")
            used.append((first, last))
        else:
            free.append(section.get("name"))
        if section.get("load"):
            options.append(f"-G{section.get('name')}=L")
    ranges, at = [], start
    for first, last in sorted(used) + [(start + size, start + size)]:
        if first > at:
            ranges.append(f"{at:x}-{first:x}")
        at = last + 1
    if free:
        options.append("-T" + ",".join(free) + ("=" + ",".join(ranges) if ranges else ""))
    return options


def placement_options(root, device):
    memory = xml.etree.ElementTree.parse(root / f"packages/targets/msp430/{device}.xml").getroot()
    placement = xml.etree.ElementTree.parse(root / "targets/section_placement.xml").getroot()
    segments = {element.get("name"): element for element in memory.iter("MemorySegment")}
    options = []
    for element in reversed(list(placement.iter("MemorySegment"))):
        options += segment_options(segments[element.get("name")], list(element))
    return options


class Toolchain:
    def __init__(self, root, device, ending, formatter, io):
        self.root = root
        self.device = device
        names = ["libc", "libm", "libdebugio", f"libc_{io}io_impl", f"lib_vfprintf_{formatter}",
                 f"lib_vfscanf_{formatter}_cc", "libc_user_libc"]
        self.libraries = [root / f"lib/{name}{ending}.kva" for name in names]
        self.placement = placement_options(root, device)
        self.peripherals = ["simio add hwmult multiplier"] if "_hw16" in ending else []
        # mspdebug has no 32-bit multiplier.
        self.has_peer = shutil.which("mspdebug") is not None and "_hw32" not in ending

    def tool(self, name):
        return self.root / "bin" / name

    def build(self, source, level, folder):
        module = folder / (source.stem + ".kvo")
        program = folder / (source.stem + ".kvx")
        succeed([self.tool("kcc"), "-w", "-g", LEVELS[level], f"-D__{self.device}__",
                 f"-J{self.root}/include", source, "-o", module], folder)
        succeed([self.tool("kld"), module, *self.libraries, *words_of(source, ".link"), *self.placement,
                 f"-M{program.with_suffix('.map')}", "-o", program], folder)
        return program

    def simulate(self, program, source):
        arguments = [self.tool("gantry"), "run", program, "--device", self.device,
                     "--max-cycles", MAX_CYCLES]
        if source.with_suffix(".in").exists():
            arguments += ["--stdin", source.with_suffix(".in")]
        words = words_of(source, ".arguments")
        if words:
            arguments += ["--", *words]
        return run(arguments, program.parent)

    def image(self, program):
        succeed([self.tool("kex"), program, "-o", program.with_suffix(""), "-Fhex"], program.parent)
        return program.with_suffix(".hex")


def words_of(source, suffix):
    path = source.with_suffix(suffix)
    return path.read_text().split() if path.exists() else []


def host_result(source, folder):
    """Output and exit status that the program must have."""
    expected = source.with_suffix(".expected")
    if expected.exists():
        status = source.with_suffix(".status")
        return expected.read_bytes(), int(status.read_text()) if status.exists() else 0
    program = folder / source.stem
    succeed(["gcc", "-w", "-O1", "-fwrapv", source, "-o", program, "-lm"], folder)
    text = source.with_suffix(".in")
    with open(text if text.exists() else "/dev/null", "rb") as stream:
        result = run([program, *words_of(source, ".arguments")], folder, stdin=stream)
    return result.stdout, result.returncode


def first_difference(ours, theirs):
    for i, (a, b) in enumerate(zip(ours.splitlines(), theirs.splitlines())):
        if a != b:
            return f"line {i + 1}: {a!r} in place of {b!r}"
    return f"{len(ours.splitlines())} lines in place of {len(theirs.splitlines())}"


def debugger_registers(image, exit_address, peripherals):
    """The registers at the call of exit under mspdebug, by name."""
    result = run(["mspdebug", "-q", "sim", *peripherals, f"prog {image}", f"setbreak {exit_address}",
                  "reset", "run", "regs"], image.parent)
    text = result.stdout.decode(errors="replace")
    found = re.findall(r"\(\s*(PC|SP|R\d+): ([0-9a-f]+)\)", text)
    if len(found) < 15:
        raise Failure("mspdebug: " + text[-200:])
    return {name: int(value, 16) for name, value in found[-15:]}


def simulator_registers(toolchain, program, exit_address):
    """The same under our simulator. The status register is left out: mspdebug sets V otherwise."""
    result = run([toolchain.tool("gantry"), "run", program, "--device", toolchain.device, "--break",
                  exit_address, "--registers", "--max-cycles", MAX_CYCLES], program.parent)
    pairs = re.findall(r"^(PC|SP|R\d+) ([0-9a-f]{5})$", result.stdout.decode(), re.MULTILINE)
    return {name: int(value, 16) for name, value in pairs}


def symbol_address(map_file, name):
    found = re.search(rf"^\s*([0-9A-Fa-f]+)\s+{name}$", map_file.read_text(), re.MULTILINE)
    if not found:
        raise Failure(f"{name} isn't in the map")
    return "0x" + found.group(1)


def check(toolchain, source, level):
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        output, status = host_result(source, folder)
        program = toolchain.build(source, level, folder)
        result = toolchain.simulate(program, source)
        if result.stdout != output:
            raise Failure("output: " + first_difference(result.stdout, output) +
                          result.stderr.decode(errors="replace")[:200])
        if result.returncode != status:
            raise Failure(f"status {result.returncode} in place of {status}")
        if source.stem.startswith("silent_") and toolchain.has_peer:
            exit_address = symbol_address(program.with_suffix(".map"), "exit")
            ours = simulator_registers(toolchain, program, exit_address)
            theirs = debugger_registers(toolchain.image(program), exit_address, toolchain.peripherals)
            if ours["R12"] & 0xff != status:
                raise Failure(f"R12 is {ours['R12']:05x} at exit, the status {status}")
            if ours != theirs:
                raise Failure(f"registers {ours} in place of {theirs} under mspdebug")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--root", type=pathlib.Path, required=True, help="the installed tree")
    parser.add_argument("--device", default="MSP430F1611")
    parser.add_argument("--ending", default="_soft_double", help="of the libraries' names")
    parser.add_argument("--formatter", default="double_long_long")
    parser.add_argument("--io", default="target", choices=("target", "debug"))
    parser.add_argument("--levels", default=",".join(LEVELS))
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("programs", nargs="*", help="names without .c; all if none is given")
    options = parser.parse_args()
    toolchain = Toolchain(options.root.resolve(), options.device, options.ending, options.formatter,
                          options.io)
    sources = [HERE / (name + ".c") for name in options.programs] or sorted(HERE.glob("*.c"))
    if options.io == "debug":
        sources = [source for source in sources if source.stem not in TARGET_FORMATTING_ONLY]
    failures = 0
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        runs = [(source, level, pool.submit(check, toolchain, source, level))
                for source in sources for level in options.levels.split(",")]
        for source, level, future in runs:
            try:
                future.result()
            except (Failure, subprocess.TimeoutExpired) as failure:
                failures += 1
                print(f"{source.stem} {level}: {failure}")
    print(f"{len(runs) - failures} of {len(runs)} runs as expected")
    return failures != 0


if __name__ == "__main__":
    sys.exit(main())
