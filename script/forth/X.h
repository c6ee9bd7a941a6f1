#pragma once

#include "script/forth/ForthException.h"

#include <QString>

#include <bit>
#include <compare>
#include <cstdint>
#include <utility>

class PCFA;
class PMemory;
class pcode;

/// A cell: a tagged value of three words. Only a string has anything to count when it is copied;
/// segments and definitions belong to the context and live as long as it does.
///
/// Operands of the wrong kind throw ForthException; integers wrap around.
class X {
public:
    enum class Kind : std::uint32_t {
        DataAddress = 1,
        CodeAddress = 2,
        Literal = 3,
        Float = 4,
        String = 6,
    };

    X() : X(0LL) { }
    X(int value) : X(static_cast<long long>(value)) { }
    X(long value) : X(static_cast<long long>(value)) { }
    X(long long value) : m_kind(Kind::Literal), m_integer(value), m_segment(nullptr) { }
    X(double value)
        : m_kind(Kind::Float),
          m_integer(std::bit_cast<qint64>(value)),
          m_segment(nullptr)
    {
    }
    X(const QString& text) : m_kind(Kind::String), m_integer(0), m_text(new Text{1, text}) { }
    /// The address of a cell.
    X(unsigned long offset, PMemory* segment)
        : m_kind(Kind::DataAddress),
          m_integer(static_cast<qint64>(offset)),
          m_segment(segment)
    {
    }
    explicit X(pcode* code) : m_kind(Kind::CodeAddress), m_integer(0), m_code(code) { }
    X(bool) = delete; // a flag is all ones: flag(bool)
    static X flag(bool value) { return X(value ? -1LL : 0LL); }

    X(const X& other) : m_kind(other.m_kind), m_integer(other.m_integer), m_segment(other.m_segment)
    {
        if (m_kind == Kind::String)
            ++(m_text = other.m_text)->references;
    }
    X(X&& other)
    noexcept : m_kind(other.m_kind),
               m_integer(other.m_integer),
               m_segment(other.m_segment)
    {
        if (m_kind == Kind::String)
            other.m_kind = Kind::Literal;
    }
    X& operator=(const X& other)
    {
        X copy(other);
        return *this = std::move(copy);
    }
    X& operator=(X&& other) noexcept
    {
        if (m_kind == Kind::String || other.m_kind == Kind::String) {
            swap(other);
        } else {
            m_kind = other.m_kind;
            m_integer = other.m_integer;
            m_segment = other.m_segment;
        }
        return *this;
    }
    ~X()
    {
        if (m_kind == Kind::String && --m_text->references == 0)
            delete m_text;
    }

    Kind kind() const { return m_kind; }
    bool is_data_addr() const { return m_kind == Kind::DataAddress; }
    bool is_code_addr() const { return m_kind == Kind::CodeAddress; }
    bool is_lit() const { return m_kind == Kind::Literal; }
    bool isFloat() const { return m_kind == Kind::Float; }
    bool isString() const { return m_kind == Kind::String; }

    qint64 lit() const
    {
        if (!is_lit())
            wrongKind(Kind::Literal);
        return m_integer;
    }
    double flt() const
    {
        if (!isFloat())
            wrongKind(Kind::Float);
        return std::bit_cast<double>(m_integer);
    }
    const QString& str() const
    {
        if (!isString())
            wrongKind(Kind::String);
        return m_text->text;
    }
    /// The word that a code address stands for.
    PCFA* getCFA() const;
    /// Of a data address.
    PMemory* segment() const
    {
        if (!is_data_addr())
            wrongKind(Kind::DataAddress);
        return m_segment;
    }
    qint64 offset() const { return segment() ? m_integer : 0; }
    X fetch() const;
    void store(const X& value) const;

    /// What a branch takes for true: everything but the numbers 0.
    bool isTrue() const
    {
        return m_kind == Kind::Float ? flt() != 0 : m_kind != Kind::Literal || m_integer != 0;
    }

    /// As `.` prints it. A float without a fraction ends in ".".
    QString toString() const;

    friend X operator+(const X& a, const X& b)
    {
        if (a.is_lit() && b.is_lit())
            return wrapped(bits(a) + bits(b));
        return relocatedSum(a, b);
    }
    friend X operator-(const X& a, const X& b)
    {
        if (a.is_lit() && b.is_lit())
            return wrapped(bits(a) - bits(b));
        return relocatedDifference(a, b);
    }
    friend X operator*(const X& a, const X& b)
    {
        demandLiterals(a, b);
        return wrapped(bits(a) * bits(b));
    }
    /// Division rounds down, so that the remainder has the divisor's sign.
    friend X operator/(const X& a, const X& b);
    friend X operator%(const X& a, const X& b);
    friend X operator&(const X& a, const X& b)
    {
        demandLiterals(a, b);
        return wrapped(bits(a) & bits(b));
    }
    friend X operator|(const X& a, const X& b)
    {
        demandLiterals(a, b);
        return wrapped(bits(a) | bits(b));
    }
    friend X operator^(const X& a, const X& b)
    {
        demandLiterals(a, b);
        return wrapped(bits(a) ^ bits(b));
    }
    X operator~() const
    {
        demandLiterals(*this, *this);
        return wrapped(~bits(*this));
    }
    X operator-() const
    {
        demandLiterals(*this, *this);
        return wrapped(0 - bits(*this));
    }

    /// Cells of different kinds differ, as do addresses in different segments.
    friend bool operator==(const X& a, const X& b)
    {
        if (a.is_lit() && b.is_lit())
            return a.m_integer == b.m_integer;
        return same(a, b);
    }
    /// Only cells of one kind have an order: numbers, strings, and addresses in one segment.
    friend std::partial_ordering operator<=>(const X& a, const X& b)
    {
        if (a.is_lit() && b.is_lit())
            return a.m_integer <=> b.m_integer;
        return order(a, b);
    }
    /// The order of literals without a sign.
    static bool below(const X& a, const X& b);

private:
    struct Text {
        qsizetype references;
        QString text;
    };

    static quint64 bits(const X& x) { return static_cast<quint64>(x.m_integer); }
    static X wrapped(quint64 value) { return X(static_cast<long long>(value)); }
    static void demandLiterals(const X& a, const X& b)
    {
        if (!a.is_lit() || !b.is_lit())
            invalidCombination();
    }
    static X relocatedSum(const X& a, const X& b);
    static X relocatedDifference(const X& a, const X& b);
    static bool same(const X& a, const X& b);
    static std::partial_ordering order(const X& a, const X& b);
    [[noreturn]] static void invalidCombination();
    [[noreturn]] static void wrongKind(Kind wanted);

    void swap(X& other) noexcept
    {
        std::swap(m_kind, other.m_kind);
        std::swap(m_integer, other.m_integer);
        std::swap(m_segment, other.m_segment);
    }

    Kind m_kind;
    qint64 m_integer; ///< an integer, the bits of a double, or the offset in a segment
    union {
        PMemory* m_segment;
        pcode* m_code;
        Text* m_text;
    };
};
