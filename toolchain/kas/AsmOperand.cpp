#include "toolchain/kas/AsmOperand.h"

#include "toolchain/kas/AsmLine.h"

namespace {

constexpr int PC = 0, SR = 2, ConstantGenerator = 3;

/// R2 and R3 make constants and absolute addresses in these modes.
void requireAddressRegister(int reg)
{
    if (reg == SR || reg == ConstantGenerator)
        throw AsmError{"register 'R" + std::to_string(reg) + "' can't hold an address"};
}

AsmOperand indirect(AsmTokens& tokens)
{
    AsmOperand operand;
    operand.reg = parseRegister(tokens);
    requireAddressRegister(operand.reg);
    operand.mode = tokens.accept("+") ? AsmOperand::Increment : AsmOperand::Indirect;
    if (operand.mode == AsmOperand::Increment && operand.reg == PC)
        throw AsmError{"'@PC+' has to be written as '#' and the value"};
    return operand;
}

AsmOperand addressed(AsmTokens& tokens, TOBFExpr* value)
{
    AsmOperand operand{AsmOperand::Symbolic, PC, value};
    if (!tokens.accept("("))
        return operand;
    operand.reg = parseRegister(tokens);
    tokens.expect(")");
    requireAddressRegister(operand.reg);
    if (operand.reg != PC)
        operand.mode = AsmOperand::Indexed;
    else if (knownValue(value))
        operand.mode = AsmOperand::Relative;
    return operand;
}

} // namespace

AsmOperand parseOperand(AsmTokens& tokens, AsmExpressions& expressions, const SourceLocation& where)
{
    if (tokens.accept("#"))
        return {AsmOperand::Immediate, PC, expressions.parse(tokens, where)};
    if (tokens.accept("&"))
        return {AsmOperand::Absolute, SR, expressions.parse(tokens, where)};
    if (tokens.accept("@"))
        return indirect(tokens);
    if (tokens.atEnd())
        throw AsmError{"missing operand"};
    const AsmToken& token = tokens.peek();
    if (token.kind == AsmToken::Name && registerNumber(token.text))
        return {AsmOperand::Register, parseRegister(tokens), nullptr};
    return addressed(tokens, expressions.parse(tokens, where));
}

int parseRegister(AsmTokens& tokens)
{
    const AsmToken& token = tokens.peek();
    const std::optional<int> number =
        token.kind == AsmToken::Name ? registerNumber(token.text) : std::nullopt;
    if (!number)
        throw AsmError{tokens.atEnd() ? std::string("missing register")
                                      : "'" + std::string(token.text) + "' isn't a register"};
    tokens.next();
    return *number;
}
