#include "build/projectsystem/MSP430ProjectSystem.h"

using namespace Qt::Literals::StringLiterals;

void MSP430ProjectSystem::appendLinkerProperties(PropertyClassList& list)
{
    TOBFProjectSystem::appendLinkerProperties(list);
    append(list,
           {"msp430_debug_interface", "link_msp430_workaround_CPU_6_bug", "msp430_identify_string",
            "msp430_insn_set"});
}

void MSP430ProjectSystem::munge(ProjectElement* element)
{
    for (ProjectElement* child = element->firstChild(); child; child = child->nextSibling()) {
        if (child->isSolution())
            munge(child);
        else if (child->isProject())
            mungeProject(child);
    }
}

void MSP430ProjectSystem::mungeProject(ProjectElement* project)
{
    ProjectElement* folder = findFolder(project, u"System Files"_s);
    if (!folder)
        folder = findFolder(project, u"Startup Code"_s);
    if (folder)
        for (ProjectElement* file = folder->firstChild(); file; file = file->nextSibling())
            if (file->attribute(u"file_name"_s) == u"$(BenchDir)/targets/section_placement.xml") {
                // It is the default of its property now.
                removeElement(file);
                break;
            }

    // By its default as well: another project's groups may be loaded.
    useGroupFileOf(project, CommonConfiguration);
    const PropertyValueGroupClass* target = propertyGroups().getGroupClass(u"Target"_s);
    if (!target)
        return;
    const QString chosen = settingFor(project, target, CommonConfiguration);
    PropertyValueGroupValue(target, project, CommonConfiguration).setPropertyValue(chosen, false);
}
