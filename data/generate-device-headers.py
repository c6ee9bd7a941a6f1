#!/usr/bin/env python3
"""Writes the device headers: registers as macros over their addresses, for C and for assembly,
and msp430.h, which includes the one of the device that the compiler is told.

usage: generate-device-headers.py PACKAGE INCLUDE
PACKAGE is where msp430mcu is installed, /usr/msp430; INCLUDE is the folder to write."""

import pathlib
import sys

import msp430mcu

MACROS = {"b": "__sfr_byte", "w": "__sfr_word", "a": "__sfr_long"}

DISPATCH_HEAD = """\
/* The header of the device that a macro like __MSP430F449__, or the name in
   __TARGET_PROCESSOR, tells. */

#ifndef MSP430_H
#define MSP430_H

"""

DISPATCH_TAIL = """\
#elif defined(__TARGET_PROCESSOR)
#define __device_header_of(device) <devices/device.h>
#define __device_header(device) __device_header_of(device)
#include __device_header(__TARGET_PROCESSOR)
#else
#error No device is selected: define a macro like __MSP430F449__.
#endif

#include <intrinsics.h>

#endif
"""


def as_macro(match):
    constant, kind, name, address = match.groups()
    macro = MACROS[kind] + ("_const" if constant else "")
    return f"#define {name} {macro}({address})"


def convert(text):
    return msp430mcu.REGISTER.sub(as_macro, text)


def dispatch(devices):
    lines = []
    for i, device in enumerate(devices):
        directive = "#if" if i == 0 else "#elif"
        lines.append(f"{directive} defined(__{device.name.upper()}__)\n#include <{device.name}.h>\n")
    return DISPATCH_HEAD + "".join(lines) + DISPATCH_TAIL


def main(package, include):
    include = pathlib.Path(include)
    devices = msp430mcu.devices(package)
    headers = pathlib.Path(package) / "include"
    # Families share headers, which the devices' own include.
    for pattern in ("msp430?*.h", "cc430*.h"):
        for path in sorted(headers.glob(pattern)):
            text = path.read_text(encoding="latin-1")
            msp430mcu.write_if_changed(include / path.name, convert(text))
    for device in devices:
        msp430mcu.write_if_changed(include / "devices" / (device.name.upper() + ".h"),
                                   f"#include <{device.name}.h>\n")
    msp430mcu.write_if_changed(include / "msp430.h", dispatch(devices))


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
