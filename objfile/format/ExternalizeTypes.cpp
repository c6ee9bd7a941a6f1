// The records of debug types. Each is written once and referred to by its alias from then on.

#include "objfile/format/TOBFWriter.h"
#include "objfile/model/RecursionLimit.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFSymbol.h"
#include "objfile/model/TOBFType.h"

namespace {

void externalizeType(TOBFType* type, TOBFWriter* writer)
{
    const RecursionLimit depth;
    depth.check();
    type->externalize(writer);
}

void externalizeParameters(const std::list<TOBFSymbol*>& symbols, TOBFTag tag, TOBFWriter* writer)
{
    for (TOBFSymbol* symbol : symbols) {
        symbol->externalize(writer);
        symbol->writeReference(writer);
        writer->externalizeTag(tag);
    }
}

} // namespace

void TOBFSimpleType::externalize(TOBFWriter* writer)
{
    if (!beginExternalize())
        return;
    writer->externalizeSigned(m_size);
    writer->externalizeTag(m_tag);
    writeSetName(writer);
    writeMakeAlias(writer);
}

void TOBFFloatType::externalize(TOBFWriter* writer)
{
    if (!beginExternalize())
        return;
    writer->externalizeSigned(m_size);
    writer->externalizeTag(TAG_FLOAT);
    writeSetName(writer);
    writeMakeAlias(writer);
}

void TOBFUntypedType::externalize(TOBFWriter* writer)
{
    if (!beginExternalize())
        return;
    writer->externalizeSigned(m_size);
    writer->externalizeTag(TAG_UNTYPED);
    writeSetName(writer);
    writeMakeAlias(writer);
}

void TOBFArrayType::externalize(TOBFWriter* writer)
{
    if (!beginExternalize())
        return;
    externalizeType(m_element, writer);
    m_element->writeReference(writer);
    writer->externalizeSigned(m_count);
    writer->externalizeTag(TAG_ARRAY);
    writeSetName(writer);
    writeMakeAlias(writer);
}

void TOBFCountedArrayType::externalize(TOBFWriter* writer)
{
    if (!beginExternalize())
        return;
    externalizeType(m_countType, writer);
    externalizeType(m_element, writer);
    m_countType->writeReference(writer);
    m_element->writeReference(writer);
    writer->externalizeSigned(m_count);
    writer->externalizeTag(TAG_COUNTED_ARRAY);
    writeSetName(writer);
    writeMakeAlias(writer);
}

/// The alias stands before the target, so that a structure may hold a pointer to itself.
void TOBFPtrType::externalize(TOBFWriter* writer)
{
    if (!beginExternalize())
        return;
    writer->externalizeSigned(m_size);
    writer->externalizeTag(TAG_FORWARDTYPE);
    writeSetName(writer);
    writeMakeAlias(writer);
    if (m_target == nullptr)
        return;
    externalizeType(m_target, writer);
    writeReference(writer);
    m_target->writeReference(writer);
    writer->externalizeTag(TAG_PTR);
    if (m_representation != TAG_PTR_REP)
        writer->externalizeTag(m_representation);
}

void TOBFQualifiedType::externalize(TOBFWriter* writer)
{
    if (!beginExternalize())
        return;
    externalizeType(m_base, writer);
    m_base->writeReference(writer);
    writer->externalizeTag(m_tag);
    writeSetName(writer);
    writeMakeAlias(writer);
}

void TOBFStrucType::externalize(TOBFWriter* writer)
{
    if (!beginExternalize())
        return;
    writer->externalizeSigned(m_size);
    writer->externalizeTag(TAG_STRUC);
    writer->externalizeTag(TAG_DUP);
    writeMakeAlias(writer);
    writeSetName(writer);
    for (TOBFField* field : m_fields)
        field->externalize(writer);
    writer->externalizeTag(TAG_DROP);
}

void TOBFStaticField::externalize(TOBFWriter* writer)
{
    externalizeType(type(), writer);
    writer->externalizeString(name());
    m_location->externalize(writer);
    type()->writeReference(writer);
    writer->externalizeTag(TAG_STATIC_FIELD);
}

void TOBFDynamicField::externalize(TOBFWriter* writer)
{
    externalizeType(type(), writer);
    writer->externalizeString(name());
    writer->externalizeSigned(m_bitOffset);
    writer->externalizeSigned(m_bitSize);
    type()->writeReference(writer);
    writer->externalizeTag(TAG_DYNAMIC_FIELD);
}

void TOBFFunctionType::externalizeSymbols(TOBFWriter* writer)
{
    externalizeParameters(m_parameters, TAG_PARAMIN, writer);
    externalizeParameters(m_returns, TAG_PARAMOUT, writer);
}

void TOBFFunctionType::externalize(TOBFWriter* writer)
{
    if (!beginExternalize())
        return;
    writer->externalizeSigned(m_number);
    writer->externalizeSigned(m_savedOffset);
    writer->externalizeSigned(m_savedMask);
    writer->externalizeTag(TAG_FUNCTION);
    externalizeSymbols(writer);
    writeSetName(writer);
    writeMakeAlias(writer);
}

void TOBFMemberFunctionType::externalize(TOBFWriter* writer)
{
    if (!beginExternalize())
        return;
    externalizeType(m_class, writer);
    m_class->writeReference(writer);
    writer->externalizeTag(TAG_MEMBER);
    externalizeSymbols(writer);
    writeSetName(writer);
    writeMakeAlias(writer);
}
