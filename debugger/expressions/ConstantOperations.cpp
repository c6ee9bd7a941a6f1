// What an expression of constants doesn't have: each operation refuses with a message of its own.

#include "debugger/expressions/ExpressionParser.h"
#include "debugger/expressions/ParserException.h"

namespace {

[[noreturn]] void symbolNotFound(const QString& name)
{
    throw ParserException(name + QStringLiteral(" symbol not found"));
}

} // namespace

ExpressionType ExpressionParser::getScopedIdentifier(const QStringList& names)
{
    symbolNotFound(names.join(u"::"));
}

ExpressionType ExpressionParser::getIdentifier(const char* name)
{
    symbolNotFound(QString::fromUtf8(name));
}

ExpressionType ExpressionParser::getRegister(const char*)
{
    throw ParserException("unknown register");
}

bool ExpressionParser::isUserTypeName(const char*) { return false; }

ExpressionType ExpressionParser::cast(const BaseType*, const ExpressionType&)
{
    throw ParserException("cannot cast");
}

ExpressionType ExpressionParser::getDereference(MarkerType*, unsigned)
{
    throw ParserException("cannot dereference");
}

ExpressionType ExpressionParser::getDereference(MarkerType*, const char*)
{
    throw ParserException("cannot dereference");
}

ExpressionType ExpressionParser::getDereference(MarkerType*, const QStringList&)
{
    throw ParserException("cannot dereference");
}

ExpressionType ExpressionParser::getAddressof(MarkerType*)
{
    throw ParserException("addressof not implemented");
}

ExpressionType ExpressionParser::getSizeof(MarkerType*)
{
    throw ParserException("sizeof not implemented");
}

void ExpressionParser::assign(MarkerType*, const ExpressionType&)
{
    symbolNotFound(QStringLiteral("this"));
}

ExpressionType ExpressionParser::getValue(MarkerType*) { symbolNotFound(QStringLiteral("this")); }

ExpressionType ExpressionParser::callFunction(MarkerType*, std::list<ExpressionType>&)
{
    throw ParserException("function calling not implemented");
}
