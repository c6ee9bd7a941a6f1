"""What is known of the devices besides their memory: identification and emulation logic.

Sources:
  [1]  TI's device descriptions of the MSP Debug Stack (SLAC460): identification bytes, fuses,
       kind of emulation logic and of clock control, by device.
  [2]  SLAU320, "MSP430 Programming With the JTAG Interface": where the identification bytes are.
  [3]  SLAU208, "Embedded Emulation Module": resources of the sizes XS, S, M and L.
  [4]  SLAA393, "Advanced Debugging Using the Enhanced Emulation Module": resources of the older
       kinds.
  [5]  The "EEM" line of each family's data sheet.

Where no public figure was found, the entry is missing, and the device matches nothing or has the
resources of the smallest emulation logic of its kind.
"""

ANY = 0xFFFFFFFF


class Identification:
    """The bytes of the device information that tell a device, and its fuses under a mask."""

    def __init__(self, low, high, revision=ANY, fab=ANY, self_id=ANY, config=ANY,
                 fuses=ANY, fuse_mask=0):
        self_low = self_high = ANY
        if self_id != ANY:
            self_low, self_high = self_id & 0xFF, self_id >> 8
        self.values = (low, high, revision, fab, self_low, self_high, config, fuses, fuse_mask)


# [1]: name -> identification. Of names that share one, TI's tools can't tell the devices apart.
IDENTIFICATION = {
    ("F1101", "F1111", "F1121"): Identification(0xF1, 0x12, revision=0x10, fab=0x40, self_id=0),
    ("F1101A", "F1111A", "F1121A"): Identification(0xF1, 0x12, revision=0x13, self_id=0),
    ("F122", "F123"): Identification(0xF1, 0x23),
    ("F1122", "F1132"): Identification(0x11, 0x32),
    ("F1222", "F1232"): Identification(0x12, 0x32),
    ("F149",): Identification(0xF1, 0x49, fuses=0x0, fuse_mask=0xF),
    ("F148",): Identification(0xF1, 0x49, fuses=0x1, fuse_mask=0xF),
    ("F147",): Identification(0xF1, 0x49, fuses=0x2, fuse_mask=0xF),
    ("F135",): Identification(0xF1, 0x49, fuses=0x4, fuse_mask=0xF),
    ("F133",): Identification(0xF1, 0x49, fuses=0x5, fuse_mask=0xF),
    ("F169",): Identification(0xF1, 0x69, fuses=0x0, fuse_mask=0xF),
    ("F168",): Identification(0xF1, 0x69, fuses=0x1, fuse_mask=0xF),
    ("F167",): Identification(0xF1, 0x69, fuses=0x2, fuse_mask=0xF),
    ("F157",): Identification(0xF1, 0x69, fuses=0x4, fuse_mask=0xF),
    ("F2001", "F2011"): Identification(0xF2, 0x01, config=0x01),
    ("F2002", "F2012"): Identification(0xF2, 0x01, config=0x02),
    ("F2003", "F2013"): Identification(0xF2, 0x01, config=0x03),
    ("F2101", "F2111", "F2121", "F2131"): Identification(0xF2, 0x13, config=0x01),
    ("F2132",): Identification(0xF2, 0x13, config=0x02, fuses=0x0, fuse_mask=0x3),
    ("F2122",): Identification(0xF2, 0x13, config=0x02, fuses=0x1, fuse_mask=0x3),
    ("F2112",): Identification(0xF2, 0x13, config=0x02, fuses=0x2, fuse_mask=0x3),
    ("F2274",): Identification(0xF2, 0x27, fuses=0x0, fuse_mask=0x7),
    ("F2254",): Identification(0xF2, 0x27, fuses=0x1, fuse_mask=0x7),
    ("F2234",): Identification(0xF2, 0x27, fuses=0x2, fuse_mask=0x7),
    ("F2272", "G2744"): Identification(0xF2, 0x27, fuses=0x4, fuse_mask=0x7),
    ("F2252", "G2544"): Identification(0xF2, 0x27, fuses=0x5, fuse_mask=0x7),
    ("F2232", "G2444"): Identification(0xF2, 0x27, fuses=0x6, fuse_mask=0x7),
    ("F2370",): Identification(0xF2, 0x37, fuses=0x0, fuse_mask=0x3),
    ("F2350",): Identification(0xF2, 0x37, fuses=0x1, fuse_mask=0x3),
    ("F2330",): Identification(0xF2, 0x37, fuses=0x2, fuse_mask=0x3),
    ("F249",): Identification(0xF2, 0x49, fuses=0x0, fuse_mask=0xF),
    ("F248",): Identification(0xF2, 0x49, fuses=0x1, fuse_mask=0xF),
    ("F247",): Identification(0xF2, 0x49, fuses=0x2, fuse_mask=0xF),
    ("F235",): Identification(0xF2, 0x49, fuses=0x3, fuse_mask=0xF),
    ("F2491",): Identification(0xF2, 0x49, fuses=0x4, fuse_mask=0xF),
    ("F2481",): Identification(0xF2, 0x49, fuses=0x5, fuse_mask=0xF),
    ("F2471",): Identification(0xF2, 0x49, fuses=0x6, fuse_mask=0xF),
    ("F233",): Identification(0xF2, 0x49, fuses=0x7, fuse_mask=0xF),
}
BY_NAME = {name: record for names, record in IDENTIFICATION.items() for name in names}


class Emulation:
    def __init__(self, name, memory, register, combination, ranges=False, any_mask=False,
                 sequencer=False, storage=False, cycles=False):
        self.name = name
        self.memory = memory            # triggers on the memory buses
        self.register = register        # triggers on register writes
        self.combination = combination
        self.ranges = ranges            # compares greater and less
        self.any_mask = any_mask        # bit-wise masks; else by byte
        self.sequencer = sequencer
        self.storage = storage
        self.cycles = cycles            # the cycle counter has a reaction


LOW = Emulation("Low", 2, 0, 2)  # [4]; register triggers not established: none
MEDIUM = Emulation("Medium", 3, 0, 3, ranges=True)  # [4]; register triggers not established: none
HIGH = Emulation("High", 8, 2, 8, ranges=True, any_mask=True, sequencer=True, storage=True)  # [4]
EXTRA_SMALL = Emulation("ExtraSmall", 2, 0, 2)  # [3]
SMALL = Emulation("Small", 3, 1, 4, ranges=True, any_mask=True, cycles=True)  # [3]
LARGE = Emulation("Large", 8, 2, 10, ranges=True, any_mask=True, sequencer=True, storage=True,
                  cycles=True)  # [3]

# First prefix that fits; the first column is without "MSP430". [1] for F1 and F2, [5] otherwise.
EMULATION = (
    ("F13", MEDIUM), ("F14", MEDIUM), ("F15", HIGH), ("F16", HIGH),
    ("F2330", LOW), ("F2350", LOW), ("F2370", LOW),
    ("F23", MEDIUM), ("F24", MEDIUM), ("F26", MEDIUM),
    ("F43", HIGH), ("F44", HIGH), ("FG46", HIGH), ("FG43", LOW),
    ("F50", EXTRA_SMALL), ("F51", SMALL), ("F522", LARGE), ("F521", LARGE), ("F532", LARGE),
    ("F534", LARGE), ("F5310", SMALL), ("F5304", SMALL), ("F5308", SMALL), ("F5309", SMALL),
    ("F541", LARGE), ("F543", LARGE), ("F550", SMALL), ("F551", LARGE), ("F552", LARGE),
    ("F643", LARGE), ("F663", LARGE), ("F67", SMALL), ("FR57", SMALL), ("FR58", SMALL),
    ("FR59", SMALL), ("CC430", SMALL),
)
# F5500 to F5510 are of one die with EEM S; the F5513 and above have EEM L. [5]
EXCEPTIONS = {"F5510": SMALL}


def short_name(name):
    return name.upper().removeprefix("MSP430")


def identification(name):
    return BY_NAME.get(short_name(name))


def is_xv2(features):
    return "MSP430XV2_CPU" in features


def emulation(name, features):
    short = short_name(name)
    if short in EXCEPTIONS:
        return EXCEPTIONS[short]
    for prefix, kind in EMULATION:
        if short.startswith(prefix):
            return kind
    return EXTRA_SMALL if is_xv2(features) else LOW


def clock_control(kind):
    """0 none, 1 general, 2 general and module: [1], by kind of emulation logic."""
    if kind is LOW:
        return 1
    return 2


def has_no_clock_control(name):
    """[1]: the devices up to the F149."""
    return short_name(name).startswith(("F11", "F12", "F13", "F14"))


def has_fast_erase(name):
    """[2]: the flash of the 2xx families is erased by one pulse; older flash needs 19."""
    return short_name(name).startswith(("F2", "G2", "AFE2"))
