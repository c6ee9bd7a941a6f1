#include "objfile/loadfiles/TOBFLoadFileFactory.h"

#include "objfile/loadfiles/TOBFLoadFile.h"

#include <string_view>

TOBFLoadFileFactory::TOBFLoadFileFactory()
{
    m_types.insert(m_types.begin(), {"kvx", "*.kvx", "Gantry Executable"});
}

LoadFileInterface* TOBFLoadFileFactory::create(const char* path, const char* type)
{
    if (type != nullptr && std::string_view(type) == "kvx")
        return new TOBFLoadFile(path);
    return LoadFileFactory::create(path, type);
}

const char* TOBFLoadFileFactory::detect(const char* path)
{
    if (std::string_view(path).find(".kvx") != std::string_view::npos)
        return "kvx";
    return LoadFileFactory::detect(path);
}

LoadFileFactory* LoadFileFactory::instance()
{
    static TOBFLoadFileFactory factory;
    return &factory;
}
