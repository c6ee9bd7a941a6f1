#!/usr/bin/env python3
"""Writes for each device which of the modules that msp430peripherals.js simulates it has, and where.

usage: generate-peripherals.py PACKAGE FOLDER
PACKAGE is where msp430mcu is installed, /usr/msp430; FOLDER is the one to write to."""

import pathlib
import re
import sys

import msp430mcu

ALIAS = re.compile(r"^#define\s+(\w+)\s+\(?([A-Za-z_]\w*)\)?\s*(?:/\*.*)?$", re.MULTILINE)
NUMBER = re.compile(r"^#define\s+(\w+)\s+\(?(0x[0-9A-Fa-f]+)\)?", re.MULTILINE)
VECTOR = re.compile(r"^#define\s+(\w+?)_?VECTOR\s+\(0x[0-9A-Fa-f]+\)\s*/\*\s*(0x[0-9A-Fa-f]{4})", re.MULTILINE)
SIXTEEN_RANGES = ("msp430f2", "msp430g2", "msp430afe")


class Layout:
    """The registers, numbers and vectors of a device, by name; None for what it hasn't."""

    def __init__(self, device):
        text = device.header_path().read_text(encoding="latin-1")
        self.name = device.name
        self.symbols = device.symbols
        self.aliases = dict(ALIAS.findall(text))
        self.numbers = {name: int(value, 16) for name, value in NUMBER.findall(text)}
        self.vectors = {name: int(value, 16) for name, value in VECTOR.findall(text)}
        self.xv2 = "SFRIE1" in self.symbols

    def register(self, *names):
        for name in names:
            for _ in range(8):
                if name in self.symbols:
                    return self.symbols[name]
                if name not in self.aliases:
                    break
                name = self.aliases[name]
        return None

    def number(self, name, fallback):
        return self.numbers.get(name, fallback)

    def vector(self, *names):
        return next((self.vectors[name] for name in names if name in self.vectors), 0)


def call(function, *arguments):
    def text(value):
        if isinstance(value, (list, tuple)):
            return "[" + ", ".join(text(v) for v in value) + "]"
        if isinstance(value, bool):
            return "true" if value else "false"
        if isinstance(value, str):
            return f'"{value}"'
        if value is None:
            return "-1"
        return f"0x{value:X}" if value > 9 else str(value)
    return f"{function}({', '.join(text(a) for a in arguments)});\n"


def clock(layout):
    ucs = [layout.register(name) for name in ("UCSCTL2", "UCSCTL4", "UCSCTL5")]
    fll = [layout.register(name) for name in ("SCFI0", "SCFQCTL", "FLL_CTL0", "FLL_CTL1")]
    basic = [layout.register(name) for name in ("DCOCTL", "BCSCTL1", "BCSCTL2")]
    if None not in ucs:
        return call("addClock", "ucs", ucs)
    if None not in fll:
        return call("addClock", "fll", fll)
    if None not in basic:
        return call("addClock", "basic", basic + [1 if layout.name.startswith(SIXTEEN_RANGES) else 0])
    return call("addClock", "fixed", [])


def ports(layout):
    text = ""
    for n in range(1, 12):
        registers = [layout.register(f"P{n}{kind}") for kind in ("IN", "OUT", "DIR", "IFG", "IES", "IE")]
        if None in registers[:3]:
            continue
        if None in registers[3:]:
            registers[3:] = [None] * 3
        text += call("addPort", n, registers, layout.vector(f"PORT{n}"), layout.register(f"P{n}IV"))
    return text


def timers(layout):
    text = ""
    seen = set()
    for prefix in ("TA", "TA0", "TA1", "TA2", "TA3", "TB", "TB0", "TB1", "TB2"):
        letter, number = prefix[1], prefix[2:] or "0"
        control, counter, cctl, ccr = (layout.register(prefix + kind) for kind in ("CTL", "R", "CCTL0", "CCR0"))
        if None in (control, counter, cctl, ccr) or control in seen:
            continue
        seen.add(control)
        channels = 1
        while layout.register(f"{prefix}CCR{channels}") is not None:
            channels += 1
        vectors = [layout.vector(f"TIMER{number}_{letter}{i}", f"TIMER{letter}{i}" if number == "0" else "")
                   for i in (0, 1)]
        overflow = 0x0E if layout.xv2 or letter == "B" else 0x0A
        text += call("addTimer", letter == "B", channels, control, counter, cctl, ccr,
                     layout.register(prefix + "EX0"), layout.register(prefix + "IV"), *vectors, overflow)
    return text


def watchdog(layout):
    control = layout.register("WDTCTL")
    enable = layout.register("SFRIE1" if layout.xv2 else "IE1")
    flags = layout.register("SFRIFG1" if layout.xv2 else "IFG1")
    if None in (control, enable, flags):
        return ""
    return call("addWatchdog", control, enable, flags, layout.vector("WDT"), layout.xv2)


def uarts(layout):
    text = ""
    for n in range(4):
        usart = [layout.register(f"U{n}{kind}")
                 for kind in ("CTL", "TCTL", "BR0", "BR1", "RXBUF", "TXBUF", "IE", "IFG")]
        if None not in usart:
            text += call("addUart", "usart", usart, layout.number(f"URXIE{n}", 0x40),
                         layout.number(f"UTXIE{n}", 0x80), layout.vector(f"USART{n}RX", f"UART{n}RX"),
                         layout.vector(f"USART{n}TX", f"UART{n}TX"), None)
            continue
        iv = layout.register(f"UCA{n}IV")
        if iv is not None:
            enable, flags = layout.register(f"UCA{n}IE"), layout.register(f"UCA{n}IFG")
        else:
            enable, flags = layout.register(f"UC{n}IE"), layout.register(f"UC{n}IFG")
        control = layout.register(f"UCA{n}CTL1")
        usci = [control, control, layout.register(f"UCA{n}BR0"), layout.register(f"UCA{n}BR1"),
                layout.register(f"UCA{n}RXBUF"), layout.register(f"UCA{n}TXBUF"), enable, flags,
                layout.register(f"UCA{n}STAT", f"UCA{n}STATW")]
        if None in usci:
            continue
        if iv is not None:
            vector = layout.vector(f"USCI_A{n}")
            text += call("addUart", "usci5", usci, 1, 2, vector, vector, iv)
        else:
            text += call("addUart", "usci", usci, layout.number(f"UCA{n}RXIE", 1),
                         layout.number(f"UCA{n}TXIE", 2), layout.vector(f"USCIAB{n}RX"),
                         layout.vector(f"USCIAB{n}TX"), None)
    return text


def adcs(layout):
    twelve = [layout.register("ADC12" + kind) for kind in ("CTL0", "CTL1", "MEM0", "MCTL0", "IFG", "IE", "IV")]
    if None not in twelve:
        return call("addAdc", 12, *twelve, layout.vector("ADC12", "ADC"))
    ten = [layout.register("ADC10" + kind) for kind in ("CTL0", "CTL1", "MEM")]
    if None not in ten and not layout.xv2:
        return call("addAdc", 10, *ten, None, None, None, None, layout.vector("ADC10"))
    return ""


def peripherals(device):
    layout = Layout(device)
    return ("// Made from the device's header.\n" + clock(layout) + watchdog(layout) + ports(layout) +
            timers(layout) + uarts(layout) + adcs(layout))


def main(package, folder):
    for device in msp430mcu.devices(package):
        msp430mcu.write_if_changed(pathlib.Path(folder) / (device.name.upper() + ".js"),
                                   peripherals(device))


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
