; The watchdog's control register where the link doesn't say otherwise.
    .global __watchdog_control
    .equ    __watchdog_control, 0x0120
