#pragma once

#include <QString>

/// The constants of the target and of the product. All code asks these functions.

inline QString Get_ASM_FILE_EXTENSION() { return QStringLiteral("s43"); }
/// The processor's number in object files.
constexpr int Get_TARGET_PROCESSOR() { return 9; }
inline QString Get_PLATFORM() { return QStringLiteral("MSP430"); }
/// Hexadecimal digits of an address.
constexpr int Get_ADDRESS_WIDTH() { return 4; }
/// A format of printf for an address.
constexpr const char* Get_ADDRESS_FORMAT() { return "%04x"; }
/// Whether C++ is offered.
constexpr bool Get_TARGET_CPP() { return false; }
inline QString Get_DEFAULT_CODE_SECTION_NAME() { return QStringLiteral("CODE"); }
inline QString Get_DEFAULT_CONST_SECTION_NAME() { return QStringLiteral("CONST"); }
inline QString Get_DEFAULT_DATA_SECTION_NAME() { return QStringLiteral("IDATA0"); }
inline QString Get_DEFAULT_ZEROED_SECTION_NAME() { return QStringLiteral("UDATA0"); }
inline QString Get_DEFAULT_VECTORS_SECTION_NAME() { return QStringLiteral("INTVEC"); }

inline QString Get_BENCH_BRANDING() { return QStringLiteral("GantryBench for MSP430"); }
inline QString Get_BENCH_NAME() { return QStringLiteral("GantryBench"); }
inline QString Get_PRODUCT_GENERIC_NAME() { return QStringLiteral("Gantry for MSP430"); }
inline QString Get_OWNER() { return QStringLiteral("Tamblyn Associates Limited"); }

constexpr int Get_RELEASE_MAJOR_NUMBER() { return GANTRY_VERSION_MAJOR; }
constexpr int Get_RELEASE_MINOR_NUMBER() { return GANTRY_VERSION_MINOR; }
constexpr int Get_RELEASE_REVISION_NUMBER() { return GANTRY_VERSION_PATCH; }
inline QString Get_SOFTWARE_RELEASE()
{
    return QString::number(Get_RELEASE_MAJOR_NUMBER()) + QLatin1Char('.')
        + QString::number(Get_RELEASE_MINOR_NUMBER());
}
inline QString Get_RELEASE_MAJOR_STRING()
{
    return QString::number(Get_RELEASE_MAJOR_NUMBER()) + QLatin1Char('.');
}
inline QString Get_RELEASE_REVISION_STRING()
{
    return QString::number(Get_RELEASE_REVISION_NUMBER());
}
