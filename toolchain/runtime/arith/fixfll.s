; Conversions of the float in R12:R13 to a 64-bit integer in R12..R15, by way of double.
    .text
    .global __mspabi_fixflli
    .global __mspabi_fixfull
__mspabi_fixflli:
__mspabi_fixfull:
    call    #__mspabi_cvtfd
    br      #__mspabi_fixdlli
