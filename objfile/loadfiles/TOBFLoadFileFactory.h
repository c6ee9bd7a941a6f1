#pragma once

#include "objfile/loadfiles/LoadFileFactory.h"

/// Knows the native executable too.
class TOBFLoadFileFactory : public LoadFileFactory {
public:
    TOBFLoadFileFactory();

    LoadFileInterface* create(const char* path, const char* type) override;
    const char* detect(const char* path) override;
};
