#include "toolchain/kas/AsmField.h"

#include "toolchain/kas/AsmExpression.h"
#include "toolchain/kas/AsmLine.h"

void AsmField::requireRange(const TOBFExpr* expr, std::int64_t size, const char* what)
{
    const auto value = knownValue(expr);
    if (value && (*value < -size / 2 || *value >= size))
        throw AsmError{std::string(what) + " " + std::to_string(*value) + " is out of range"};
}
