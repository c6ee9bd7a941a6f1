#pragma once

#include "base/XMLDocument.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <memory>
#include <vector>

class CheckReport;
class ProjectElement;

/// Checks a solution and those that it imports. The workspace must be there; its solution is
/// replaced.
///
/// A solution with projects that are still to be made from templates isn't loaded, since that would
/// make their files; what needs the tree isn't checked then.
class SolutionCheck {
public:
    SolutionCheck(CheckReport& report, const QString& path) : m_report(report), m_path(path) { }
    void run();

private:
    struct Source {
        QString path; ///< canonical
        QString shown;
        XMLDocument document;
    };
    struct Place {
        const Source* source;
        const XMLElement* xml;
    };

    void read(const QString& path, const Source* importer, int line, QStringList around);
    void readImports(const Source& source, const QStringList& around);
    void noteNames(const Source& source);
    bool load();
    void locate(ProjectElement* element, const Source& source, const XMLElement& xml);
    const Source* sourceOf(const ProjectElement* solution) const;

    void checkTemplates(const Source& source);
    void checkProjectNames(const Source& source);
    void checkConfigurations(const Source& source);
    void checkConfiguration(const Source& source, const XMLElement& configuration);
    void checkFileProperties(const Source& source, const XMLElement& configuration);
    void checkInheritance(const Source& source, const XMLElement& configuration);
    void checkDependencies(const Source& source, const XMLElement& configuration);
    void checkCircles();
    void checkCirclesIn(const QString& configuration);
    void checkFiles(ProjectElement* element);
    void error(const Source* source, const XMLElement& xml, const QString& text);

    CheckReport& m_report;
    QString m_path;
    std::vector<std::unique_ptr<Source>> m_sources;
    QSet<QString> m_configurations; ///< names in all files
    bool m_sound = true;            ///< all files could be read
    bool m_hasTemplates = false;
    bool m_loaded = false;
    QHash<const ProjectElement*, Place> m_places;
    QHash<const XMLElement*, ProjectElement*> m_elements;
    QSet<const ProjectElement*> m_inCircles;
};
