#pragma once

#include "script/es/ESProperty.h"

#include <QHash>

#include <memory>
#include <vector>

class ESClass;
class ESCode;
class ESObject;

/// What makes an object callable: its code, or a native function's number of arguments, and the
/// scope that it was made in.
struct ESClosure {
    int parameterCount = 0;
    int localCount = 0;
    ESCode* code = nullptr;
    ESObject* scope = nullptr;
};

/// An object of a script, or a node of a scope chain. Lives until its context dies.
///
/// Elements of arrays stand in a vector of their own as far as they follow one another from 0;
/// all other properties stand in the order of their insertion.
class ESObject {
public:
    ESObject* prototype = nullptr; ///< of a scope node: the next node
    ESValue primitive;             ///< of a scope node: the object that is searched
    ESClosure* callClosure = nullptr;
    ESClosure* constructClosure = nullptr;
    ESClass* objectClass = nullptr; ///< null for a scope node
    std::vector<ESProperty> properties;
    std::vector<ESValue> elements;
    bool hasElements = false; ///< whether this is an array
    bool captured = false;    ///< of a scope node: something may refer to it after its function
    int nativeIndex = -1;
    ESObject* nextFree = nullptr;
    ESObject* nextObject = nullptr;

    bool isCallable() const { return callClosure != nullptr; }

    /// An own property, or null; elements aren't among these.
    ESProperty* find(const ESString* name);
    const ESProperty* find(const ESString* name) const
    {
        return const_cast<ESObject*>(this)->find(name);
    }
    ESProperty& append(ESString* name, std::uint32_t flags, const ESValue& value);
    /// Leaves an entry without a name.
    void erase(ESProperty* property);
    /// Makes it as new.
    void clear();

    /// An own element, or null.
    ESValue* element(int index)
    {
        const auto at = static_cast<std::size_t>(index);
        return index >= 0 && at < elements.size() && !elements[at].is(ESValue::Hole) ? &elements[at]
                                                                                     : nullptr;
    }

private:
    /// Objects with more properties than this have an index.
    static constexpr std::size_t IndexFrom = 8;
    using Index = QHash<const ESString*, int>;

    std::unique_ptr<Index> m_index;
};
