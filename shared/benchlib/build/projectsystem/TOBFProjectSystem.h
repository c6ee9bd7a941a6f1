#pragma once

#include "base/TargetConstants.h"
#include "build/projectsystem/StandardProjectSystem.h"

/// Adds what the native toolchain has.
class TOBFProjectSystem : public StandardProjectSystem {
public:
    QString objectFileExtension() const override { return QStringLiteral(".kvo"); }
    QString libraryFileExtension() const override { return QStringLiteral(".kva"); }
    QString executableFileExtension() const override { return QStringLiteral(".kvx"); }
    QString assemblyCodeFileExtension() const override { return Get_ASM_FILE_EXTENSION(); }

    void appendCCompilerProperties(PropertyClassList& list) override;
    void appendAssemblerProperties(PropertyClassList& list) override;
    void appendLinkerProperties(PropertyClassList& list) override;
    void appendArchiverProperties(PropertyClassList& list) override;

private:
    void appendSections(PropertyClassList& list) const;
};
