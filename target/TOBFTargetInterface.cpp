#include "target/TOBFTargetInterface.h"

#include "base/HException.h"
#include "objfile/model/TOBFFragment.h"
#include "objfile/model/TOBFInsn.h"
#include "objfile/model/TOBFModule.h"
#include "target/KbSize.h"

#include <algorithm>
#include <vector>

namespace {

constexpr unsigned largestBlock = 0x2000;

/// Gathers bytes and passes them on as contiguous runs of at most the buffer's size.
template <class Flush> class RunBuffer {
public:
    RunBuffer(unsigned size, Flush flush) : m_flush(flush), m_size(size) { m_bytes.reserve(size); }

    void add(unsigned address, unsigned char byte)
    {
        if (address != m_address + m_bytes.size() || m_bytes.size() == m_size)
            flush();
        if (m_bytes.empty())
            m_address = address;
        m_bytes.push_back(byte);
    }
    void flush()
    {
        if (!m_bytes.empty())
            m_flush(m_address, static_cast<unsigned>(m_bytes.size()), m_bytes.data());
        m_bytes.clear();
    }

private:
    Flush m_flush;
    std::size_t m_size;
    unsigned m_address = 0;
    std::vector<unsigned char> m_bytes;
};

bool hasContent(TOBFSection& section)
{
    return static_cast<int>(section.lowestAddress()) >= 0 && section.accumulatedSize() != 0;
}

/// Calls `flush(address, length, bytes)` for the runs of the section's bytes.
template <class Flush> void forEachRun(TOBFSection& section, unsigned blockSize, Flush flush)
{
    if (!hasContent(section))
        return;
    RunBuffer buffer(blockSize, flush);
    for (TOBFFragment* fragment : section.fragments())
        for (TOBFInsn* insn : fragment->insns())
            for (int i = 0; i < insn->length(); ++i)
                buffer.add(static_cast<unsigned>(insn->pc() + i),
                           static_cast<unsigned char>(insn->getByte(i)));
    buffer.flush();
}

unsigned blockSizeOf(const TargetMemoryInterface& memory)
{
    return std::max(4u, std::min(memory.optimumPokeBytesFragment(), largestBlock) & ~3u);
}

} // namespace

void TOBFTargetInterface::loadTOBFModule(TOBFModule* module)
{
    TargetMemoryInterface& memory = *codeMemory();
    for (TOBFSection* section : module->sections()) {
        if (!section->isLoaded() || !hasContent(*section))
            continue;
        const int total = static_cast<int>(section->accumulatedSize());
        const std::string what = "Programming " + kbSize(section->accumulatedSize()).toStdString()
            + " of " + section->getName()->text();
        host().progress(0, total, what.c_str(), "bytes", true);
        int done = 0;
        try {
            forEachRun(*section, blockSizeOf(memory),
                       [&](unsigned address, unsigned length, const unsigned char* bytes) {
                           memory.downloadBytes(address, length, bytes);
                           done += static_cast<int>(length);
                           host().progress(done, -1, nullptr, nullptr, true);
                           progressing();
                       });
        } catch (const HException& failure) {
            host().message(QString::fromStdString(failure.message()), TargetLogKind::Error);
            throw;
        }
        if (done != total)
            host().progress(total, -1, nullptr, nullptr, true);
    }
}

void TOBFTargetInterface::checkTOBFModuleMemoryExists(TOBFModule* module)
{
    TargetMemoryInterface& memory = *codeMemory();
    for (TOBFSection* section : module->sections()) {
        if (!section->isLoaded())
            continue;
        try {
            forEachRun(*section, blockSizeOf(memory),
                       [&](unsigned address, unsigned length, const unsigned char*) {
                           if (!memory.memoryExists(address, length))
                               throw HException("Section " + std::string(section->getName()->text())
                                                + " is too big for target");
                       });
        } catch (const HException& failure) {
            host().message(QString::fromStdString(failure.message()), TargetLogKind::Error);
            throw;
        }
    }
}
