#include "build/system/TOBFBuildSystem.h"

#include "base/HException.h"
#include "base/Path.h"
#include "base/TargetConstants.h"
#include "build/memorymap/MemoryMap.h"
#include "build/system/BuildProperties.h"
#include "build/system/UnusedRanges.h"
#include "objfile/format/HFileInputByteStream.h"
#include "objfile/model/TOBFModule.h"
#include "objfile/msp430/TOBFMSP430Reader.h"
#include "projects/settings/EnvironmentSettings.h"
#include "projects/solution/Builder.h"
#include "projects/solution/ProjectSystem.h"

using namespace Qt::Literals::StringLiterals;

/// An option that joins the command line when its property has the value.
struct TOBFBuildSystem::Flag {
    const char* option;
    const char* property;
    const char* value = "Yes";
    bool negated = false;
};

/// A command line as it grows, with the element and configuration that its settings are read for.
class TOBFBuildSystem::CommandLine {
public:
    CommandLine(TOBFBuildSystem& system, ProjectElement* element, const QString& configuration)
        : element(element),
          configuration(configuration),
          m_system(system)
    {
    }

    CommandLine& operator<<(const QString& word)
    {
        words << word;
        return *this;
    }
    void add(const QStringList& list) { words += list; }

    QString setting(const char* name) const
    {
        return m_system.setting(element, name, configuration);
    }
    bool yes(const char* name) const { return m_system.yes(element, name, configuration); }

    /// The entries of a list setting, each expanded and behind the prefix.
    void addList(const QString& prefix, const char* name)
    {
        words += m_system.stringListSetting(prefix, element, m_system.propertyClass(name),
                                            configuration);
    }
    /// The setting expanded as a whole and split then.
    void addExpandedEntries(const QString& prefix, const char* name)
    {
        for (const QString& entry : MacroSystem::stringListFromString(
                 m_system.expandedSetting(element, name, configuration)))
            words << prefix + entry;
    }

    QStringList words;
    ProjectElement* element;
    QString configuration;

private:
    TOBFBuildSystem& m_system;
};

namespace {

struct SectionOption {
    const char* prefix;
    const char* property;
};
constexpr SectionOption SectionOptions[] = {{"-Rc,", "default_code_section"},
                                            {"-Rd,", "default_data_section"},
                                            {"-Rz,", "default_zeroed_section"},
                                            {"-Rk,", "default_const_section"},
                                            {"-Rv,", "default_vector_section"}};

QString hexadecimal(quint32 number) { return QString::number(number, 16); }

} // namespace

TOBFBuildSystem::TOBFBuildSystem()
{
    addPropertyClasses(tobfBuildProperties());
    changePropertyClass("linker_stack_size")->setSuffix(u"bytes"_s);
    changePropertyClass("linker_heap_size")->setSuffix(u"bytes"_s);
    m_codeClasses = classesOf({"c_ignore_includes", "compiler_optimization_strategy",
                               "optimize_register_allocation", "double_is_float",
                               "build_use_hardware_multiplier"});
    m_linkClasses = classesOf({"linker_stack_size",
                               "linker_heap_size",
                               "linker_output_format",
                               "linker_checksum_sections",
                               "linker_checksum_algorithm",
                               "linker_absolute_listing",
                               "optimize_cross_calling",
                               "linker_cross_call_minimum_subroutine_size",
                               "linker_cross_call_maximum_passes",
                               "optimize_cross_jumping",
                               "optimize_tail_merging",
                               "optimize_peepholes",
                               "optimize_jump_threading",
                               "optimize_jump_chaining",
                               "optimize_flattening",
                               "optimize_dead_code",
                               "optimize_code_motion",
                               "optimize_block_locality",
                               "optimize_copy_propagation",
                               "double_is_float",
                               "build_use_hardware_multiplier",
                               "build_treat_warnings_as_errors",
                               "build_suppress_warnings"});
}

MacroMap TOBFBuildSystem::macros(ProjectElement* element, const QString& configuration)
{
    MacroMap macros = BuildSystem::macros(element, configuration);
    if (element && element->isProject())
        macros.insert(u"LibExt"_s, libraryExtension(element, configuration));
    return macros;
}

QString TOBFBuildSystem::libraryExtension(ProjectElement* project,
                                          const QString& configuration) const
{
    const bool software = setting(project, "build_use_hardware_multiplier", configuration) == u"No";
    return (software ? u"_s"_s : u"_h"_s)
        + (yes(project, "double_is_float", configuration) ? u'f' : u'd');
}

QString TOBFBuildSystem::toolPath(const char* tool) const
{
    return MacroSystem::replaceMacros(macroSystem->systemMacros(),
                                      environment->toolChainRootDirectory->toString())
        + u"/bin/"_s + QLatin1String(tool);
}

void TOBFBuildSystem::addCommonPreprocessorDefinitions(QStringList& list)
{
    list << u"-D__GANTRY_MAJOR_VERSION=%1"_s.arg(Get_RELEASE_MAJOR_NUMBER())
         << u"-D__GANTRY_MINOR_VERSION=%1"_s.arg(Get_RELEASE_MINOR_NUMBER())
         << u"-D__GANTRY_REVISION=%1"_s.arg(Get_RELEASE_REVISION_NUMBER());
}

void TOBFBuildSystem::addProductDefinitions(CommandLine& line)
{
    if (line.setting("c_undefine_all_preprocessor_definitions") != u"No")
        return;
    line << u"-D__GANTRY"_s;
    addCommonPreprocessorDefinitions(line.words);
    if (const PropertyValueGroupClass* target =
            projectSystem->propertyGroups().getGroupClass(u"Target"_s))
        line << u"-D__TARGET_PROCESSOR="_s
                + projectSystem->settingFor(line.element, target, line.configuration);
}

void TOBFBuildSystem::addIncludeDirectories(CommandLine& line)
{
    if (line.setting("c_ignore_includes") != u"No")
        return;
    line.addList(u"-I"_s, "c_user_include_directories");
    line.addList(u"-J"_s, "c_system_include_directories");
}

void TOBFBuildSystem::addFlags(CommandLine& line, std::span<const Flag> flags) const
{
    for (const Flag& flag : flags)
        if ((line.setting(flag.property) == QLatin1String(flag.value)) != flag.negated)
            line << QLatin1String(flag.option);
}

void TOBFBuildSystem::createCommandFor(const Step& step, Builder* builder)
{
    switch (step.action) {
    case actionCompileC:
    case actionCompileBasic:
    case actionAssemble: return compile(step, builder);
    case actionLink: return link(step, builder);
    case actionArchive: return archive(step, builder);
    case actionCompileCpp:
    case actionCompileForth:
        builder->error(u"There is no compiler for "_s + step.element->getName());
        setFailed();
        return;
    default: return;
    }
}

void TOBFBuildSystem::compile(const Step& step, Builder* builder)
{
    static constexpr Flag Quiet[] = {{"-V", "build_quietly", "Yes", true}};
    static constexpr Flag General[] = {{"-g", "build_debug_information"},
                                       {"-we", "build_treat_warnings_as_errors"},
                                       {"-w", "build_suppress_warnings"}};
    static constexpr Flag Optimizations[] = {
        {"-O-9", "compiler_optimization_strategy", "Minimize size"},
        {"-O+9", "compiler_optimization_strategy", "Minimize size", true},
        {"-Or-", "optimize_register_allocation", "None"},
        {"-Orl", "optimize_register_allocation", "Locals Only"},
        {"-Org", "optimize_register_allocation", "Locals and Globals"}};
    static constexpr Flag Ansi[] = {{"-ansi", "c_enforce_ansi_checking"}};
    static constexpr Flag Doubles[] = {{"-msd", "double_is_float"}};
    static constexpr Flag Multiplier[] = {{"-mmpy", "build_use_hardware_multiplier", "Yes"},
                                          {"-mmpyinl", "build_use_hardware_multiplier", "Inline"}};

    const bool isC = step.action == actionCompileC;
    const bool isAssembly = step.action == actionAssemble;
    const bool isCompiled = !isAssembly;
    const char* tool = isC ? "kcc" : isAssembly ? "kas" : "kbc";

    builder->init();
    CommandLine line(*this, step.element, step.configuration);
    line << toolPath(tool);
    line.addExpandedEntries(u"-D"_s, "c_preprocessor_definitions");
    line.addList(u"-U"_s, "c_preprocessor_undefinitions");
    line.addExpandedEntries(QString(),
                            isAssembly ? "asm_additional_options" : "c_additional_options");
    addFlags(line, Quiet);
    addProductDefinitions(line);
    addFlags(line, General);
    if (isCompiled)
        addFlags(line, Optimizations);
    for (const SectionOption& option : SectionOptions) {
        const QString name = line.setting(option.property).trimmed();
        if (!name.isEmpty() && name != propertyClass(option.property)->defaultValue())
            line << QLatin1String(option.prefix) + name;
    }
    addIncludeDirectories(line);
    if (isC)
        addFlags(line, Ansi);
    if (isCompiled)
        addFlags(line, Doubles);
    if (isC)
        addFlags(line, Multiplier);
    line << step.inputs.first() << u"-o"_s << step.output;
    if (!appendBuildOptions(step.element, step.configuration, step.action, line.words, builder))
        return;
    builder->beginGroup(
        step.element, (isAssembly ? u"Assembling "_s : u"Compiling "_s) + step.element->getName());
    runCommand(builder, step.element->projectDirectory(), line.words, {step.absoluteOutput});
    builder->endGroup(step.element);
}

void TOBFBuildSystem::addLibraries(CommandLine& line)
{
    if (!line.yes("link_include_standard_libraries"))
        return;
    QStringList libraries = {u"libc"_s, u"libm"_s, u"libdebugio"_s};
    const QString io = line.setting("link_IOLibraryName");
    if (io == u"target" || io == u"debug")
        libraries << u"libc_"_s + io + u"io_impl"_s;
    libraries << u"lib_vfprintf_"_s + getPrintfVariant(line.element, line.configuration)
              << u"lib_vfscanf_"_s + getScanfVariant(line.element, line.configuration);
    if (line.setting("link_use_multi_threaded_libraries") == u"No")
        libraries << u"libc_user_libc"_s;
    for (const QString& library : libraries)
        line << replaceMacros(line.element, u"$(BenchDir)/lib/"_s + library + u"$(LibExt).kva"_s,
                              line.configuration);
}

void TOBFBuildSystem::addLinkOptimizations(CommandLine& line)
{
    static constexpr Flag Optimizations[] = {
        {"-Oxj", "optimize_cross_jumping"},  {"-Oph", "optimize_peepholes"},
        {"-Ofl", "optimize_flattening"},     {"-Odc", "optimize_dead_code"},
        {"-Otm", "optimize_tail_merging"},   {"-Ojt", "optimize_jump_threading"},
        {"-Ojc", "optimize_jump_chaining"},  {"-Ocm", "optimize_code_motion"},
        {"-Obl", "optimize_block_locality"}, {"-Ocp", "optimize_copy_propagation"}};

    const QString factoring = line.setting("optimize_cross_calling");
    const QString minimum = line.setting("linker_cross_call_minimum_subroutine_size");
    if (factoring == u"Standard")
        line << u"-Oxc="_s + minimum;
    else if (factoring == u"Maximum")
        line << u"-Oxcx="_s + minimum;
    const QString passes = line.setting("linker_cross_call_maximum_passes");
    if (passes != u"0")
        line << u"-Oxcp="_s + passes;
    addFlags(line, Optimizations);
}

void TOBFBuildSystem::link(const Step& step, Builder* builder)
{
    static constexpr Flag General[] = {{"-V", "build_quietly", "Yes", true},
                                       {"-g", "build_debug_information"},
                                       {"-we", "build_treat_warnings_as_errors"},
                                       {"-w", "build_suppress_warnings"}};

    builder->init();
    CommandLine line(*this, step.element, step.configuration);
    line << toolPath("kld");
    line.add(step.inputs);
    addFlags(line, General);
    addLibraries(line);
    addLinkOptimizations(line);
    const QString checksum = line.setting("linker_checksum_sections");
    if (!checksum.isEmpty())
        line << u"-H"_s + QString(checksum).replace(u';', u',') + u'='
                + line.setting("linker_checksum_algorithm").toLower();
    line.addList(u"-D"_s, "link_symbol_definitions");
    const QString heapSize = line.setting("linker_heap_size");
    if (heapSize.toInt() != 0)
        line << u"-Dheap_size="_s + heapSize;
    line.addExpandedEntries(QString(), "linker_additional_options");
    if (!addPlacement(line, builder))
        return;
    line.addList(u"-K"_s, "linker_keep_symbols");
    if (line.yes("linker_map_file"))
        line << u"-M"_s + besideOutput(step.output, u".map"_s);
    line << u"-o"_s << step.output;
    if (!appendBuildOptions(step.element, step.configuration, step.action, line.words, builder))
        return;

    // Not the project's own group, which shows its progress.
    builder->beginGroup(nullptr, u"Linking "_s + Path(step.output).fileName());
    runCommand(builder, step.element->projectDirectory(), line.words, {step.absoluteOutput});
    if (!stopped())
        convert(step, builder);
    if (!stopped())
        list(step, builder);
    builder->endGroup(nullptr);
}

bool TOBFBuildSystem::addPlacement(CommandLine& line, Builder* builder)
{
    QString placementPath;
    QString mapPath;
    MemoryMap* placement =
        getSectionPlacementFileForLink(line.element, line.configuration, placementPath);
    if (!placement && !placementPath.isEmpty()) {
        builder->error(u"Cannot load section placement file: "_s + placementPath);
        return false;
    }
    MemoryMap* map = getMemoryMapFileForLink(line.element, line.configuration, mapPath);
    if (!map && !mapPath.isEmpty()) {
        builder->error(u"Cannot load memory map file: "_s + mapPath);
        return false;
    }
    MemoryMap* source = placement ? placement : map;
    if (!source)
        return true;
    for (MemoryMapElement* segment : source->getSegments(true)) {
        MemoryMapElement* memory = segment;
        if (placement && !(segment->hasAddress() && segment->hasSize())) {
            if (!map) {
                builder->error(u"memory map file is required."_s);
                return false;
            }
            memory = map->getSegment(segment->name());
            if (!memory) {
                builder->message(u"section placement file referenced segment "_s + segment->name()
                                 + u" not in memory map file"_s);
                continue;
            }
        }
        addSections(line, *memory, source->getSections(segment, true), builder);
    }
    return true;
}

void TOBFBuildSystem::addSections(CommandLine& line, const MemoryMapElement& segment,
                                  const QList<MemoryMapElement*>& sections, Builder* builder)
{
    const quint32 start = segment.address();
    const quint32 size = segment.size();
    if (!segment.addressSymbol().isEmpty())
        line << u"-D%1=%2"_s.arg(segment.addressSymbol()).arg(start);
    if (!segment.sizeSymbol().isEmpty())
        line << u"-D%1=%2"_s.arg(segment.sizeSymbol()).arg(size);
    line << u"-D___%1_Address=%2"_s.arg(segment.name()).arg(start)
         << u"-D___%1_Size=%2"_s.arg(segment.name()).arg(size);
    if (!segment.addressSpace().isEmpty())
        line << u"-D__%1_%2=1"_s.arg(segment.addressSpace(), segment.name());

    QList<MemoryRange> used;
    QStringList free;
    for (const MemoryMapElement* section : sections) {
        const quint32 address = section->address();
        const quint64 end = quint64(address) + section->size();
        if (section->hasAddress() && section->hasSize()) {
            line << u"-T%1=%2-%3"_s.arg(section->name(), hexadecimal(address),
                                        hexadecimal(quint32(end - 1)));
            used << MemoryRange{address, section->size()};
            const quint64 segmentEnd = quint64(start) + size;
            if (address >= start && address <= segmentEnd && end > segmentEnd)
                builder->message(u"section "_s + section->name() + u" is larger than the segment "_s
                                 + segment.name());
        } else {
            free << section->name();
        }
        if (section->load() == u"Yes")
            line << u"-G%1=L"_s.arg(section->name());
    }
    if (free.isEmpty())
        return;
    QStringList ranges;
    for (const MemoryRange& range : findUnusedRanges({start, size}, used))
        ranges << hexadecimal(range.start) + u'-'
                + QString::number(quint64(range.start) + range.length, 16);
    line << u"-T"_s + free.join(u',') + (ranges.isEmpty() ? QString() : u'=' + ranges.join(u','));
}

void TOBFBuildSystem::convert(const Step& step, Builder* builder)
{
    const QString format = setting(step.element, "linker_output_format", step.configuration);
    if (format == u"None" || format == u"kvx")
        return;
    runCommand(builder, step.element->projectDirectory(),
               {toolPath("kex"), step.output, u"-o"_s, besideOutput(step.output, QString()),
                u"-F"_s + format},
               {besideOutput(step.absoluteOutput, u'.' + format)});
}

void TOBFBuildSystem::list(const Step& step, Builder* builder)
{
    if (!yes(step.element, "linker_absolute_listing", step.configuration))
        return;
    runCommand(builder, step.element->projectDirectory(),
               {toolPath("kls"), step.output, u"-o"_s, besideOutput(step.output, u".lst"_s)},
               {besideOutput(step.absoluteOutput, u".lst"_s)});
}

void TOBFBuildSystem::archive(const Step& step, Builder* builder)
{
    builder->init();
    builder->beginGroup(nullptr, u"Archiving "_s + Path(step.output).fileName());
    runCommand(builder, step.element->projectDirectory(),
               QStringList{toolPath("kar"), u"-c"_s, step.output} + step.inputs,
               {step.absoluteOutput});
    builder->endGroup(nullptr);
}

void TOBFBuildSystem::preprocess(ProjectElement* element, const QString& configuration,
                                 Builder* builder)
{
    const Path path = element->path();
    const QString output =
        path.directory().osPath() + u'/' + path.baseName() + u"_PP."_s + path.extension();
    builder->init();
    CommandLine line(*this, element, configuration);
    line << toolPath("kcc") << u"-E"_s;
    line.addList(u"-D"_s, "c_preprocessor_definitions");
    line.addList(u"-U"_s, "c_preprocessor_undefinitions");
    addProductDefinitions(line);
    addIncludeDirectories(line);
    appendPreprocessorOptions(element, configuration, line.words);
    line << path.osPath() << u"-o"_s << output;
    builder->beginGroup(element, u"Preprocessing "_s + element->getName());
    builder->setDirectory(element->projectDirectory());
    builder->setTemporaryFiles({output});
    runCommand(builder, element->projectDirectory(), line.words, {});
    builder->endGroup(element);
}

// Variants of the formatters

QString TOBFBuildSystem::formatVariant(ProjectElement* element, const QString& configuration,
                                       const char* floatingPoint, const char* level) const
{
    const QString integers = setting(element, level, configuration);
    if (yes(element, floatingPoint, configuration)) {
        if (!yes(element, "double_is_float", configuration))
            return u"double_long_long"_s;
        return integers == u"long long" ? u"float_long_long"_s : u"float_long"_s;
    }
    return integers == u"long long" ? u"long_long"_s : integers;
}

QString TOBFBuildSystem::getPrintfVariant(ProjectElement* element,
                                          const QString& configuration) const
{
    const QString variant = formatVariant(element, configuration, "linker_printf_fp_enabled",
                                          "linker_printf_fmt_level");
    const bool widths =
        setting(element, "linker_printf_width_precision_supported", configuration) != u"No";
    return widths ? variant : variant + u"_nwp"_s;
}

QString TOBFBuildSystem::getScanfVariant(ProjectElement* element,
                                         const QString& configuration) const
{
    const QString variant =
        formatVariant(element, configuration, "linker_scanf_fp_enabled", "linker_scanf_fmt_level");
    const bool classes =
        yes(element, "linker_scanf_character_group_matching_enabled", configuration);
    return classes ? variant + u"_cc"_s : variant;
}

// What is current

bool TOBFBuildSystem::commandUpToDate(ProjectElement* element, const QString& configuration,
                                      FileTime outputTime, BuildAction action, Builder* builder,
                                      bool quiet)
{
    if (!StandardBuildSystem::commandUpToDate(element, configuration, outputTime, action, builder,
                                              quiet))
        return false;
    if (action == actionLink)
        return optionsUpToDate(m_linkClasses, element, configuration, outputTime, builder, quiet);
    if (action >= actionCompileC && action <= actionAssemble)
        return optionsUpToDate(m_codeClasses, element, configuration, outputTime, builder, quiet);
    return true;
}

QStringList TOBFBuildSystem::getObjectFileDependencies(const QString& objectPath)
{
    QStringList files;
    try {
        const HFileInputByteStream stream(objectPath.toStdString());
        TOBFMSP430Reader reader(&stream, false);
        TOBFModule* module = reader.readFileQuickly();
        if (!module)
            return files;
        if (const HString* list = module->attribute(HString::intern("dependencies")))
            files = QString::fromUtf8(list->text()).split(u';', Qt::SkipEmptyParts);
        TOBFReader::release(module);
    } catch (const HException&) {
        // Not an object of ours: the file counts as depending on its source alone.
        files.clear();
    }
    return files;
}
