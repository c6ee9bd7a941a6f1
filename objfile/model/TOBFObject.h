#pragma once

#include "base/HString.h"
#include "base/Pool.h"
#include "objfile/model/TOBFTag.h"

#include <cstdint>

class TOBFModule;
class TOBFScope;
class TOBFType;
class TOBFWriter;

/// What an object is; lets a caller tell classes apart without run-time type information. The
/// expression, item, scope and type kinds each stand together.
enum class TOBFKind : std::uint8_t {
    String,
    Symbol,
    Section,
    Fragment,
    StaticField,
    DynamicField,
    FirstExpr,
    ConstExpr = FirstExpr,
    RegisterExpr,
    TypeExpr,
    SymbolExpr,
    MarkerExpr,
    BinaryExpr,
    LastExpr = BinaryExpr,
    FirstInsn,
    ProcessorInsn = FirstInsn,
    DefBytesInsn,
    DefAddrInsn,
    InitInsn,
    LinkIf,
    EndLinkIf,
    AlignInsn,
    OriginInsn,
    FillInsn,
    BreakInsn,
    SpaceInsn,
    LocalInsn,
    ResetLocusInsn,
    FirstMarker,
    Marker = FirstMarker,
    Locus,
    Filename,
    LastMarker = Filename,
    LastInsn = LastMarker,
    FirstScope,
    Scope = FirstScope,
    Module,
    LastScope = Module,
    FirstType,
    SimpleType = FirstType,
    FloatType,
    UntypedType,
    PtrType,
    ArrayType,
    CountedArrayType,
    QualifiedType,
    StrucType,
    FunctionType,
    MemberFunctionType,
    LastType = MemberFunctionType,
};

/// Root of the object model. Objects live in a pool and are freed with it.
class TOBFObject : public PoolObject {
public:
    explicit TOBFObject(TOBFKind kind) : m_kind(kind) { }
    TOBFObject(const TOBFObject&) = delete;
    TOBFObject& operator=(const TOBFObject&) = delete;

    virtual HString* getName() { return m_name; }

    /// A scope that is set already stays; otherwise stores it and enters the object in the scope's
    /// symbol map under its name.
    virtual void setScope(TOBFScope* scope);

    /// Sets the reachable mark of this object and of all that it needs to `reachable`. Does nothing
    /// when the mark has that value already, which also ends the walk on cycles.
    virtual void markReachable(bool reachable) = 0;

    virtual ~TOBFObject() = default;

    TOBFKind kind() const { return m_kind; }
    bool isExpr() const { return m_kind >= TOBFKind::FirstExpr && m_kind <= TOBFKind::LastExpr; }
    bool isInsn() const { return m_kind >= TOBFKind::FirstInsn && m_kind <= TOBFKind::LastInsn; }
    bool isMarker() const
    {
        return m_kind >= TOBFKind::FirstMarker && m_kind <= TOBFKind::LastMarker;
    }
    bool isScope() const { return m_kind >= TOBFKind::FirstScope && m_kind <= TOBFKind::LastScope; }
    bool isType() const { return m_kind >= TOBFKind::FirstType && m_kind <= TOBFKind::LastType; }

    HString* name() const { return m_name; }
    void setName(HString* name) { m_name = name; }
    TOBFType* type() const { return m_type; }
    void setType(TOBFType* type) { m_type = type; }
    TOBFScope* scope() const { return m_scope; }
    bool isReachable() const { return m_reachable; }

    /// The number under which `writer` refers to this object, given on first use.
    unsigned getAlias(TOBFWriter* writer);

    /// Writes the name of an object that stands on the reader's stack; nothing if it has none.
    void writeSetName(TOBFWriter* writer);

    /// Writes the object's number and MKALIAS, which consumes the object from the reader's stack.
    void writeMakeAlias(TOBFWriter* writer);

    /// Writes the reference that pushes the object again.
    void writeReference(TOBFWriter* writer);

protected:
    /// Stores the mark; false if it had that value already.
    bool mark(bool reachable)
    {
        if (m_reachable == reachable)
            return false;
        m_reachable = reachable;
        return true;
    }

    /// True on the first call only: an object is written once.
    bool beginExternalize()
    {
        const bool first = !m_externalized;
        m_externalized = true;
        return first;
    }

    bool m_aliased = false;
    std::int32_t m_alias = 0;
    bool m_externalized = false;
    bool m_reachable = false;
    TOBFKind m_kind;
    TOBFType* m_type = nullptr;
    HString* m_name = nullptr;
    TOBFScope* m_scope = nullptr;
    std::int32_t m_scopeKind = TAG_SCOPE_BLOCK;
    TOBFModule* m_module = nullptr;
};
