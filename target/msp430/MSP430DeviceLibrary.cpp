#include "target/msp430/MSP430DeviceLibrary.h"

#include "base/HException.h"
#include "base/QTx.h"
#include "projects/macros/MacroSystem.h"
#include "target/DynamicLibrary.h"

namespace {

struct Loaded {
    std::unique_ptr<DynamicLibrary> library;
    AllocateMSP430DevicesFunction allocate = nullptr;
    ReleaseMSP430DevicesFunction release = nullptr;
};
Loaded loaded;

template <class Function> Function resolve(DynamicLibrary& library, const char* symbol)
{
    void* const address = library.resolve(symbol);
    if (address == nullptr)
        throw HException(std::string("cannot find symbol \"") + symbol + "\" in DLL");
    return reinterpret_cast<Function>(address);
}

/// A program without a workspace finds the library in its own installation.
QString expanded(const QString& path)
{
    if (macroSystem != nullptr)
        return MacroSystem::replaceMacros(macroSystem->globalMacros(true), path);
    MacroSystem macros;
    macros.setupDefaultSystemMacros(QTx::rootDirectory());
    macros.setupPackageMacros(QTx::rootDirectory() + QStringLiteral("/packages"));
    return MacroSystem::replaceMacros(macros.systemMacros(), path);
}

void load()
{
    Loaded fresh;
    fresh.library = DynamicLibraryLoader::instance()->load(expanded(MSP430DeviceLibrary::path()));
    fresh.allocate =
        resolve<AllocateMSP430DevicesFunction>(*fresh.library, "AllocateMSP430Devices");
    fresh.release = resolve<ReleaseMSP430DevicesFunction>(*fresh.library, "ReleaseMSP430Devices");
    loaded = std::move(fresh);
}

} // namespace

QString MSP430DeviceLibrary::path()
{
    return QStringLiteral("$(PackagesDir)/targets/msp430/msp430devices$(HostDLL)");
}

MSP430DevicesPointer MSP430DeviceLibrary::allocate()
{
    if (!loaded.library)
        load();
    MSP430DevicesPointer devices(loaded.allocate());
    if (!devices)
        throw HException("the device library has no devices");
    if (devices->interfaceVersion() != MSP430DevicesVersion)
        throw HException("the device library is of another version");
    return devices;
}

void MSP430DeviceLibrary::unload() { loaded = {}; }

void MSP430DevicesRelease::operator()(MSP430DevicesInterface* devices) const
{
    loaded.release(devices);
}
