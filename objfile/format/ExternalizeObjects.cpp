// The records of modules, scopes, symbols, expressions and sections.

#include "objfile/format/TOBFWriter.h"
#include "objfile/model/RecursionLimit.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFInsn.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/model/TOBFModule.h"
#include "objfile/model/TOBFType.h"

unsigned TOBFObject::getAlias(TOBFWriter* writer)
{
    if (!m_aliased) {
        m_aliased = true;
        m_alias = static_cast<std::int32_t>(writer->newAlias());
    }
    return static_cast<unsigned>(m_alias);
}

void TOBFObject::writeSetName(TOBFWriter* writer)
{
    if (m_name == nullptr)
        return;
    writer->externalizeString(m_name);
    writer->externalizeTag(TAG_SETNAME);
}

void TOBFObject::writeMakeAlias(TOBFWriter* writer)
{
    writer->externalizeLiteral(getAlias(writer));
    writer->externalizeTag(TAG_MKALIAS);
}

void TOBFObject::writeReference(TOBFWriter* writer)
{
    writer->externalizeLiteral(getAlias(writer));
    writer->externalizeTag(TAG_ALIAS);
}

namespace {

void externalizeOrNull(TOBFExpr* expr, TOBFWriter* writer)
{
    if (expr != nullptr)
        expr->externalize(writer);
    else
        writer->externalizeTag(TAG_NULL);
}

} // namespace

void TOBFScope::externalize(TOBFWriter* writer) { externalizeScope(writer); }

void TOBFScope::externalizeScope(TOBFWriter* writer)
{
    if (!beginExternalize())
        return;
    const RecursionLimit depth;
    depth.check();
    if (m_scope != nullptr) {
        m_scope->externalize(writer);
        m_scope->writeReference(writer);
    } else {
        writer->externalizeTag(TAG_NULL);
    }
    externalizeOrNull(m_start, writer);
    externalizeOrNull(m_end, writer);
    writer->externalizeTag(m_scopeKind);
    writer->externalizeTag(TAG_DUP);
    writeMakeAlias(writer);
    for (const auto& [name, symbol] : m_symbols) {
        symbol->externalize(writer);
        symbol->writeReference(writer);
        writer->externalizeTag(TAG_SETSCOPE);
    }
    if (m_functionSymbol != nullptr) {
        m_functionSymbol->externalize(writer);
        m_functionSymbol->writeReference(writer);
        writer->externalizeTag(TAG_SET_FCT_SYMBOL);
    } else {
        writer->externalizeTag(TAG_DROP);
    }
    for (TOBFScope* child : m_children)
        child->externalize(writer);
}

void TOBFModule::externalize(TOBFWriter* writer, bool hide)
{
    if (m_externalized)
        return;
    externalizeScope(writer);
    if (hide)
        for (TOBFSection* section : m_sections)
            for (TOBFFragment* fragment : section->fragments())
                for (TOBFInsn* insn : fragment->insns())
                    insn->setHidden();
    if (m_scope == nullptr)
        externalizeContents(writer);
    if (m_protected)
        writer->externalizeTag(TAG_PROTECTED);
    if (m_priority != DefaultPriority) {
        writer->externalizeSigned(m_priority);
        writer->externalizeTag(TAG_LINK_ORDER_PRIORITY);
    }
}

void TOBFModule::externalizeContents(TOBFWriter* writer)
{
    for (HString* library : m_libraries) {
        writer->externalizeString(library);
        writer->externalizeTag(TAG_LIBRARY);
    }
    for (const auto& [key, value] : m_attributes) {
        writer->externalizeString(key);
        writer->externalizeString(value);
        writer->externalizeTag(TAG_ATTRIBUTE);
    }
    writer->externalizeTag(TAG_END_OF_INFO);
    for (const auto& [name, symbol] : m_public) {
        symbol->externalize(writer);
        symbol->writeReference(writer);
        writer->externalizeTag(TAG_PUBLIC);
    }
    for (TOBFSymbol* symbol : m_marked)
        symbol->externalize(writer);
    for (const auto& [name, section] : m_sectionMap)
        section->externalize(writer);
}

void TOBFSymbol::externalize(TOBFWriter* writer)
{
    if (!beginExternalize())
        return;
    const RecursionLimit depth;
    depth.check();
    const bool marked = m_codelet != -1 || m_patchable || m_patched;
    // The records of the marks need the symbol on the stack, and leave it there.
    const bool keptForMarks = marked && m_definition == nullptr && m_type == nullptr;
    writer->externalizeString(m_name);
    writer->externalizeTag(TAG_MKSYMBOL);
    if (m_definition != nullptr || keptForMarks)
        writer->externalizeTag(TAG_DUP);
    if (m_type != nullptr)
        writer->externalizeTag(TAG_DUP);
    if (m_locus != nullptr && m_locus->filename() != nullptr
        && m_locus->filename()->file() != nullptr)
        m_locus->externalize(writer);
    writeMakeAlias(writer);
    if (m_codelet != -1) {
        writer->externalizeSigned(m_codelet);
        writer->externalizeTag(TAG_CODELET);
    }
    if (m_patchable) {
        writer->externalizeSigned(m_patchValue);
        writer->externalizeTag(TAG_PATCHABLE);
    }
    if (m_patched) {
        writer->externalizeSigned(m_patchValue);
        writer->externalizeTag(TAG_PATCHED);
    }
    if (m_definition != nullptr) {
        m_definition->externalize(writer);
        writer->externalizeTag(TAG_SYMBOLDEF);
    }
    if (m_type != nullptr) {
        m_type->externalize(writer);
        m_type->writeReference(writer);
        writer->externalizeTag(TAG_SETTYPE);
    }
    if (keptForMarks)
        writer->externalizeTag(TAG_DROP);
    if (m_scope != nullptr)
        m_scope->externalize(writer);
}

void TOBFSection::externalize(TOBFWriter* writer)
{
    if (!beginExternalize())
        return;
    writer->externalizeString(m_name);
    writer->externalizeTag(TAG_MKSECTION);
    writeMakeAlias(writer);
    writeReference(writer);
    writer->externalizeTag(TAG_SECTION);
    if (m_flags != 0) {
        writer->externalizeLiteral(m_flags);
        writer->externalizeTag(TAG_SETFLAGS);
    }
    for (TOBFFragment* fragment : m_fragments)
        fragment->externalize(writer);
}

void TOBFFragment::externalize(TOBFWriter* writer)
{
    writer->externalizeTag(TAG_BREAK);
    for (TOBFInsn* insn : m_insns)
        insn->externalize(writer);
}

void TOBFConstExpr::externalize(TOBFWriter* writer)
{
    writer->externalizeLiteral(static_cast<unsigned long long>(m_value));
}

void TOBFRegisterExpr::externalize(TOBFWriter* writer)
{
    writer->externalizeSigned(m_number);
    writer->externalizeTag(TAG_REGISTER);
}

void TOBFSymbolExpr::externalize(TOBFWriter* writer)
{
    m_symbol->externalize(writer);
    m_symbol->writeReference(writer);
    writer->externalizeTag(TAG_SYMBOLVAL);
}

void TOBFMarkerExpr::externalize(TOBFWriter* writer)
{
    writer->externalizeSigned(m_marker->markerNumber(writer));
    writer->externalizeTag(TAG_MARKERREF);
}

void TOBFBinaryExpr::externalize(TOBFWriter* writer)
{
    const RecursionLimit depth;
    depth.check();
    m_left->externalize(writer);
    if (m_right != nullptr)
        m_right->externalize(writer);
    writer->externalizeTag(m_operation);
}
