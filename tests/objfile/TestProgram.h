#pragma once

#include "objfile/TOBFTestSupport.h"
#include "objfile/model/TOBFDirectives.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/model/TOBFType.h"
#include "objfile/msp430/TOBFMSP430Insn.h"

#include <map>

/// A linked program, put together item by item as the linker leaves it. `finish` writes it and
/// reads it back, so that what is tested stands in a module of the reader's.
class TestProgram {
public:
    TestProgram() : m_current(&m_pool), m_module(new TOBFModule), m_scope(m_module) { }

    static HString* name(const std::string& text) { return HString::intern(text); }
    TOBFModule* module() const { return m_module; }
    long pc() const { return m_pc; }

    /// What follows goes to this section, made when it is first named, from `pc` on.
    void section(const char* text, SectionKind kind, long pc)
    {
        m_section = m_module->findSection(name(text));
        if (m_section == nullptr) {
            m_section = new TOBFSection(name(text));
            m_section->setFlags(static_cast<unsigned>(kind) | TOBFSection::LoadFlag);
            m_module->addSection(m_section);
        }
        m_section->newFragment();
        m_pc = pc;
    }
    void fragment() { m_section->newFragment(); }

    /// A source position for what follows.
    void line(const char* file, int number)
    {
        add(new TOBFLocus(filename(file), number, TAG_LOCUS));
    }
    void noLine() { add(new TOBFResetLocusInsn); }

    /// Data items of these numbers of bytes.
    void bytes(std::initializer_list<int> sizes)
    {
        for (const int size : sizes) {
            auto* item = new TOBFDefBytesInsn(new TOBFConstExpr(0), size);
            item->encode();
            add(item);
        }
    }
    void instruction(unsigned opcode)
    {
        auto* item = new TOBFMSP430Insn(opcode, nullptr, nullptr, false);
        item->encode();
        add(item);
    }
    void word(unsigned value)
    {
        auto* item = new TOBFDefBytesInsn(new TOBFConstExpr(value), 2);
        item->encode();
        add(item);
    }

    TOBFExpr* here()
    {
        auto* marker = new TOBFMarker;
        add(marker);
        return new TOBFMarkerExpr(marker);
    }

    /// A symbol in the current scope.
    TOBFSymbol* symbol(const char* text, TOBFExpr* definition, TOBFType* type = nullptr)
    {
        auto* symbol = new TOBFSymbol(name(text));
        symbol->setDefinition(definition);
        symbol->setType(type);
        m_module->addSymbol(symbol);
        symbol->setScope(m_scope);
        return symbol;
    }
    TOBFSymbol* absolute(const char* text, std::int64_t value, TOBFType* type = nullptr)
    {
        return symbol(text, new TOBFConstExpr(value), type);
    }
    TOBFSymbol* global(const char* text, TOBFType* type = nullptr)
    {
        TOBFSymbol* made = symbol(text, here(), type);
        m_module->makePublic(made);
        return made;
    }
    void declared(TOBFSymbol* symbol, const char* file, int number)
    {
        symbol->setLocus(new TOBFLocus(filename(file), number, TAG_SYMBOL_LOCUS));
    }

    /// Zeroed bytes for a variable of this type, under a public name.
    TOBFSymbol* variable(const char* text, TOBFType* type)
    {
        TOBFSymbol* made = global(text, type);
        add(new TOBFSpaceInsn(new TOBFConstExpr(std::max(type->size(), 1))));
        return made;
    }

    /// Symbols and items up to `endScope` belong to a new scope.
    void beginScope(int kind = TAG_SCOPE_BLOCK, TOBFSymbol* function = nullptr)
    {
        auto* scope = new TOBFScope(kind);
        scope->setScope(m_scope);
        scope->setRange(here(), nullptr);
        scope->setFunctionSymbol(function);
        m_scope = scope;
    }
    void endScope()
    {
        m_scope->setRange(m_scope->start(), here());
        m_scope = m_scope->scope();
    }
    TOBFSymbol* beginFunction(const char* text, TOBFType* type = nullptr)
    {
        TOBFSymbol* function = global(text, type != nullptr ? type : functionType());
        beginScope(TAG_SCOPE_FUNCTION, function);
        return function;
    }

    static TOBFType* integer(int size, const char* text = nullptr)
    {
        return named(new TOBFSimpleType(TAG_INT, size), text);
    }
    static TOBFType* unsignedInteger(int size, const char* text = nullptr)
    {
        return named(new TOBFSimpleType(TAG_UNSIGNED, size), text);
    }
    static TOBFType* pointer(TOBFType* target, int size = 2)
    {
        auto* type = new TOBFPtrType(size);
        type->setTarget(target);
        return type;
    }
    static TOBFStrucType* structure(const char* text, int size)
    {
        return named(new TOBFStrucType(size), text);
    }
    static void field(TOBFStrucType* type, const char* text, TOBFType* fieldType, int bitOffset,
                      int bitSize = 0)
    {
        type->addField(new TOBFDynamicField(
            name(text), bitOffset, bitSize != 0 ? bitSize : fieldType->size() * 8, fieldType));
    }
    static TOBFType* functionType() { return new TOBFFunctionType(0, 0, 0); }
    static TOBFExpr* atRegister(int number, std::int64_t offset)
    {
        return TOBFBinaryExpr::make(TAG_BASE_OFFSET, new TOBFRegisterExpr(number),
                                    new TOBFConstExpr(offset));
    }

    Bytes written() const { return writeModule(m_module); }
    OwnedModule finish() const { return readObject(written()); }

private:
    template <typename Type> static Type* named(Type* type, const char* text)
    {
        if (text != nullptr)
            type->setName(name(text));
        return type;
    }

    void add(TOBFInsn* item)
    {
        item->setPC(m_pc);
        m_section->addInsn(item);
        m_pc += item->length();
    }

    TOBFFilename* filename(const char* file)
    {
        TOBFFilename*& made = m_files[file];
        if (made == nullptr)
            made = new TOBFFilename(name(file));
        return made;
    }

    Pool m_pool;
    CurrentPool m_current;
    TOBFModule* m_module;
    TOBFSection* m_section = nullptr;
    TOBFScope* m_scope;
    std::map<std::string, TOBFFilename*> m_files;
    long m_pc = 0;
};
