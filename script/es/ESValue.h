#pragma once

#include <cstdint>

class ESObject;
struct ESString;
struct ESText;

/// A value of a script.
struct ESValue {
    enum Tag : std::uint32_t {
        Undefined = 0,
        Null = 1,
        Boolean = 2,
        Number = 3,
        OwnedString = 4, ///< a text that isn't interned, owned by its context
        Object = 5,
        Hole = 6,  ///< an element that an array doesn't have; no value of a script
        String = 7 ///< interned
    };

    constexpr ESValue() : number(0) { }
    constexpr ESValue(double value) : tag(Number), number(value) { }
    constexpr ESValue(ESString* text) : tag(String), string(text) { }
    constexpr ESValue(ESText* value) : tag(OwnedString), text(value) { }
    constexpr ESValue(ESObject* value) : tag(Object), object(value) { }
    constexpr ESValue(const ESValue&) = default;
    /// Part by part: a value was mostly written just before, part by part, and reading it as a
    /// whole would make the processor wait for both.
    constexpr ESValue& operator=(const ESValue& other)
    {
        tag = other.tag;
        bits = other.bits;
        return *this;
    }
    static constexpr ESValue null() { return ofTag(Null); }
    static constexpr ESValue hole() { return ofTag(Hole); }
    static constexpr ESValue boolean(bool truth)
    {
        ESValue value(truth ? 1.0 : 0.0);
        value.tag = Boolean;
        return value;
    }

    constexpr bool is(Tag kind) const { return tag == kind; }
    constexpr bool isString() const { return tag == String || tag == OwnedString; }
    constexpr bool isNumber() const { return tag == Number; }
    constexpr bool isObject() const { return tag == Object; }
    constexpr bool isNothing() const { return tag <= Null; }

    std::uint32_t tag = Undefined;
    union {
        double number; ///< also of a Boolean: 0 or 1
        ESText* text;
        ESString* string;
        ESObject* object;
        std::uint64_t bits;
    };

private:
    static constexpr ESValue ofTag(Tag kind)
    {
        ESValue value;
        value.tag = kind;
        return value;
    }
};
