#pragma once

#include "debugger/interface/MemoryDump.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

struct Frame;
class SymbolicDebuggerInterface;

/// What a memory view asks of the window that it belongs to.
class MemoryViewHost {
public:
    virtual ~MemoryViewHost() = default;

    /// The frame in which addresses are evaluated; null for none.
    virtual Frame* selectedFrame() = 0;
    virtual bool ask(const QString& question) = 0;
    virtual void displayError(const QString& text) = 0;
};

/// A range of target memory as a table. What has changed since it was shown last is marked.
class MemoryView : private MemoryDump {
public:
    /// The base of the numbers; the lowest bit makes decimal ones signed.
    enum Radix {
        Binary = 2,
        Octal = 8,
        UnsignedDecimal = 10,
        SignedDecimal = 11,
        Hexadecimal = 16
    };

    struct Cell {
        QString text;
        unsigned style; ///< of the background: VariableViewItem::ChangedStyle or NoStyle
    };
    struct Row {
        unsigned address;
        std::vector<Cell> cells;
        QString ascii; ///< with a data size of 1
    };

    /// A larger range is shown only if the user says so; bytes.
    static constexpr unsigned BigSize = 0x1000;

    /// Both outlive the view.
    MemoryView(SymbolicDebuggerInterface& debugger, MemoryViewHost& host)
        : m_debugger(debugger),
          m_host(host)
    {
    }

    // What the user has chosen. It is shown by the next evaluate() or redisplay().
    /// Expressions.
    void setAddressText(const QString& text) { m_addressText = text; }
    void setSizeText(const QString& text) { m_sizeText = text; }
    const QString& addressText() const { return m_addressText; }
    const QString& sizeText() const { return m_sizeText; }
    /// A name of the debugger's memory spaces.
    void setAddressSpace(const QString& space);
    void setRadix(Radix radix) { m_radix = radix; }
    /// 1, 2 or 4 bytes.
    void setDataSize(unsigned bytes);
    /// Data of a row.
    void setColumns(unsigned columns) { m_columns = columns; }
    /// Whether the range is evaluated at each stop, or only when the user asks for it.
    void setAutoEvaluate(bool on) { m_autoEvaluate = on; }
    /// Whether the target is read in units of the data size.
    void setAccessByDisplaySize(bool on) { m_accessByDisplaySize = on; }

    /// Computes the range and shows it. A failure is told to the host, and the view stays.
    void evaluate();
    /// Shows the range as it is now.
    void redisplay();
    /// After a stop.
    void update() { m_autoEvaluate ? evaluate() : redisplay(); }
    /// Empties the view, at the end of a session.
    void reset();

    unsigned address() const { return m_address; }
    unsigned size() const { return m_size; }
    /// The heads of the columns.
    QStringList formatDisplay() const;
    const std::vector<Row>& rows() const { return m_rows; }
    QString addressOf(const Row& row) const;

    /// Writes what the user has put in place of a cell, a number in the radix. False, with nothing
    /// written, if it isn't one that fits.
    bool onItemRenamed(std::size_t row, std::size_t cell, const QString& text);

    // The range moves by its size, or by a row.
    void buttonBigJumpUpPressed() { moveBy(-qint64(m_size)); }
    void buttonBigJumpDownPressed() { moveBy(m_size); }
    void buttonSmallJumpUpPressed() { moveBy(-qint64(rowSize())); }
    void buttonSmallJumpDownPressed() { moveBy(rowSize()); }

    // Files. What has no address of its own goes to the start of the range; nothing is written if
    // some of it doesn't fit into memory. Throw HException.
    void loadFromTIHex(const QString& path) { loadFrom("tihex", path); }
    void loadFromIntelHex(const QString& path) { loadFrom("ihex", path); }
    void loadFromHex(const QString& path) { loadFrom("hex", path); }
    void loadFromSRecord(const QString& path) { loadFrom("srec", path); }
    void loadFromBinary(const QString& path) { loadFrom("bin", path); }
    void saveToTIHex(const QString& path) { saveTo("txt", path); }
    void saveToIntelHex(const QString& path) { saveTo("hex", path); }
    void saveToHex(const QString& path) { saveTo("lst", path); }
    void saveToSRecord(const QString& path) { saveTo("srec", path); }
    void saveToBinary(const QString& path) { saveTo("bin", path); }

private:
    void addEntry(unsigned address, unsigned value) override;
    /// Nothing, with the failure told, if it has no value.
    std::optional<unsigned> expressionValue(Frame* frame, const QString& text);
    bool checkAddressSize(unsigned address, unsigned size);
    QString cellText(unsigned value) const;
    int cellWidth() const;
    unsigned rowSize() const { return m_columns * m_dataSize; }
    void moveBy(qint64 bytes);
    void loadFrom(const char* format, const QString& path);
    void saveTo(const char* format, const QString& path);

    SymbolicDebuggerInterface& m_debugger;
    MemoryViewHost& m_host;
    QString m_addressText;
    QString m_sizeText;
    QString m_space;
    Radix m_radix = Hexadecimal;
    unsigned m_dataSize = 1;
    unsigned m_columns = 8;
    bool m_autoEvaluate = false;
    bool m_accessByDisplaySize = false;
    unsigned m_address = 0;
    unsigned m_size = 0;
    std::vector<Row> m_rows;
    QHash<unsigned, std::size_t> m_rowOf; ///< by address
    QHash<unsigned, unsigned> m_values;   ///< that were shown last, by address
};
