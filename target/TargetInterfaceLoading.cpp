// Load operations: erase, program, verify, upload, lock and unlock, of load files, ranges and whole
// memories, with their log lines, progress and cancel.

#include "base/HException.h"
#include "objfile/loadfiles/LoadFile.h"
#include "target/KbSize.h"
#include "target/TargetInterface.h"
#include "target/TargetLoadSession.h"

#include <algorithm>
#include <cstdio>
#include <limits>

using namespace Qt::Literals::StringLiterals;

/// A run of bytes to be written or compared; null data means zeros.
struct TargetInterface::Step {
    unsigned address;
    unsigned length;
    const unsigned char* data;
    unsigned doneBefore;                     ///< bytes of the total that lie in front
    const LoadFileSectionInterface* firstOf; ///< the section that begins with this step, or null
};

/// An operation on all of a memory.
struct TargetInterface::WholeMemoryOperation {
    const char* group;
    const char* action;
    const char* verb;
    void (TargetMemoryInterface::*run)();
    bool onlyErasable;
};

/// An operation on a range of addresses.
struct TargetInterface::RangeOperation {
    const char* group;
    const char* action;
    const char* verb;
    unsigned (TargetMemoryInterface::*fragment)() const;
    void (TargetMemoryInterface::*run)(unsigned, unsigned);
};

struct TargetInterface::EraseOptions {
    bool image = false;
    bool comparing = false;      ///< what holds its data already stays
    bool onlyIfRequired = false; ///< unless the memory needs no erase before it is written
};

namespace {

constexpr unsigned wholeSpan = std::numeric_limits<unsigned>::max();
constexpr int wholeMemorySteps = 10;

unsigned lastOf(unsigned address, unsigned length) { return address + length - 1; }

/// The bytes from an offset on, or null where there are none.
const unsigned char* behind(const unsigned char* data, unsigned offset)
{
    return data != nullptr ? data + offset : nullptr;
}

bool holds(TargetMemoryInterface& memory, unsigned address, unsigned length,
           const unsigned char* data)
{
    if (data != nullptr)
        return memory.verifyBytes(address, length, data);
    const std::vector<unsigned char> zeros(length);
    return memory.verifyBytes(address, length, zeros.data());
}

} // namespace

// Sessions --------------------------------------------------------------------------------------

void TargetInterface::loadBegin()
{
    if (++m_loadNesting != 1)
        return;
    m_codeErased.clear();
    m_eeErased.clear();
    loadBeginInitial();
}

void TargetInterface::loadEnd()
{
    struct Reduce {
        int& nesting;
        ~Reduce() { --nesting; }
    } reduce{m_loadNesting};
    if (m_loadNesting == 1)
        loadEndFinal();
}

void TargetInterface::throwIfCancelled() const
{
    if (host().checkCancelled())
        throw BenchCancelException();
}

void TargetInterface::progressTo(unsigned done)
{
    host().progress(static_cast<int>(done), -1, nullptr, nullptr, true);
    progressing();
}

/// Does the work in a load session and a group of the log, which are closed on every road.
void TargetInterface::operation(const QString& title, const char* verb,
                                const std::function<void()>& work)
{
    TargetLoadSession session(*this);
    host().beginGroup(title, TargetLogKind::LoadGroup);
    try {
        work();
    } catch (const BenchCancelException&) {
        const QString text = QLatin1String(verb) + u" cancelled"_s;
        host().message(text, TargetLogKind::Failed);
        host().endGroup({});
        throw HException(text.toStdString());
    } catch (...) {
        host().message(QLatin1String(verb) + u" failed"_s, TargetLogKind::Failed);
        host().endGroup({});
        throw;
    }
    host().endGroup({});
    session.end();
}

void TargetInterface::logRange(const char* action, const QString& name, unsigned address,
                               unsigned length)
{
    const QString size = kbSize(length);
    const QString start = addressString(address), end = addressString(lastOf(address, length));
    host().message(name.isEmpty() ? u"%1 %2 of addresses %3 - %4"_s.arg(QLatin1String(action), size,
                                                                        start, end)
                                  : u"%1 %2 of %3 addresses %4 - %5"_s.arg(QLatin1String(action),
                                                                           size, name, start, end));
}

void TargetInterface::logSection(const char* action, const LoadFileSectionInterface& section)
{
    logRange(action, QString::fromStdString(section.name()), section.address(), section.length());
}

// Sections --------------------------------------------------------------------------------------

bool TargetInterface::isDifferential(const TargetMemoryInterface& memory, bool differential) const
{
    return differential && host().differentialDownloadEnabled()
        && memory.supportsDifferentialDownloading();
}

void TargetInterface::eraseSections(TargetMemoryInterface* memory, AddressRanges* erased,
                                    const Sections& sections, unsigned total, bool image,
                                    bool differential, bool onlyIfRequired)
{
    if (memory == nullptr || !memory->erase() || total == 0)
        return;
    eraseBlocks(*memory, erased, sections, total,
                {.image = image,
                 .comparing = isDifferential(*memory, differential),
                 .onlyIfRequired = onlyIfRequired});
}

void TargetInterface::eraseBlocks(TargetMemoryInterface& memory, AddressRanges* erased,
                                  const Sections& sections, unsigned total,
                                  const EraseOptions& options)
{
    AddressRanges ownErased;
    AddressRanges& ranges = erased != nullptr ? *erased : ownErased;
    host().progress(0, static_cast<int>(total), "Erasing", "bytes", true);
    memory.eraseBytesBegin();
    unsigned done = 0;
    for (const auto& section : sections) {
        if (section->length() == 0)
            continue;
        logSection("Erasing", *section);
        const unsigned char* data = section->data(options.image);
        for (unsigned offset = 0; offset < section->length();) {
            throwIfCancelled();
            const unsigned address = section->address() + offset;
            const unsigned left = section->length() - offset;
            unsigned block = left;
            if (const AddressRange* range = ranges.find(address)) {
                block = static_cast<unsigned>(
                    std::min<std::uint64_t>(left, std::uint64_t{range->end} - address + 1));
            } else if (const unsigned compared =
                           std::min(left, memory.optimumVerifyBytesFragment());
                       options.comparing
                       && holds(memory, address, compared, behind(data, offset))) {
                block = compared;
            } else {
                block = std::min(left, memory.optimumEraseBytesFragment());
                unsigned start = address, length = block;
                if (!options.onlyIfRequired || memory.eraseRequiredForDownload())
                    memory.eraseBytes(address, block, &start, &length);
                if (length != 0)
                    ranges.add(start, lastOf(start, length), true);
            }
            offset += block;
            done += block;
            progressTo(done);
        }
    }
    memory.eraseBytesEnd();
}

/// What has to be written or compared: whole sections or, in a differential load, what of them has
/// been erased.
std::vector<TargetInterface::Step>
TargetInterface::writeSteps(const Sections& sections, const AddressRanges* erased, bool image) const
{
    std::vector<Step> steps;
    unsigned done = 0;
    for (const auto& section : sections) {
        const unsigned address = section->address(), length = section->length();
        const unsigned char* data = section->data(image);
        if (length == 0)
            continue;
        if (erased == nullptr) {
            steps.push_back({address, length, data, done, section.get()});
        } else {
            // A step without bytes stands for the section's line in the log.
            steps.push_back({address, 0, data, done, section.get()});
            for (const AddressRange& range : *erased) {
                const unsigned first = std::max(range.start, address);
                const unsigned last = std::min(range.end, lastOf(address, length));
                if (first <= last)
                    steps.push_back({first, last - first + 1, behind(data, first - address),
                                     done + (first - address), nullptr});
            }
        }
        done += length;
    }
    return steps;
}

void TargetInterface::downloadSections(TargetMemoryInterface* memory, const AddressRanges* erased,
                                       const Sections& sections, unsigned total, bool image,
                                       bool differential)
{
    if (memory == nullptr)
        return;
    const AddressRanges none;
    const AddressRanges* only =
        isDifferential(*memory, differential) ? (erased != nullptr ? erased : &none) : nullptr;
    const std::vector<Step> steps = writeSteps(sections, only, image);
    const auto final = std::find_if(steps.rbegin(), steps.rend(),
                                    [](const Step& step) { return step.length != 0; });
    host().progress(0, static_cast<int>(total), "Programming", "bytes", true);
    unsigned done = 0;
    for (const Step& step : steps) {
        if (step.firstOf != nullptr)
            logSection("Programming", *step.firstOf);
        const unsigned fragment = step.data != nullptr ? memory->optimumDownloadBytesFragment()
                                                       : memory->optimumMemsetBytesFragment();
        for (unsigned offset = 0; offset < step.length;) {
            throwIfCancelled();
            const unsigned block = std::min(step.length - offset, fragment);
            const bool last = &step == &*final && offset + block == step.length;
            if (step.data != nullptr)
                memory->downloadBytes(step.address + offset, block, step.data + offset, last);
            else
                memory->memsetBytes(step.address + offset, block, 0);
            offset += block;
            done = step.doneBefore + offset;
            progressTo(done);
        }
    }
    if (done != total)
        progressTo(total);
}

bool TargetInterface::verifySections(TargetMemoryInterface* memory, const AddressRanges* erased,
                                     const Sections& sections, unsigned total, bool image,
                                     bool differential)
{
    if (memory == nullptr)
        return true;
    const AddressRanges none;
    const AddressRanges* only =
        isDifferential(*memory, differential) ? (erased != nullptr ? erased : &none) : nullptr;
    host().progress(0, static_cast<int>(total), "Verifying", "bytes", true);
    unsigned done = 0;
    for (const Step& step : writeSteps(sections, only, image)) {
        if (step.firstOf != nullptr)
            logSection("Verifying", *step.firstOf);
        for (unsigned offset = 0; offset < step.length;) {
            const unsigned block =
                std::min(step.length - offset, memory->optimumVerifyBytesFragment());
            if (!holds(*memory, step.address + offset, block, behind(step.data, offset))) {
                progressTo(total);
                return false;
            }
            offset += block;
            done = step.doneBefore + offset;
            progressTo(done);
            throwIfCancelled();
        }
    }
    if (done != total)
        progressTo(total);
    return true;
}

void TargetInterface::rangeSections(TargetMemoryInterface* memory, const RangeOperation& kind,
                                    const Sections& sections, unsigned total)
{
    if (memory == nullptr)
        return;
    host().progress(0, static_cast<int>(total), kind.action, "bytes", true);
    unsigned done = 0;
    for (const auto& section : sections) {
        if (section->length() == 0)
            continue;
        logSection(kind.action, *section);
        for (unsigned offset = 0; offset < section->length();) {
            throwIfCancelled();
            const unsigned block = std::min(section->length() - offset, (memory->*kind.fragment)());
            (memory->*kind.run)(section->address() + offset, block);
            offset += block;
            done += block;
            progressTo(done);
        }
    }
}

void TargetInterface::uploadSections(TargetMemoryInterface* memory, const Sections& sections,
                                     unsigned total, Sections& uploaded)
{
    if (memory == nullptr)
        return;
    host().progress(0, static_cast<int>(total), "Uploading", "bytes", true);
    unsigned done = 0;
    for (const auto& section : sections) {
        host().message(u"uploading section %1: size 0x%2, addr 0x%3"_s
                           .arg(QString::fromStdString(section->name()))
                           .arg(section->length(), 0, 16)
                           .arg(section->address(), 0, 16));
        auto copy =
            std::make_unique<ExpandingLoadFileSection>(section->name().c_str(), section->address());
        unsigned char* data = copy->expand(section->length());
        for (unsigned offset = 0; offset < section->length();) {
            throwIfCancelled();
            const unsigned block =
                std::min(section->length() - offset, memory->optimumUploadBytesFragment());
            memory->uploadBytes(section->address() + offset, block, data + offset);
            offset += block;
            done += block;
            progressTo(done);
        }
        uploaded.push_back(std::move(copy));
    }
}

void TargetInterface::checkSectionsFit(TargetMemoryInterface* memory, const Sections& sections)
{
    if (memory == nullptr || memory->addressRanges().empty())
        return;
    for (const auto& section : sections) {
        if (section->length() == 0)
            continue;
        const std::uint64_t last = std::uint64_t{section->address()} + section->length() - 1;
        if (last <= wholeSpan
            && memory->addressRanges().find(section->address(), static_cast<unsigned>(last))
                != nullptr)
            continue;
        char text[96];
        std::snprintf(text, sizeof text,
                      "The 0x%08X - 0x%08X load section does not fit the target description.",
                      section->address(), static_cast<unsigned>(last));
        throw HException(text);
    }
}

// Files -----------------------------------------------------------------------------------------

namespace {

QString quoted(const char* name) { return u'"' + QString::fromLocal8Bit(name) + u'"'; }

} // namespace

void TargetInterface::eraseLoadFile(LoadFileInterface* file, const char* name, bool image,
                                    bool differential)
{
    operation(u"Erasing "_s + quoted(name) + u" to "_s + title(), "Erase", [&] {
        const LoadFileSections& sections = file->loadFileSections();
        eraseSections(codeMemory(), &m_codeErased, sections.sections(), sections.length(), image,
                      differential, true);
        eraseSections(eeMemory(), &m_eeErased, sections.eeSections(), sections.eelength(), image,
                      differential, true);
    });
}

void TargetInterface::downloadLoadFile(LoadFileInterface* file, const char* name, bool image,
                                       bool differential)
{
    operation(u"Downloading "_s + quoted(name) + u" to "_s + title(), "Download", [&] {
        const LoadFileSections& sections = file->loadFileSections();
        downloadSections(codeMemory(), &m_codeErased, sections.sections(), sections.length(), image,
                         differential);
        if (sections.eelength() != 0)
            downloadSections(eeMemory(), &m_eeErased, sections.eeSections(), sections.eelength(),
                             image, differential);
    });
}

bool TargetInterface::verifyLoadFile(LoadFileInterface* file, const char* name, bool image,
                                     bool differential)
{
    bool matched = false;
    operation(u"Verifying "_s + quoted(name) + u" on "_s + title(), "Verify", [&] {
        const LoadFileSections& sections = file->loadFileSections();
        matched = verifySections(codeMemory(), &m_codeErased, sections.sections(),
                                 sections.length(), image, differential)
            && (sections.eelength() == 0
                || verifySections(eeMemory(), &m_eeErased, sections.eeSections(),
                                  sections.eelength(), image, differential));
        if (!matched)
            host().message(u"Verify failed"_s, TargetLogKind::Failed);
    });
    return matched;
}

void TargetInterface::uploadLoadFile(LoadFileInterface* file, const char* name,
                                     LoadFileSections& uploaded)
{
    operation(u"Uploading "_s + quoted(name) + u" from "_s + title(), "Upload", [&] {
        const LoadFileSections& sections = file->loadFileSections();
        Sections code, eeprom;
        uploadSections(codeMemory(), sections.sections(), sections.length(), code);
        if (sections.eelength() != 0)
            uploadSections(eeMemory(), sections.eeSections(), sections.eelength(), eeprom);
        for (auto& section : code)
            uploaded.add(std::move(section));
        for (auto& section : eeprom)
            uploaded.addee(std::move(section));
        host().message(u"Upload complete"_s, TargetLogKind::Complete);
    });
}

void TargetInterface::checkLoadFileFits(LoadFileInterface* file)
{
    const LoadFileSections& sections = file->loadFileSections();
    checkSectionsFit(codeMemory(), sections.sections());
    checkSectionsFit(eeMemory(), sections.eeSections());
}

// Whole memories --------------------------------------------------------------------------------

namespace {

using Memory = TargetMemoryInterface;

template <class Operation>
constexpr Operation erasingAll{"Erasing All Memory", "Erasing", "Erase", &Memory::eraseAll, true};
template <class Operation>
constexpr Operation lockingAll{"Locking All Memory", "Locking", "Lock", &Memory::lockAll, false};
template <class Operation>
constexpr Operation unlockingAll{"Unlocking All Memory", "Unlocking", "Unlock", &Memory::unlockAll,
                                 false};
template <class Operation>
constexpr Operation locking{"Locking Memory Range", "Locking", "Lock",
                            &Memory::optimumLockBytesFragment, &Memory::lockBytes};
template <class Operation>
constexpr Operation unlocking{"Unlocking Memory Range", "Unlocking", "Unlock",
                              &Memory::optimumUnlockBytesFragment, &Memory::unlockBytes};

} // namespace

void TargetInterface::wholeMemory(TargetMemoryInterface& memory, const WholeMemoryOperation& kind,
                                  const QString& name)
{
    const QByteArray what =
        (QLatin1String(kind.action) + u" entire "_s + name + u" memory"_s).toLocal8Bit();
    host().progress(0, wholeMemorySteps, what.constData(), nullptr, true);
    (memory.*kind.run)();
    progressTo(wholeMemorySteps);
}

void TargetInterface::wholeMemories(const WholeMemoryOperation& kind)
{
    operation(QLatin1String(kind.group), kind.verb, [&] {
        const std::pair<TargetMemoryInterface*, QString> memories[] = {{codeMemory(), u"FLASH"_s},
                                                                       {eeMemory(), u"EEPROM"_s}};
        for (const auto& [memory, name] : memories)
            if (memory != nullptr && (!kind.onlyErasable || memory->erase()))
                wholeMemory(*memory, kind, name);
    });
}

void TargetInterface::eraseAll()
{
    TargetLoadSession session(*this);
    m_codeErased.add(0, wholeSpan, true);
    m_eeErased.add(0, wholeSpan, true);
    wholeMemories(erasingAll<WholeMemoryOperation>);
    session.end();
}

void TargetInterface::lockAll() { wholeMemories(lockingAll<WholeMemoryOperation>); }

void TargetInterface::unlockAll() { wholeMemories(unlockingAll<WholeMemoryOperation>); }

void TargetInterface::eraseAll(TargetMemoryInterface* memory, const QString& name)
{
    constexpr auto& kind = erasingAll<WholeMemoryOperation>;
    if (memory != nullptr)
        operation(QLatin1String(kind.group), kind.verb, [&] { wholeMemory(*memory, kind, name); });
}

void TargetInterface::lockAll(TargetMemoryInterface* memory, const QString& name)
{
    constexpr auto& kind = lockingAll<WholeMemoryOperation>;
    if (memory != nullptr)
        operation(QLatin1String(kind.group), kind.verb, [&] { wholeMemory(*memory, kind, name); });
}

void TargetInterface::unlockAll(TargetMemoryInterface* memory, const QString& name)
{
    constexpr auto& kind = unlockingAll<WholeMemoryOperation>;
    if (memory != nullptr)
        operation(QLatin1String(kind.group), kind.verb, [&] { wholeMemory(*memory, kind, name); });
}

// Ranges ----------------------------------------------------------------------------------------

void TargetInterface::eraseBytes(TargetMemoryInterface* memory, AddressRanges* erased,
                                 unsigned address, unsigned length)
{
    if (memory == nullptr || length == 0)
        return;
    Sections sections;
    sections.push_back(std::make_unique<StandardLoadFileSection>("", address, length, nullptr));
    operation(u"Erasing Memory Range"_s, "Erase",
              [&] { eraseBlocks(*memory, erased, sections, length, {}); });
}

void TargetInterface::range(TargetMemoryInterface* memory, const RangeOperation& kind,
                            unsigned address, unsigned length)
{
    if (memory == nullptr || length == 0)
        return;
    Sections sections;
    sections.push_back(std::make_unique<StandardLoadFileSection>("", address, length, nullptr));
    operation(QLatin1String(kind.group), kind.verb,
              [&] { rangeSections(memory, kind, sections, length); });
}

void TargetInterface::lockBytes(TargetMemoryInterface* memory, unsigned address, unsigned length)
{
    range(memory, locking<RangeOperation>, address, length);
}

void TargetInterface::unlockBytes(TargetMemoryInterface* memory, unsigned address, unsigned length)
{
    range(memory, unlocking<RangeOperation>, address, length);
}

void TargetInterface::lockSections(TargetMemoryInterface* memory, const Sections& sections,
                                   unsigned total)
{
    rangeSections(memory, locking<RangeOperation>, sections, total);
}

void TargetInterface::unlockSections(TargetMemoryInterface* memory, const Sections& sections,
                                     unsigned total)
{
    rangeSections(memory, unlocking<RangeOperation>, sections, total);
}
