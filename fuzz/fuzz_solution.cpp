// Arbitrary solution files. What loads can be saved, and loads again as the same tree.

#include "projects/macros/MacroSystem.h"
#include "projects/solution/ProjectSystem.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>

namespace {

/// Everything of an element that a file has.
QString describe(const ProjectElement& element, bool isRoot)
{
    QString text = ProjectElement::tag(element.kind()) + u'{';
    for (auto it = element.attributes().constBegin(); it != element.attributes().constEnd(); ++it) {
        const bool emptyName = it.key() == u"Name" && it.value().isEmpty();
        const bool placeOfRoot = isRoot && it.key() == u"file_name";
        if (!emptyName && !placeOfRoot)
            text += it.key() + u'=' + it.value() + u'\n';
    }
    for (const ProjectElement* configuration : element.configurations())
        text += describe(*configuration, false);
    for (const ProjectElement* child = element.firstChild(); child; child = child->nextSibling())
        if (!(element.isDynamicFolder() && child->isFile() && child->configurations().isEmpty()))
            text += describe(*child, false);
    return text + u'}';
}

bool load(ProjectSystem& projects, const QString& path)
{
    try {
        projects.loadSolution(path, nullptr, nullptr);
    } catch (const HException&) {
        return false;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const QTemporaryDir folder;
    static MacroSystem macros;
    macroSystem = &macros;
    const QString path = folder.filePath(QStringLiteral("s.kvp"));
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    // A dynamic folder anywhere on the disk is no matter of reading.
    if (bytes.contains("path") && (bytes.contains("..") || bytes.contains("\"/")))
        return 0;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        return 0;
    file.close();

    ProjectSystem projects;
    projectSystem = &projects;
    if (load(projects, path)) {
        const QString before = describe(*projects.solutionElement(), true);
        if (!projects.saveProjectFile(projects.solutionElement()) || !load(projects, path)
            || describe(*projects.solutionElement(), true) != before)
            std::abort();
    }
    projectSystem = nullptr;
    return 0;
}
