#!/usr/bin/env python3
"""Writes a memory map for each device: its memory segments, and its registers in groups.

usage: generate-memory-maps.py PACKAGE FOLDER
PACKAGE is where msp430mcu is installed, /usr/msp430; FOLDER is the one to write to."""

import pathlib
import sys
from xml.sax.saxutils import quoteattr

import msp430mcu

# Region of the package, segment, access.
SEGMENTS = (
    ("ram", "RAM", ""),
    ("ram_mirror", "RAM_MIRROR", ""),
    ("ram2", "RAM2", ""),
    ("usbram", "USB_RAM", ""),
    ("infomem", "INFO", "ReadOnly"),
    ("bsl", "BSL", "ReadOnly"),
    ("rom", "FLASH", "ReadOnly"),
    ("vectors", "VECTORS", "ReadOnly"),
    ("far_rom", "FAR_FLASH", "ReadOnly"),
)

# Where the registers end if none lies beyond, and where they end if one does (SLAU208, memory
# organisation: peripherals from 0 to 0x0fff).
PERIPHERALS_END = 0x0200
LARGE_PERIPHERALS_END = 0x1000

# Of devices without a multiplier; the address is the classic one.
MULTIPLIER = 0x0130
MULTIPLIER_SIZES = {16: 0x10, 32: 0x30}


def element(indent, tag, attributes, end="/"):
    text = "".join(f" {name}={quoteattr(str(value))}" for name, value in attributes if value != "")
    return f"{' ' * indent}<{tag}{text}{end}>\n"


def segment(name, start, size, access="", symbol=""):
    return element(2, "MemorySegment", (("name", name), ("start", f"0x{start:04X}"),
                                        ("size", f"0x{size:04X}"), ("access", access),
                                        ("address_symbol", symbol)))


def segments(device):
    last = max(device.symbols.values(), default=0)
    end = LARGE_PERIPHERALS_END if last >= PERIPHERALS_END else PERIPHERALS_END
    # Names behind the peripherals may be of calibration data: memory ends them in any case.
    end = min([end] + [start for start, _ in device.regions.values() if start >= PERIPHERALS_END])
    text = segment("PERIPHERALS", 0, end)
    for region, name, access in sorted(SEGMENTS, key=lambda s: device.regions.get(s[0], (0, 0))):
        if region in device.regions:
            text += segment(name, *device.regions[region], access)
    # What the run-time library reaches through the linker.
    text += segment("WATCHDOG", device.symbols.get("WDTCTL", 0x0120), 2,
                    symbol="__watchdog_control")
    width = 32 if "MPY32L" in device.symbols else 16 if "MPY" in device.symbols else 0
    text += segment("MULTIPLIER", device.symbols.get("MPY", MULTIPLIER),
                    MULTIPLIER_SIZES.get(width, 0), symbol="__multiplier")
    return text


def group_name(title):
    if any(c.islower() for c in title):
        return " ".join(title.split())
    # Short words are abbreviations.
    return " ".join(word.capitalize() if word.isalpha() and len(word) > 4 else word
                    for word in title.split())


def registers(device):
    groups = {}
    for register in device.registers():
        groups.setdefault(group_name(register.group), []).append(register)
    text = ""
    for name, members in groups.items():
        text += element(2, "RegisterGroup", (("name", name),), "")
        for register in sorted(members, key=lambda r: (r.address, r.size)):
            text += element(4, "Register", (
                ("name", register.name), ("start", f"0x{register.address:04X}"),
                ("size", register.size), ("access", "ReadOnly" if register.read_only else ""),
                ("description", register.description)))
        text += "  </RegisterGroup>\n"
    return text


def memory_map(device):
    name = device.name.upper()
    return ('<?xml version="1.0" encoding="iso-8859-1"?>\n<!DOCTYPE Board_Memory_Definition_File>\n' +
            element(0, "Root", (("name", name),), "") + segments(device) + registers(device) +
            "</Root>\n")


def main(package, folder):
    for device in msp430mcu.devices(package):
        msp430mcu.write_if_changed(pathlib.Path(folder) / (device.name.upper() + ".xml"),
                                   memory_map(device))


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
