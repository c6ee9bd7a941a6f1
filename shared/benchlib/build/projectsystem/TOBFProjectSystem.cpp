#include "build/projectsystem/TOBFProjectSystem.h"

void TOBFProjectSystem::appendSections(PropertyClassList& list) const
{
    append(list,
           {"default_code_section", "default_data_section", "default_zeroed_section",
            "default_const_section", "default_vector_section"});
}

void TOBFProjectSystem::appendCCompilerProperties(PropertyClassList& list)
{
    StandardProjectSystem::appendCCompilerProperties(list);
    appendSections(list);
    append(list, {"compiler_optimization_strategy", "optimize_register_allocation"});
}

void TOBFProjectSystem::appendAssemblerProperties(PropertyClassList& list)
{
    StandardProjectSystem::appendAssemblerProperties(list);
    appendSections(list);
}

void TOBFProjectSystem::appendLinkerProperties(PropertyClassList& list)
{
    StandardProjectSystem::appendLinkerProperties(list);
    append(list,
           {"linker_heap_size", "double_is_float", "linker_checksum_sections",
            "linker_checksum_algorithm", "linker_absolute_listing", "optimize_cross_calling",
            "optimize_cross_jumping", "optimize_flattening", "optimize_tail_merging",
            "optimize_code_motion", "optimize_block_locality",
            "linker_cross_call_minimum_subroutine_size", "linker_cross_call_maximum_passes",
            "optimize_copy_propagation", "optimize_jump_threading", "optimize_jump_chaining",
            "optimize_peepholes", "optimize_dead_code", "build_use_hardware_multiplier"});
}

void TOBFProjectSystem::appendArchiverProperties(PropertyClassList& list)
{
    StandardProjectSystem::appendArchiverProperties(list);
    append(list, {"double_is_float", "build_use_hardware_multiplier"});
}
