#pragma once

#include "script/es/ESErrors.h"
#include "script/es/ESObject.h"

#include <memory>
#include <vector>

/// One running instance of the script engine.
class ESContext {
public:
    ESContext();
    virtual ~ESContext();
    ESContext(const ESContext&) = delete;
    ESContext& operator=(const ESContext&) = delete;

    ESObject* global() { return m_global.get(); }
    /// The slot of a global variable, made if there is none of that name.
    int globalSlot(ESString* name, unsigned flags);

    /// Takes a function's code over, for the life of the process, and numbers it.
    static int registerFunctionCode(ESCode* code);
    static ESCode* functionCode(int index);

    /// The text of a number, as it names a property.
    static ESString* numberName(double number);
    /// The printed form: six significant digits, or a whole number in the radix.
    static QString numberText(double number, int radix);

private:
    static std::vector<std::unique_ptr<ESCode>>& codes();

    std::unique_ptr<ESObject> m_global;
};
