#pragma once

#include "script/es/ESNativeClass.h"

#include <memory>

/// The classes of the standard objects.
std::unique_ptr<ESNativeClass> makeObjectClass();
std::unique_ptr<ESNativeClass> makeFunctionClass();
std::unique_ptr<ESNativeClass> makeBooleanClass();
std::unique_ptr<ESNativeClass> makeNumberClass();
std::unique_ptr<ESNativeClass> makeMathClass();
std::unique_ptr<ESNativeClass> makeStringClass();
std::unique_ptr<ESNativeClass> makeDateClass();
std::unique_ptr<ESNativeClass> makeGlobalClass();
/// Of one kind of error; the name is that of its constructor.
std::unique_ptr<ESNativeClass> makeErrorClass(ESContext::ErrorKind kind, const char* name);
/// The functions of Array, beside what arrays do.
std::unique_ptr<ESNativeClass> makeArrayFunctions();

void installNumberConstants(ESObject* constructor);
void installMathConstants(ESObject* math);
/// String.fromCharCode.
void installStringFunctions(ESContext* context, ESObject* constructor);
