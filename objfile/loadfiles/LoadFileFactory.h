#pragma once

#include "objfile/loadfiles/LoadFile.h"

#include <span>
#include <vector>

/// A format for the user to choose.
struct LoadFileTypeInfo {
    const char* type;    ///< format id
    const char* pattern; ///< file name patterns, separated by blanks
    const char* description;
};

/// Makes load files of the formats that exist outside the native one.
class LoadFileFactory {
public:
    virtual ~LoadFileFactory() = default;

    /// A load file on the path, or null for an unknown format id. Throws HException if the file
    /// can't be read.
    virtual LoadFileInterface* create(const char* path, const char* type);
    virtual void destroy(LoadFileInterface* loadFile);
    /// The format id that the file's name tells, or null.
    virtual const char* detect(const char* path);

    std::span<const LoadFileTypeInfo> types() const { return m_types; }

    /// The one factory, which knows the native format too.
    static LoadFileFactory* instance();

protected:
    LoadFileFactory();

    std::vector<LoadFileTypeInfo> m_types;
};
