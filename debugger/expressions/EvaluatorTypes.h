#pragma once

#include "base/Pool.h"

#include <QString>

#include <functional>
#include <map>
#include <tuple>

class TOBFType;

/// The evaluator's own types: the basic ones of C, and those that casts and "&" make. Each is made
/// once and lives as long as this object.
class EvaluatorTypes {
public:
    EvaluatorTypes();

    /// By the code of a SimpleType.
    TOBFType* simple(int code, bool isUnsigned) const;
    /// An unsigned integer of this size, among them the three bytes of an address; null for others.
    TOBFType* unsignedOfSize(unsigned size) const;
    /// Taken where none is given.
    TOBFType* defaultType() const { return simple(2, true); }

    /// Wide enough for this address: what lies beyond 64 KB has pointers of four bytes.
    TOBFType* pointerTo(TOBFType* target, quint64 address = 0);
    TOBFType* addressType() const { return m_address; }
    TOBFType* arrayOf(TOBFType* element, int count);
    /// What `make` made for this text before, or makes now. Its objects go to the pool here.
    TOBFType* made(const QString& text, const std::function<TOBFType*()>& make);

private:
    Pool m_pool;
    TOBFType* m_simple[14];
    TOBFType* m_address;
    std::map<std::pair<TOBFType*, int>, TOBFType*> m_pointers;     ///< by target and size
    std::map<std::tuple<TOBFType*, int, int>, TOBFType*> m_arrays; ///< by element, its size, count
    std::map<QString, TOBFType*> m_made;
};
