#pragma once

#include <QString>

#include <memory>

class ExpressionType;

/// A location: a place that holds a value, which is fetched when it is asked for.
class MarkerType {
public:
    virtual ~MarkerType() = default;

    virtual std::unique_ptr<MarkerType> clone() const = 0;
    /// Which location it is: a register or an address.
    virtual QString getValueAsString() = 0;
    /// Reads it. Throws ParserException.
    virtual ExpressionType getValue() = 0;
    virtual bool equiv(const MarkerType* other) const = 0;
    /// The order in which views show locations.
    virtual bool lt(const MarkerType* other) const = 0;
    /// Writes it, from the text of an expression's value. Throws ParserException.
    virtual void setValue(QString value) = 0;
};

/// A location on a target.
class DebugMarkerType : public MarkerType {
public:
    enum LocationKind {
        Peripheral = 0,
        Eeprom = 1,
        Code = 2,
        Data = 3,
        Register = 4,
        Constant = 5
    };

    QString getValueAsString() override;
    bool equiv(const MarkerType* other) const override;
    bool lt(const MarkerType* other) const override;

    virtual QString registerNumberToName(unsigned number) = 0;
    /// Whether register `a` is shown ahead of register `b`.
    virtual bool registerNumberLT(unsigned a, unsigned b) const = 0;

    LocationKind kind() const { return m_kind; }
    bool isMemory() const { return m_kind < Register; }
    bool isLittleEndian() const { return m_littleEndian; }
    /// Bytes of a target register.
    unsigned registerLength() const { return m_registerLength; }
    /// Address, number of the register, or low half of the constant.
    unsigned base() const { return m_base; }
    /// High half of a constant.
    unsigned upperBase() const { return m_upperBase; }
    /// Bytes from the base.
    unsigned offset() const { return m_offset; }
    /// Where it lies in its memory.
    unsigned address() const { return m_base + m_offset; }
    /// Bytes.
    unsigned size() const { return m_size; }
    /// Of a bit-field in the `size` bytes; the size is 0 for a whole value.
    int bitOffset() const { return m_bitOffset; }
    int bitSize() const { return m_bitSize; }
    bool isBitField() const { return m_bitOffset != 0 || m_bitSize != 0; }
    quint64 constant() const { return quint64{m_upperBase} << 32 | m_base; }

protected:
    LocationKind m_kind = Data;
    bool m_littleEndian = true;
    unsigned m_registerLength = 0;
    unsigned m_base = 0;
    unsigned m_upperBase = 0;
    unsigned m_offset = 0;
    unsigned m_size = 0;
    int m_bitOffset = 0;
    int m_bitSize = 0;
};
