#include "target/DynamicLibrary.h"

#include "base/HException.h"

#include <dlfcn.h>
#include <unistd.h>

namespace {

class SystemLibrary : public DynamicLibrary {
public:
    explicit SystemLibrary(void* handle) : m_handle(handle) { }
    ~SystemLibrary() override { dlclose(m_handle); }
    SystemLibrary(const SystemLibrary&) = delete;
    SystemLibrary& operator=(const SystemLibrary&) = delete;
    void* resolve(const char* symbol) override { return dlsym(m_handle, symbol); }

private:
    void* m_handle;
};

DynamicLibraryLoader systemLoader;
DynamicLibraryLoader* current = &systemLoader;

} // namespace

std::unique_ptr<DynamicLibrary> DynamicLibraryLoader::load(const QString& path)
{
    const QByteArray name = path.toLocal8Bit();
    if (access(name.constData(), R_OK) != 0)
        throw HException("cannot access \"" + name.toStdString() + "\"");
    void* const handle = dlopen(name.constData(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char* text = dlerror();
        throw HException(text != nullptr ? text : "cannot load \"" + name.toStdString() + "\"");
    }
    return std::make_unique<SystemLibrary>(handle);
}

DynamicLibraryLoader* DynamicLibraryLoader::instance() { return current; }

void DynamicLibraryLoader::setInstance(DynamicLibraryLoader* loader)
{
    current = loader != nullptr ? loader : &systemLoader;
}
