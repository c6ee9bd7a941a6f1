#!/usr/bin/env python3
"""Writes the property groups file: the group Target, whose entries are the devices, each with the
properties that a build for it needs.

usage: generate-property-groups.py PACKAGE FOLDER
PACKAGE is where msp430mcu is installed, /usr/msp430; FOLDER is the one to write to."""

import pathlib
import sys
from xml.sax.saxutils import quoteattr

import msp430mcu

DEFAULT_DEVICE = "MSP430F449"

HEAD = f"""<!DOCTYPE Property_Groups_File>
<Root>
  <group name="Target" page="Target" group="Target Options" short="Target Processor"
         long="The device that the project is for: its memory map, multiplier and instructions."
         default="{DEFAULT_DEVICE}">
"""
TAIL = "  </group>\n</Root>\n"

# The core, as the device's header tells.
EXTENDED_CORES = ("__MSP430_HAS_MSP430X_CPU__", "__MSP430_HAS_MSP430XV2_CPU__")


def multiplier(device):
    if "MPY32L" in device.symbols:
        return "32-Bit Multiplier"
    return "16-Bit Multiplier" if "MPY" in device.symbols else "No Multiplier"


def properties(device):
    header = device.header_path().read_text(encoding="latin-1")
    extended = any(core in header for core in EXTENDED_CORES)
    far = "far_rom" in device.regions
    placement = "section_placement_msp430x.xml" if far else "section_placement.xml"
    return (
        ("linker_memory_map_file", f"$(PackagesDir)/targets/msp430/{device.name.upper()}.xml"),
        ("linker_section_placement_file", f"$(BenchDir)/targets/{placement}"),
        ("build_use_hardware_multiplier", multiplier(device)),
        ("msp430_insn_set", "MSP430X" if extended else "MSP430"),
    )


def entry(device):
    name = device.name.upper()
    lines = [f"    <groupEntry name={quoteattr(name)}>"]
    lines += [f"      <property name={quoteattr(key)} value={quoteattr(value)}/>"
              for key, value in properties(device)]
    # The compiler is told the device, so that another one means compiling anew.
    lines.append(f'      <cdefine name="__TARGET_PROCESSOR" value={quoteattr(name)}/>')
    return "\n".join(lines + ["    </groupEntry>", ""])


def main(package, folder):
    entries = "".join(entry(device) for device in msp430mcu.devices(package))
    msp430mcu.write_if_changed(pathlib.Path(folder) / "propertyGroups.xml", HEAD + entries + TAIL)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
