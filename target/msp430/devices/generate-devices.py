#!/usr/bin/env python3
"""Writes the device table from the memory maps and headers of the msp430mcu package.

usage: generate-devices.py MCU_ROOT OUTPUT

Reads MCU_ROOT/lib/ldscripts/<device>/{memory,periph}.x and MCU_ROOT/include. One row a device, in
the order of the names; its fields are those of MSP430Device. What isn't in the package comes from
device_facts.py.
"""
import pathlib
import re
import sys

import device_facts

REGION = re.compile(r"^\s*(\w+)\s*(?:\(\w+\))?\s*:\s*ORIGIN = (0x[0-9a-fA-F]+), LENGTH = (0x[0-9a-fA-F]+)", re.M)
SEGMENT = re.compile(r"__info_segment_size = (0x[0-9a-fA-F]+)")
REGISTER = re.compile(r"^__(\w+) = (0x[0-9a-fA-F]+);", re.M)
FEATURE = re.compile(r"#define __MSP430_HAS_(MSP430X_CPU|MSP430XV2_CPU|MPY32|MPY)__")
INCLUDE = re.compile(r'#include [<"](msp430x\w+\.h|\w+\.h)[>"]')
# A peripheral space that reaches beyond the classic 512 bytes is 4 KB (SLAU208, "Memory Map").
CLASSIC_PERIPHERAL_END = 0x1FF
EXTENDED_PERIPHERAL_END = 0xFFF


def regions(folder):
    text = (folder / "memory.x").read_text()
    found = {name: (int(origin, 16), int(length, 16)) for name, origin, length in REGION.findall(text)}
    return {name: r for name, r in found.items() if r[1]}, SEGMENT.search(text)


def features(include, device, seen=None):
    seen = set() if seen is None else seen
    path = include / f"{device}.h"
    if device in seen or not path.exists():
        return set()
    seen.add(device)
    text = path.read_text(errors="replace")
    found = set(FEATURE.findall(text))
    for name in INCLUDE.findall(text):
        if name.startswith("msp430x"):
            found |= features(include, name[:-2], seen)
    return found


def span(region):
    return (region[0], region[0] + region[1] - 1) if region else (0, 0)


def row(mcu, folder):
    memory, segment = regions(folder)
    registers = {name: int(address, 16) for name, address in REGISTER.findall((folder / "periph.x").read_text())}
    has = features(mcu / "include", folder.name)
    ram, ram2, info, bsl = (span(memory.get(name)) for name in ("ram", "ram2", "infomem", "bsl"))
    main_start = memory["rom"][0]
    main_end = span(memory["far_rom"])[1] if "far_rom" in memory else 0xFFFF
    wide = any(CLASSIC_PERIPHERAL_END < a < min(ram[0], 0x1000) for a in registers.values())
    peripheral_end = EXTENDED_PERIPHERAL_END if wide else CLASSIC_PERIPHERAL_END
    word_start = memory["peripheral_16bit"][0]
    extended = "far_rom" in memory or bool(has & {"MSP430X_CPU", "MSP430XV2_CPU"})
    bits = 32 if "MPY32" in has else 16 if "MPY" in has else 0
    multiplier = registers.get("MPY", 0) if bits else 0
    numbers = [0, word_start, peripheral_end, *ram, *ram2, *info, int(segment.group(1), 16) if segment else 0,
               *bsl, main_start, main_end]
    fields = ", ".join(f"0x{n:X}" for n in numbers)
    vectors = memory["vectors"][1] // 2
    return (f'{{"{folder.name.upper()}", {fields}, {vectors}, 0x{multiplier:X}, {bits if multiplier else 0}, '
            f'{flag(extended)}, {facts(folder.name, has)}}},')


def flag(value):
    return "true" if value else "false"


def facts(name, has):
    xv2 = device_facts.is_xv2(has)
    kind = device_facts.emulation(name, has)
    clock = 0 if device_facts.has_no_clock_control(name) else device_facts.clock_control(kind)
    fast_erase = device_facts.has_fast_erase(name)
    found = device_facts.identification(name)
    match = "{" + ", ".join(f"0x{v:X}" for v in found.values) + "}" if found else "NoMatch"
    return f"{flag(xv2)}, {flag(fast_erase)}, {clock}, MSP430Emulation::{kind.name}, {match}"


def main():
    mcu, output = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    folders = sorted(p for p in (mcu / "lib/ldscripts").iterdir() if (p / "memory.x").exists())
    output.parent.mkdir(parents=True, exist_ok=True)
    output.write_text("\n".join(row(mcu, folder) for folder in folders) + "\n")


main()
