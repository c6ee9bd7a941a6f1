#pragma once

#include "objfile/model/TOBFObject.h"

#include <list>

class TOBFExpr;
class TOBFSymbol;

/// A member of a structure; its type is the object's type.
class TOBFField : public TOBFObject {
public:
    TOBFField(TOBFKind kind, HString* name, TOBFType* type) : TOBFObject(kind)
    {
        setName(name);
        setType(type);
    }
    virtual void externalize(TOBFWriter* writer) = 0;
};

/// A member that lives apart from the objects of the structure.
class TOBFStaticField final : public TOBFField {
public:
    TOBFStaticField(HString* name, TOBFExpr* location, TOBFType* type)
        : TOBFField(TOBFKind::StaticField, name, type),
          m_location(location)
    {
    }

    TOBFExpr* location() const { return m_location; }
    void markReachable(bool reachable) override;
    void externalize(TOBFWriter* writer) override;

private:
    TOBFExpr* m_location;
};

/// A member inside the structure, placed by bits. Offset and size that are whole bytes, the size
/// that of the type, make an ordinary member; anything else is a bit-field.
class TOBFDynamicField final : public TOBFField {
public:
    TOBFDynamicField(HString* name, int bitOffset, int bitSize, TOBFType* type)
        : TOBFField(TOBFKind::DynamicField, name, type),
          m_bitOffset(bitOffset),
          m_bitSize(bitSize)
    {
    }

    int bitOffset() const { return m_bitOffset; }
    int bitSize() const { return m_bitSize; }
    void markReachable(bool reachable) override { mark(reachable); }
    void externalize(TOBFWriter* writer) override;

private:
    std::int32_t m_bitOffset;
    std::int32_t m_bitSize;
};

/// A debug type. Without a name of its own a type describes itself by getName().
class TOBFType : public TOBFObject {
public:
    TOBFType(TOBFKind kind, int size) : TOBFObject(kind), m_size(size) { }

    virtual TOBFField* findField(HString*) { return nullptr; }
    virtual bool isSimple() const { return false; }
    virtual bool isFloat() const { return false; }
    virtual bool isArray() const { return false; }
    virtual bool isCountedArray() const { return false; }
    virtual bool isStruc() const { return false; }
    virtual bool isPtr() const { return false; }
    virtual bool isQualified() const { return false; }
    virtual bool isFunction() const { return false; }
    virtual bool isMemberFunction() const { return false; }
    virtual TOBFType* getElementType() { return nullptr; }
    virtual void externalize(TOBFWriter* writer) = 0;

    void markReachable(bool reachable) override { mark(reachable); }

    /// In bytes.
    int size() const { return m_size; }

protected:
    std::int32_t m_size;
};

class TOBFSimpleType final : public TOBFType {
public:
    /// `tag` is TAG_INT for a signed integer, TAG_UNSIGNED or TAG_CHAR for an unsigned one.
    TOBFSimpleType(TOBFTag tag, int size) : TOBFType(TOBFKind::SimpleType, size), m_tag(tag) { }

    TOBFTag tag() const { return m_tag; }
    HString* getName() override;
    bool isSimple() const override { return true; }
    void externalize(TOBFWriter* writer) override;

private:
    TOBFTag m_tag;
};

class TOBFFloatType final : public TOBFType {
public:
    explicit TOBFFloatType(int size) : TOBFType(TOBFKind::FloatType, size) { }

    HString* getName() override;
    bool isFloat() const override { return true; }
    void externalize(TOBFWriter* writer) override;
};

class TOBFUntypedType final : public TOBFType {
public:
    explicit TOBFUntypedType(int size) : TOBFType(TOBFKind::UntypedType, size) { }

    HString* getName() override;
    void externalize(TOBFWriter* writer) override;
};

class TOBFPtrType final : public TOBFType {
public:
    explicit TOBFPtrType(int size) : TOBFType(TOBFKind::PtrType, size) { }

    TOBFType* target() const { return m_target; }
    void setTarget(TOBFType* target) { m_target = target; }
    TOBFTag representation() const { return m_representation; }
    void setRepresentation(TOBFTag tag) { m_representation = tag; }
    HString* getName() override;
    bool isPtr() const override { return true; }
    TOBFType* getElementType() override { return m_target; }
    void externalize(TOBFWriter* writer) override;

private:
    TOBFType* m_target = nullptr;
    TOBFTag m_representation = TAG_PTR_REP;
};

class TOBFArrayType final : public TOBFType {
public:
    TOBFArrayType(TOBFType* element, int count);

    int count() const { return m_count; }
    HString* getName() override;
    bool isArray() const override { return true; }
    TOBFType* getElementType() override { return m_element; }
    void externalize(TOBFWriter* writer) override;

private:
    TOBFType* m_element;
    std::int32_t m_count;
};

class TOBFCountedArrayType final : public TOBFType {
public:
    TOBFCountedArrayType(TOBFType* countType, TOBFType* element, int count)
        : TOBFType(TOBFKind::CountedArrayType, element->size()),
          m_countType(countType),
          m_count(count),
          m_element(element)
    {
    }

    HString* getName() override;
    bool isCountedArray() const override { return true; }
    TOBFType* getElementType() override { return m_element; }
    void externalize(TOBFWriter* writer) override;

private:
    TOBFType* m_countType;
    std::int32_t m_count;
    TOBFType* m_element;
};

/// A type in a memory space, which is what the tag (TAG_MEMSPACE_FIRST to TAG_MEMSPACE_LAST) tells.
class TOBFQualifiedType final : public TOBFType {
public:
    TOBFQualifiedType(TOBFType* base, TOBFTag tag)
        : TOBFType(TOBFKind::QualifiedType, base->size()),
          m_base(base),
          m_tag(tag)
    {
        setName(base->name());
    }

    TOBFTag tag() const { return m_tag; }
    HString* getName() override { return m_base->getName(); }
    bool isQualified() const override { return true; }
    TOBFType* getElementType() override { return m_base; }
    void externalize(TOBFWriter* writer) override;

private:
    TOBFType* m_base;
    TOBFTag m_tag;
};

/// A structure or union.
class TOBFStrucType final : public TOBFType {
public:
    explicit TOBFStrucType(int size) : TOBFType(TOBFKind::StrucType, size)
    {
        finalizeWithPool(this);
    }

    void addField(TOBFField* field) { m_fields.push_back(field); }
    const std::list<TOBFField*>& fields() const { return m_fields; }
    HString* getName() override;
    TOBFField* findField(HString* name) override;
    bool isStruc() const override { return true; }
    void externalize(TOBFWriter* writer) override;

private:
    std::list<TOBFField*> m_fields;
    bool m_naming = false;
};

class TOBFFunctionType : public TOBFType {
public:
    /// `savedOffset`: bytes from the return address slot up to the registers that the function
    /// saved. `savedMask`: those registers, bit n for register n. The first number is carried only.
    TOBFFunctionType(int number, int savedOffset, int savedMask)
        : TOBFFunctionType(TOBFKind::FunctionType)
    {
        m_number = number;
        m_savedOffset = savedOffset;
        m_savedMask = savedMask;
        finalizeWithPool(this);
    }

    int savedOffset() const { return m_savedOffset; }
    int savedMask() const { return m_savedMask; }
    void setSaved(int offset, int mask)
    {
        m_savedOffset = offset;
        m_savedMask = mask;
    }

    void addParameter(TOBFSymbol* symbol) { m_parameters.push_back(symbol); }
    void addReturn(TOBFSymbol* symbol) { m_returns.push_back(symbol); }
    const std::list<TOBFSymbol*>& parameters() const { return m_parameters; }
    const std::list<TOBFSymbol*>& returns() const { return m_returns; }

    HString* getName() override;
    bool isFunction() const override { return true; }
    void externalize(TOBFWriter* writer) override;

protected:
    explicit TOBFFunctionType(TOBFKind kind) : TOBFType(kind, 0) { }

    void externalizeSymbols(TOBFWriter* writer);

    std::list<TOBFSymbol*> m_parameters;
    std::list<TOBFSymbol*> m_returns;
    std::int32_t m_number = 0;
    std::int32_t m_savedOffset = 0;
    std::int32_t m_savedMask = 0;
    bool m_naming = false;
};

class TOBFMemberFunctionType final : public TOBFFunctionType {
public:
    explicit TOBFMemberFunctionType(TOBFType* classType)
        : TOBFFunctionType(TOBFKind::MemberFunctionType),
          m_class(classType)
    {
        finalizeWithPool(this);
    }

    HString* getName() override;
    bool isMemberFunction() const override { return true; }
    void externalize(TOBFWriter* writer) override;

private:
    TOBFType* m_class;
};
