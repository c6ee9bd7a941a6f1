#pragma once

#include "objfile/loadfiles/LoadFile.h"

#include <string>
#include <vector>

/// One load file of a download; the factory's caller keeps the file.
struct LoadFileListItem {
    LoadFileInterface* loadFile;
    std::string path;
    bool flag;
};

/// The load files of one download.
class LoadFileList : public std::vector<LoadFileListItem> {
public:
    void add(LoadFileInterface* loadFile, const char* path, bool flag);

    /// Sorts each file's sections, then the files by the address of their first section.
    void sort();

    /// True if ordinary sections of two different files share an address.
    bool overlap() const;
};
