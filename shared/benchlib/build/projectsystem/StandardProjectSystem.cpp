#include "build/projectsystem/StandardProjectSystem.h"

#include "base/Path.h"
#include "base/QTx.h"
#include "base/TargetConstants.h"
#include "base/XMLDocument.h"
#include "build/system/BuildSystem.h"

#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace {

struct ExtensionType {
    const char* extension;
    const char* type;
};
constexpr ExtensionType Extensions[] = {{"c", "C"},    {"cpp", "C++"},    {"cxx", "C++"},
                                        {"cc", "C++"}, {"s", "Assembly"}, {"asm", "Assembly"}};

struct DocumentType {
    const char* document;
    const char* type;
};
constexpr DocumentType Documents[] = {{"Board_Memory_Definition_File", "Memory Map"},
                                      {"Linker_Placement_File", "Section Placement"},
                                      {"GantryBench_Target_Definition_File", "Target Definitions"}};

QString projectTypeOf(const ProjectSystem& system, const ProjectElement* element)
{
    return system.settingFor(element, system.propertyClass(u"project_type"_s), CommonConfiguration);
}

} // namespace

StandardProjectSystem::StandardProjectSystem()
{
    auto* fileType = const_cast<PropertyClass*>(propertyClass(u"file_type"_s));
    QStringList types = {u"Default"_s,
                         u"C"_s,
                         u"C++"_s,
                         u"Assembly"_s,
                         u"Basic"_s,
                         u"Library"_s,
                         u"Executable"_s,
                         u"Object file"_s,
                         u"Memory Map"_s,
                         u"Section Placement"_s,
                         u"Target Definitions"_s};
    fileType->setEnumerates(types);
}

QString StandardProjectSystem::getFileType(const ProjectElement* element) const
{
    const QString told =
        specificSettingFor(element, propertyClass(u"file_type"_s), CommonConfiguration);
    if (!told.isEmpty() && told != u"Default")
        return told;
    const QString extension = element->path().extension().toLower();
    for (const ExtensionType& row : Extensions)
        if (extension == QLatin1String(row.extension))
            return QLatin1String(row.type);
    if (extension.isEmpty())
        return {};
    if (extension == assemblyCodeFileExtension())
        return u"Assembly"_s;
    const QString dotted = u'.' + extension;
    if (dotted == libraryFileExtension())
        return u"Library"_s;
    if (dotted == executableFileExtension())
        return u"Executable"_s;
    if (dotted == objectFileExtension())
        return u"Object file"_s;
    return extension == u"xml" ? xmlFileType(element) : QString();
}

QString StandardProjectSystem::xmlFileType(const ProjectElement* element) const
{
    const QString path = element->path().osPath();
    const QDateTime time = QTx::getUTCModificationTime(path);
    const auto known = m_xmlFileTypes.constFind(path);
    if (known != m_xmlFileTypes.constEnd() && known->time == time)
        return known->type;
    const QString document = XMLDocument::xmlDocumentType(path);
    QString type;
    for (const DocumentType& row : Documents)
        if (document == QLatin1String(row.document))
            type = QLatin1String(row.type);
    m_xmlFileTypes.insert(path, {time, type});
    return type;
}

void StandardProjectSystem::append(PropertyClassList& list,
                                   std::initializer_list<const char*> names) const
{
    for (const char* name : names)
        list.appendUnique(m_buildSystem->propertyClass(name));
}

// The rows of elements

PropertyClassList StandardProjectSystem::applicableSettingsFor(ProjectElement* element,
                                                               const QString& configuration)
{
    PropertyClassList list;
    if (!m_buildSystem)
        return list;
    const QString projectType = projectTypeOf(*this, element);
    switch (element->kind()) {
    case ProjectElement::Kind::File: appendFileProperties(list, element); break;
    case ProjectElement::Kind::Folder:
        if (projectType == u"Library" || projectType == u"Object file" || projectType == u"Staging")
            appendProjectProperties(list, projectType);
        append(list, {"build_exclude_from_build", "build_always_rebuild"});
        break;
    case ProjectElement::Kind::Project:
        appendProjectProperties(list, projectType);
        append(list, {"build_exclude_from_build", "build_always_rebuild"});
        appendPropertyGroups(list, element, configuration);
        break;
    case ProjectElement::Kind::Solution:
        appendSolutionProperties(list);
        appendPropertyGroups(list, element, configuration);
        break;
    case ProjectElement::Kind::Configuration: break;
    }
    return list;
}

void StandardProjectSystem::appendFileProperties(PropertyClassList& list, ProjectElement* file)
{
    const QString projectType = projectTypeOf(*this, file);
    if (projectType == u"Staging") {
        append(list,
               {"stage_output_filepath", "stage_package_filepath", "stage_package_member_name",
                "stage_command", "stage_command_wd", "stage_set_readonly",
                "build_exclude_from_build", "build_always_rebuild"});
        return;
    }
    append(list,
           {"build_intermediate_directory", "stage_command", "stage_command_wd",
            "stage_package_member_name", "build_exclude_from_build", "build_always_rebuild"});
    const QString type = getFileType(file);
    if (type == u"C" || type == u"C++")
        appendCCompilerProperties(list);
    if (type == u"C++")
        appendCppCompilerProperties(list);
    if (type == u"Assembly")
        appendAssemblerProperties(list);
    if (type == u"Basic")
        appendBasicCompilerProperties(list);
    if (type == u"C" || type == u"C++" || type == u"Assembly" || type == u"Basic")
        append(list, {"build_object_file_name"});
}

void StandardProjectSystem::useGroupFileOf(ProjectElement* element, const QString& configuration)
{
    if (!m_buildSystem)
        return;
    const QString path = m_buildSystem->settingForExpanded(
        element, m_buildSystem->propertyClass("property_groups_file_path"), configuration);
    const bool isFile = !path.isEmpty() && path != u"None";
    propertyGroups().setGroupFile(
        isFile ? Path(path).absolute(element->projectDirectory()).osPath() : path);
}

void StandardProjectSystem::appendPropertyGroups(PropertyClassList& list, ProjectElement* element,
                                                 const QString& configuration)
{
    list.appendUnique(m_buildSystem->propertyClass("property_groups_file_path"));
    useGroupFileOf(element, configuration);
    for (const PropertyValueGroupClass* group : propertyGroups().classes())
        list.appendUnique(group);
}

// What each list holds

void StandardProjectSystem::appendCompilerProperties(PropertyClassList& list)
{
    append(list,
           {"c_preprocessor_definitions", "c_preprocessor_undefinitions",
            "c_user_include_directories", "c_system_include_directories",
            "c_undefine_all_preprocessor_definitions", "c_ignore_includes",
            "build_treat_warnings_as_errors", "build_suppress_warnings", "build_debug_information",
            "build_quietly", "default_code_section", "default_data_section",
            "default_zeroed_section", "default_const_section", "default_vector_section",
            "compile_pre_build_command", "compile_pre_build_command_wd",
            "compile_post_build_command", "compile_post_build_command_wd"});
}

void StandardProjectSystem::appendCCompilerProperties(PropertyClassList& list)
{
    appendCompilerProperties(list);
    append(list, {"c_additional_options", "c_enforce_ansi_checking", "c_only_additional_options"});
}

void StandardProjectSystem::appendCppCompilerProperties(PropertyClassList& list)
{
    append(list, {"cpp_only_additional_options", "cpp_enable_exceptions", "cpp_enable_rtti"});
}

void StandardProjectSystem::appendAssemblerProperties(PropertyClassList& list)
{
    appendCompilerProperties(list);
    append(list, {"asm_additional_options"});
}

void StandardProjectSystem::appendLinkerProperties(PropertyClassList& list)
{
    append(list,
           {"linker_memory_map_file",
            "linker_memory_map_macros",
            "linker_map_file",
            "linker_section_placement_file",
            "linker_section_placement_macros",
            "link_include_standard_libraries",
            "link_standard_libraries_directory",
            "link_use_multi_threaded_libraries",
            "link_IOLibraryName",
            "linker_additional_files",
            "linker_additional_options",
            "linker_output_format",
            "linker_printf_fmt_level",
            "linker_printf_fp_enabled",
            "linker_printf_width_precision_supported",
            "linker_scanf_fmt_level",
            "linker_scanf_fp_enabled",
            "linker_scanf_character_group_matching_enabled",
            "linker_pre_build_command",
            "linker_pre_build_command_wd",
            "linker_post_build_command",
            "linker_post_build_command_wd",
            "link_symbol_definitions",
            "linker_keep_symbols"});
}

void StandardProjectSystem::appendArchiverProperties(PropertyClassList&) { }

void StandardProjectSystem::appendTargetProperties(PropertyClassList& list)
{
    append(list,
           {"target_reset_script", "target_attach_script", "target_go_script", "target_stop_script",
            "target_connect_script", "target_disconnect_script", "target_debug_begin_script",
            "target_debug_end_script", "target_extras_script", "arm_linker_jtag_pad_pre_ir",
            "arm_linker_jtag_pad_post_ir", "arm_linker_jtag_pad_pre_dr",
            "arm_linker_jtag_pad_post_dr", "debug_command_arguments", "debug_working_directory",
            "debug_additional_load_files", "debug_entry_point_symbol",
            "debug_startup_completion_point"});
}

void StandardProjectSystem::appendSolutionProperties(PropertyClassList& list)
{
    append(list,
           {"build_output_directory", "build_root_output_directory", "build_intermediate_directory",
            "stage_post_build_command", "stage_post_build_command_wd", "stage_command",
            "stage_command_wd", "stage_package_filepath", "stage_package_member_name",
            "stage_set_readonly"});
}

void StandardProjectSystem::appendProjectProperties(PropertyClassList& list,
                                                    const QString& projectType)
{
    const auto appendDirectories = [&] {
        append(list,
               {"build_output_directory", "build_root_output_directory",
                "build_intermediate_directory"});
    };
    const auto appendCompiling = [&] {
        append(list, {"build_object_file_name"});
        appendCCompilerProperties(list);
        if (Get_TARGET_CPP())
            appendCppCompilerProperties(list);
        appendAssemblerProperties(list);
    };
    if (projectType == u"Executable") {
        appendDirectories();
        append(list, {"build_output_file_name"});
        appendCompiling();
        appendLinkerProperties(list);
        appendTargetProperties(list);
    } else if (projectType == u"Library") {
        appendDirectories();
        list.appendUnique(m_buildSystem->libraryFileNameClass());
        appendCompiling();
        appendArchiverProperties(list);
    } else if (projectType == u"Object file") {
        appendDirectories();
        appendCompiling();
    } else if (projectType == u"Staging") {
        append(list,
               {"build_output_directory", "build_root_output_directory", "stage_output_filepath",
                "stage_package_filepath", "stage_package_member_name", "stage_command",
                "stage_command_wd", "stage_set_readonly", "stage_post_build_command",
                "stage_post_build_command_wd"});
    } else if (projectType == u"Combining") {
        append(list,
               {"build_output_directory", "combine_output_filepath", "combine_command",
                "combine_command_wd", "combine_set_readonly"});
    } else if (projectType == u"Externally Built Executable") {
        append(list,
               {"external_build_file_name", "external_build_command", "external_clean_command",
                "external_load_address", "external_start_address", "external_load_file_type"});
        appendTargetProperties(list);
    }
}
