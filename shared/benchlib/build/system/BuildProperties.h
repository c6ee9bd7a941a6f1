#pragma once

#include "projects/properties/PropertyClass.h"

#include <memory>
#include <span>

/// One property of the build as it stands in the table of its level.
struct BuildPropertyRow {
    const char* name;
    PropertyClass::Type type;
    const char* page;
    const char* group;
    const char* label;
    const char* help;
    const char* defaultValue;
    const char* values = ""; ///< of an enumeration, separated by ";"
    int minimum = 0;         ///< of an integer range
    int maximum = 0;
};

/// What every build knows: output directories, staging, combining.
std::span<const BuildPropertyRow> buildProperties();
/// What builds with compilers and linkers add.
std::span<const BuildPropertyRow> standardBuildProperties();
/// What the native toolchain adds.
std::span<const BuildPropertyRow> tobfBuildProperties();
/// What the processor adds.
std::span<const BuildPropertyRow> msp430BuildProperties();

/// Two properties of one name, for a project of either type.
const BuildPropertyRow& executableFileNameProperty();
const BuildPropertyRow& libraryFileNameProperty();

std::unique_ptr<PropertyClass> makePropertyClass(const BuildPropertyRow& row);
