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


def family(word, mask, names, config=ANY):
    """Devices of one identification word, with the low byte first, that their fuses tell apart:
    the names in the order of the fuse values, None for a value without one."""
    return {name: Identification(word & 0xFF, word >> 8, config=config, fuses=value, fuse_mask=mask)
            for value, name in enumerate(names) if name}


def single(word, name, **bytes):
    return {name: Identification(word & 0xFF, word >> 8, **bytes)}


def xv2(words):
    return {name: Identification(word & 0xFF, word >> 8) for word, name in words.items()}


# [1], but for the masks: what is compared under 0x7F there is compared whole here. Where several
# devices can't be told apart, the largest has the record, as TI's tools take them all for it.
BY_NAME = {
    **single(0x12F1, "F1121", revision=0x10, fab=0x40, self_id=0),
    **single(0x12F1, "F1121A", revision=0x13, self_id=0),
    **single(0x23F1, "F123"),
    **single(0x3211, "F1132"),
    **single(0x3212, "F1232"),
    **family(0x49F1, 0xF, ("F149", "F148", "F147", None, "F135", "F133")),
    **family(0x69F1, 0xF, ("F169", "F168", "F167", None, "F157", "F156", "F155")),
    **family(0x6CF1, 0x7, ("F1611", None, None, "F1610", None, None, "F1612")),
    **single(0x01F2, "F2011", config=0x01),
    **single(0x01F2, "F2012", config=0x02),
    **single(0x01F2, "F2013", config=0x03),
    **single(0x13F2, "F2131", config=0x01),
    **family(0x13F2, 0x3, ("F2132", "F2122", "F2112"), config=0x02),
    **family(0x27F2, 0x7, ("F2274", "F2254", "F2234", None, "F2272", "F2252", "F2232")),
    **family(0x37F2, 0x3, ("F2370", "F2350", "F2330")),
    **family(0x49F2, 0xF, ("F249", "F248", "F247", "F235", "F2491", "F2481", "F2471", "F233",
                           "F2410")),
    **family(0x6FF2, 0x7, ("F2619", "F2618", "F2617", "F2616", "F2419", "F2418", "F2417", "F2416")),
    **single(0x5224, "G2452"),
    **single(0x5325, "G2553"),
    **family(0x5302, 0xF, ("AFE253", None, "AFE233", "AFE223", "AFE252", None, "AFE232", "AFE222",
                           "AFE251", None, "AFE231", "AFE221")),
    **single(0x13F4, "F413", revision=0x02, fab=0x40),
    **family(0x27F4, 0x1F, ("FE427", "FE425", "FE423", None, "F427", "F425", "F423"), config=0x45),
    **family(0x27F4, 0x7, ("FG4270", "FG4250", None, None, "F4270", "F4250"), config=0x47),
    **single(0x27F4, "FW427", config=0x57),
    **single(0x29F4, "FW429", config=0x57),
    **single(0x37F4, "F437"),
    **single(0x39F4, "FG439", config=0x47),
    **family(0x5241, 0x1, ("F4152", "F4132")),
    **family(0x5242, 0x1F, (None,) * 16 + ("FE4272", "FE4252", "FE4232"), config=0x45),
    **family(0x6FF4, 0x3, ("FG4619", "FG4618", "FG4617", "FG4616"), config=0x47),
    **family(0x79F4, 0x7, ("FG479", "FG478", "FG477", None, "F479", "F478", "F477"), config=0x47),
    **family(0x7A42, 0x1F, ("FE427A", "FE425A", "FE423A", None, "F427A", "F425A", "F423A"),
             config=0x45),
    **family(0x7FF4, 0xF, ("F47197", "F47187", "F47177", "F47167", "F47196", "F47186", "F47176",
                           "F47166", "F47193", "F47183", "F47173", "F47163", "F47127", "F47126")),
    **family(0x49F4, 0x7, ("F4794", None, None, "F4784", "F4793", None, None, "F4783"),
             config=0x02),
    **family(0x49F4, 0xF, ("F449",), config=0x00),
    **xv2({
        0x1854: "F5418", 0x1954: "F5419", 0x3554: "F5435", 0x3654: "F5436", 0x3754: "F5437",
        0x3854: "F5438", 0x8000: "F5418A", 0x8001: "F5419A", 0x8002: "F5435A", 0x8003: "F5436A",
        0x8004: "F5437A", 0x8005: "F5438A",
        0x1355: "F5513", 0x1455: "F5514", 0x1555: "F5515", 0x1755: "F5517", 0x1955: "F5519",
        0x2155: "F5521", 0x2255: "F5522", 0x2455: "F5524", 0x2555: "F5525", 0x2655: "F5526",
        0x2755: "F5527", 0x2855: "F5528", 0x2955: "F5529",
        0x8031: "F5510", 0x8032: "F5501", 0x8033: "F5502", 0x8034: "F5503", 0x8035: "F5504",
        0x8036: "F5505", 0x8037: "F5506", 0x8038: "F5507", 0x8039: "F5508", 0x803A: "F5509",
        0x803B: "F5500",
        0x2561: "CC430F6125", 0x2661: "CC430F6126", 0x2761: "CC430F6127", 0x3351: "CC430F5133",
        0x3551: "CC430F5135", 0x3561: "CC430F6135", 0x3751: "CC430F5137", 0x3761: "CC430F6137",
        0x8135: "CC430F6147", 0x8136: "CC430F6145", 0x8137: "CC430F6143", 0x8138: "CC430F5147",
        0x8139: "CC430F5145", 0x813A: "CC430F5143", 0x813B: "CC430F5125", 0x813C: "CC430F5123",
    }),
}


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

# First prefix that fits; the first column is without "MSP430". [1] for the families of its tables
# above, [5] otherwise.
EMULATION = (
    ("F13", MEDIUM), ("F14", MEDIUM), ("F15", HIGH), ("F16", HIGH),
    ("F2330", LOW), ("F2350", LOW), ("F2370", LOW), ("F2410", MEDIUM),
    ("F241", HIGH), ("F23", MEDIUM), ("F24", MEDIUM), ("F26", HIGH),
    ("F43", HIGH), ("F44", HIGH), ("FG46", HIGH), ("F471", HIGH), ("FG43", LOW),
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
