#include "objfile/format/TOBFReader.h"

#include "base/HException.h"
#include "objfile/model/RecursionLimit.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/model/TOBFType.h"

#include <cstdio>

namespace {

/// A string that was given an alias number; strings are operands otherwise.
class TOBFString final : public TOBFObject {
public:
    TOBFString(HString* text, std::uint32_t length)
        : TOBFObject(TOBFKind::String),
          m_text(text),
          m_length(length)
    {
    }

    void markReachable(bool reachable) override { mark(reachable); }
    std::string_view text() const { return {m_text->text(), m_length}; }

private:
    HString* m_text;
    std::uint32_t m_length;
};

[[noreturn]] void fail(const char* what)
{
    throw HException(std::string("bad object file: ") + what);
}

[[noreturn]] void failType(const char* expected)
{
    throw HException(std::string("bad object file: operand type error (") + expected
                     + " expected)");
}

} // namespace

TOBFReader::TOBFReader(const HByteStream* stream, bool keepLocus)
    : m_begin(stream->data()),
      m_cursor(stream->data()),
      m_end(stream->data() + stream->size()),
      m_keepLocus(keepLocus),
      m_aliases(stream->size()),
      m_markers(stream->size()),
      m_imageBudget(std::uint64_t{stream->size()} * 8)
{
}

TOBFReader::~TOBFReader() = default;

TOBFModule* TOBFReader::readFile(bool trace) { return run(trace); }

TOBFModule* TOBFReader::readFileQuickly(bool trace)
{
    m_quick = true;
    return run(trace);
}

void TOBFReader::release(TOBFModule* module)
{
    if (module != nullptr)
        delete module->pool();
}

TOBFModule* TOBFReader::run(bool trace)
{
    m_pool = std::make_unique<Pool>();
    const CurrentPool current(m_pool.get());
    while (m_cursor != m_end) {
        const auto offset = static_cast<std::size_t>(m_cursor - m_begin);
        const unsigned char tag = *m_cursor++;
        step(tag);
        if (trace)
            traceRecord(offset, tag);
    }
    if (m_depth != 0)
        fail("stack not empty at EOF");
    if (m_module == nullptr)
        return nullptr;
    m_module->nameMarkers();
    m_pool.release();
    return m_module;
}

void TOBFReader::step(unsigned char tag)
{
    if (tag < TAG_LITX) {
        pushConst(tag);
        return;
    }
    const Handler handler = tag <= TAG_ENDLINKIF ? records()[tag].handler : nullptr;
    if (handler == nullptr)
        fail("unknown tag");
    m_tag = tag;
    (this->*handler)();
}

void TOBFReader::traceRecord(std::size_t offset, unsigned char tag) const
{
    const char* name = tag < TAG_LITX ? "LIT" : records()[tag].name;
    std::printf("%zu\t%s\t%zu on the stack\n", offset, name, m_depth);
}

unsigned char TOBFReader::nextByte()
{
    if (m_cursor == m_end)
        throw HException("premature end of TOBF file");
    return *m_cursor++;
}

// The operand stack.

TOBFReader::Operand& TOBFReader::pushOperand()
{
    if (m_depth == StackDepth)
        fail("reader stack overflow");
    return m_stack[m_depth++];
}

TOBFReader::Operand TOBFReader::popOperand()
{
    if (m_depth == 0)
        fail("reader empty stack");
    return m_stack[--m_depth];
}

void TOBFReader::push(TOBFObject* object)
{
    Operand& operand = pushOperand();
    operand.kind = Operand::Object;
    operand.object = object;
}

void TOBFReader::pushConst(std::int64_t value)
{
    Operand& operand = pushOperand();
    operand.kind = Operand::Const;
    operand.value = value;
}

void TOBFReader::pushString(unsigned offset, unsigned length)
{
    Operand& operand = pushOperand();
    operand.kind = Operand::String;
    operand.text = m_stringPool + offset;
    operand.length = length;
}

TOBFObject* TOBFReader::popObject()
{
    const Operand operand = popOperand();
    switch (operand.kind) {
    case Operand::Const: return new TOBFConstExpr(operand.value);
    case Operand::String:
        return new TOBFString(HString::intern(std::string_view(operand.text, operand.length)),
                              operand.length);
    default: return operand.object;
    }
}

std::int64_t TOBFReader::popConst()
{
    const Operand operand = popOperand();
    if (operand.kind == Operand::Const)
        return operand.value;
    if (operand.kind == Operand::Object && operand.object != nullptr
        && operand.object->kind() == TOBFKind::ConstExpr)
        return static_cast<TOBFConstExpr*>(operand.object)->value();
    failType("constant expression");
}

unsigned TOBFReader::popConst(unsigned lowest, unsigned highest)
{
    const std::int64_t value = popConst();
    if (value < lowest || value > highest)
        fail("operand value error (constant out of range)");
    return static_cast<unsigned>(value);
}

TOBFExpr* TOBFReader::popExpr(bool allowNull)
{
    TOBFObject* object = popObject();
    if (object == nullptr ? !allowNull : !object->isExpr())
        failType("expression");
    return static_cast<TOBFExpr*>(object);
}

TOBFScope* TOBFReader::popScope(bool allowNull)
{
    TOBFObject* object = popObject();
    if (object == nullptr ? !allowNull : !object->isScope())
        failType("scope");
    return static_cast<TOBFScope*>(object);
}

std::string_view TOBFReader::popText()
{
    const Operand operand = popOperand();
    if (operand.kind == Operand::String)
        return {operand.text, operand.length};
    if (operand.kind == Operand::Object && operand.object != nullptr
        && operand.object->kind() == TOBFKind::String)
        return static_cast<TOBFString*>(operand.object)->text();
    failType("string");
}

HString* TOBFReader::popString() { return HString::intern(popText()); }

HString* TOBFReader::popStringOrNull()
{
    if (m_depth > 0 && m_stack[m_depth - 1].kind == Operand::Object
        && m_stack[m_depth - 1].object == nullptr) {
        --m_depth;
        return nullptr;
    }
    return popString();
}

TOBFSection* TOBFReader::popSection()
{
    TOBFObject* object = popObject();
    if (object == nullptr || object->kind() != TOBFKind::Section)
        failType("section");
    return static_cast<TOBFSection*>(object);
}

TOBFType* TOBFReader::popType()
{
    TOBFObject* object = popObject();
    if (object == nullptr || !object->isType())
        failType("type");
    return static_cast<TOBFType*>(object);
}

TOBFSymbol* TOBFReader::popSymbol()
{
    TOBFObject* object = popObject();
    if (object == nullptr || object->kind() != TOBFKind::Symbol)
        throw HException("operand type error: symbol expected");
    return static_cast<TOBFSymbol*>(object);
}

TOBFFilename* TOBFReader::popFilename()
{
    TOBFObject* object = popObject();
    if (object == nullptr || object->kind() != TOBFKind::Filename)
        failType("file");
    return static_cast<TOBFFilename*>(object);
}

TOBFStrucType* TOBFReader::popStruc()
{
    TOBFObject* object = popObject();
    if (object == nullptr || object->kind() != TOBFKind::StrucType)
        failType("structure");
    return static_cast<TOBFStrucType*>(object);
}

TOBFFunctionType* TOBFReader::popFunction()
{
    TOBFObject* object = popObject();
    if (object == nullptr
        || (object->kind() != TOBFKind::FunctionType
            && object->kind() != TOBFKind::MemberFunctionType))
        failType("function type");
    return static_cast<TOBFFunctionType*>(object);
}

// Items.

TOBFSection* TOBFReader::currentSection()
{
    if (m_section == nullptr)
        fail("no defined section");
    return m_section;
}

TOBFInsn* TOBFReader::currentInsn()
{
    if (m_insn == nullptr)
        fail("no instruction defined");
    return m_insn;
}

/// Gives the item its address and its place in the current section.
void TOBFReader::place(TOBFInsn* insn)
{
    insn->setPC(m_pc);
    currentSection()->addInsn(insn);
}

/// Places an item and lets it take the source position in force.
void TOBFReader::addItem(TOBFInsn* insn)
{
    place(insn);
    insn->setLocus(m_locus);
    if (!m_keepLocus)
        m_locus = nullptr;
    if (!insn->isMarker())
        m_insn = insn;
}

void TOBFReader::addProcessorInsn(bool hidden)
{
    currentSection();
    TOBFInsn* insn = makeInsn();
    if (hidden)
        insn->setHidden();
    insn->setStackAdjustment(m_stackAdjustment);
    addItem(insn);
}

TOBFMarker* TOBFReader::marker(std::uint64_t number)
{
    TOBFMarker*& slot = m_markers.at(number);
    if (slot == nullptr)
        slot = new TOBFMarker;
    return slot;
}

TOBFExpr* TOBFReader::asMarkerExpr(TOBFObject* object)
{
    return object != nullptr && object->kind() == TOBFKind::MarkerExpr
        ? static_cast<TOBFExpr*>(object)
        : nullptr;
}
