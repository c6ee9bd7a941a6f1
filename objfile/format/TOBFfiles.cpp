#include "objfile/format/TOBFfiles.h"

#include "base/HException.h"
#include "objfile/format/HFileInputByteStream.h"
#include "objfile/msp430/TOBFMSP430Reader.h"
#include "objfile/query/SymbolicDebug.h"

#include <sys/stat.h>

#include <algorithm>

std::list<TOBFfiles::Record> TOBFfiles::s_records;

namespace {

std::int64_t modificationTime(const Path& path)
{
    struct stat info = {};
    if (stat(path.str().c_str(), &info) != 0)
        throw HException("Can't access " + path.str());
    return std::int64_t{info.st_mtim.tv_sec} * 1'000'000'000 + info.st_mtim.tv_nsec;
}

TOBFModule* read(const Path& path)
{
    const HFileInputByteStream stream(path.str());
    TOBFMSP430Reader reader(&stream, true);
    return reader.readFile();
}

} // namespace

TOBFfiles::Record::Record(const Path& path, std::int64_t modified, TOBFModule* module)
    : path(path),
      modified(modified),
      module(module)
{
}

TOBFfiles::Record::~Record() = default;

TOBFModule* TOBFfiles::getModule(const Path& path)
{
    const std::int64_t modified = modificationTime(path);
    for (Record& record : s_records) {
        if (record.path == path && record.modified == modified) {
            ++record.moduleReferences;
            return record.module;
        }
    }
    TOBFModule* module = read(path);
    if (module != nullptr)
        s_records.emplace_front(path, modified, module);
    return module;
}

void TOBFfiles::release(TOBFModule* module)
{
    const auto it = std::find_if(s_records.begin(), s_records.end(),
                                 [=](const Record& record) { return record.module == module; });
    if (it == s_records.end() || --it->moduleReferences > 0)
        return;
    TOBFReader::release(it->module);
    s_records.erase(it);
}

SymbolicDebug* TOBFfiles::getSymbolicDebug(const Path& path)
{
    TOBFModule* module = getModule(path);
    if (module == nullptr)
        return nullptr;
    const auto it = std::find_if(s_records.begin(), s_records.end(),
                                 [=](const Record& record) { return record.module == module; });
    if (it->debug == nullptr)
        it->debug = std::make_unique<SymbolicDebug>(module, path);
    ++it->debugReferences;
    return it->debug.get();
}

void TOBFfiles::release(SymbolicDebug* debug)
{
    const auto it = std::find_if(s_records.begin(), s_records.end(),
                                 [=](const Record& record) { return record.debug.get() == debug; });
    if (debug == nullptr || it == s_records.end())
        return;
    TOBFModule* module = it->module;
    if (--it->debugReferences <= 0)
        it->debug.reset();
    release(module);
}
