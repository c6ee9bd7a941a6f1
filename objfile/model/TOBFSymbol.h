#pragma once

#include "objfile/model/TOBFObject.h"

class TOBFExpr;
class TOBFLocus;

/// A named thing: a label, a variable, a function, a parameter, or a name defined elsewhere. Its
/// debug type is the object's type.
class TOBFSymbol final : public TOBFObject {
public:
    explicit TOBFSymbol(HString* name) : TOBFObject(TOBFKind::Symbol) { setName(name); }

    void markReachable(bool reachable) override;
    void externalize(TOBFWriter* writer);

    /// Null for a symbol that is not defined here.
    TOBFExpr* definition() const { return m_definition; }
    void setDefinition(TOBFExpr* definition) { m_definition = definition; }

    /// Where it is declared, or null.
    TOBFLocus* locus() const { return m_locus; }
    void setLocus(TOBFLocus* locus) { m_locus = locus; }

    std::int32_t codelet() const { return m_codelet; }
    void setCodelet(std::int32_t codelet) { m_codelet = codelet; }
    bool isPatchable() const { return m_patchable; }
    void setPatchable(std::int32_t value)
    {
        m_patchable = true;
        m_patchValue = value;
    }
    bool isPatched() const { return m_patched; }
    void setPatched() { m_patched = true; }

    /// Called for each symbol that markReachable(true) reaches, so that a linker can bind it to a
    /// definition during the walk. Null by default.
    static void (*resolve)(TOBFSymbol* symbol);

private:
    TOBFExpr* m_definition = nullptr;
    TOBFLocus* m_locus = nullptr;
    std::int32_t m_codelet = -1;
    bool m_patchable = false;
    bool m_patched = false;
    std::int32_t m_patchValue = -1;
};
