#include "script/es/ESNativeClass.h"

using namespace Qt::Literals::StringLiterals;

void ESNativeClass::installFunctions(ESContext* context, ESObject* holder, std::size_t from)
{
    for (std::size_t i = from; i < m_functions.size(); ++i) {
        const ESNative& native = m_functions[i];
        const QByteArray fullName = QByteArray(m_name) + ".prototype." + native.name;
        context->biinst(
            holder, {native.name, fullName.constData(), native.length, false, static_cast<int>(i)},
            this);
    }
}

ESObject* ESNativeClass::installConstructor(ESContext* context, ESObject* prototype)
{
    return context->mkbiobj({m_name, m_name, m_functions[0].length, true, 0}, prototype, this);
}

void ESNativeClass::call(ESContext* context, ESObject* function, ESObject* thisObject, int argc,
                         ESValue* argv)
{
    const auto index = static_cast<std::size_t>(function->nativeIndex);
    if (index >= m_functions.size())
        context->throwTypeError(u"bad signature in builtin call"_s);
    const ESValue result = m_functions[index].run({*context, function, thisObject, argc, argv});
    argv[0] = result;
}

ESObject* ESNativeClass::construct(ESContext* context, ESObject* function, int argc, ESValue* argv)
{
    if (function->nativeIndex != 0)
        context->throwTypeError(u"bad signature in builtin construct"_s);
    return make({*context, function, nullptr, argc, argv});
}

ESObject* ESNativeClass::make(const ESCall& call)
{
    return call.context.toObject(m_functions[0].run(call));
}
