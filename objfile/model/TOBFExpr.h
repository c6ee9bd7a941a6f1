#pragma once

#include "objfile/model/TOBFObject.h"
#include "objfile/model/TOBFValue.h"

#include <string>

class TOBFMarker;
class TOBFSymbol;

/// An expression over symbols, markers and constants: an operand, a symbol's definition, a
/// location.
class TOBFExpr : public TOBFObject {
public:
    using TOBFObject::TOBFObject;

    virtual bool isConstant() const { return false; }
    virtual bool equals(const TOBFExpr* other) const = 0;
    virtual TOBFValue evaluate() const = 0;
    virtual std::string printString() = 0;
    virtual void externalize(TOBFWriter* writer) = 0;

    void markReachable(bool reachable) override { mark(reachable); }

    /// An addition whose right operand is constant.
    bool isBinaryAdd() const;
};

class TOBFConstExpr final : public TOBFExpr {
public:
    explicit TOBFConstExpr(std::int64_t value) : TOBFExpr(TOBFKind::ConstExpr), m_value(value) { }

    std::int64_t value() const { return m_value; }
    bool isConstant() const override { return true; }
    bool equals(const TOBFExpr* other) const override;
    TOBFValue evaluate() const override;
    std::string printString() override;
    void externalize(TOBFWriter* writer) override;

private:
    std::int64_t m_value;
};

class TOBFRegisterExpr final : public TOBFExpr {
public:
    explicit TOBFRegisterExpr(int number) : TOBFExpr(TOBFKind::RegisterExpr), m_number(number) { }

    int number() const { return m_number; }
    bool equals(const TOBFExpr* other) const override;
    TOBFValue evaluate() const override;
    std::string printString() override;
    void externalize(TOBFWriter* writer) override;

private:
    std::int32_t m_number;
};

/// An expression with a type of its own. The file holds the wrapped expression alone.
class TOBFTypeExpr final : public TOBFExpr {
public:
    TOBFTypeExpr(TOBFExpr* expr, TOBFType* type) : TOBFExpr(TOBFKind::TypeExpr), m_expr(expr)
    {
        setType(type);
    }

    TOBFExpr* expr() const { return m_expr; }
    bool isConstant() const override { return m_expr->isConstant(); }
    bool equals(const TOBFExpr* other) const override;
    TOBFValue evaluate() const override { return m_expr->evaluate(); }
    std::string printString() override { return m_expr->printString(); }
    void externalize(TOBFWriter* writer) override { m_expr->externalize(writer); }
    void markReachable(bool reachable) override;

private:
    TOBFExpr* m_expr;
};

class TOBFSymbolExpr final : public TOBFExpr {
public:
    explicit TOBFSymbolExpr(TOBFSymbol* symbol) : TOBFExpr(TOBFKind::SymbolExpr), m_symbol(symbol)
    {
    }

    TOBFSymbol* symbol() const { return m_symbol; }
    /// Lets the expression name another symbol, for a linker that knows the definition.
    void setSymbol(TOBFSymbol* symbol) { m_symbol = symbol; }
    bool equals(const TOBFExpr* other) const override;
    TOBFValue evaluate() const override;
    std::string printString() override;
    void externalize(TOBFWriter* writer) override;
    void markReachable(bool reachable) override;

private:
    TOBFSymbol* m_symbol;
    mutable bool m_evaluating = false;
};

class TOBFMarkerExpr final : public TOBFExpr {
public:
    explicit TOBFMarkerExpr(TOBFMarker* marker) : TOBFExpr(TOBFKind::MarkerExpr), m_marker(marker)
    {
    }

    TOBFMarker* marker() const { return m_marker; }
    bool equals(const TOBFExpr* other) const override;
    TOBFValue evaluate() const override;
    std::string printString() override;
    void externalize(TOBFWriter* writer) override;
    void markReachable(bool reachable) override;

private:
    TOBFMarker* m_marker;
};

class TOBFBinaryExpr final : public TOBFExpr {
public:
    /// The only way to make one. Folds constants, and sums of a sum with a constant, so the result
    /// may be another expression. `right` may be null.
    static TOBFExpr* make(int operation, TOBFExpr* left, TOBFExpr* right);

    /// A tag of the arithmetic, comparison and location records.
    int operation() const { return m_operation; }
    TOBFExpr* left() const { return m_left; }
    TOBFExpr* right() const { return m_right; }
    /// How many operations the expression has when written out.
    std::uint32_t size() const { return m_size; }

    bool equals(const TOBFExpr* other) const override;
    TOBFValue evaluate() const override;
    std::string printString() override;
    void externalize(TOBFWriter* writer) override;
    void markReachable(bool reachable) override;

private:
    TOBFBinaryExpr(int operation, TOBFExpr* left, TOBFExpr* right);

    std::int32_t m_operation;
    std::uint32_t m_size;
    TOBFExpr* m_left;
    TOBFExpr* m_right;
};
