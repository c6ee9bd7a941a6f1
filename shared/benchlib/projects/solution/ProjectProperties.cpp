// The properties that the project system itself defines, and the rows of information.

#include "base/QTx.h"
#include "base/TargetConstants.h"
#include "projects/solution/ProjectSystem.h"

#include <QFileInfo>
#include <QTextCodec>

using namespace Qt::Literals::StringLiterals;

namespace {

using Type = PropertyClass::Type;

struct PropertyRow {
    const char* name;
    Type type;
    const char* page;
    const char* group;
    const char* label;
    const char* help;
    const char* defaultValue;
    const char* values; ///< of an enumeration, separated by ";"
    bool readOnly;
    bool perConfiguration;
};

constexpr const char* Information = "(Information)";
constexpr const char* General = "General";
constexpr const char* Build = "Build";

// clang-format off
constexpr PropertyRow Rows[] = {
    {"date_created", Type::String, Information, Information, "Date Created", "When the file was made.", "", "", true, true},
    {"date_modified", Type::String, Information, Information, "Date Modified", "When the file was last changed.", "", "", true, true},
    {"Platform", Type::String, Information, Information, "Platform", "The processor that the configuration is for.", nullptr, "", true, true},
    {"full_path", Type::String, Information, Information, "Full Path", "The absolute path of the file.", "", "", true, true},
    {"relative_path", Type::String, Information, Information, "Relative Path", "The path of the file from its project's directory.", "", "", true, true},
    {"(Name)", Type::String, Information, Information, "Name", "The name of the element.", "", "", true, true},
    {"file_name", Type::String, Information, Information, "File Name", "The path of the file as it is stored, with its macros.", "", "", true, true},
    {"file_codec", Type::Enumeration, General, "File Options", "File Encoding", "The encoding that the file is read and written in.", "Default", "", false, false},
    {"file_open_with", Type::Enumeration, General, "File Options", "File Open Action", "What opens the file.", "Default",
     "Default;Text Editor;Binary Editor;Datasheet Viewer;Web Browser;Run File", false, false},
    {"file_type", Type::Enumeration, General, "File Options", "File Type", "What the file is to the build; by default its extension tells.", "Default", "Default", false, false},
    {"filter", Type::StringList, General, "Folder Options", "Filter", "The extensions of new files that this folder takes.", "", "", false, false},
    {"path", Type::DirPath, General, "Folder Options", "Dynamic Folder Directory", "The directory whose files the folder shows.", "", "", true, true},
    {"project_type", Type::Enumeration, Build, "Build Options", "Project Type", "What the project is built into.", "Executable",
     "Executable;Library;Object file;Staging;Combining;Externally Built Executable", false, false},
    {"name", Type::String, Information, Information, "Solution File Name", "The path of the solution's file.", "", "", true, true},
    {"project_directory", Type::String, Build, "Build Options", "Project Directory", "The project's directory, absolute or from the solution's directory.", "", "", true, true},
    {"full_project_directory", Type::String, Information, Information, "Full Project Directory", "The absolute path of the project's directory.", "", "", true, true},
    {"project_dependencies", Type::StringList, Build, "Build Options", "Project Dependencies", "The projects that are built before this one.", "", "", false, true},
    {"macros", Type::StringList, Build, "Build Options", "Project Macros", "Macros of the project, each as name=value.", "", "", false, true},
    {"batch_build_configurations", Type::StringList, Build, "General Options", "Batch Build Configurations", "The configurations that a batch build builds.", "", "", false, false},
    {"inherited_configurations", Type::StringList, Build, "General Options", "Inherited Configurations", "The configurations whose properties this one inherits.", "", "", false, true},
};
// clang-format on

/// Not found by its name, which is that of the folder's directory.
constexpr PropertyRow DynamicFolderFilter = {"path",
                                             Type::String,
                                             General,
                                             "Folder Options",
                                             "Dynamic Folder Filter",
                                             "Which files of the directory the folder shows.",
                                             "",
                                             "",
                                             true,
                                             true};

std::unique_ptr<PropertyClass> makeClass(const PropertyRow& row)
{
    const auto text = [](const char* utf8) { return QString::fromUtf8(utf8); };
    auto made =
        std::make_unique<PropertyClass>(text(row.name), row.type, text(row.page), text(row.group),
                                        text(row.label), text(row.help), text(row.defaultValue));
    if (row.type == Type::Enumeration)
        made->setEnumerates(text(row.values).split(u';', Qt::SkipEmptyParts));
    made->setReadOnly(row.readOnly);
    made->setPerConfiguration(row.perConfiguration);
    return made;
}

QStringList codecNames()
{
    QStringList names = {u"Default"_s};
    for (const QByteArray& codec : QTextCodec::availableCodecs())
        if (!names.contains(QString::fromLatin1(codec)))
            names << QString::fromLatin1(codec);
    return names;
}

} // namespace

ProjectSystem::ProjectSystem()
{
    for (const PropertyRow& row : Rows)
        addClass(makeClass(row));
    const_cast<PropertyClass*>(propertyClass(u"Platform"_s))->setDefaultValue(Get_PLATFORM());
    m_dynamicFolderFilter = makeClass(DynamicFolderFilter);
}

PropertyClass* ProjectSystem::addClass(std::unique_ptr<PropertyClass> propertyClass)
{
    m_classes.insert(propertyClass->saveName(), propertyClass.get());
    m_ownClasses.push_back(std::move(propertyClass));
    return m_ownClasses.back().get();
}

const PropertyClass* ProjectSystem::propertyClass(const QString& name) const
{
    const PropertyClass* found = m_classes.value(name);
    // The list of codecs takes a while and is seldom wanted.
    if (found && name == u"file_codec" && found->enumerates().isEmpty())
        const_cast<PropertyClass*>(found)->setEnumerates(codecNames());
    return found;
}

void ProjectSystem::addInformation(PropertyValueList& list, const char* name,
                                   const QString& value) const
{
    list.appendUnique(new SimplePropertyValue(propertyClass(QLatin1String(name)), value));
}

PropertyValueList ProjectSystem::settingsFor(ProjectElement* element, const QString& configuration)
{
    PropertyValueList list(true);
    addInformation(list, "(Name)", element->getName());
    const auto addSettings = [&](std::initializer_list<const char*> names) {
        for (const char* name : names)
            list.appendUnique(new ProjectPropertyValue(propertyClass(QLatin1String(name)), element,
                                                       configuration));
    };
    if (element->isFile()) {
        const QFileInfo info(element->path().osPath());
        addInformation(list, "date_created", QTx::shortDateTime(info.birthTime()));
        addInformation(list, "date_modified", QTx::shortDateTime(info.lastModified()));
        addInformation(list, "full_path", info.filePath());
        addInformation(list, "relative_path",
                       element->path().relativeFilePath(element->projectDirectory()));
        addInformation(list, "file_name", element->attribute(u"file_name"_s));
        addSettings({"file_codec", "file_open_with", "file_type"});
    } else if (element->isDynamicFolder()) {
        addInformation(list, "path", element->attribute(u"path"_s));
        list.appendUnique(
            new SimplePropertyValue(m_dynamicFolderFilter.get(), element->attribute(u"filter"_s)));
    } else if (element->isFolder()) {
        addSettings({"filter"});
    } else if (element->isProject()) {
        addSettings({"project_type"});
        addInformation(list, "project_directory",
                       specificSettingFor(element, propertyClass(u"project_directory"_s),
                                          CommonConfiguration));
        addInformation(list, "full_project_directory", element->projectDirectory());
        addSettings({"project_dependencies", "macros"});
    } else if (element->isSolution()) {
        addInformation(list, "name", element->path().osPath());
        addSettings({"macros", "batch_build_configurations", "inherited_configurations"});
    }
    for (const PropertyClass* propertyClass : applicableSettingsFor(element, configuration)) {
        const auto* group = dynamic_cast<const PropertyValueGroupClass*>(propertyClass);
        if (group)
            list.appendUnique(new PropertyValueGroupValue(group, element, configuration));
        else
            list.appendUnique(new ProjectPropertyValue(propertyClass, element, configuration));
    }
    return list;
}

PropertyValueList ProjectSystem::settingsFor(const Path& path) const
{
    PropertyValueList list(true);
    const QFileInfo info(path.osPath());
    addInformation(list, "full_path", info.absoluteFilePath());
    addInformation(list, "date_created", QTx::shortDateTime(info.birthTime()));
    addInformation(list, "date_modified", QTx::shortDateTime(info.lastModified()));
    return list;
}
