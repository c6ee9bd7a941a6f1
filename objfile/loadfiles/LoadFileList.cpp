#include "objfile/loadfiles/LoadFileList.h"

#include <algorithm>

void LoadFileList::add(LoadFileInterface* loadFile, const char* path, bool flag)
{
    push_back({loadFile, path, flag});
}

void LoadFileList::sort()
{
    for (const LoadFileListItem& item : *this)
        item.loadFile->sortLoadFileSections();
    std::stable_sort(begin(), end(), [](const LoadFileListItem& a, const LoadFileListItem& b) {
        return a.loadFile->loadFileSections().firstSectionStartAddress()
            < b.loadFile->loadFileSections().firstSectionStartAddress();
    });
}

bool LoadFileList::overlap() const
{
    if (size() < 2)
        return false;
    AddressRanges taken;
    for (const LoadFileListItem& item : *this) {
        AddressRanges own;
        item.loadFile->loadFileSections().getSectionAddressRanges(own);
        if (taken.isOccludedBy(own))
            return true;
        for (const AddressRange& range : own)
            taken.add(range.start, range.end, range.type, true);
    }
    return false;
}
