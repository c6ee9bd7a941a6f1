#pragma once

#include "script/es/ESContext.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

inline std::string textOf(ESContext& context, const ESCompletion& completion)
{
    if (completion.kind == ESCompletion::Normal)
        return context.toString(completion.value).toStdString();
    const ESValue& value = completion.value;
    if (!value.isObject())
        return "thrown " + context.toString(value).toStdString();
    return "thrown "
        + context.toString(context.getProperty(value, ESStringPool::intern(u"name"_s)))
              .toStdString()
        + ": "
        + context.toString(context.getProperty(value, ESStringPool::intern(u"message"_s)))
              .toStdString();
}

inline std::string run(ESContext& context, const char* source)
{
    try {
        return textOf(context, context.eval(QString::fromUtf8(source)));
    } catch (const ESFatalError& error) {
        return "fatal " + error.text().toStdString();
    }
}

inline std::string run(const char* source)
{
    ESContext context;
    return run(context, source);
}

struct Case {
    const char* source;
    const char* result;
};

inline void check(std::initializer_list<Case> cases)
{
    for (const Case& one : cases)
        EXPECT_EQ(run(one.source), one.result) << one.source;
}
