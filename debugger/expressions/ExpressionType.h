#pragma once

#include <QString>

#include <memory>

class MarkerType;

/// A value of the expression language, with the type that tells how to read it.
///
/// Integers keep all their 64 bits and are read by their size: a char plus 300 holds 300 and more,
/// and reads as one byte. The left operand of an operation gives type and size of the result; there
/// are no promotions. A located operand is first replaced by the value of its location. Operators
/// throw ParserException for operands that they don't take.
class ExpressionType {
public:
    enum Type {
        Boolean = 0,
        SignedInteger = 1,
        UnsignedInteger = 2,
        String = 3,
        Location = 4,
        Floating = 5,
        Undefined = 6,
    };

    ExpressionType() = default;
    explicit ExpressionType(bool value);
    /// `size` in bytes; `bits` is the width of a bit-field, else 0.
    ExpressionType(long long value, unsigned size, unsigned bits);
    ExpressionType(unsigned long long value, unsigned size, unsigned bits);
    ExpressionType(double value, unsigned size);
    /// Keeps at most `length` characters.
    ExpressionType(const char* text, int length);
    /// Takes the location.
    explicit ExpressionType(MarkerType* marker);
    /// A value of the model's type from text: digits in this radix, with or without the prefix that
    /// `toStr` writes; "true" or "false" for a boolean. Text that isn't such a value gives 0.
    ExpressionType(const ExpressionType& model, const QString& text, int radix);

    Type getType() const { return m_type; }
    /// Between integers, a boolean and floating the value goes with it; nothing else is converted.
    void setType(Type type);
    unsigned getSizeInBytes() const { return m_size; }
    unsigned getSizeInBits() const { return m_bits; }
    bool isNumberType() const { return isIntegerType() || m_type == Floating; }
    bool isIntegerType() const { return m_type == SignedInteger || m_type == UnsignedInteger; }

    /// Read by size: 1, 2 and 4 take that many low bytes. A floating value gives its bits.
    unsigned long long getUInteger() const;
    /// The same with the sign extended. A floating value is truncated towards zero, and limited to
    /// what 64 bits hold.
    long long getInteger() const;
    double getFloating() const;
    bool getBoolean() const { return m_bits64 != 0; }
    const QString& getString() const { return m_string; }
    /// Null for a value that isn't located.
    MarkerType* getMarker() const { return m_marker.get(); }

    /// Same type and equal value; integers also of equal size.
    bool equiv(const ExpressionType& other) const;
    /// This value, or that of its location, asked once.
    ExpressionType resolved() const;
    ExpressionType abs() const;

    /// The name of the type. With `bytes` an unsigned integer of one byte is a "byte".
    QString TypeToString(bool bytes = false) const;
    /// `radix` is 10, or 16, 2 and 8 with a prefix and all digits of the size. With `isUnsigned`
    /// the sign bit is a digit; `ascii` gives the characters of an integer. `format` is a printf
    /// conversion for floating values in radix 10, "%g" if null or no such conversion; in another
    /// radix their bits are shown.
    QString toStr(int radix, bool isUnsigned = false, bool ascii = false,
                  const char* format = nullptr) const;

    friend ExpressionType operator+(const ExpressionType& left, const ExpressionType& right);
    friend ExpressionType operator-(const ExpressionType& left, const ExpressionType& right);
    friend ExpressionType operator*(const ExpressionType& left, const ExpressionType& right);
    friend ExpressionType operator/(const ExpressionType& left, const ExpressionType& right);
    friend ExpressionType operator%(const ExpressionType& left, const ExpressionType& right);
    friend ExpressionType operator&(const ExpressionType& left, const ExpressionType& right);
    friend ExpressionType operator|(const ExpressionType& left, const ExpressionType& right);
    friend ExpressionType operator^(const ExpressionType& left, const ExpressionType& right);
    friend ExpressionType operator<<(const ExpressionType& left, const ExpressionType& right);
    friend ExpressionType operator>>(const ExpressionType& left, const ExpressionType& right);
    friend ExpressionType operator&&(const ExpressionType& left, const ExpressionType& right);
    friend ExpressionType operator||(const ExpressionType& left, const ExpressionType& right);
    friend ExpressionType operator==(const ExpressionType& left, const ExpressionType& right);
    friend ExpressionType operator!=(const ExpressionType& left, const ExpressionType& right);
    friend ExpressionType operator<(const ExpressionType& left, const ExpressionType& right);
    friend ExpressionType operator<=(const ExpressionType& left, const ExpressionType& right);
    friend ExpressionType operator>(const ExpressionType& left, const ExpressionType& right);
    friend ExpressionType operator>=(const ExpressionType& left, const ExpressionType& right);
    friend ExpressionType operator-(const ExpressionType& operand);
    friend ExpressionType operator~(const ExpressionType& operand);
    friend ExpressionType operator!(const ExpressionType& operand);

private:
    quint64 floatingBits() const;
    QString digits(int radix) const;
    QString characters() const;

    Type m_type = Undefined;
    quint64 m_bits64 = 0; ///< of the boolean, the integer or the double
    std::shared_ptr<MarkerType> m_marker;
    unsigned m_size = 2;
    unsigned m_bits = 0;
    QString m_string;
};
