#pragma once

#include "debugger/expressions/TOBFExpressionEvaluator.h"
#include "debugger/interface/VariableListBuilder.h"

/// Walks a value for a VariableListBuilder: what it holds at the first level, and below pointers,
/// arrays and structures as far as the builder wants to see.
class VariableFormatter {
public:
    VariableFormatter(TOBFExpressionEvaluator& evaluator, VariableListBuilder& builder)
        : m_evaluator(evaluator),
          m_builder(builder)
    {
    }

    /// A symbol that lives nowhere is left out.
    void formatSymbol(TOBFSymbol* symbol);
    /// A located value, or any other. What can't be read is shown as its failure.
    void formatVariable(const QString& name, const QString& expression,
                        const ExpressionType& value);

private:
    struct Row {
        const QString& name;
        const QString& expression;
        MyMarker* marker;
    };

    void formatType(const Row& row, TOBFType* type);
    void formatPtr(const Row& row, TOBFType* type);
    void formatArray(const Row& row, TOBFType* type);
    void formatStruct(const Row& row, TOBFType* type);
    void formatFields(const Row& row, MyMarker* structure, const QString& memberOperator);
    void formatElements(const Row& row, unsigned count);
    /// The place of a field, or why it has none.
    ExpressionType field(MyMarker* structure, const char* name);
    void addPrimitive(const Row& row, const ExpressionType& value, TOBFType* type);
    void addString(const Row& row, const MyMarker& text, unsigned length);

    TOBFExpressionEvaluator& m_evaluator;
    VariableListBuilder& m_builder;
    int m_depth = 0;
};
