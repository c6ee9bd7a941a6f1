#pragma once

#include <QString>

#include <memory>

/// A loaded library of the host. It stays loaded while the object lives.
class DynamicLibrary {
public:
    virtual ~DynamicLibrary() = default;
    /// The address of an export, or null.
    virtual void* resolve(const char* symbol) = 0;
};

/// How the program comes to libraries of the host.
class DynamicLibraryLoader {
public:
    virtual ~DynamicLibraryLoader() = default;
    /// Throws HException: "cannot access "PATH"" if there is no such file, else the system's text.
    virtual std::unique_ptr<DynamicLibrary> load(const QString& path);

    /// The one in use; never null. A null pointer brings back the system's.
    static DynamicLibraryLoader* instance();
    static void setInstance(DynamicLibraryLoader* loader);
};
