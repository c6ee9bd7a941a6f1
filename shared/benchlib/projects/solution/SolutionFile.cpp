// Reading and writing solution files.

#include "base/QTx.h"
#include "base/TargetConstants.h"
#include "base/XMLDocument.h"
#include "projects/macros/MacroSystem.h"
#include "projects/solution/ProjectSystem.h"
#include "projects/templates/ProjectTemplates.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString FileNameAttribute = u"file_name"_s;
const QString NameAttribute = u"Name"_s;
const QString VersionAttribute = u"version"_s;
const QString TemplateAttribute = u"template_name"_s;
const QString CurrentVersion = u"2"_s;
const char ImportTag[] = "import";

/// The tree is walked by recursion everywhere; no sensible solution comes near this.
constexpr int MaximumDepth = 2000;

QString solutionDocumentType() { return Get_BENCH_NAME() + u"_Project_File"_s; }

} // namespace

struct ProjectSystem::Loading {
    QStringList openFiles; ///< absolute paths of the files being read, outermost first
    std::vector<ProjectElement*> templateProjects;
    std::vector<ProjectElement*> dynamicFolders;
};

void ProjectSystem::loadSolution(const QString& path, ProjectFileNotFoundErrorHandler* notFound,
                                 TemplateNotFoundErrorHandler* templates)
{
    closeSolution();
    Loading loading;
    try {
        m_root = loadProjectFile(path, QString(), notFound, loading);
        createProjectsFromTemplates(loading, templates);
    } catch (...) {
        closeSolution();
        throw;
    }
    updateProjectList();
    for (ProjectElement* folder : loading.dynamicFolders)
        populateDynamicFolder(folder);
    m_root->clearChangeTimes();
    m_changesAtLoad = ProjectElement::changeCount();
    emit solutionLoaded();
}

void ProjectSystem::createProjectsFromTemplates(const Loading& loading,
                                                TemplateNotFoundErrorHandler* handler)
{
    if (loading.templateProjects.empty())
        return;
    ProjectTemplates templates;
    templates.load(ProjectTemplates::projectTemplatesFile());
    for (ProjectElement* project : loading.templateProjects) {
        const QString name = project->attribute(NameAttribute);
        QString templateName = project->attribute(TemplateAttribute);
        project->removeAttribute(TemplateAttribute);
        const XMLElement* found = templates.findTemplate(templateName);
        while (!found) {
            const QString path = project->containingSolution()->path().osPath();
            if (!handler)
                throw SolutionLoadError(path, u"no template for project "_s + name);
            if (!handler->retry(templates, name, templateName))
                throw SolutionLoadError(path, name + u" project template not found"_s);
            found = templates.findTemplate(templateName);
        }
        templates.createProjectFromTemplate(project->containingSolution(), project, *found);
    }
}

std::unique_ptr<ProjectElement>
ProjectSystem::loadProjectFile(const QString& path, const QString& base,
                               ProjectFileNotFoundErrorHandler* handler, Loading& loading)
{
    QString name = path;
    if (!QFileInfo::exists(name) && !base.isEmpty())
        name = base + u'/' + path;
    while (!QFileInfo::exists(name))
        if (!handler || !handler->retry(name))
            throw SolutionLoadError(name, u" does not exist"_s);

    const QFileInfo info(name);
    const QString absolute = QDir::cleanPath(info.absoluteFilePath());
    QFile file(absolute);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly))
        throw SolutionLoadError(absolute, u" cannot access"_s);
    // The same file by another name is the same solution.
    const QString identity = info.canonicalFilePath();
    if (loading.openFiles.contains(identity))
        throw SolutionLoadError(absolute, u" solution already loaded"_s);
    loading.openFiles.append(identity);

    XMLDocument document;
    if (!document.loadFromBytes(file.readAll()))
        throw SolutionLoadError(absolute, document.errorText(), document.errorLine());
    if (document.documentType() != solutionDocumentType()
        || !document.documentElement()->hasTag("solution"))
        throw SolutionLoadError(absolute, u" not a solution file"_s);

    std::unique_ptr<ProjectElement> root = domToElement(
        info.absolutePath(), absolute, *document.documentElement(), handler, loading, 0);
    root->setPath(Path(absolute));
    m_loadTimes.insert(absolute, QTx::getUTCModificationTime(absolute));
    loading.openFiles.removeLast();
    clearModified(root.get());
    if (root->attribute(VersionAttribute) != CurrentVersion) {
        munge(root.get());
        root->setAttribute(VersionAttribute, CurrentVersion);
    }
    root->clearChangeTimes();
    return root;
}

std::unique_ptr<ProjectElement>
ProjectSystem::domToElement(const QString& directory, const QString& path, const XMLElement& xml,
                            ProjectFileNotFoundErrorHandler* handler, Loading& loading, int depth)
{
    if (depth > MaximumDepth)
        throw SolutionLoadError(path, u" elements are nested too deeply"_s, xml.line());
    if (xml.hasTag(ImportTag)) {
        const QString stored = xml.attribute("file_name");
        const QString expanded = macroSystem
            ? MacroSystem::replaceMacros(macroSystem->globalMacros(true), stored)
            : stored;
        std::unique_ptr<ProjectElement> imported =
            loadProjectFile(expanded, directory, handler, loading);
        imported->restoreAttribute(FileNameAttribute, stored);
        imported->setImported(true);
        return imported;
    }
    ProjectElement::Kind kind;
    if (!ProjectElement::kindOfTag(xml.tag(), kind))
        throw SolutionLoadError(path, u" unknown element <"_s + QString::fromUtf8(xml.tag()) + u'>',
                                xml.line());
    auto element = std::make_unique<ProjectElement>(kind);
    for (const XMLAttribute& attribute : xml.attributes())
        element->restoreAttribute(QString::fromUtf8(attribute.name), attribute.text());
    if (element->isProject() && element->hasAttribute(TemplateAttribute))
        loading.templateProjects.push_back(element.get());
    if (element->isDynamicFolder())
        loading.dynamicFolders.push_back(element.get());
    for (const XMLElement& child : xml.children())
        element->appendChild(domToElement(directory, path, child, handler, loading, depth + 1));
    return element;
}

// Saving

XMLElement* ProjectSystem::elementToDom(XMLDocument& document, const ProjectElement& element,
                                        bool isRoot) const
{
    if (element.isImported() && !isRoot) {
        XMLElement* import = document.createElement(ImportTag);
        import->setAttribute("file_name", element.attribute(FileNameAttribute));
        return import;
    }
    XMLElement* xml = document.createElement(ProjectElement::tag(element.kind()).toUtf8());
    for (auto it = element.attributes().constBegin(); it != element.attributes().constEnd(); ++it) {
        const bool emptyName = it.key() == NameAttribute && it.value().isEmpty();
        const bool placeOfFile = isRoot && it.key() == FileNameAttribute;
        if (!emptyName && !placeOfFile)
            xml->setAttribute(it.key().toUtf8(), it.value());
    }
    for (const ProjectElement* configuration : element.configurations())
        xml->appendChild(elementToDom(document, *configuration, false));
    for (const ProjectElement* child = element.firstChild(); child; child = child->nextSibling()) {
        const bool scanned = element.isDynamicFolder() && child->isFile();
        if (!scanned || !child->configurations().isEmpty())
            xml->appendChild(elementToDom(document, *child, false));
    }
    return xml;
}

bool ProjectSystem::saveProjectFile(ProjectElement* solution)
{
    XMLDocument document;
    document.setDocumentElement(elementToDom(document, *solution, true));
    document.setDocumentType(solutionDocumentType());
    const QString path = solution->path().osPath();
    if (!document.save(path, 2))
        return false;
    m_loadTimes.insert(path, QTx::getUTCModificationTime(path));
    emit fileSaved(solution->path());
    clearModified(solution);
    return true;
}

bool ProjectSystem::saveProjectFile(ProjectElement* solution, const Path& path)
{
    m_loadTimes.remove(solution->path().osPath());
    solution->setPath(path);
    return saveProjectFile(solution);
}

void ProjectSystem::save(ProjectFileSaveErrorHandler* handler)
{
    for (ProjectElement* solution : solutionSolutions()) {
        if (!isModified(solution, true) || saveProjectFile(solution))
            continue;
        if (!handler || !handler->retry(solution) || !saveProjectFile(solution))
            throw SolutionSaveError(solution->path().osPath());
    }
}

bool ProjectSystem::isModified(const ProjectElement* element, bool deep) const
{
    if (element->modified())
        return true;
    if (!deep)
        return false;
    for (const ProjectElement* configuration : element->configurations())
        if (configuration->modified())
            return true;
    for (const ProjectElement* child = element->firstChild(); child; child = child->nextSibling())
        if (!child->isSolution() && isModified(child, true))
            return true;
    return false;
}

bool ProjectSystem::modified() const
{
    const auto solutions = solutionSolutions();
    return std::any_of(solutions.begin(), solutions.end(),
                       [&](const ProjectElement* solution) { return isModified(solution, true); });
}

void ProjectSystem::clearModified(ProjectElement* element) const
{
    element->setModified(false);
    for (ProjectElement* configuration : element->configurations())
        configuration->setModified(false);
    for (ProjectElement* child = element->firstChild(); child; child = child->nextSibling())
        if (!child->isSolution())
            clearModified(child);
}

bool ProjectSystem::modifiedOnDisk() const
{
    for (auto it = m_loadTimes.constBegin(); it != m_loadTimes.constEnd(); ++it)
        if (QTx::getUTCModificationTime(it.key()) != it.value())
            return true;
    return false;
}

void ProjectSystem::updateLoadDateTime()
{
    for (auto it = m_loadTimes.begin(); it != m_loadTimes.end(); ++it)
        it.value() = QTx::getUTCModificationTime(it.key());
}

void ProjectSystem::closeSolution()
{
    m_root.reset();
    m_projectNames.clear();
    m_loadTimes.clear();
}
