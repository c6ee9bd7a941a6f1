#include "cli/SolutionCheck.h"

#include "base/TargetConstants.h"
#include "build/system/BuildSystem.h"
#include "cli/CheckReport.h"
#include "cli/PropertyCheck.h"
#include "projects/macros/MacroSystem.h"
#include "projects/solution/ProjectSystem.h"
#include "projects/templates/ProjectTemplates.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Calls visit(element) for all elements of the document with that tag, in its order.
template <typename Visit>
void forEachElement(const XMLDocument& document, const char* tag, Visit&& visit)
{
    const XMLElement* root = document.documentElement();
    for (const XMLElement* element = root; element; element = element->next(root))
        if (element->hasTag(tag))
            visit(*element);
}

QString expanded(const QString& text)
{
    return MacroSystem::replaceMacros(macroSystem->globalMacros(true), text);
}

QString describe(const XMLElement& element)
{
    return QString::fromUtf8(element.tag()) + u' ' + element.attribute("Name");
}

bool isOf(const ProjectElement& element, const XMLElement& xml)
{
    if (xml.hasTag("import"))
        return element.isImported()
            && element.attribute(u"file_name"_s) == xml.attribute("file_name");
    return ProjectElement::tag(element.kind()).toUtf8() == xml.tag()
        && element.attribute(u"Name"_s) == xml.attribute("Name")
        && element.attribute(u"file_name"_s) == xml.attribute("file_name");
}

} // namespace

void SolutionCheck::run()
{
    read(m_path, nullptr, 0, {});
    for (const auto& source : m_sources) {
        noteNames(*source);
        checkTemplates(*source);
        checkProjectNames(*source);
    }
    m_loaded = m_sound && !m_hasTemplates && load();
    if (!m_loaded)
        PropertyCheck::useDefaultGroupFile();
    for (const auto& source : m_sources)
        checkConfigurations(*source);
    if (m_loaded) {
        checkCircles();
        checkFiles(projectSystem->solutionElement());
    }
}

void SolutionCheck::error(const Source* source, const XMLElement& xml, const QString& text)
{
    m_report.error(source->shown, xml.line(), text);
}

// Reading

/// `around`: the canonical paths of the solutions that this one is imported by.
void SolutionCheck::read(const QString& path, const Source* importer, int line, QStringList around)
{
    const auto fail = [&](const QString& file, int at, const QString& text) {
        m_report.error(file, at, text);
        m_sound = false;
    };
    const QString canonical = QFileInfo(path).canonicalFilePath();
    if (canonical.isEmpty())
        return fail(importer ? importer->shown : path, line,
                    importer ? u"the imported solution %1 does not exist"_s.arg(path)
                             : u"does not exist"_s);
    if (around.contains(canonical))
        return fail(importer->shown, line, u"the solution imports itself through %1"_s.arg(path));
    if (std::any_of(m_sources.begin(), m_sources.end(),
                    [&](const auto& source) { return source->path == canonical; }))
        return;
    auto source = std::make_unique<Source>();
    source->path = canonical;
    source->shown = path;
    XMLDocument& document = source->document;
    if (!document.load(path))
        return fail(path, document.errorLine(), document.errorText());
    if (document.documentType() != Get_BENCH_NAME() + u"_Project_File"_s
        || !document.documentElement()->hasTag("solution"))
        return fail(path, document.documentElement()->line(), u"not a solution file"_s);
    m_sources.push_back(std::move(source));
    around << canonical;
    readImports(*m_sources.back(), around);
}

void SolutionCheck::readImports(const Source& source, const QStringList& around)
{
    forEachElement(source.document, "import", [&](const XMLElement& import) {
        QString name = expanded(import.attribute("file_name"));
        if (!QFileInfo::exists(name))
            name = QFileInfo(source.shown).path() + u'/' + name;
        read(name, &source, import.line(), around);
    });
}

void SolutionCheck::noteNames(const Source& source)
{
    forEachElement(source.document, "configuration", [&](const XMLElement& configuration) {
        m_configurations.insert(configuration.attribute("Name"));
    });
}

bool SolutionCheck::load()
{
    try {
        projectSystem->loadSolution(m_path, nullptr, nullptr);
    } catch (const SolutionLoadError& error) {
        const bool isRoot = QFileInfo(error.path()) == QFileInfo(m_path);
        m_report.error(isRoot ? m_path : error.path(), error.line(), error.text().trimmed());
        return false;
    }
    const Source& root = *m_sources.front();
    locate(projectSystem->solutionElement(), root, *root.document.documentElement());
    return true;
}

/// Notes where the element and those below it stand. Loading may have dropped or added some.
void SolutionCheck::locate(ProjectElement* element, const Source& source, const XMLElement& xml)
{
    m_places.insert(element, {&source, &xml});
    m_elements.insert(&xml, element);
    ProjectElement* next = element->firstChild();
    for (const XMLElement& childXml : xml.children()) {
        ProjectElement* child = next;
        while (child && !isOf(*child, childXml))
            child = child->nextSibling();
        if (!child)
            continue;
        next = child->nextSibling();
        if (!childXml.hasTag("import"))
            locate(child, source, childXml);
        else if (const Source* imported = sourceOf(child))
            locate(child, *imported, *imported->document.documentElement());
    }
}

const SolutionCheck::Source* SolutionCheck::sourceOf(const ProjectElement* solution) const
{
    const QString path = QFileInfo(solution->path().osPath()).canonicalFilePath();
    const auto found = std::find_if(m_sources.begin(), m_sources.end(),
                                    [&](const auto& source) { return source->path == path; });
    return found == m_sources.end() ? nullptr : found->get();
}

// Names

void SolutionCheck::checkTemplates(const Source& source)
{
    ProjectTemplates templates;
    bool isRead = false;
    forEachElement(source.document, "project", [&](const XMLElement& project) {
        if (!project.hasAttribute("template_name"))
            return;
        m_hasTemplates = true;
        if (!isRead)
            templates.load(ProjectTemplates::projectTemplatesFile());
        isRead = true;
        const QString name = project.attribute("template_name");
        if (!templates.findTemplate(name))
            error(&source, project, u"there is no project template "_s + name);
    });
}

void SolutionCheck::checkProjectNames(const Source& source)
{
    QSet<QString> names;
    forEachElement(source.document, "project", [&](const XMLElement& project) {
        const QString name = project.attribute("Name");
        if (name.isEmpty())
            error(&source, project, u"the project has no name"_s);
        else if (names.contains(name))
            error(&source, project, u"there is another project "_s + name);
        names.insert(name);
    });
}

// Properties

void SolutionCheck::checkConfigurations(const Source& source)
{
    forEachElement(source.document, "configuration", [&](const XMLElement& configuration) {
        checkConfiguration(source, configuration);
    });
}

void SolutionCheck::checkConfiguration(const Source& source, const XMLElement& configuration)
{
    const QString name = configuration.attribute("Name");
    if (name.isEmpty())
        error(&source, configuration, u"the configuration has no name"_s);
    if (ProjectElement* element = m_elements.value(configuration.parent()))
        projectSystem->useGroupFileOf(element, name);
    for (const XMLAttribute& attribute : configuration.attributes()) {
        if (attribute.name == "Name" || attribute.name == "hidden")
            continue;
        const QString fault =
            PropertyCheck::fault(QString::fromUtf8(attribute.name), attribute.text());
        if (!fault.isEmpty())
            error(&source, configuration, fault);
    }
    checkFileProperties(source, configuration);
    // Templates bring configurations and projects that aren't in the files yet.
    if (m_hasTemplates)
        return;
    checkInheritance(source, configuration);
    checkDependencies(source, configuration);
}

/// Files that the link reads; a name with macros that only a build knows isn't looked at.
void SolutionCheck::checkFileProperties(const Source& source, const XMLElement& configuration)
{
    ProjectElement* element = m_elements.value(configuration.parent());
    for (const char* property :
         {"linker_memory_map_file", "linker_section_placement_file", "property_groups_file_path"}) {
        const QString stored = configuration.attribute(property);
        if (!element || stored.isEmpty() || stored == u"None")
            continue;
        const QString name =
            buildSystem->replaceMacros(element, stored, configuration.attribute("Name"));
        const Path path = Path(name).absolute(element->projectDirectory());
        if (!name.contains(u"$("_s) && !QFileInfo::exists(path.osPath()))
            m_report.warning(
                source.shown, configuration.line(),
                u"the file %1 of %2 does not exist"_s.arg(stored, QLatin1String(property)));
    }
}

void SolutionCheck::checkInheritance(const Source& source, const XMLElement& configuration)
{
    const QString name = configuration.attribute("Name");
    for (const QString& inherited :
         MacroSystem::stringListFromString(configuration.attribute("inherited_configurations"))) {
        if (inherited == name)
            error(&source, configuration, u"configuration %1 inherits itself"_s.arg(name));
        else if (inherited != CommonConfiguration && !m_configurations.contains(inherited))
            error(&source, configuration,
                  u"configuration %1 inherits unknown configuration %2"_s.arg(name, inherited));
    }
}

void SolutionCheck::checkDependencies(const Source& source, const XMLElement& configuration)
{
    ProjectElement* element = m_elements.value(configuration.parent());
    if (!element)
        return;
    for (const QString& name :
         MacroSystem::stringListFromString(configuration.attribute("project_dependencies")))
        if (!projectSystem->findProject(element, name))
            error(
                &source, configuration,
                u"%1 depends on unknown project %2"_s.arg(describe(*configuration.parent()), name));
}

// The tree

void SolutionCheck::checkCircles()
{
    for (const QString& configuration : projectSystem->configurations(
             projectSystem->solutionElement(),
             ProjectSystem::WithPublic | ProjectSystem::WithHidden | ProjectSystem::WithCommon))
        checkCirclesIn(configuration);
}

/// Reports each circle once, at its first project.
void SolutionCheck::checkCirclesIn(const QString& configuration)
{
    const auto needs = [&](const ProjectElement* project, const ProjectElement* other) {
        const auto needed = projectSystem->dependsOn(project, configuration);
        return std::find(needed.begin(), needed.end(), other) != needed.end();
    };
    for (ProjectElement* project : projectSystem->solutionProjects()) {
        if (m_inCircles.contains(project) || !needs(project, project))
            continue;
        QStringList names;
        for (ProjectElement* other : projectSystem->dependsOn(project, configuration)) {
            if (!needs(other, project))
                continue;
            m_inCircles.insert(other);
            if (other != project)
                names << other->getName();
        }
        const Place place = m_places.value(project);
        if (!place.source)
            continue;
        const QString through = names.isEmpty() ? QString() : u" through "_s + names.join(u", "_s);
        error(place.source, *place.xml,
              u"project %1 depends on itself%2"_s.arg(project->getName(), through));
    }
}

void SolutionCheck::checkFiles(ProjectElement* element)
{
    const Place place = m_places.value(element);
    if (element->isFile() && place.source && !QFileInfo::exists(element->path().osPath()))
        m_report.warning(place.source->shown, place.xml->line(),
                         u"the file %1 does not exist"_s.arg(element->attribute(u"file_name"_s)));
    for (ProjectElement* child = element->firstChild(); child; child = child->nextSibling())
        checkFiles(child);
}
