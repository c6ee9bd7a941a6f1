#include "cli/MemoryMapCheck.h"

#include "build/memorymap/MemoryMap.h"
#include "build/memorymap/SimpleExpressionParser.h"
#include "cli/CheckReport.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

enum class NumberKind { Expression, Plain, Symbolic, Register };

struct NumberRow {
    MemoryMapElement::ElementType type;
    const char* attribute;
    NumberKind kind;
};

constexpr NumberRow Numbers[] = {
    {MemoryMapElement::MemorySegment, "start", NumberKind::Expression},
    {MemoryMapElement::MemorySegment, "size", NumberKind::Symbolic},
    {MemoryMapElement::ProgramSection, "start", NumberKind::Expression},
    {MemoryMapElement::ProgramSection, "size", NumberKind::Symbolic},
    {MemoryMapElement::RegisterGroup, "start", NumberKind::Expression},
    {MemoryMapElement::RegisterGroup, "size", NumberKind::Symbolic},
    {MemoryMapElement::Register, "start", NumberKind::Register},
    {MemoryMapElement::Register, "size", NumberKind::Plain},
    {MemoryMapElement::BitField, "start", NumberKind::Expression},
    {MemoryMapElement::BitField, "size", NumberKind::Plain},
    {MemoryMapElement::Enum, "start", NumberKind::Expression},
};

bool isExpression(const QString& text)
{
    bool ok = false;
    SimpleExpressionParser::instance().getUInteger(text.toUtf8().constData(), ok);
    return ok;
}

bool isNumber(NumberKind kind, const QString& text)
{
    static const QRegularExpression symbol(u"^[A-Za-z_.$][\\w.$]*$"_s);
    bool ok = false;
    switch (kind) {
    case NumberKind::Plain: text.toUInt(&ok, 0); return ok;
    case NumberKind::Symbolic: return symbol.match(text).hasMatch() || isExpression(text);
    case NumberKind::Register:
        // In parentheses stands a register of a bank, which isn't in memory.
        return text.startsWith(u'(') || isExpression(text);
    case NumberKind::Expression: break;
    }
    return isExpression(text);
}

class MemoryMapCheck {
public:
    MemoryMapCheck(CheckReport& report, const QString& path) : m_report(report), m_path(path) { }

    void run()
    {
        if (!m_map.load(m_path, QString(), true)) {
            const QString text = m_map.errorText();
            m_report.error(m_path, m_map.errorLine(), text.isEmpty() ? u"is empty"_s : text);
            return;
        }
        for (const MemoryMapElement* element : m_map.getAllElements()) {
            if (element->hasTag("Import"))
                error(*element,
                      u"the import %1 can't be read"_s.arg(element->attribute("filename")));
            checkNumbers(*element);
        }
        checkNames();
        if (m_map.documentType() == u"Board_Memory_Definition_File")
            checkOverlaps();
    }

private:
    void error(const MemoryMapElement& element, const QString& text)
    {
        m_report.error(fileOf(element), element.line(), text);
    }

    /// Imported files have their roots in the tree.
    QString fileOf(const MemoryMapElement& element) const
    {
        for (const XMLElement* at = &element; at; at = at->parent())
            if (const XMLElement* import = static_cast<const MemoryMapElement*>(at)->import())
                return QFileInfo(m_path).path() + u'/' + import->attribute("filename");
        return m_path;
    }

    void checkNumbers(const MemoryMapElement& element)
    {
        for (const auto& [type, attribute, kind] : Numbers) {
            const QString text = element.attribute(attribute).trimmed();
            if (element.type() != type || !element.hasAttribute(attribute) || text.contains(u"$("_s)
                || isNumber(kind, text))
                continue;
            error(element,
                  u"the %1 \"%2\" of %3 is no number"_s.arg(QLatin1String(attribute), text,
                                                            describe(element)));
        }
    }

    void checkNames()
    {
        QSet<QString> names;
        for (const MemoryMapElement* segment : m_map.getSegments(false)) {
            if (segment->name().isEmpty())
                error(*segment, u"the segment has no name"_s);
            else if (names.contains(segment->name()))
                error(*segment, u"there is another segment "_s + segment->name());
            names.insert(segment->name());
        }
    }

    void checkOverlaps()
    {
        QList<MemoryMapElement*> segments = m_map.getSegments(false);
        erase_if(segments, [](const MemoryMapElement* segment) {
            return !segment->hasAddress() || segment->size() == 0;
        });
        std::stable_sort(segments.begin(), segments.end(),
                         [](const MemoryMapElement* a, const MemoryMapElement* b) {
                             return a->address() < b->address();
                         });
        for (qsizetype i = 0; i < segments.size(); ++i)
            for (qsizetype k = i + 1;
                 k < segments.size() && end(*segments[i]) > segments[k]->address(); ++k)
                if (segments[i]->addressSpace() == segments[k]->addressSpace()
                    && !isPart(*segments[k], *segments[i]))
                    reportOverlap(*segments[i], *segments[k]);
    }

    /// The first address behind the segment.
    static quint64 end(const MemoryMapElement& segment)
    {
        return quint64{segment.address()} + segment.size();
    }

    /// A place in a larger segment that the map names for the linker.
    static bool isPart(const MemoryMapElement& part, const MemoryMapElement& whole)
    {
        return part.hasAddressSymbol() && end(part) <= end(whole);
    }

    void reportOverlap(const MemoryMapElement& lower, const MemoryMapElement& upper)
    {
        const quint64 last = std::min(end(lower), end(upper)) - 1;
        error(upper,
              u"segment %1 lies over segment %2 in range 0x%3 - 0x%4"_s.arg(
                  upper.name(), lower.name(), hex(upper.address()), hex(last)));
    }

    static QString hex(quint64 address)
    {
        return QString::number(address, 16).toUpper().rightJustified(4, u'0');
    }

    static QString describe(const MemoryMapElement& element)
    {
        return QString::fromUtf8(element.tag()) + u' ' + element.name();
    }

    CheckReport& m_report;
    QString m_path;
    MemoryMap m_map;
};

} // namespace

void checkMemoryMap(CheckReport& report, const QString& path)
{
    MemoryMapCheck(report, path).run();
}
