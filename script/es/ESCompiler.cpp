#include "script/es/ESCompiler.h"

#include "script/es/ESContext.h"
#include "script/es/ESGenerator.h"
#include "script/es/ESParser.h"

using namespace Qt::Literals::StringLiterals;

namespace {

std::unique_ptr<ESCode> generate(ESContext* context, ESParser& parser, ESNode* program)
{
    ESGenerator generator(context, &parser);
    for (ESFunctionNode* function : parser.functions())
        generator.generateFunction(function);
    auto code = std::make_unique<ESCode>();
    generator.generateMain(code.get(), program);
    return code;
}

std::vector<ESString*> parameterNames(const QString& text)
{
    std::vector<ESString*> names;
    ESLexer lexer;
    lexer.setSource(text);
    int token = lexer.lex();
    while (token != ESToken::End) {
        if (token != ESToken::Identifier)
            throw ESSyntaxError{u"expected "_s + esTokenName(ESToken::Identifier) + u" found "_s
                                    + esTokenName(token),
                                lexer.line()};
        names.push_back(lexer.string());
        token = lexer.lex();
        if (token == ',')
            token = lexer.lex();
    }
    return names;
}

int operandAt(const ESCode& code, int offset)
{
    const auto at = static_cast<std::size_t>(offset);
    if (at + 1 >= code.bytes.size())
        return 0;
    return code.bytes[at] << 8 | code.bytes[at + 1];
}

QString stringOperand(int index)
{
    return index < ESStringPool::size() ? u'"' + ESStringPool::get(index)->text + u'"' : u"?"_s;
}

} // namespace

std::unique_ptr<ESCode> ESCompiler::parse()
{
    ESParser parser(m_context);
    parser.setSource(m_source);
    ESNode* program = parser.parseProgram();
    return generate(m_context, parser, program);
}

std::unique_ptr<ESCode> ESCompiler::parseFunction(const QString& parameters, const QString& body)
{
    ESParser parser(m_context);
    parser.setSource(body);
    ESNode* function = parser.parseBodyOf(u"anonymous"_s, parameterNames(parameters));
    ESNode statement(ESToken::ExpressionStatement, function->line);
    statement.child[0] = function;
    ESNode program(ESToken::Block, function->line);
    program.list = {&statement};
    return generate(m_context, parser, &program);
}

QString ESCompiler::printInsn(const ESObject* global, const ESCode& code, int offset, int& next)
{
    const std::uint8_t opcode = code.bytes[static_cast<std::size_t>(offset)];
    QString text = u"%1:"_s.arg(offset, 4, 16, QChar(u'0'));
    const ESOpcodeInfo* info = esOpcodeInfo(opcode);
    next = offset + 1;
    if (!info)
        return text + u" ?"_s;
    text += u' ' + QLatin1String(info->mnemonic);
    if (info->operand == ESOperand::None)
        return text;
    const int operand = operandAt(code, next);
    next += 2;
    const bool isGlobal = opcode == int(ESVmOpcode::GETG) || opcode == int(ESVmOpcode::PUTG)
        || opcode == int(ESVmOpcode::CALLG) || opcode == int(ESVmOpcode::INCG)
        || opcode == int(ESVmOpcode::DECG);
    switch (info->operand) {
    case ESOperand::Number:
        text += u' ' + QString::number(code.numbers[static_cast<std::size_t>(operand)]);
        break;
    case ESOperand::String:
    case ESOperand::StringCount: text += u' ' + stringOperand(operand); break;
    case ESOperand::Address: text += u" %1"_s.arg(operand, 4, 16, QChar(u'0')); break;
    default:
        if (isGlobal && global && operand < int(global->properties.size())) {
            const ESString* name = global->properties[static_cast<std::size_t>(operand)].name;
            text += u' ' + (name ? name->text : u"(deleted)"_s);
        } else {
            text += u' ' + QString::number(operand);
        }
    }
    if (info->operand == ESOperand::StringCount || info->operand == ESOperand::SlotCount) {
        text += u' ' + QString::number(operandAt(code, next));
        next += 2;
    }
    return text;
}

QString ESCompiler::print(const ESObject* global, const ESCode& code)
{
    QString text;
    for (int offset = 0; offset < code.size();)
        text += printInsn(global, code, offset, offset) + u'\n';
    return text;
}
