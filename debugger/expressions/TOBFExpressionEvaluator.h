#pragma once

#include "debugger/expressions/DebugExpressionParser.h"
#include "debugger/expressions/EvaluatorTypes.h"

class MyMarker;
class SimpleType;
class TOBFDynamicField;
class TOBFExpr;
class TOBFExpressionEvaluator;
class TOBFField;
class TOBFSymbol;

/// A located value with its type.
class MyMarker final : public DebugMarkerType {
public:
    std::unique_ptr<MarkerType> clone() const override { return std::make_unique<MyMarker>(*this); }
    ExpressionType getValue() override;
    /// Assigns the value of an expression.
    void setValue(QString value) override;
    QString registerNumberToName(unsigned number) override;
    bool registerNumberLT(unsigned a, unsigned b) const override;

    TOBFType* type() const { return m_type; }

private:
    friend class TOBFExpressionEvaluator;
    MyMarker(TOBFExpressionEvaluator* evaluator, TOBFType* type)
        : m_type(type),
          m_evaluator(evaluator)
    {
    }

    TOBFType* m_type;
    TOBFExpressionEvaluator* m_evaluator;
};

/// Expressions over the symbols and types of a program on a target. A name gives a location;
/// memory is read when its value is needed. The debugger derives from this and supplies the
/// operations that are pure here, for the frame and the place that it has chosen.
///
/// Locations must not be used after the evaluator, nor after the program that their types come
/// from.
class TOBFExpressionEvaluator : public DebugExpressionParser {
public:
    /// Values up to this size are read at once.
    static constexpr unsigned LargestWholeValue = 1024;

    TOBFExpressionEvaluator();

    /// -1 for a name that no register has.
    virtual int registerNameToNumber(const QString& name) = 0;
    /// Null string for a number that names no register.
    virtual QString registerNumberToName(unsigned number) = 0;
    virtual bool registerNumberLT(unsigned a, unsigned b) const { return a < b; }
    /// The symbol that a name means in the place chosen, or null.
    virtual TOBFSymbol* getSymbol(const char* name) = 0;
    /// A type of the program, or null. The name of a structure begins with "struct ".
    virtual TOBFType* getNamedType(const char* name) = 0;
    /// The value of a base register of variables, in the frame chosen.
    virtual unsigned getSPValue(unsigned number) = 0;
    /// The distance of the stack pointer from where it was at the function's entry, a negative
    /// number of bytes.
    virtual int getSPAdjustment() = 0;
    /// The register that holds piece `index` of a value that begins in register `number`. Throws
    /// "no such register" where there can be none.
    virtual unsigned registerDereference(unsigned number, unsigned index);

    /// Where a value of this type and place lives. With `forLocation` only real places count, and
    /// no constants. False if it lives nowhere.
    bool getExpressionType(TOBFType* type, TOBFExpr* expr, ExpressionType& result,
                           bool forLocation);
    /// A location. A null type is that of an unsigned int; a size of 0 is the type's. `base` is a
    /// register's number in a register, and the value of a constant.
    ExpressionType mkExpressionType(TOBFType* type, quint64 base,
                                    DebugMarkerType::LocationKind kind, unsigned offset = 0,
                                    unsigned size = 0, int bitOffset = 0, int bitSize = 0);

    /// Pushes a buffer with the location's bytes; with `lazy`, or for a large value, they are read
    /// when they are asked for.
    void fillMemoryBuffer(const MyMarker* marker, bool lazy);
    void discardMemoryBuffer() { popBuffer(); }
    /// Writes the buffer to the location. A constant is refused.
    void writeMemoryBuffer(const MyMarker* marker);
    /// Bytes of a location, from `offset` on.
    void readBytes(const MyMarker& marker, unsigned offset, unsigned size, unsigned char* buffer);
    /// The value of a type at a place of the buffer, and the reverse.
    ExpressionType decodeType(TOBFType* type, unsigned offset = 0);
    void encodeType(TOBFType* type, const ExpressionType& value, unsigned offset = 0);

    /// While it lives, what lies in a location is read once, whole, when the first of it is asked
    /// for. Nothing may be written meanwhile. A large location is read piece by piece instead.
    class OneRead {
    public:
        OneRead(TOBFExpressionEvaluator& evaluator, const MyMarker& marker);
        ~OneRead();
        OneRead(const OneRead&) = delete;
        OneRead& operator=(const OneRead&) = delete;

    private:
        friend class TOBFExpressionEvaluator;
        /// The innermost one that has this; null for none.
        static OneRead* find(OneRead* innermost, DebugMarkerType::LocationKind kind,
                             unsigned address, unsigned size);
        bool covers(DebugMarkerType::LocationKind kind, unsigned address, unsigned size) const;
        const unsigned char* at(unsigned address);

        TOBFExpressionEvaluator& m_evaluator;
        OneRead* m_outer;
        DebugMarkerType::LocationKind m_kind;
        unsigned m_start;
        unsigned m_size;
        std::vector<unsigned char> m_bytes;
    };

    /// The symbol of the last name evaluated; null since it was cleared.
    TOBFSymbol* lastSymbol() const { return m_lastSymbol; }
    void clearLastSymbol() { m_lastSymbol = nullptr; }

    ExpressionType getScopedIdentifier(const QStringList& names) override;
    ExpressionType getIdentifier(const char* name) override;
    using DebugExpressionParser::getRegister;
    ExpressionType getRegister(const char* name) override;
    bool isUserTypeName(const char* name) override;
    ExpressionType cast(const BaseType* type, const ExpressionType& value) override;
    ExpressionType getDereference(MarkerType* marker, unsigned index) override;
    ExpressionType getDereference(MarkerType* marker, const char* field) override;
    ExpressionType getDereference(MarkerType* marker, const QStringList& names) override;
    ExpressionType getAddressof(MarkerType* marker) override;
    ExpressionType getSizeof(MarkerType* marker) override;
    void assign(MarkerType* marker, const ExpressionType& value) override;
    ExpressionType getValue(MarkerType* marker) override;

private:
    bool isStackPointer(int number);
    ExpressionType locatedIn(TOBFType* type, quint64 address, DebugMarkerType::LocationKind kind);
    ExpressionType pointee(MyMarker* pointer, unsigned index);
    ExpressionType element(const MyMarker* array, TOBFType* type, unsigned index);
    ExpressionType fieldOf(const MyMarker* structure, TOBFType* type, TOBFField* field);
    ExpressionType bitFieldOf(const MyMarker* structure, TOBFType* type,
                              const TOBFDynamicField* field);
    ExpressionType moved(const MyMarker* marker, TOBFType* type, unsigned by, unsigned size = 0,
                         int bitOffset = 0, int bitSize = 0);

    TOBFType* getType(const BaseType* type);
    quint64 constantFor(TOBFType* type, const ExpressionType& value) const;

    void writeBytes(const MyMarker& marker, unsigned offset, unsigned size,
                    const unsigned char* buffer);
    void eachRegisterPiece(const MyMarker& marker, unsigned offset, unsigned size,
                           const std::function<void(unsigned number, unsigned from, unsigned first,
                                                    unsigned count)>& visit);

    EvaluatorTypes m_types;
    OneRead* m_oneRead = nullptr; ///< the innermost one
    TOBFSymbol* m_lastSymbol = nullptr;
};
