#pragma once

#include "base/HException.h"
#include "objfile/format/TOBFWriter.h"
#include "objfile/model/TOBFModule.h"
#include "objfile/msp430/TOBFMSP430Reader.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

using Bytes = std::vector<unsigned char>;

struct ReleaseModule {
    void operator()(TOBFModule* module) const { TOBFReader::release(module); }
};
using OwnedModule = std::unique_ptr<TOBFModule, ReleaseModule>;

inline OwnedModule readObject(const Bytes& bytes, bool keepLocus = true, bool quickly = false)
{
    const HByteStream stream(bytes.data(), bytes.size());
    TOBFMSP430Reader reader(&stream, keepLocus);
    return OwnedModule(quickly ? reader.readFileQuickly() : reader.readFile());
}

/// The message with which reading fails; "(read)" if it doesn't.
inline std::string readFailure(const Bytes& bytes)
{
    try {
        readObject(bytes);
        return "(read)";
    } catch (const HException& error) {
        return error.message();
    }
}

/// An object file put together by hand: records, with strings that go to the pool.
class ObjectText {
public:
    ObjectText& tag(int value)
    {
        m_records.push_back(static_cast<unsigned char>(value));
        return *this;
    }
    ObjectText& number(std::int64_t value)
    {
        if (value >= 0 && value < 8)
            return tag(static_cast<int>(value));
        tag(TAG_LITX).tag(8);
        for (int shift = 56; shift >= 0; shift -= 8)
            tag(static_cast<int>(static_cast<std::uint64_t>(value) >> shift & 0xFF));
        return *this;
    }
    ObjectText& string(std::string_view text)
    {
        number(static_cast<std::int64_t>(m_pool.size()));
        number(static_cast<std::int64_t>(text.size()));
        m_pool += text;
        return tag(TAG_MKSTRING);
    }
    ObjectText& module()
    {
        return tag(TAG_NULL_NULL).tag(TAG_NULL).tag(TAG_SCOPE_MODULE).tag(TAG_DROP);
    }
    ObjectText& section(std::string_view name)
    {
        return string(name).tag(TAG_MKSECTION).tag(TAG_SECTION);
    }
    Bytes bytes() const
    {
        ObjectText head;
        head.number(static_cast<std::int64_t>(m_pool.size())).tag(TAG_STRINGPOOL);
        Bytes all = head.m_records;
        all.insert(all.end(), m_pool.begin(), m_pool.end());
        all.insert(all.end(), m_records.begin(), m_records.end());
        return all;
    }

private:
    Bytes m_records;
    std::string m_pool;
};

inline Bytes writeModule(TOBFModule* module, bool hide = false)
{
    TOBFWriter writer;
    module->externalize(&writer, hide);
    writer.finish();
    return writer.data();
}

inline std::vector<TOBFInsn*> itemsOf(TOBFModule* module, const char* section)
{
    std::vector<TOBFInsn*> items;
    for (TOBFFragment* fragment : module->findSection(HString::intern(section))->fragments())
        items.insert(items.end(), fragment->insns().begin(), fragment->insns().end());
    return items;
}
