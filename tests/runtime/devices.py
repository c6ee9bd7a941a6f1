#!/usr/bin/env python3
"""For every device: a program with its header is compiled, linked by its memory map, and run on
the simulator from its reset vector; it must leave through exit.

usage: devices.py ROOT"""

import concurrent.futures
import pathlib
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "programs"))
sys.dont_write_bytecode = True
import run  # noqa: E402

SOURCE = """\
#include <msp430.h>

static int initialised = 40;
static int cleared;

#pragma vector=WDT_VECTOR
__interrupt void watchdog(void) {
  cleared++;
}

int main(void) {
  WDTCTL = WDTPW | WDTHOLD;
  return initialised + cleared + 2;
}
"""

DEVICES_LEAST = 386
LIBRARIES = ("libc", "libdebugio", "libc_user_libc")


def check(root, device, folder):
    source = folder / f"{device}.c"
    module = source.with_suffix(".kvo")
    program = source.with_suffix(".kvx")
    # Some devices have a watchdog without an interrupt.
    text = SOURCE
    source.write_text("#include <msp430.h>\n#ifndef WDT_VECTOR\n#define WDT_VECTOR 0\n#endif\n" + text)
    run.succeed([root / "bin/kcc", "-we", "-O-9", f"-D__{device}__", f"-J{root}/include", source,
                 "-o", module], folder)
    run.succeed([root / "bin/kld", module, *(root / f"lib/{name}_soft_single.kva" for name in LIBRARIES),
                 *run.placement_options(root, device), "-o", program], folder)
    result = run.run([root / "bin/gantry", "run", program, "--max-cycles", 100000], folder)
    if result.returncode != 42:
        raise run.Failure(f"status {result.returncode}: " + result.stderr.decode()[:200])


def main(root):
    root = pathlib.Path(root).resolve()
    devices = sorted(path.stem for path in (root / "packages/targets/msp430").glob("*430*.xml"))
    failures = int(len(devices) < DEVICES_LEAST)
    if failures:
        print(f"only {len(devices)} devices")
    with tempfile.TemporaryDirectory() as name, concurrent.futures.ThreadPoolExecutor(2) as pool:
        futures = {device: pool.submit(check, root, device, pathlib.Path(name)) for device in devices}
        for device, future in futures.items():
            try:
                future.result()
            except (run.Failure, subprocess.TimeoutExpired) as failure:
                failures += 1
                print(f"{device}: {failure}")
    print(f"{len(devices)} devices, {failures} failures")
    return failures != 0


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    sys.exit(main(sys.argv[1]))
