// What a stop of the debugger asks, in a program of 5,000 symbols: the function and the line of an
// address, the scope, and the values of ten watches. The peers are std::map for the look-ups, and
// for the watches the plain reads of what they show.

#include "debugger/expressions/ParserException.h"
#include "debugger/expressions/TOBFExpressionEvaluator.h"
#include "objfile/model/TOBFDirectives.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/model/TOBFModule.h"
#include "objfile/model/TOBFType.h"
#include "objfile/query/SymbolicDebug.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <map>
#include <string>

namespace {

constexpr int Functions = 2000;
constexpr int Variables = 3000;
constexpr int StatementsOfFunction = 10;
constexpr unsigned Code = 0x10000;
constexpr unsigned Data = 0x200;
constexpr unsigned FunctionBytes = StatementsOfFunction * 4;

HString* name(const std::string& text) { return HString::intern(text); }

class Program {
public:
    Program() : m_current(&m_pool), m_module(new TOBFModule)
    {
        m_integer = new TOBFSimpleType(TAG_INT, 2);
        m_node = new TOBFStrucType(4);
        m_node->setName(name("node"));
        m_pointer = new TOBFPtrType(2);
        m_pointer->setTarget(m_node);
        m_node->addField(new TOBFDynamicField(name("value"), 0, 16, m_integer));
        m_node->addField(new TOBFDynamicField(name("next"), 16, 16, m_pointer));
        begin("CODE", SectionKind::Code, Code);
        for (int i = 0; i < Functions; ++i)
            addFunction(i);
        begin("DATA", SectionKind::Data, Data);
        addVariable("array", new TOBFArrayType(m_integer, 16), 32);
        addVariable("node", m_node, 4);
        addVariable("head", m_pointer, 2);
        for (int i = 3; i < Variables; ++i)
            addVariable("variable" + std::to_string(i), m_integer, 2);
        m_debug = std::make_unique<SymbolicDebug>(m_module, Path());
    }
    const SymbolicDebug& debug() const { return *m_debug; }
    TOBFModule* module() const { return m_module; }

private:
    void begin(const char* text, SectionKind kind, unsigned pc)
    {
        m_section = new TOBFSection(name(text));
        m_section->setFlags(static_cast<unsigned>(kind));
        m_module->addSection(m_section);
        m_pc = pc;
    }
    void add(TOBFInsn* item)
    {
        item->setPC(m_pc);
        m_section->addInsn(item);
        m_pc += item->length();
    }
    TOBFExpr* here()
    {
        auto* marker = new TOBFMarker;
        add(marker);
        return new TOBFMarkerExpr(marker);
    }
    TOBFSymbol* symbol(const std::string& text, TOBFType* type, TOBFExpr* definition,
                       TOBFScope* scope)
    {
        auto* symbol = new TOBFSymbol(name(text));
        symbol->setType(type);
        symbol->setDefinition(definition);
        m_module->addSymbol(symbol);
        symbol->setScope(scope);
        return symbol;
    }
    void addFunction(int number)
    {
        m_section->newFragment();
        TOBFExpr* start = here();
        TOBFSymbol* function = symbol("function" + std::to_string(number),
                                      new TOBFFunctionType(0, 0, 0), start, m_module);
        m_module->makePublic(function);
        for (int i = 0; i < StatementsOfFunction; ++i) {
            auto* locus = new TOBFLocus(m_file, number * 20 + i + 1, TAG_LOCUS);
            add(locus);
            auto* item = new TOBFDefBytesInsn(new TOBFConstExpr(0), 4);
            item->setLocus(locus);
            add(item);
        }
        auto* scope = new TOBFScope(TAG_SCOPE_FUNCTION);
        scope->setScope(m_module);
        scope->setRange(start, here());
        scope->setFunctionSymbol(function);
        for (const char* const local : {"index", "count", "total"})
            symbol(local, m_integer,
                   TOBFBinaryExpr::make(TAG_BASE_OFFSET, new TOBFRegisterExpr(1),
                                        new TOBFConstExpr(-4)),
                   scope);
    }
    void addVariable(const std::string& text, TOBFType* type, int size)
    {
        m_module->makePublic(symbol(text, type, here(), m_module));
        add(new TOBFSpaceInsn(new TOBFConstExpr(size)));
    }

    Pool m_pool;
    CurrentPool m_current;
    TOBFModule* m_module;
    TOBFFilename* m_file = new TOBFFilename(name("/home/user/project/source.c"));
    TOBFType* m_integer;
    TOBFStrucType* m_node;
    TOBFPtrType* m_pointer;
    TOBFSection* m_section = nullptr;
    long m_pc = 0;
    std::unique_ptr<SymbolicDebug> m_debug;
};

const Program& program()
{
    static const Program it;
    return it;
}

class Target : public TOBFExpressionEvaluator {
public:
    using TOBFExpressionEvaluator::getRegister;
    void readMemory(unsigned address, unsigned size, unsigned char* buffer) override
    {
        std::memcpy(buffer, memory + address % (sizeof memory - 64), size);
    }
    void writeMemory(unsigned, unsigned, const unsigned char*) override { }
    void readCodeMemory(unsigned, unsigned, unsigned char*) override { }
    void writeCodeMemory(unsigned, unsigned, const unsigned char*) override { }
    void readEepromMemory(unsigned, unsigned, unsigned char*) override { }
    void writeEepromMemory(unsigned, unsigned, const unsigned char*) override { }
    void readPeripheralMemory(unsigned, unsigned, unsigned char*) override { }
    void writePeripheralMemory(unsigned, unsigned, const unsigned char*) override { }
    unsigned long long getRegister(unsigned) override { return 0x400; }
    unsigned getRegisterLength(unsigned) override { return 2; }
    void setRegister(unsigned, unsigned long long) override { }
    int registerNameToNumber(const QString& text) override
    {
        return text == u"SP" ? 1 : text == u"R5" ? 5 : -1;
    }
    QString registerNumberToName(unsigned number) override
    {
        return u'R' + QString::number(number);
    }
    TOBFSymbol* getSymbol(const char* text) override
    {
        const QString symbol = QString::fromUtf8(text);
        TOBFSymbol* found = program().debug().findScopedSymbol(symbol, pc);
        return found != nullptr ? found : program().debug().findGlobalSymbol(symbol);
    }
    TOBFType* getNamedType(const char* text) override
    {
        return program().debug().findNamedType(QString::fromUtf8(text));
    }
    unsigned getSPValue(unsigned) override { return 0x400; }
    int getSPAdjustment() override { return 0; }

    int pc = Code;
    unsigned char memory[0x8000] = {};
};

/// Goes through the code in steps that no order of the symbols favours.
class Addresses {
public:
    unsigned next()
    {
        m_at = (m_at + 7919 * 4) % (Functions * FunctionBytes);
        return Code + m_at;
    }

private:
    unsigned m_at = 0;
};

void indexProgram(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(SymbolicDebug(program().module(), Path()).loci().size());
}

void functionOfAddress(benchmark::State& state)
{
    Addresses addresses;
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(
            program().debug().findFunctionSymbol(static_cast<int>(addresses.next()), false));
}

void functionOfAddressInMap(benchmark::State& state)
{
    std::map<unsigned, int> symbols;
    for (int i = 0; i < Functions; ++i)
        symbols[Code + static_cast<unsigned>(i) * FunctionBytes] = i;
    for (int i = 0; i < Variables; ++i)
        symbols[Data + static_cast<unsigned>(i) * 2] = i;
    Addresses addresses;
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(std::prev(symbols.upper_bound(addresses.next()))->second);
}

void lineOfAddress(benchmark::State& state)
{
    Addresses addresses;
    QString file;
    unsigned line = 0;
    for ([[maybe_unused]] auto _ : state) {
        program().debug().sourceAddressMapping().AddressToSource(addresses.next(), file, line);
        benchmark::DoNotOptimize(line);
    }
}

void lineOfAddressInMap(benchmark::State& state)
{
    std::map<unsigned, std::pair<const char*, unsigned>> lines;
    for (unsigned i = 0; i < Functions * StatementsOfFunction; ++i)
        lines[Code + i * 4] = {"/home/user/project/source.c", i};
    Addresses addresses;
    for ([[maybe_unused]] auto _ : state) {
        const auto& found = std::prev(lines.upper_bound(addresses.next()))->second;
        benchmark::DoNotOptimize(QString::fromUtf8(found.first));
        benchmark::DoNotOptimize(found.second);
    }
}

void addressOfLine(benchmark::State& state)
{
    const QString file = QStringLiteral("/home/user/project/source.c");
    unsigned line = 1;
    unsigned address = 0;
    for ([[maybe_unused]] auto _ : state) {
        line = (line + 20 * 77) % (20 * Functions);
        program().debug().sourceAddressMapping().SourceToAddress(file, line, address);
        benchmark::DoNotOptimize(address);
    }
}

void scopeOfAddress(benchmark::State& state)
{
    Addresses addresses;
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(program().debug().findScope(static_cast<int>(addresses.next())));
}

/// A stop at another place each time.
void tenWatches(benchmark::State& state)
{
    static constexpr const char* watches[] = {"index",
                                              "count + total * 2",
                                              "variable1500",
                                              "variable2999 == 0 && index < 5",
                                              "array[index]",
                                              "node.value",
                                              "head->next->value",
                                              "*(int *)0x300",
                                              "(@R5 & 0xF) >> 1",
                                              "&array[3]"};
    Target target;
    Addresses addresses;
    for ([[maybe_unused]] auto _ : state) {
        target.pc = static_cast<int>(addresses.next());
        for (const char* const watch : watches)
            benchmark::DoNotOptimize(target.parseAndEvaluate(watch).resolved().toStr(10));
    }
}

void tenPlainReads(benchmark::State& state)
{
    Target target;
    for ([[maybe_unused]] auto _ : state) {
        for (unsigned i = 0; i < 10; ++i) {
            unsigned char bytes[2];
            target.readMemory(Data + i * 2, 2, bytes);
            benchmark::DoNotOptimize(QString::number(bytes[0] | bytes[1] << 8));
        }
    }
}

BENCHMARK(indexProgram)->Unit(benchmark::kMillisecond);
BENCHMARK(functionOfAddress);
BENCHMARK(functionOfAddressInMap);
BENCHMARK(lineOfAddress);
BENCHMARK(lineOfAddressInMap);
BENCHMARK(addressOfLine);
BENCHMARK(scopeOfAddress);
BENCHMARK(tenWatches)->Unit(benchmark::kMicrosecond);
BENCHMARK(tenPlainReads)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
