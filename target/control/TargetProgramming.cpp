#include "target/control/TargetProgramming.h"

#include "base/HException.h"
#include "objfile/loadfiles/CodeBuffer.h"
#include "objfile/loadfiles/LoadFile.h"
#include "objfile/loadfiles/LoadFileFactory.h"
#include "target/TargetLoadSession.h"

#include <algorithm>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Action {
    const char* name;
    bool (TargetMemoryInterface::*offered)() const; ///< null: always
};

using Memory = TargetMemoryInterface;

constexpr Action actionTable[] = {
    {"Erase, Program and Verify", &Memory::eraseRangeSupported},
    {"Erase All, Program and Verify", &Memory::eraseAllSupported},
    {"Erase Only", &Memory::eraseRangeSupported},
    {"Program Only", nullptr},
    {"Verify Only", nullptr},
    {"Erase All", &Memory::eraseAllSupported},
    {"Erase Range", &Memory::eraseRangeSupported},
    {"Lock All", &Memory::lockAllSupported},
    {"Lock", &Memory::lockRangeSupported},
    {"Lock Range", &Memory::lockRangeSupported},
    {"Unlock All", &Memory::unlockAllSupported},
    {"Unlock", &Memory::unlockRangeSupported},
    {"Unlock Range", &Memory::unlockRangeSupported},
};

struct UploadType {
    const char* name;
    const char* format; ///< of CodeBuffer::make
};
constexpr UploadType uploadTable[] = {{"Binary", "bin"},
                                      {"Intel Hex", "hex"},
                                      {"Hex", "lst"},
                                      {"TI Hex", "txt"},
                                      {"Motorola S-Record", "srec"}};

} // namespace

QStringList TargetProgramming::actions(const TargetMemoryInterface& memory)
{
    QStringList result;
    for (const Action& action : actionTable)
        if (action.offered == nullptr || (memory.*action.offered)())
            result << QLatin1String(action.name);
    return result;
}

QStringList TargetProgramming::uploadTypes()
{
    QStringList result;
    for (const UploadType& type : uploadTable)
        result << QLatin1String(type.name);
    return result;
}

unsigned TargetProgramming::number(const QString& text, const char* failure)
{
    const auto value = m_host.evaluate(text);
    if (!value || *value > std::numeric_limits<unsigned>::max())
        throw HException(failure);
    return static_cast<unsigned>(*value);
}

std::unique_ptr<LoadFileInterface> TargetProgramming::open(const QString& path, const QString& type,
                                                           const QString& address)
{
    LoadFileFactory* const factory = LoadFileFactory::instance();
    const QByteArray name = path.toLocal8Bit();
    const char* const detected = factory->detect(name.constData());
    const QByteArray format = type.isEmpty() ? QByteArray(detected) : type.toLatin1();
    std::unique_ptr<LoadFileInterface> file;
    try {
        file.reset(factory->create(name.constData(), format.constData()));
    } catch (const HException& failure) {
        throw HException("invalid file: " + failure.message());
    }
    if (!file)
        throw HException("invalid file");
    if (!address.isEmpty())
        file->setLoadAddress(number(address, "invalid load address"));
    return file;
}

bool TargetProgramming::doProgrammingAction(const QString& memory, const QString& file,
                                            const QString& type, const QString& address,
                                            const QString& size, const QString& action)
{
    m_target.selectMemoryInterface(memory);
    TargetLoadSession session(m_target);
    try {
        const bool matched = act(memory, file, type, address, size, action);
        session.end();
        return matched;
    } catch (const BenchCancelException&) {
        throw HException((action + u" cancelled"_s).toStdString());
    }
}

bool TargetProgramming::act(const QString& name, const QString& file, const QString& type,
                            const QString& address, const QString& size, const QString& action)
{
    TargetMemoryInterface* const memory = m_target.getSelectedMemoryInterface();
    if (memory == nullptr || !actions(*memory).contains(action))
        throw HException("the memory does not support the action");
    if (action == u"Erase All")
        m_target.eraseAll(memory, name);
    else if (action == u"Lock All")
        m_target.lockAll(memory, name);
    else if (action == u"Unlock All")
        m_target.unlockAll(memory, name);
    else if (action.endsWith(u"Range"))
        actOnRange(*memory, address, size, action);
    else
        return actOnFile(*memory, name, file, *open(file, type, address), action);
    return true;
}

bool TargetProgramming::actOnRange(TargetMemoryInterface& memory, const QString& address,
                                   const QString& size, const QString& action)
{
    const unsigned start = number(address, "invalid start address");
    const unsigned length = number(size, "invalid size");
    if (action == u"Erase Range")
        m_target.eraseBytes(&memory, nullptr, start, length);
    else if (action == u"Lock Range")
        m_target.lockBytes(&memory, start, length);
    else
        m_target.unlockBytes(&memory, start, length);
    return true;
}

bool TargetProgramming::actOnFile(TargetMemoryInterface& memory, const QString& name,
                                  const QString& path, LoadFileInterface& file,
                                  const QString& action)
{
    const LoadFileSections::List& sections = file.loadFileSections().sections();
    const unsigned total = file.loadFileSections().length();
    m_target.checkSectionsFit(&memory, sections);
    AddressRanges& erased = m_target.codeErasedRanges();
    if (action == u"Erase Only")
        return m_target.eraseSections(&memory, &erased, sections, total, false, false, false), true;
    if (action == u"Lock")
        return m_target.lockSections(&memory, sections, total), true;
    if (action == u"Unlock")
        return m_target.unlockSections(&memory, sections, total), true;
    if (action == u"Erase, Program and Verify")
        m_target.eraseSections(&memory, &erased, sections, total, false, false, true);
    else if (action == u"Erase All, Program and Verify")
        m_target.eraseAll(&memory, name);
    if (action != u"Verify Only") {
        m_target.downloadSections(&memory, &erased, sections, total, false, false);
        m_target.flushMemoryInterfaces();
    }
    if (action == u"Program Only")
        return true;
    if (!m_target.verifySections(&memory, &erased, sections, total, false, false)) {
        m_control.offerDifferences(m_target, path, file);
        return false;
    }
    if (action == u"Verify Only")
        m_host.inform(TargetControl::verifyFoundNoErrors(), u"Verify Complete"_s);
    return true;
}

void TargetProgramming::upload(const QString& memoryName, const QString& file, const QString& type,
                               const QString& address, const QString& size)
{
    const unsigned start = number(address, "invalid start address");
    const unsigned length = number(size, "invalid length");
    if (length > LoadFileInterface::MaximumContiguousSpan)
        throw HException("invalid length");
    m_target.selectMemoryInterface(memoryName);
    LoadFileSections::List wanted, uploaded;
    wanted.push_back(std::make_unique<StandardLoadFileSection>("", start, length, nullptr));
    m_target.uploadSections(m_target.getSelectedMemoryInterface(), wanted, length, uploaded);
    const auto* const format =
        std::find_if(std::begin(uploadTable), std::end(uploadTable),
                     [&](const UploadType& row) { return type == QLatin1String(row.name); });
    if (format == std::end(uploadTable))
        throw HException("unknown upload type");
    const std::unique_ptr<CodeBuffer> out = CodeBuffer::make(format->format, file.toStdString());
    out->setAddress(start);
    for (const auto& section : uploaded)
        for (unsigned i = 0; i < section->length(); ++i)
            out->addByte(section->data(false)[i]);
    out->endRecord(0);
}
