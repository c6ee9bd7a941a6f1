#include "target/script/BuiltinScript.h"

using namespace Qt::Literals::StringLiterals;

BuiltinScript::BuiltinScript(Echo echo) : ESClass(u"Script"_s), m_echo(std::move(echo)) { }

void BuiltinScript::install(ESContext* context, const QStringList& arguments)
{
    ESObject* const object = context->newObject();
    object->objectClass = this;
    context->biinst(object, {"Echo", "WScript.Echo", 0, false, 0}, this);
    std::vector<ESValue> values;
    for (const QString& argument : arguments)
        values.push_back(context->text(argument));
    ESContext::define(object, "Arguments",
                      ESValue(context->newArray(static_cast<int>(values.size()), values.data())));
    ESContext::define(context->global(), "WScript", ESValue(object));
}

void BuiltinScript::call(ESContext* context, ESObject* function, ESObject*, int argc, ESValue* argv)
{
    if (function->nativeIndex != 0)
        context->throwTypeError(u"bad signature in BuiltinScript::call"_s);
    m_echo(context->toString(ESContext::biarg(argc, argv, 0)));
    argv[0] = {};
}
