#pragma once

#include "objfile/model/TOBFScope.h"

#include <vector>

/// Calls `visit` with a scope and all scopes in it, each ahead of its children, which come in list
/// order. However deep they nest, the stack isn't.
template <typename Visit> void forEachScope(TOBFScope* root, Visit visit)
{
    std::vector<TOBFScope*> waiting{root};
    while (!waiting.empty()) {
        TOBFScope* scope = waiting.back();
        waiting.pop_back();
        visit(scope);
        waiting.insert(waiting.end(), scope->children().rbegin(), scope->children().rend());
    }
}
