"""Reads the device data of Debian's package msp430mcu: memory regions from memory.x, register
addresses from periph.x, register sizes, access and groups from the headers."""

import pathlib
import re

REGION = re.compile(r"^\s+(\w+)\s*(?:\(\w+\))?\s*:\s*ORIGIN = (0x[0-9a-f]+), LENGTH = (0x[0-9a-f]+)",
                    re.MULTILINE | re.IGNORECASE)
SYMBOL = re.compile(r"^__(\w+) = (0x[0-9a-f]+);", re.MULTILINE | re.IGNORECASE)
REGISTER = re.compile(r"^(const_)?sfr([bwa])\(\s*(\w+)\s*,\s*([^)]+?)\s*\);", re.MULTILINE)
TITLE = re.compile(r"^/\*{20,}\s*\n\*\s*(.+?)\s*\n\*{20,}/", re.MULTILINE)
DESCRIPTION = re.compile(r"^#define\s+(\w+)_\s+0x[0-9a-f]+\s*/\*\s*(.*?)\s*\*/",
                         re.MULTILINE | re.IGNORECASE)
SIZES = {"b": 1, "w": 2, "a": 4}


class Register:
    def __init__(self, name, address, size, read_only, group, description):
        self.name = name
        self.address = address
        self.size = size
        self.read_only = read_only
        self.group = group
        self.description = description


class Device:
    """One device; `name` is in lower case, such as msp430f449."""

    def __init__(self, package, name):
        self.name = name
        self.package = package
        folder = package / "lib/ldscripts" / name
        self.regions = {region: (int(start, 16), int(length, 16))
                        for region, start, length in REGION.findall((folder / "memory.x").read_text())
                        if int(length, 16) != 0}
        self.symbols = {symbol: int(address, 16)
                        for symbol, address in SYMBOL.findall((folder / "periph.x").read_text())}

    def header_path(self):
        return self.package / "include" / (self.name + ".h")

    def registers(self):
        """In the order of the header. The byte halves of a word aren't among them."""
        text = self.header_path().read_text(encoding="latin-1")
        titles = [(match.start(), match.group(1)) for match in TITLE.finditer(text)]
        descriptions = dict(DESCRIPTION.findall(text))
        found = {}
        for match in REGISTER.finditer(text):
            constant, kind, name, _ = match.groups()
            if name in found or name not in self.symbols:
                continue
            group = [title for start, title in titles if start < match.start()]
            found[name] = Register(name, self.symbols[name], SIZES[kind], bool(constant),
                                   group[-1] if group else "Registers", descriptions.get(name, ""))
        return [register for register in found.values()
                if not (register.name[-2:] in ("_L", "_H") and register.name[:-2] in found)]


def devices(package):
    """All devices that have both data and a header, by name."""
    package = pathlib.Path(package)
    names = sorted(path.name for path in (package / "lib/ldscripts").iterdir()
                   if (path / "memory.x").exists())
    return [Device(package, name) for name in names
            if (package / "include" / (name + ".h")).exists()]


def write_if_changed(path, text):
    """Keeps the time stamp of a file that stays as it is."""
    data = text.encode("latin-1", "xmlcharrefreplace")
    if not path.exists() or path.read_bytes() != data:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(data)
