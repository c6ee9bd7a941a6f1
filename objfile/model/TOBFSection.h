#pragma once

#include "objfile/model/TOBFFragment.h"
#include "objfile/model/TOBFObject.h"

#include <list>

/// What a section holds: bits 0 to 3 of its flags.
enum class SectionKind : unsigned {
    Unspecified = 0,
    Code = 1,
    Data = 2,
    Zeroed = 3,
    Const = 4,
    Eeprom = 6
};

/// In lower case; empty for kinds without a name.
const char* sectionKindName(SectionKind kind);

class TOBFSection final : public TOBFObject {
public:
    /// The section has content that a load writes.
    static constexpr unsigned LoadFlag = 0x80000;
    static constexpr unsigned KindMask = 0xF;
    static constexpr unsigned NoAddress = 0xFFFFFFFF;

    explicit TOBFSection(HString* name) : TOBFObject(TOBFKind::Section)
    {
        setName(name);
        finalizeWithPool(this);
    }

    unsigned flags() const { return m_flags; }
    void setFlags(unsigned flags) { m_flags = flags; }
    SectionKind sectionKind() const { return static_cast<SectionKind>(m_flags & KindMask); }
    bool isLoaded() const { return (m_flags & LoadFlag) != 0; }

    std::list<TOBFFragment*>& fragments() { return m_fragments; }
    TOBFFragment* currentFragment() const { return m_currentFragment; }

    /// Makes a fragment, which becomes the current one, at the end.
    TOBFFragment* newFragment();
    void addFragment(TOBFFragment* fragment);
    /// Appends to the current fragment, made first if there is none.
    void addInsn(TOBFInsn* insn);

    /// All ones when no byte is placed.
    unsigned lowestAddress();
    /// Inclusive; -1 when no byte is placed.
    int highestAddress();
    /// The span of the placed bytes or, with none placed, the sum of the items' lengths.
    unsigned getSize();
    /// The sum of the items' lengths, computed once.
    unsigned accumulatedSize();
    void computeSectionMetrics();
    /// Forgets what was computed, after the items have changed.
    void invalidateMetrics() { m_metricsValid = m_accumulatedSizeValid = false; }

    /// Copies the bytes of the placed items to their distance from the lowest address; those that
    /// lie outside the `size` bytes of the buffer are left out.
    void dump(unsigned size, unsigned char* buffer);

    /// The first item with bytes at exactly this address, or null.
    TOBFInsn* findInsnAt(unsigned address);
    /// The first item whose bytes hold the address, or null.
    TOBFInsn* findInsnInRange(unsigned address);

    void markReachable(bool reachable) override;
    void externalize(TOBFWriter* writer);

private:
    bool m_metricsValid = false;
    bool m_accumulatedSizeValid = false;
    std::uint32_t m_lowest = NoAddress;
    std::int32_t m_highest = -1;
    std::int32_t m_accumulatedSize = 0;
    std::list<TOBFFragment*> m_fragments;
    TOBFFragment* m_currentFragment = nullptr;
    std::uint32_t m_flags = 0;
};
