#pragma once

#include "build/system/TOBFBuildSystem.h"

/// The build for the MSP430.
class MSP430BuildSystem : public TOBFBuildSystem {
public:
    MSP430BuildSystem();

    bool commandUpToDate(ProjectElement* element, const QString& configuration, FileTime outputTime,
                         BuildAction action, Builder* builder, bool quiet) override;
    bool appendBuildOptions(ProjectElement* element, const QString& configuration,
                            BuildAction action, QStringList& command, Builder* builder) override;
    void appendPreprocessorOptions(ProjectElement* element, const QString& configuration,
                                   QStringList& command) override;

protected:
    QString libraryExtension(ProjectElement* project, const QString& configuration) const override;

private:
    bool isExtended(ProjectElement* element, const QString& configuration) const;

    PropertyClassList m_instructionSet;
    PropertyClassList m_linkClasses;
};
