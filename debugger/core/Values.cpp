// Names, variables and expressions.

#include "debugger/core/TOBFDebugger.h"
#include "debugger/core/VariableFormatter.h"
#include "debugger/expressions/ParserException.h"
#include "objfile/model/TOBFInsn.h"
#include "objfile/model/TOBFModule.h"
#include "objfile/model/TOBFScope.h"
#include "objfile/model/TOBFSymbol.h"
#include "objfile/model/TOBFType.h"
#include "objfile/query/SymbolicDebug.h"
#include "target/TargetRegisterInterface.h"

#include <map>
#include <string_view>

using namespace Qt::Literals::StringLiterals;

namespace {

using SymbolsByName = std::map<std::string_view, TOBFSymbol*>;

void report(TOBFExpressionEvaluator& evaluator, VariableListBuilder& builder,
            const SymbolsByName& symbols)
{
    VariableFormatter formatter(evaluator, builder);
    for (const auto& [name, symbol] : symbols)
        formatter.formatSymbol(symbol);
}

/// Calls `visit` with the scopes of the function at the PC, from the innermost one outward, until
/// it gives true.
template <typename Visit> void eachLocalScope(const SymbolicDebug& debug, unsigned pc, Visit visit)
{
    TOBFScope* scope = debug.findScope(static_cast<int>(pc));
    for (; scope && scope->scopeKind() != TAG_SCOPE_MODULE; scope = scope->scope())
        if (visit(*scope) || scope->scopeKind() == TAG_SCOPE_FUNCTION)
            return;
}

bool isLocal(const TOBFSymbol& symbol)
{
    return symbol.scope() && symbol.scope()->scopeKind() != TAG_SCOPE_MODULE;
}

} // namespace

void TOBFDebugger::initExpressionParser(const ExpressionContext& context)
{
    m_expressionFile = context.file;
    m_expressionLine = context.line;
    m_currentFrame = context.frame ? context.frame : getFrame(0);
}

// Names

TOBFSymbol* TOBFDebugger::localSymbol(const char* name, unsigned pc)
{
    TOBFSymbol* found = nullptr;
    HString* const key = HString::intern(name);
    if (const SymbolicDebug* const debug = symbols(pc))
        eachLocalScope(*debug, pc, [&](const TOBFScope& scope) {
            const auto known = scope.symbols().find(key);
            if (known != scope.symbols().end())
                found = known->second;
            return found != nullptr;
        });
    return found;
}

QString TOBFDebugger::sourceFileOf(unsigned pc)
{
    QString file;
    unsigned line = 0;
    if (const SymbolicDebug* const debug = symbols(pc))
        debug->sourceAddressMapping().AddressToSource(pc, file, line);
    return file;
}

/// What a name means at the place chosen: a local of the frame's function, a variable of its file,
/// and then any of the program.
TOBFSymbol* TOBFDebugger::getSymbol(const char* name)
{
    QString file = m_expressionFile.osPath();
    if (m_currentFrame) {
        const unsigned pc = m_currentFrame->registers->getPC();
        if (TOBFSymbol* const local = localSymbol(name, pc))
            return local;
        if (file.isEmpty())
            file = sourceFileOf(pc);
    }
    const QString text = QString::fromUtf8(name);
    if (!file.isEmpty())
        for (const SymbolicDebug* const one : m_symbols) {
            TOBFSymbol* const declared = one->findDeclaredSymbol(text, file, 0);
            if (declared && declared->definition() && !isLocal(*declared))
                return declared;
        }
    for (const SymbolicDebug* const one : m_symbols) {
        if (TOBFSymbol* const global = one->findGlobalSymbol(text))
            return global;
        if (TOBFSymbol* const ofModule = one->findModuleSymbol(text))
            return ofModule;
    }
    return nullptr;
}

TOBFType* TOBFDebugger::getNamedType(const char* name)
{
    for (const SymbolicDebug* const one : m_symbols)
        if (TOBFType* const type = one->findNamedType(QString::fromUtf8(name)))
            return type;
    return nullptr;
}

unsigned TOBFDebugger::getSPValue(unsigned number)
{
    return m_currentFrame ? m_currentFrame->registers->getValue(number) : 0;
}

int TOBFDebugger::getSPAdjustment()
{
    if (!m_currentFrame)
        return 0;
    const TOBFInsn* const item = getInsnAt(m_currentFrame->registers->getPC());
    return item && item->stackAdjustment() != TOBFInsn::UnknownStackAdjustment
        ? item->stackAdjustment()
        : 0;
}

// Variables

void TOBFDebugger::getGlobalVariables(Frame* frame, VariableListBuilder* builder)
{
    initExpressionParser({frame, Path(), 0});
    SymbolsByName found;
    for (const SymbolicDebug* const one : m_symbols)
        for (const auto& [name, symbol] : one->module()->publicSymbols())
            if (symbol->type())
                found.emplace(name->view(), symbol);
    report(*this, *builder, found);
}

void TOBFDebugger::getLocalVariables(Frame* frame, VariableListBuilder* builder)
{
    if (!frame || !frame->symbols)
        return;
    initExpressionParser({frame, Path(), 0});
    SymbolsByName found;
    eachLocalScope(*frame->symbols, frame->registers->getPC(), [&](const TOBFScope& scope) {
        for (const auto& [name, symbol] : scope.symbols())
            if (symbol->type())
                found.emplace(name->view(), symbol);
        return false;
    });
    report(*this, *builder, found);
}

void TOBFDebugger::getParameters(Frame* frame, VariableListBuilder* builder)
{
    if (!frame)
        return;
    initExpressionParser({frame, Path(), 0});
    const TOBFSymbol* const function = findFunctionSymbol(frame->registers->getPC());
    if (!function)
        return;
    VariableFormatter formatter(*this, *builder);
    for (TOBFSymbol* const parameter :
         static_cast<TOBFFunctionType*>(function->type())->parameters())
        formatter.formatSymbol(parameter);
}

// Expressions

void TOBFDebugger::evaluateExpression(const ExpressionContext& context, const QString& name,
                                      const QString& expression, VariableListBuilder* builder)
{
    ExpressionType value;
    evaluateExpression(context, expression, value);
    builder->setExpressionContext(context);
    VariableFormatter(*this, *builder).formatVariable(name, expression, value);
}

void TOBFDebugger::evaluateExpression(const ExpressionContext& context, const QString& expression,
                                      ExpressionType& value)
{
    initExpressionParser(context);
    value = parseAndEvaluate(expression.toUtf8().constData());
}

void TOBFDebugger::setExpression(const ExpressionContext& context, const QString& expression,
                                 const ExpressionType& value)
{
    ExpressionType place;
    evaluateExpression(context, expression, place);
    if (!place.getMarker())
        throw ParserException("can't update a constant");
    assign(place.getMarker(), value.resolved());
}
