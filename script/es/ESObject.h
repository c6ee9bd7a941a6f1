#pragma once

#include "script/es/ESProperty.h"

#include <vector>

class ESClass;
class ESCode;
class ESObject;

/// What makes an object callable: its code, or a native function's number of arguments, and the
/// scope that it was made in.
struct ESClosure {
    int parameterCount = 0;
    int localCount = 0;
    ESCode* code = nullptr;
    ESObject* scope = nullptr;
};

/// An object of a script, or a node of a scope chain. Lives until its context dies.
class ESObject {
public:
    ESObject* prototype = nullptr; ///< of a scope node: the next node
    ESValue primitive;             ///< of a scope node: the object that is searched
    ESClosure* callClosure = nullptr;
    ESClosure* constructClosure = nullptr;
    ESClass* objectClass = nullptr;
    std::vector<ESProperty> properties;
    int nativeIndex = -1;
    ESObject* nextFree = nullptr;
    ESObject* nextObject = nullptr;
};
