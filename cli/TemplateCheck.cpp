#include "cli/TemplateCheck.h"

#include "cli/CheckReport.h"
#include "cli/PropertyCheck.h"
#include "projects/macros/MacroSystem.h"
#include "projects/solution/ProjectSystem.h"
#include "projects/xml/XMLPP2.h"

#include <QFileInfo>
#include <QSet>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A preprocessed file with properties in it.
class PropertyFileCheck {
protected:
    PropertyFileCheck(CheckReport& report, const QString& path) : m_report(report), m_path(path) { }

    /// The document element; null, with the error reported, if there is none.
    const XMLElement* load()
    {
        if (m_document.load(m_path, QString(), false) && m_document.documentElement())
            return m_document.documentElement();
        const QString text = m_document.errorText();
        m_report.error(m_path, m_document.errorLine(), text.isEmpty() ? u"is empty"_s : text);
        return nullptr;
    }

    void error(const XMLElement& element, const QString& text)
    {
        m_report.error(m_path, element.line(), text);
    }
    void warning(const XMLElement& element, const QString& text)
    {
        m_report.warning(m_path, element.line(), text);
    }

    void checkProperty(const XMLElement& property)
    {
        const QString fault =
            PropertyCheck::fault(property.attribute("name"), property.attribute("value"));
        if (!fault.isEmpty())
            error(property, fault);
    }

private:
    CheckReport& m_report;
    QString m_path;
    XMLPP2 m_document;
};

class TemplateCheck : PropertyFileCheck {
public:
    TemplateCheck(CheckReport& report, const QString& path) : PropertyFileCheck(report, path) { }

    void run()
    {
        const XMLElement* root = load();
        if (!root)
            return;
        PropertyCheck::useDefaultGroupFile();
        for (const XMLElement& element : root->children())
            if (element.hasTag("configurations"))
                for (const XMLElement& definition : element.children())
                    m_definitions.insert(definition.attribute("name"));
        m_isPart = !root->firstChildElement("project") && m_definitions.isEmpty();
        if (m_isPart) {
            checkContents(*root);
            return;
        }
        for (const XMLElement& element : root->children()) {
            if (element.hasTag("project"))
                checkProject(element);
            else if (element.hasTag("configurations"))
                checkDefinitions(element);
            else
                warnOfTag(element);
        }
    }

private:
    void warnOfTag(const XMLElement& element)
    {
        warning(element, u"unknown element <%1>"_s.arg(QString::fromUtf8(element.tag())));
    }

    void checkProject(const XMLElement& project)
    {
        const QString name = project.attribute("template_name");
        if (name.isEmpty())
            error(project, u"the template has no template_name"_s);
        else if (m_templates.contains(name))
            error(project, u"there is another template "_s + name);
        m_templates.insert(name);
        const QString fault = PropertyCheck::fault(u"project_type"_s, project.attribute("type"));
        if (!fault.isEmpty())
            error(project, fault);
        checkContents(project);
    }

    void checkContents(const XMLElement& parent)
    {
        for (const XMLElement* element = parent.next(&parent); element;
             element = element->next(&parent))
            checkContent(*element);
    }

    void checkContent(const XMLElement& element)
    {
        if (element.hasTag("property") || element.hasTag("propertygroup"))
            checkProperty(element);
        else if (element.hasTag("configuration"))
            checkConfiguration(element, element.attribute("name"));
        else if (element.hasTag("file"))
            checkSource(element);
        else if (!element.hasTag("folder"))
            warnOfTag(element);
    }

    void checkDefinitions(const XMLElement& definitions)
    {
        for (const XMLElement& definition : definitions.children())
            for (const XMLElement& property : definition.children()) {
                checkProperty(property);
                if (property.attribute("name") != u"inherited_configurations")
                    continue;
                for (const QString& name :
                     MacroSystem::stringListFromString(property.attribute("value")))
                    checkConfiguration(property, name);
            }
    }

    void checkConfiguration(const XMLElement& element, const QString& name)
    {
        if (!m_isPart && name != CommonConfiguration && !m_definitions.contains(name))
            error(element, u"there is no definition of configuration "_s + name);
    }

    void checkSource(const XMLElement& file)
    {
        if (file.attribute("name").isEmpty())
            error(file, u"the file has no name"_s);
        const QString source =
            MacroSystem::replaceMacros(macroSystem->globalMacros(true), file.attribute("source"));
        if (!source.isEmpty() && !source.contains(u"$("_s) && !QFileInfo::exists(source))
            warning(file, u"the file %1 does not exist"_s.arg(source));
    }

    bool m_isPart = false; ///< the contents of a template, for others to include
    QSet<QString> m_definitions;
    QSet<QString> m_templates;
};

class PropertyGroupsCheck : PropertyFileCheck {
public:
    PropertyGroupsCheck(CheckReport& report, const QString& path)
        : PropertyFileCheck(report, path),
          m_groupFile(path)
    {
    }

    void run()
    {
        const XMLElement* root = load();
        if (!root)
            return;
        // Groups may set one another.
        projectSystem->propertyGroups().setGroupFile(m_groupFile);
        for (const XMLElement& group : root->children())
            if (group.hasTag("group"))
                checkGroup(group);
    }

private:
    void checkGroup(const XMLElement& group)
    {
        const QString name = group.attribute("name");
        if (name.isEmpty())
            error(group, u"the group has no name"_s);
        QSet<QString> choices;
        for (const XMLElement& entry : group.children()) {
            if (!entry.hasTag("groupEntry"))
                continue;
            const QString choice = entry.attribute("name");
            if (choices.contains(choice))
                error(entry, u"group %1 has another choice %2"_s.arg(name, choice));
            choices.insert(choice);
            for (const XMLElement& property : entry.children())
                if (property.hasTag("property"))
                    checkProperty(property);
        }
        const QString standard = group.attribute("default");
        if (!standard.isEmpty() && !choices.contains(standard))
            error(group,
                  u"the default \"%1\" of group %2 is none of its choices"_s.arg(standard, name));
    }

    QString m_groupFile;
};

} // namespace

void checkTemplates(CheckReport& report, const QString& path) { TemplateCheck(report, path).run(); }

void checkPropertyGroups(CheckReport& report, const QString& path)
{
    PropertyGroupsCheck(report, path).run();
}
