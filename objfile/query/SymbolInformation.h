#pragma once

#include <QString>

/// A symbol as the browsers show it. Addresses and sizes are bytes.
class SymbolInformation {
public:
    enum ItemType {
        Object = 0x1001,   ///< has a type
        Label = 0x1003,    ///< has none
        Absolute = 0x1004, ///< in no section
        Function = 0x1005,
    };

    /// What a symbol is known by.
    struct Texts {
        QString symbolName;
        QString section;
        QString dataType;
        QString fileName; ///< of the declaration; empty if not known
    };

    /// `line` is that of the declaration, or 0; `access` tells whether the symbol is public.
    SymbolInformation(unsigned start, unsigned size, int line, ItemType itemType, bool access,
                      Texts texts)
        : m_start(start),
          m_size(size),
          m_line(line),
          m_itemType(itemType),
          m_access(access),
          m_texts(std::move(texts))
    {
    }

    unsigned start() const { return m_start; }
    unsigned size() const { return m_size; }
    /// The last address; one below the start for a symbol without a size.
    unsigned end() const { return m_start + m_size - 1; }
    int line() const { return m_line; }
    bool access() const { return m_access; }
    ItemType itemType() const { return m_itemType; }
    const QString& symbolName() const { return m_texts.symbolName; }
    const QString& fileNameString() const { return m_texts.fileName; }
    const QString& dataTypeString() const { return m_texts.dataType; }
    const QString& sectionString() const { return m_texts.section; }

    /// Eight hexadecimal digits.
    QString valueString() const { return hexadecimal(m_start); }
    QString startString() const { return hexadecimal(m_start); }
    /// Empty for a symbol without a size.
    QString endString() const { return m_size > 0 ? hexadecimal(end()) : QString(); }
    /// Decimal.
    QString sizeString() const { return QString::number(m_size); }
    /// "00001000-00001003", or the start alone.
    QString rangeString() const
    {
        return m_size > 0 ? startString() + u'-' + endString() : startString();
    }

private:
    static QString hexadecimal(unsigned value)
    {
        return QStringLiteral("%1").arg(value, 8, 16, QLatin1Char('0'));
    }

    unsigned m_start;
    unsigned m_size;
    int m_line;
    ItemType m_itemType;
    bool m_access;
    Texts m_texts;
};

/// A memory segment of the linker.
struct SegmentInformation {
    QString name;
    QString addressSpace;
    unsigned start;
    unsigned size;
    unsigned used; ///< bytes of the sections in it
};

/// A run of placed items of one section without a gap.
struct SectionInformation {
    QString name;
    QString segment; ///< that it lies in; empty if none
    unsigned start;
    unsigned size;
    QString kind; ///< in lower case
};
