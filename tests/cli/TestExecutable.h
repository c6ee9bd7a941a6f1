#pragma once

#include "CliTestSupport.h"

#include "objfile/format/TOBFWriter.h"
#include "objfile/model/TOBFDirectives.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"

/// A native object or executable, laid out word by word.
class TestExecutable {
public:
    static constexpr int NotPlaced = -1;

    TestExecutable() : m_current(&m_pool), m_module(new TOBFModule) { }

    /// What follows goes to a new section, from `pc` on.
    void section(const char* name, SectionKind kind, int pc)
    {
        m_section = new TOBFSection(HString::intern(name));
        m_section->setFlags(static_cast<unsigned>(kind) | TOBFSection::LoadFlag);
        m_module->addSection(m_section);
        m_pc = pc;
    }

    void label(const char* name)
    {
        auto* marker = new TOBFMarker;
        marker->setPC(m_pc);
        m_section->addInsn(marker);
        symbol(name, new TOBFMarkerExpr(marker));
    }

    void symbol(const char* name, TOBFExpr* definition)
    {
        auto* symbol = new TOBFSymbol(HString::intern(name));
        symbol->setDefinition(definition);
        m_module->addSymbol(symbol);
        m_module->makePublic(symbol);
    }

    void words(const Words& words)
    {
        for (const unsigned word : words) {
            auto* item = new TOBFDefBytesInsn(new TOBFConstExpr(word), 2);
            m_section->addInsn(item);
            if (m_pc == NotPlaced)
                continue;
            item->setPC(m_pc);
            item->encode();
            m_pc += 2;
        }
    }

    std::string bytes()
    {
        TOBFWriter writer;
        m_module->externalize(&writer, false);
        writer.finish();
        return {writer.data().begin(), writer.data().end()};
    }

private:
    Pool m_pool;
    CurrentPool m_current;
    TOBFModule* m_module;
    TOBFSection* m_section = nullptr;
    int m_pc = NotPlaced;
};
