#include "objfile/model/TOBFExpr.h"

#include "objfile/model/RecursionLimit.h"
#include "objfile/model/TOBFFragment.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/model/TOBFSymbol.h"

#include <algorithm>
#include <utility>

namespace {

TOBFValue absolute(std::int64_t value)
{
    TOBFValue result;
    result.value = value;
    return result;
}

template <typename T> const T* as(const TOBFExpr* expr, TOBFKind kind)
{
    return expr != nullptr && expr->kind() == kind ? static_cast<const T*>(expr) : nullptr;
}

std::int64_t wrap(std::uint64_t value) { return static_cast<std::int64_t>(value); }
std::uint64_t bits(std::int64_t value) { return static_cast<std::uint64_t>(value); }

std::int64_t divide(std::int64_t left, std::int64_t right)
{
    if (right == -1) // the one quotient that 64 bits do not hold wraps round
        return wrap(0 - bits(left));
    return left / right;
}

/// The text and the arithmetic of one operation. Division and remainder by zero are refused before.
struct Operation {
    int code;
    const char* text;
    std::int64_t (*apply)(std::int64_t left, std::int64_t right);
};

using I = std::int64_t;
constexpr Operation operations[] = {
    {TAG_ADD, " + ", [](I a, I b) { return wrap(bits(a) + bits(b)); }},
    {TAG_SUB, " - ", [](I a, I b) { return wrap(bits(a) - bits(b)); }},
    {TAG_MUL, " * ", [](I a, I b) { return wrap(bits(a) * bits(b)); }},
    {TAG_DIV, " / ", [](I a, I b) { return divide(a, b); }},
    {TAG_MOD, " % ", [](I a, I b) { return b == -1 ? 0 : a % b; }},
    {TAG_AND, " & ", [](I a, I b) { return a & b; }},
    {TAG_OR, " | ", [](I a, I b) { return a | b; }},
    {TAG_XOR, " ^ ", [](I a, I b) { return a ^ b; }},
    {TAG_SHL, " << ", [](I a, I b) { return wrap(bits(a) << (b & 63)); }},
    {TAG_SHR, " >> ", [](I a, I b) { return wrap(bits(a) >> (b & 63)); }},
    {TAG_EQ, " == ", [](I a, I b) { return I{a == b}; }},
    {TAG_NE, " != ", [](I a, I b) { return I{a != b}; }},
    {TAG_GT, " > ", [](I a, I b) { return I{a > b}; }},
    {TAG_LT, " < ", [](I a, I b) { return I{a < b}; }},
    {TAG_GE, " >= ", [](I a, I b) { return I{a >= b}; }},
    {TAG_LE, " <= ", [](I a, I b) { return I{a <= b}; }},
    {TAG_LOGICAL_AND, " && ", [](I a, I b) { return I{a != 0 && b != 0}; }},
    {TAG_LOGICAL_OR, " || ", [](I a, I b) { return I{a != 0 || b != 0}; }},
    {TAG_ASHR, " ASHR ", [](I a, I b) { return a >> (b & 63); }},
    {TAG_BASE_OFFSET, "", [](I a, I) { return a; }},
    {TAG_WORD_ADDRESS, "", [](I a, I) { return a >> 1; }},
};

const Operation* findOperation(int code)
{
    for (const Operation& operation : operations)
        if (operation.code == code)
            return &operation;
    return nullptr;
}

TOBFSection* sectionOf(int code, const TOBFValue& left, const TOBFValue& right)
{
    switch (code) {
    case TAG_ADD: return left.section != nullptr ? left.section : right.section;
    case TAG_SUB:
        if (left.section != nullptr && right.section != nullptr)
            return nullptr;
        return left.section != nullptr ? left.section : right.section;
    case TAG_MUL: return right.section != nullptr ? nullptr : left.section;
    case TAG_WORD_ADDRESS:
    case TAG_BASE_OFFSET: return left.section;
    default: return nullptr;
    }
}

std::uint32_t sizeOf(const TOBFExpr* expr)
{
    const auto* binary = as<TOBFBinaryExpr>(expr, TOBFKind::BinaryExpr);
    return binary != nullptr ? binary->size() : 0;
}

bool isLeaf(const TOBFExpr* expr)
{
    return expr->kind() == TOBFKind::SymbolExpr || expr->kind() == TOBFKind::ConstExpr;
}

} // namespace

bool TOBFExpr::isBinaryAdd() const
{
    const auto* binary = as<TOBFBinaryExpr>(this, TOBFKind::BinaryExpr);
    return binary != nullptr && binary->operation() == TAG_ADD && binary->right() != nullptr
        && binary->right()->isConstant();
}

bool TOBFConstExpr::equals(const TOBFExpr* other) const
{
    const auto* it = as<TOBFConstExpr>(other, kind());
    return it != nullptr && it->m_value == m_value;
}

TOBFValue TOBFConstExpr::evaluate() const { return absolute(m_value); }
std::string TOBFConstExpr::printString() { return std::to_string(m_value); }

bool TOBFRegisterExpr::equals(const TOBFExpr* other) const
{
    const auto* it = as<TOBFRegisterExpr>(other, kind());
    return it != nullptr && it->m_number == m_number;
}

TOBFValue TOBFRegisterExpr::evaluate() const { return TOBFValue::failure({}); }

std::string TOBFRegisterExpr::printString()
{
    static const char* const special[] = {"PC", "SP", "SR"};
    if (m_number >= 0 && m_number < 3)
        return special[m_number];
    return "R" + std::to_string(m_number);
}

bool TOBFTypeExpr::equals(const TOBFExpr* other) const
{
    const auto* it = as<TOBFTypeExpr>(other, kind());
    return it != nullptr && it->type() == type() && m_expr->equals(it->m_expr);
}

void TOBFTypeExpr::markReachable(bool reachable)
{
    if (mark(reachable))
        m_expr->markReachable(reachable);
}

bool TOBFSymbolExpr::equals(const TOBFExpr* other) const
{
    const auto* it = as<TOBFSymbolExpr>(other, kind());
    return it != nullptr && it->m_symbol == m_symbol;
}

TOBFValue TOBFSymbolExpr::evaluate() const
{
    const auto text = [this] {
        HString* name = m_symbol->getName();
        return name != nullptr ? name->str() : std::string();
    };
    if (m_evaluating)
        return TOBFValue::failure("circular reference to " + text());
    if (m_symbol->definition() == nullptr)
        return TOBFValue::failure("undefined symbol " + text());
    const RecursionLimit depth;
    if (depth.exceeded())
        return TOBFValue::failure("definition of " + text() + " is nested too deeply");
    m_evaluating = true;
    TOBFValue result = m_symbol->definition()->evaluate();
    m_evaluating = false;
    result.codelet = m_symbol->codelet();
    result.patchable = m_symbol->isPatchable();
    result.patched = m_symbol->isPatched();
    return result;
}

std::string TOBFSymbolExpr::printString()
{
    HString* name = m_symbol->getName();
    return name != nullptr ? name->str() : std::string();
}

void TOBFSymbolExpr::markReachable(bool reachable)
{
    if (mark(reachable))
        m_symbol->markReachable(reachable);
}

bool TOBFMarkerExpr::equals(const TOBFExpr* other) const
{
    const auto* it = as<TOBFMarkerExpr>(other, kind());
    return it != nullptr && it->m_marker == m_marker;
}

TOBFValue TOBFMarkerExpr::evaluate() const
{
    if (m_marker->pc() == -1) {
        HString* name = m_marker->getName();
        return TOBFValue::failure(std::string("forward reference to label")
                                  + (name != nullptr ? " " + name->str() : std::string()));
    }
    TOBFValue result = absolute(m_marker->pc());
    if (m_marker->fragment() != nullptr)
        result.section = m_marker->fragment()->section();
    return result;
}

std::string TOBFMarkerExpr::printString() { return m_marker->label(); }

void TOBFMarkerExpr::markReachable(bool reachable)
{
    if (mark(reachable))
        m_marker->markReachable(reachable);
}

TOBFBinaryExpr::TOBFBinaryExpr(int operation, TOBFExpr* left, TOBFExpr* right)
    : TOBFExpr(TOBFKind::BinaryExpr),
      m_operation(operation),
      m_left(left),
      m_right(right)
{
    const std::uint64_t size = std::uint64_t{1} + sizeOf(left) + sizeOf(right);
    m_size = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, UINT32_MAX));
}

TOBFExpr* TOBFBinaryExpr::make(int operation, TOBFExpr* left, TOBFExpr* right)
{
    auto* node = new TOBFBinaryExpr(operation, left, right);
    if (left->isConstant() && (right == nullptr || right->isConstant())) {
        const TOBFValue value = node->evaluate();
        if (!value.failed)
            return new TOBFConstExpr(value.value);
    }
    if (operation != TAG_ADD || right == nullptr)
        return node;
    if (left->isConstant() && right->isBinaryAdd())
        std::swap(left, right);
    if (left->isBinaryAdd() && right->isConstant()) {
        auto* inner = static_cast<TOBFBinaryExpr*>(left);
        return make(TAG_ADD, inner->m_left, make(TAG_ADD, inner->m_right, right));
    }
    return node;
}

bool TOBFBinaryExpr::equals(const TOBFExpr* other) const
{
    const auto* it = as<TOBFBinaryExpr>(other, kind());
    if (it == nullptr || it->m_operation != m_operation || !m_left->equals(it->m_left))
        return false;
    if (m_right == nullptr || it->m_right == nullptr)
        return m_right == it->m_right;
    return m_right->equals(it->m_right);
}

TOBFValue TOBFBinaryExpr::evaluate() const
{
    const RecursionLimit depth;
    if (depth.exceeded())
        return TOBFValue::failure("expression is nested too deeply");
    TOBFValue left = m_left->evaluate();
    if (left.failed)
        return left;
    TOBFValue right;
    if (m_right != nullptr)
        right = m_right->evaluate();
    if (right.failed)
        return right;
    if (right.value == 0 && m_operation == TAG_DIV)
        return TOBFValue::failure("division by zero");
    if (right.value == 0 && m_operation == TAG_MOD)
        return TOBFValue::failure("modulus by zero");
    if (const Operation* operation = findOperation(m_operation)) {
        left.section = sectionOf(m_operation, left, right);
        left.value = operation->apply(left.value, right.value);
    } else {
        left.section = nullptr;
    }
    return left;
}

std::string TOBFBinaryExpr::printString()
{
    const RecursionLimit depth;
    if (depth.exceeded())
        return "...";
    const std::string left = m_left->printString();
    const std::string right = m_right != nullptr ? m_right->printString() : std::string();
    if (m_operation == TAG_BASE_OFFSET)
        return right + "[" + left + "]";
    if (m_operation == TAG_WORD_ADDRESS)
        return isLeaf(m_left) ? "W:" + left : "W:(" + left + ")";
    const Operation* operation = findOperation(m_operation);
    return left + (operation != nullptr ? operation->text : " ?? ") + right;
}

void TOBFBinaryExpr::markReachable(bool reachable)
{
    if (!mark(reachable))
        return;
    const RecursionLimit depth;
    depth.check();
    m_left->markReachable(reachable);
    if (m_right != nullptr)
        m_right->markReachable(reachable);
}
