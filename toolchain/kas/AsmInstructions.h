#pragma once

#include "toolchain/kas/AsmMnemonics.h"
#include "toolchain/kas/AsmOperand.h"

class AsmSections;
class TOBFMSP430Insn;

/// Turns instruction statements into items.
class AsmInstructions {
public:
    AsmInstructions(AsmExpressions& expressions, AsmSections& sections, bool msp430x)
        : m_expressions(expressions),
          m_sections(sections),
          m_msp430x(msp430x)
    {
    }

    /// Assembles the instruction that `word`, its mnemonic with size, begins; its operands are next
    /// among the tokens. Throws AsmError.
    void assemble(const std::string& word, AsmTokens& tokens, const SourceLocation& where);

    /// True while a repeat count waits for its instruction.
    bool repeatPending() const { return m_repeat != 0; }
    void dropRepeat() { m_repeat = 0; }

private:
    enum class Size { Byte, Word, Address };
    /// What a mnemonic as written stands for.
    struct Form {
        const AsmMnemonic* mnemonic;
        bool extended;
        Size size;
    };
    struct Source {
        unsigned mode; ///< As
        int reg;
        TOBFExpr* word;
    };

    Form resolve(const std::string& word) const;
    Size parseSize(const std::string& word, const std::string& suffix, const AsmMnemonic& mnemonic,
                   bool extended) const;
    void assembleShape(const Form& form);

    void twoOperand(const Form& form, const AsmOperand& source, const AsmOperand& destination);
    void oneOperand(const Form& form, const AsmOperand& operand);
    void jump(const Form& form);
    void address(const Form& form, const AsmOperand& source, const AsmOperand& destination);
    void move(const AsmOperand& source, const AsmOperand& destination);
    void addressCall(const AsmOperand& operand);
    void multiple(const Form& form);
    void repeat();

    Source encodeSource(const AsmOperand& operand, const Form& form);
    void checkValue(const AsmOperand& operand, const Form& form) const;
    std::uint32_t extension(const Form& form, bool registersOnly);
    TOBFExpr* relativeWord(const AsmOperand& operand, int wordOffset);
    TOBFExpr* addressDistance(const AsmOperand& operand);
    AsmOperand operand() { return parseOperand(*m_tokens, m_expressions, *m_where); }
    AsmOperand destinationOperand();
    std::int64_t countOperand(int highest);
    void emit(std::uint32_t opcode, TOBFExpr* first = nullptr, TOBFExpr* second = nullptr,
              bool transfer = false);

    AsmExpressions& m_expressions;
    AsmSections& m_sections;
    const bool m_msp430x;
    AsmTokens* m_tokens = nullptr;
    const SourceLocation* m_where = nullptr;
    /// The bits that RPT puts into the next extension word, with RepeatMark; 0 for none.
    std::uint32_t m_repeat = 0;
};
