#pragma once

#include "debugger/expressions/Expression.h"

#include <QString>
#include <QStringList>

#include <vector>

/// A type as it is written in a cast.
class BaseType {
public:
    virtual ~BaseType() = default;

    /// As text that reads as the same type.
    virtual QString dump() const = 0;
    /// The expressions in it.
    virtual std::vector<ExpressionPtr> expressions() const { return {}; }
};

class SimpleType final : public BaseType {
public:
    enum Code { Char = 0, Short = 1, Int = 2, Long = 3, LongLong = 4, Float = 5, Double = 6 };

    SimpleType(Code code, bool isUnsigned) : m_code(code), m_unsigned(isUnsigned) { }
    Code code() const { return m_code; }
    bool isUnsigned() const { return m_unsigned; }
    QString dump() const override;

private:
    Code m_code;
    bool m_unsigned;
};

/// A type of the program, by its name; "struct" stands in front of a structure's.
class UserType final : public BaseType {
public:
    explicit UserType(std::string name) : m_name(std::move(name)) { }
    const std::string& name() const { return m_name; }
    QString dump() const override { return QString::fromStdString(m_name); }

private:
    std::string m_name;
};

class StructType final : public BaseType {
public:
    struct Field {
        std::string name; ///< may be empty
        BaseTypePtr type;
        int bits; ///< of a bit-field, else 0
    };
    explicit StructType(std::vector<Field> fields) : m_fields(std::move(fields)) { }
    const std::vector<Field>& fields() const { return m_fields; }
    QString dump() const override;

private:
    std::vector<Field> m_fields;
};

/// Named bits of a register.
class RegisterType final : public BaseType {
public:
    struct Field {
        std::string name;
        int bitOffset;
        int bits;
    };
    /// `size` in bytes.
    RegisterType(int size, std::vector<Field> fields)
        : m_size(size),
          m_fields(std::move(fields)) { }
    int size() const { return m_size; }
    const std::vector<Field>& fields() const { return m_fields; }
    QString dump() const override;

private:
    int m_size;
    std::vector<Field> m_fields;
};

class PointerType final : public BaseType {
public:
    explicit PointerType(BaseTypePtr target) : m_target(std::move(target)) { }
    const BaseType* target() const { return m_target.get(); }
    QString dump() const override { return m_target->dump() + u'*'; }
    std::vector<ExpressionPtr> expressions() const override { return m_target->expressions(); }

private:
    BaseTypePtr m_target;
};

class ArrayType final : public BaseType {
public:
    ArrayType(BaseTypePtr element, ExpressionPtr size)
        : m_element(std::move(element)),
          m_size(std::move(size))
    {
    }
    const BaseType* element() const { return m_element.get(); }
    const Expression& size() const { return *m_size; }
    QString dump() const override { return m_element->dump() + u'[' + m_size->dump() + u']'; }
    std::vector<ExpressionPtr> expressions() const override;

private:
    BaseTypePtr m_element;
    ExpressionPtr m_size;
};
