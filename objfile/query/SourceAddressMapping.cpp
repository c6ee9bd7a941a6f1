#include "objfile/query/SourceAddressMapping.h"

#include "objfile/model/TOBFFragment.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/query/SymbolicDebug.h"

namespace {

using Position = SymbolicDebug::Position;

HString* fileOf(const TOBFLocus* locus)
{
    return locus->filename() != nullptr ? locus->filename()->file() : nullptr;
}

/// The place of the first item of the run that shares the item's source position.
Position firstOfStatement(Position place)
{
    const TOBFLocus* locus = (*place)->locus();
    const Position begin = (*place)->fragment()->insns().begin();
    while (place != begin) {
        const Position before = std::prev(place);
        if ((*before)->kind() == TOBFKind::Locus || (*before)->locus() != locus)
            break;
        place = before;
    }
    return place;
}

/// Bytes of the items from `place` on that have this position. `ended` tells whether another
/// position follows in the fragment.
unsigned lengthOfRun(Position place, const TOBFLocus* locus, bool& ended)
{
    const Position end = (*place)->fragment()->insns().end();
    unsigned length = 0;
    for (; place != end && (*place)->locus() == locus; ++place)
        length += static_cast<unsigned>((*place)->length());
    ended = place != end;
    return length;
}

} // namespace

bool SourceAddressMapping::AddressToSource(unsigned address, QString& file, unsigned& line) const
{
    const Position* place = m_debug->findItem(address);
    if (place == nullptr || (**place)->locus() == nullptr)
        return false;
    const TOBFLocus* locus = (**place)->locus();
    HString* name = fileOf(locus);
    file = name != nullptr ? QString::fromUtf8(name->text(), static_cast<qsizetype>(name->length()))
                           : QStringLiteral("???");
    line = static_cast<unsigned>(locus->line());
    return true;
}

bool SourceAddressMapping::AddressToRange(unsigned address, unsigned& start, unsigned& length) const
{
    const Position* place = m_debug->findItem(address);
    if (place == nullptr || (**place)->locus() == nullptr)
        return false;
    const Position first = firstOfStatement(*place);
    start = static_cast<unsigned>((*first)->pc());
    bool ended = false;
    length = lengthOfRun(first, (*first)->locus(), ended);
    return true;
}

bool SourceAddressMapping::SourceToAddress(const QString& file, unsigned line,
                                           unsigned& address) const
{
    HString* name = HString::intern(file.toStdString());
    SymbolicDebug::Positions::const_iterator found;
    if (!m_debug->locate(name, line, found))
        return false;
    const auto* locus = static_cast<TOBFLocus*>(**found);
    if (fileOf(locus) != name || static_cast<unsigned>(locus->line()) != line)
        return false;
    address = static_cast<unsigned>(locus->pc());
    return true;
}

bool SourceAddressMapping::SourceToAddress(const QString& file, unsigned line, unsigned& address,
                                           unsigned& length) const
{
    if (!SourceToAddress(file, line, address))
        return false;
    SymbolicDebug::Positions::const_iterator found;
    m_debug->locate(HString::intern(file.toStdString()), line, found);
    const Position behind = std::next(*found);
    bool ended = false;
    if (behind != (**found)->fragment()->insns().end())
        length = lengthOfRun(behind, static_cast<TOBFLocus*>(**found), ended);
    return ended;
}

const SourceAddressMapping::Lines& SourceAddressMapping::getLineNumbers(const QString& file) const
{
    static const Lines none;
    const auto it = m_lines.find(HString::intern(file.toStdString()));
    return it != m_lines.end() ? it->second : none;
}

QStringList SourceAddressMapping::fileNames() const
{
    QStringList names;
    for (const auto& [file, lines] : m_lines)
        if (file != nullptr)
            names.append(QString::fromStdString(file->str()));
    return names;
}
