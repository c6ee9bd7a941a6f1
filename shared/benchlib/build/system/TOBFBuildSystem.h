#pragma once

#include "build/system/StandardBuildSystem.h"

#include <span>

class MemoryMapElement;

/// The layer of the build that writes the command lines of the native toolchain.
class TOBFBuildSystem : public StandardBuildSystem {
public:
    TOBFBuildSystem();

    QString objectFileExtension() const override { return QStringLiteral(".kvo"); }
    QString executableFileExtension() const override { return QStringLiteral(".kvx"); }
    QString libraryFileExtension() const override { return QStringLiteral(".kva"); }

    MacroMap macros(ProjectElement* element, const QString& configuration) override;
    void createCommandFor(const Step& step, Builder* builder) override;
    void preprocess(ProjectElement* element, const QString& configuration,
                    Builder* builder) override;
    bool commandUpToDate(ProjectElement* element, const QString& configuration, FileTime outputTime,
                         BuildAction action, Builder* builder, bool quiet) override;
    QStringList getObjectFileDependencies(const QString& objectPath) override;

    /// The variant of the formatted output library, such as "float_long" or "int_nwp".
    QString getPrintfVariant(ProjectElement* element, const QString& configuration) const;
    QString getScanfVariant(ProjectElement* element, const QString& configuration) const;
    static void addCommonPreprocessorDefinitions(QStringList& list);

protected:
    /// The part of library names that tells what they were built for, of a project.
    virtual QString libraryExtension(ProjectElement* project, const QString& configuration) const;

private:
    struct Flag;
    class CommandLine;

    QString toolPath(const char* tool) const;
    void addFlags(CommandLine& line, std::span<const Flag> flags) const;
    void addProductDefinitions(CommandLine& line);
    void addIncludeDirectories(CommandLine& line);
    void compile(const Step& step, Builder* builder);
    void link(const Step& step, Builder* builder);
    void archive(const Step& step, Builder* builder);
    void addLibraries(CommandLine& line);
    void addLinkOptimizations(CommandLine& line);
    /// False if the step ends here.
    bool addPlacement(CommandLine& line, Builder* builder);
    void addSections(CommandLine& line, const MemoryMapElement& segment,
                     const QList<MemoryMapElement*>& sections, Builder* builder);
    void convert(const Step& step, Builder* builder);
    void list(const Step& step, Builder* builder);
    QString formatVariant(ProjectElement* element, const QString& configuration,
                          const char* floatingPoint, const char* level) const;

    PropertyClassList m_codeClasses;
    PropertyClassList m_linkClasses;
};
