#include "build/system/MSP430BuildSystem.h"

#include "build/system/BuildProperties.h"
#include "projects/solution/ProjectSystem.h"

using namespace Qt::Literals::StringLiterals;

MSP430BuildSystem::MSP430BuildSystem()
{
    addPropertyClasses(msp430BuildProperties());
    PropertyClass* multiplier = changePropertyClass("build_use_hardware_multiplier");
    multiplier->setEnumerates({u"No Multiplier"_s, u"16-Bit Multiplier"_s, u"32-Bit Multiplier"_s});
    multiplier->setDefaultValue(u"No Multiplier"_s);
    changePropertyClass("linker_memory_map_file")
        ->setDefaultValue(u"$(PackagesDir)/targets/msp430/MSP430F449.xml"_s);
    changePropertyClass("property_groups_file_path")
        ->setDefaultValue(u"$(PackagesDir)/targets/msp430/propertyGroups.xml"_s);
    m_instructionSet = classesOf({"msp430_insn_set"});
    m_linkClasses = classesOf({"msp430_insn_set", "link_msp430_workaround_CPU_6_bug"});
}

QString MSP430BuildSystem::libraryExtension(ProjectElement* project,
                                            const QString& configuration) const
{
    const QString multiplier = setting(project, "build_use_hardware_multiplier", configuration);
    QString extension = u"_hw32"_s;
    if (multiplier == u"No Multiplier")
        extension = u"_soft"_s;
    else if (multiplier == u"16-Bit Multiplier")
        extension = u"_hw16"_s;
    extension += yes(project, "double_is_float", configuration) ? u"_single"_s : u"_double"_s;
    return isExtended(project, configuration) ? extension + u"_cpux"_s : extension;
}

bool MSP430BuildSystem::isExtended(ProjectElement* element, const QString& configuration) const
{
    return setting(element, "msp430_insn_set", configuration) == u"MSP430X";
}

bool MSP430BuildSystem::appendBuildOptions(ProjectElement* element, const QString& configuration,
                                           BuildAction action, QStringList& command, Builder*)
{
    const bool isSource = action == actionCompileC || action == actionAssemble;
    if ((isSource || action == actionLink) && isExtended(element, configuration))
        command << u"-mcpux"_s;
    if (isSource)
        appendPreprocessorOptions(element, configuration, command);
    if (action == actionLink && yes(element, "link_msp430_workaround_CPU_6_bug", configuration))
        command << u"-fcpu6"_s;
    return true;
}

void MSP430BuildSystem::appendPreprocessorOptions(ProjectElement* element,
                                                  const QString& configuration,
                                                  QStringList& command)
{
    if (setting(element, "c_undefine_all_preprocessor_definitions", configuration) == u"No")
        command << u"-D__GANTRY_MSP430"_s;
}

bool MSP430BuildSystem::commandUpToDate(ProjectElement* element, const QString& configuration,
                                        FileTime outputTime, BuildAction action, Builder* builder,
                                        bool quiet)
{
    if (!TOBFBuildSystem::commandUpToDate(element, configuration, outputTime, action, builder,
                                          quiet))
        return false;
    if (action == actionCompileC || action == actionAssemble)
        return optionsUpToDate(m_instructionSet, element, configuration, outputTime, builder,
                               quiet);
    return action != actionLink
        || optionsUpToDate(m_linkClasses, element, configuration, outputTime, builder, quiet);
}
