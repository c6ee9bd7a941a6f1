#pragma once

#include <cstdint>

class QString;
class ESObject;
struct ESString;

/// A value of a script.
struct ESValue {
    enum Tag : std::uint32_t {
        Undefined = 0,
        Null = 1,
        Boolean = 2,
        Number = 3,
        OwnedString = 4, ///< a QString of the host
        Object = 5,
        String = 7 ///< interned
    };

    constexpr ESValue() : number(0) { }
    constexpr ESValue(double value) : tag(Number), number(value) { }
    constexpr ESValue(ESString* text) : tag(String), string(text) { }
    constexpr ESValue(ESObject* value) : tag(Object), object(value) { }
    static constexpr ESValue null()
    {
        ESValue value;
        value.tag = Null;
        return value;
    }
    static constexpr ESValue boolean(bool truth)
    {
        ESValue value(truth ? 1.0 : 0.0);
        value.tag = Boolean;
        return value;
    }

    constexpr bool is(Tag kind) const { return tag == kind; }

    std::uint32_t tag = Undefined;
    union {
        double number; ///< also of a Boolean: 0 or 1
        const QString* text;
        ESString* string;
        ESObject* object;
    };
};
