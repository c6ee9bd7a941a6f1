#pragma once

#include "objfile/msp430/TOBFMSP430Insn.h"
#include "toolchain/kas/Assembler.h"

#include <algorithm>
#include <string>
#include <vector>

inline AssemblerOptions msp430xOptions()
{
    AssemblerOptions options;
    options.msp430x = true;
    return options;
}

inline AssemblerOptions debugOptions()
{
    AssemblerOptions options;
    options.debugInformation = true;
    return options;
}

/// A text assembled in a pool of its own.
class Assembled {
public:
    explicit Assembled(const std::string& text, AssemblerOptions options = {})
        : m_current(&m_pool),
          m_diagnostics("kas", [this](const std::string& line) { messages.push_back(line); })
    {
        g_msp430x = options.msp430x;
        try {
            Assembler assembler(std::move(options), m_diagnostics);
            module = assembler.assemble(splitAssembly(text, "a.s"), "a.s");
            dependencies = assembler.dependencies();
        } catch (const FatalDiagnostic&) {
        }
    }

    TOBFSection* section(const std::string& name) const
    {
        return module->findSection(HString::intern(name));
    }

    TOBFSymbol* symbol(const std::string& name) const
    {
        const auto it = module->symbols().find(HString::intern(name));
        return it != module->symbols().end() ? it->second : nullptr;
    }

    /// The section's bytes in hexadecimal when its fragments stand behind one another from the
    /// address on.
    std::string bytes(const std::string& name = "CODE", int address = 0x1000) const
    {
        std::string text;
        TOBFSection* it = section(name);
        if (it == nullptr)
            return text;
        const auto forEachItem = [it](auto visit) {
            for (TOBFFragment* fragment : it->fragments())
                for (TOBFInsn* insn : fragment->insns())
                    visit(*insn);
        };
        forEachItem([&](TOBFInsn& insn) {
            insn.setPC(address);
            address += insn.length();
        });
        forEachItem([&](TOBFInsn& insn) {
            insn.encode();
            for (int i = 0; i < insn.length(); ++i) {
                char digits[3];
                std::snprintf(digits, sizeof digits, "%02x",
                              static_cast<unsigned>(insn.getByte(i)) & 0xFF);
                text += digits;
            }
        });
        return text;
    }

    /// The listing texts of a section's items, a "|" in front of each fragment.
    std::string items(const std::string& name = "CODE") const
    {
        std::string text;
        for (TOBFFragment* fragment : section(name)->fragments()) {
            text += "|";
            for (TOBFInsn* insn : fragment->insns()) {
                std::string item = insn->printString();
                std::replace(item.begin(), item.end(), '\t', ' ');
                text += item + ";";
            }
        }
        return text;
    }

    TOBFModule* module = nullptr;
    std::vector<std::string> messages;
    std::vector<std::string> dependencies;

private:
    Pool m_pool;
    CurrentPool m_current;
    Diagnostics m_diagnostics;
};
