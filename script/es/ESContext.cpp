#include "script/es/ESContext.h"

#include "script/es/ESCode.h"

#include <cmath>

using namespace Qt::Literals::StringLiterals;

ESContext::ESContext() : m_global(std::make_unique<ESObject>()) { }

ESContext::~ESContext() = default;

int ESContext::globalSlot(ESString* name, unsigned flags)
{
    auto& properties = m_global->properties;
    for (std::size_t i = 0; i < properties.size(); ++i)
        if (properties[i].name == name)
            return static_cast<int>(i);
    properties.push_back({name, flags, {}});
    return static_cast<int>(properties.size()) - 1;
}

std::vector<std::unique_ptr<ESCode>>& ESContext::codes()
{
    static std::vector<std::unique_ptr<ESCode>> all;
    return all;
}

int ESContext::registerFunctionCode(ESCode* code)
{
    codes().emplace_back(code);
    return static_cast<int>(codes().size()) - 1;
}

ESCode* ESContext::functionCode(int index)
{
    return codes()[static_cast<std::size_t>(index)].get();
}

ESString* ESContext::numberName(double number)
{
    return ESStringPool::intern(numberText(number, 10));
}

QString ESContext::numberText(double number, int radix)
{
    // The bounds of a signed 64-bit number.
    constexpr double Limit = 9223372036854775808.0;
    constexpr int SignificantDigits = 6;
    if (std::isnan(number))
        return u"NaN"_s;
    if (std::isinf(number))
        return number > 0 ? u"Infinity"_s : u"-Infinity"_s;
    if (number == 0)
        return u"0"_s;
    if (std::trunc(number) != number || std::fabs(number) >= Limit)
        return QString::number(number, 'g', SignificantDigits);
    const auto whole = static_cast<qint64>(number);
    return radix == 10 ? QString::number(whole) : QString::number(quint64(whole), radix);
}
