// Expressions, read and evaluated on a target with a program of every kind of type. What is read
// must be told again by its text, and evaluating it must end in a value or in a message.

#include "debugger/expressions/ParserException.h"
#include "debugger/expressions/TOBFExpressionEvaluator.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/model/TOBFModule.h"
#include "objfile/model/TOBFType.h"
#include "objfile/query/SymbolicDebug.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

HString* name(const char* text) { return HString::intern(text); }

class Program {
public:
    Program() : m_current(&m_pool), m_module(new TOBFModule)
    {
        m_section = new TOBFSection(name("DATA"));
        m_section->setFlags(static_cast<unsigned>(SectionKind::Data));
        m_module->addSection(m_section);
        TOBFType* integer = new TOBFSimpleType(TAG_INT, 2);
        auto* node = new TOBFStrucType(6);
        node->setName(name("node"));
        auto* pointer = new TOBFPtrType(2);
        pointer->setTarget(node);
        node->addField(new TOBFDynamicField(name("v"), 0, 16, integer));
        node->addField(new TOBFDynamicField(name("n"), 16, 16, pointer));
        node->addField(new TOBFDynamicField(name("b"), 35, 9, integer));
        node->addField(new TOBFDynamicField(name("x"), -7, 70, integer));
        auto* self = new TOBFPtrType(2);
        self->setTarget(self);
        variable("i", integer);
        variable("q", new TOBFSimpleType(TAG_UNSIGNED, 8));
        variable("f", new TOBFFloatType(4));
        variable("s", node);
        variable("p", pointer);
        variable("w", self);
        variable("a", new TOBFArrayType(node, 3));
        variable("h", new TOBFArrayType(integer, 0x7FFFFFFF));
        variable("c", new TOBFQualifiedType(integer, static_cast<TOBFTag>(0x6B)));
        variable("g", new TOBFFunctionType(0, 0, 0));
        symbol("r", integer, new TOBFRegisterExpr(5));
        symbol(
            "l", node,
            TOBFBinaryExpr::make(TAG_BASE_OFFSET, new TOBFRegisterExpr(1), new TOBFConstExpr(-4)));
        symbol("k", integer, new TOBFConstExpr(7));
        m_debug = new SymbolicDebug(m_module, Path());
    }
    const SymbolicDebug& debug() const { return *m_debug; }

private:
    void symbol(const char* text, TOBFType* type, TOBFExpr* definition)
    {
        auto* symbol = new TOBFSymbol(name(text));
        symbol->setType(type);
        symbol->setDefinition(definition);
        m_module->addSymbol(symbol);
        symbol->setScope(m_module);
    }
    void variable(const char* text, TOBFType* type)
    {
        auto* marker = new TOBFMarker;
        marker->setPC(m_pc);
        m_pc += 16;
        m_section->addInsn(marker);
        symbol(text, type, new TOBFMarkerExpr(marker));
    }

    Pool m_pool;
    CurrentPool m_current;
    TOBFModule* m_module;
    TOBFSection* m_section;
    SymbolicDebug* m_debug;
    long m_pc = 0x200;
};

class Target : public TOBFExpressionEvaluator {
public:
    explicit Target(const SymbolicDebug& debug) : m_debug(debug) { }

    using TOBFExpressionEvaluator::getRegister;
    void readMemory(unsigned address, unsigned size, unsigned char* buffer) override
    {
        for (unsigned i = 0; i < size; ++i)
            buffer[i] = m_memory[(address + i) % m_memory.size()];
    }
    void writeMemory(unsigned address, unsigned size, const unsigned char* buffer) override
    {
        for (unsigned i = 0; i < size; ++i)
            m_memory[(address + i) % m_memory.size()] = buffer[i];
    }
    void readCodeMemory(unsigned a, unsigned s, unsigned char* b) override { readMemory(a, s, b); }
    void writeCodeMemory(unsigned a, unsigned s, const unsigned char* b) override
    {
        writeMemory(a, s, b);
    }
    void readEepromMemory(unsigned, unsigned, unsigned char*) override { }
    void writeEepromMemory(unsigned, unsigned, const unsigned char*) override { }
    void readPeripheralMemory(unsigned, unsigned, unsigned char*) override { }
    void writePeripheralMemory(unsigned, unsigned, const unsigned char*) override { }
    unsigned long long getRegister(unsigned number) override { return m_registers.at(number); }
    unsigned getRegisterLength(unsigned number) override { return number % 5; }
    void setRegister(unsigned number, unsigned long long value) override
    {
        m_registers.at(number) = value;
    }
    int registerNameToNumber(const QString& text) override
    {
        bool ok = false;
        const int number = text.sliced(text.isEmpty() ? 0 : 1).toInt(&ok);
        return ok && number >= 0 && number < 16 ? number : -1;
    }
    QString registerNumberToName(unsigned number) override
    {
        return number < 16 ? u'R' + QString::number(number) : QString();
    }
    TOBFSymbol* getSymbol(const char* text) override
    {
        return isShort(text) ? m_debug.findModuleSymbol(QString::fromUtf8(text)) : nullptr;
    }
    TOBFType* getNamedType(const char* text) override
    {
        const std::string tag = text;
        return tag == "struct node" || tag == "node"
            ? m_debug.findNamedType(QString::fromUtf8(text))
            : nullptr;
    }
    unsigned getSPValue(unsigned number) override
    {
        return static_cast<unsigned>(m_registers.at(number));
    }
    int getSPAdjustment() override { return -2; }

private:
    /// Names are interned for good, so that those that the program can't have aren't looked for.
    static bool isShort(const char* text) { return text[0] != '\0' && text[1] == '\0'; }

    const SymbolicDebug& m_debug;
    std::array<unsigned char, 0x1000> m_memory{};
    std::array<unsigned long long, 16> m_registers{};
};

/// The text of what was read is read the same, unless its parentheses are too deep for it or a name
/// stands where a type is read.
void checkText(ExpressionParser& parser, const Expression& expression)
{
    const QString text = expression.dump();
    try {
        const ExpressionPtr again = parser.parse(text.toUtf8().constData());
        require(again->dump() == text);
    } catch (const ParserException&) {
        return;
    }
}

void use(const ExpressionType& located)
{
    located.toStr(10);
    const ExpressionType value = located.resolved();
    for (const int radix : {2, 8, 10, 16}) {
        const QString text = value.toStr(radix);
        require(!value.isNumberType() || !text.isEmpty());
    }
    value.toStr(1, false, true);
    value.TypeToString();
    require(value.equiv(value));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const Program program;
    Target target(program.debug());
    const std::string text(reinterpret_cast<const char*>(data), size);
    try {
        int end = -1;
        const ExpressionPtr expression = target.parse(text.c_str(), &end);
        if (expression == nullptr)
            return 0;
        require(end >= 0 && static_cast<std::size_t>(end) <= text.size());
        checkText(target, *expression);
        use(expression->evaluate());
    } catch (const ParserException& failure) {
        require(!failure.getCause().isEmpty());
    }
    return 0;
}
