#include "toolchain/kcc/DebugConverter.h"

#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "toolchain/kcc/dwarf/DwarfLines.h"

#include <algorithm>

namespace {

/// What the function saved and where, as the stack walk wants it: an ascending run of registers.
void setSavedRegisters(TOBFFunctionType* type, const StackDepths& stack)
{
    // The last register pushed has the lowest address, and the walk reads upwards by number.
    int mask = 0;
    unsigned above = 16;
    int lowest = 0;
    int depth = stack.depths.empty() ? 0 : std::max(stack.depths.front(), 0);
    for (const unsigned reg : stack.saved) {
        depth += 2;
        if (reg >= above) {
            mask = 0;
            lowest = 0;
        }
        mask |= 1 << reg;
        lowest = -depth;
        above = reg;
    }
    type->setSaved(lowest, mask);
}

} // namespace

DebugConverter::DebugConverter(ObjectConverter& converter)
    : m_converter(converter),
      m_unit(converter.elf()),
      m_types(m_unit, converter.module())
{
}

void DebugConverter::convert()
{
    const std::string directory(m_unit.root().text(Dwarf::AtCompilationDirectory));
    m_files =
        readDwarfLines(m_unit.elf(), m_unit.root().number(Dwarf::AtStatementList), directory).files;
    m_filenames.resize(m_files.size());
    for (const unsigned index : m_unit.root().children) {
        const DwarfEntry& entry = m_unit.entry(index);
        if (entry.tag == Dwarf::TagVariable)
            convertGlobal(entry);
        else if (entry.tag == Dwarf::TagSubprogram)
            convertFunction(index);
    }
}

const DwarfEntry& DebugConverter::described(const DwarfEntry& entry) const
{
    for (const unsigned attribute : {Dwarf::AtAbstractOrigin, Dwarf::AtSpecification})
        if (const unsigned index = m_unit.reference(entry, attribute))
            return described(m_unit.entry(index));
    return entry;
}

void DebugConverter::setLocus(TOBFSymbol* symbol, const DwarfEntry& entry)
{
    const std::uint64_t file = entry.number(Dwarf::AtDeclarationFile);
    const auto line = static_cast<int>(entry.number(Dwarf::AtDeclarationLine));
    if (line <= 0 || file >= m_files.size())
        return;
    TOBFFilename*& filename = m_filenames[static_cast<std::size_t>(file)];
    if (filename == nullptr)
        filename = new TOBFFilename(HString::intern(m_files[static_cast<std::size_t>(file)]));
    symbol->setLocus(new TOBFLocus(filename, line, TAG_SYMBOL_LOCUS));
}

void DebugConverter::convertGlobal(const DwarfEntry& entry)
{
    const DwarfEntry& description = described(entry);
    const std::vector<DwarfLocation> locations = m_unit.locations(entry);
    if (locations.empty())
        return;
    const auto& expression = locations.front().expression;
    TOBFType* type = m_types.typeOf(description);
    TOBFExpr* location = convertLocation(m_converter, m_unit, {}, expression, type->size());
    if (location == nullptr)
        return;
    // The compiler's own symbol takes the type; a variable without one gets a symbol.
    TOBFSymbol* symbol = nullptr;
    const std::string_view name = description.text(Dwarf::AtName);
    if (location->kind() == TOBFKind::SymbolExpr)
        symbol = static_cast<TOBFSymbolExpr*>(location)->symbol();
    if (symbol == nullptr || symbol->name()->view() != name) {
        symbol = new TOBFSymbol(HString::intern(name));
        symbol->setDefinition(location);
        m_converter.module()->addSymbol(symbol);
        symbol->setScope(m_converter.module());
    }
    symbol->setType(type);
    setLocus(symbol, description);
}

void DebugConverter::setRange(TOBFScope* scope, const std::vector<DwarfRange>& ranges,
                              std::size_t parent)
{
    DwarfRange whole = ranges.front();
    for (const DwarfRange& range : ranges) {
        whole.start = std::min(whole.start, range.start);
        whole.end = std::max(whole.end, range.end);
    }
    m_scopes.push_back({scope, whole, parent});
    if (whole.start.section == 0 || whole.start.section != whole.end.section)
        return;
    scope->setRange(m_converter.codeLabel(whole.start), m_converter.codeLabel(whole.end));
}

void DebugConverter::setFunctionType(TOBFSymbol* symbol, TOBFFunctionType* type,
                                     const DwarfEntry& entry, const FunctionFrame& frame)
{
    if (frame.stack != nullptr)
        setSavedRegisters(type, *frame.stack);
    symbol->setType(type);
    setLocus(symbol, entry);
}

void DebugConverter::convertFunction(unsigned index)
{
    const DwarfEntry& entry = m_unit.entry(index);
    const std::vector<DwarfRange> ranges = m_unit.ranges(entry);
    if (ranges.empty() || ranges.front().start.section == 0)
        return;
    FunctionFrame frame;
    frame.range = ranges.front();
    frame.section = frame.range.start.section;
    frame.stack = m_converter.stackDepths(frame.section);
    frame.frameRegister = frameRegister(entry);
    TOBFSymbol* symbol = m_converter.symbolAt(frame.range.start);
    if (symbol == nullptr)
        return;
    auto* scope = new TOBFScope(TAG_SCOPE_FUNCTION);
    scope->setScope(m_converter.module());
    m_scopes.clear();
    m_variables.clear();
    setRange(scope, ranges, 0);
    scope->setFunctionSymbol(symbol);
    const DwarfEntry& description = described(entry);
    TOBFFunctionType* type = m_types.makeFunction(description);
    setFunctionType(symbol, type, description, frame);
    convertChildren(entry, 0, frame, type);
    divideScopes(m_converter, m_scopes, m_variables);
}

void DebugConverter::convertBlock(const DwarfEntry& entry, std::size_t parent,
                                  const FunctionFrame& frame)
{
    const std::vector<DwarfRange> ranges = m_unit.ranges(entry);
    if (ranges.empty())
        return;
    auto* scope = new TOBFScope(TAG_SCOPE_BLOCK);
    scope->setScope(m_scopes[parent].scope);
    setRange(scope, ranges, parent);
    convertChildren(entry, m_scopes.size() - 1, frame, nullptr);
}

void DebugConverter::convertChildren(const DwarfEntry& entry, std::size_t scope,
                                     const FunctionFrame& frame, TOBFFunctionType* function)
{
    for (const unsigned index : entry.children) {
        const DwarfEntry& child = m_unit.entry(index);
        switch (child.tag) {
        case Dwarf::TagFormalParameter:
        case Dwarf::TagVariable: {
            TOBFSymbol* symbol = makeVariable(child, m_scopes[scope].scope, frame);
            if (symbol != nullptr && function != nullptr && child.tag == Dwarf::TagFormalParameter)
                function->addParameter(symbol);
            break;
        }
        case Dwarf::TagLexicalBlock:
        case Dwarf::TagInlinedSubroutine: convertBlock(child, scope, frame); break;
        default: break;
        }
    }
}

TOBFSymbol* DebugConverter::makeVariable(const DwarfEntry& entry, TOBFScope* scope,
                                         const FunctionFrame& frame)
{
    const DwarfEntry& description = described(entry);
    const std::string_view name = description.text(Dwarf::AtName);
    if (name.empty())
        return nullptr;
    auto* symbol = new TOBFSymbol(HString::intern(name));
    TOBFType* type = m_types.typeOf(description);
    symbol->setType(type);
    setLocus(symbol, description);
    if (const DwarfValue* constant = entry.find(Dwarf::AtConstValue))
        symbol->setDefinition(new TOBFConstExpr(static_cast<std::int64_t>(constant->number)));
    std::vector<RangedLocation> ranged;
    for (const DwarfLocation& it : m_unit.locations(entry)) {
        TOBFExpr* location =
            convertLocation(m_converter, m_unit, frame, it.expression, type->size());
        if (location != nullptr && !it.range.has_value())
            symbol->setDefinition(location);
        else if (location != nullptr)
            ranged.push_back({*it.range, location});
    }
    if (!ranged.empty())
        m_variables.push_back({scope, symbol, std::move(ranged)});
    m_converter.module()->addSymbol(symbol);
    symbol->setScope(scope);
    return symbol;
}
