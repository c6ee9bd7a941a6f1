#pragma once

#include <string>

/// The names of the sections that code and data go to.
struct SectionNames {
    std::string code = "CODE";
    std::string data = "IDATA0";
    std::string zeroed = "UDATA0";
    std::string constant = "CONST";
    std::string vectors = "INTVEC";
};
