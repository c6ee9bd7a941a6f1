#pragma once

#include "objfile/model/TOBFObject.h"

#include <list>

class TOBFInsn;
class TOBFLocus;
class TOBFSection;

/// A run of items that the linker keeps together: it is placed, or dropped, whole.
class TOBFFragment final : public TOBFObject {
public:
    explicit TOBFFragment(TOBFSection* section) : TOBFObject(TOBFKind::Fragment), m_section(section)
    {
        finalizeWithPool(this);
    }

    TOBFSection* section() const { return m_section; }
    void setSection(TOBFSection* section) { m_section = section; }
    std::list<TOBFInsn*>& insns() { return m_insns; }

    /// Appends the item, which must not be null.
    void addInsn(TOBFInsn* insn);

    void markReachable(bool reachable) override;
    void externalize(TOBFWriter* writer);

    /// While a walk is under way: the source position of the item that it stands at, or null.
    static TOBFLocus* lastLocus() { return s_lastLocus; }

private:
    void markItems();

    std::list<TOBFInsn*> m_insns;
    TOBFSection* m_section;

    static TOBFLocus* s_lastLocus;
};
