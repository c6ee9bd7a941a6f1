; Where the hardware multiplier stands if the link doesn't say otherwise.
    .global __multiplier
    .equ    __multiplier, 0x0130
