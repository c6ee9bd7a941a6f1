// The effects of the records. The handlers stand in the order of their tags; operands are popped in
// the reverse of the order in which they were pushed.

#include "base/HException.h"
#include "objfile/format/TOBFReader.h"
#include "objfile/model/TOBFDirectives.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/model/TOBFType.h"

#include <array>
#include <cstring>

const TOBFReader::Record* TOBFReader::records()
{
    using R = TOBFReader;
    static const auto table = [] {
        std::array<Record, TAG_ENDLINKIF + 1> it{};
        it[TAG_LITX] = {"LITX", &R::literalExtended};
        it[TAG_NULL] = {"NULL", &R::null};
        it[TAG_NULL_NULL] = {"NULL_NULL", &R::nullNull};
        static const char* const binaries[] = {"ADD", "SUB", "MUL", "DIV", "MOD",  "AND",
                                               "OR",  "XOR", "SHL", "SHR", "EQ",   "NE",
                                               "GT",  "LT",  "GE",  "LE",  "LAND", "LOR"};
        for (unsigned tag = TAG_ADD; tag <= TAG_LOGICAL_OR; ++tag)
            it[tag] = {binaries[tag - TAG_ADD], &R::binary};
        it[TAG_ASHR] = {"ASHR", &R::binary};
        it[TAG_BASE_OFFSET] = {"BASE_OFFSET", &R::binary};
        it[TAG_WORD_ADDRESS] = {"TOBF_WORD_ADDRESS", &R::binary};
        it[TAG_MKSYMBOL] = {"MKSYMBOL", &R::makeSymbol};
        it[TAG_SYMBOLVAL] = {"SYMBOLVAL", &R::symbolValue};
        it[TAG_ALIAS] = {"ALIAS", &R::alias};
        it[TAG_MKALIAS] = {"MKALIAS", &R::makeAlias};
        it[TAG_MKSTRINGZ] = {"MKSTRING", &R::makeStringZ};
        it[TAG_MKSTRING] = {"MKSTRING", &R::makeString};
        it[TAG_MARKERDEF] = {"MARKERDEF", &R::markerDef};
        it[TAG_MARKERREF] = {"MARKERREF", &R::markerRef};
        it[TAG_STRINGPOOL] = {"STRINGPOOL", &R::stringPool};
        it[TAG_SECTION] = {"SECTION", &R::section};
        it[TAG_MKSECTION] = {"MKSECTION", &R::makeSection};
        it[TAG_SYMBOLDEF] = {"SYMBOLDEF", &R::symbolDef};
        it[TAG_SETTYPE] = {"SETTYPE", &R::setType};
        it[TAG_SETNAME] = {"SETNAME", &R::setName};
        it[TAG_DEFBYTES] = {"DEFBYTES", &R::defBytes};
        it[TAG_INSN] = {"INSN", &R::insn};
        it[TAG_HIDDEN_INSN] = {"INSN", &R::hiddenInsn};
        it[TAG_FILL] = {"FILL", &R::fill};
        it[TAG_ALIGN] = {"ALIGN", &R::align};
        it[TAG_ORIGIN] = {"ORIGIN", &R::origin};
        it[TAG_BREAK] = {"BREAK", &R::fragmentBreak};
        it[TAG_PUBLIC] = {"PUBLIC", &R::makePublic};
        it[TAG_LOCUS] = {"LOCUS", &R::locus};
        it[TAG_MKFILENAME] = {"MKFILENAME", &R::makeFilename};
        it[TAG_SETPC] = {"SETPC", &R::setPC};
        it[TAG_SETBYTES] = {"SETBYTES", &R::setBytes};
        it[TAG_CHAR] = {"CHAR", &R::simpleType};
        it[TAG_INT] = {"INT", &R::simpleType};
        it[TAG_UNSIGNED] = {"UNSIGNED", &R::simpleType};
        it[TAG_OLD_STRUC] = {"STRUC", &R::oldStruc};
        it[TAG_ARRAY] = {"ARRAY", &R::array};
        it[TAG_COUNTED_ARRAY] = {"COUNTED_ARRAY", &R::countedArray};
        it[TAG_PTR] = {"PTR", &R::pointer};
        it[TAG_UNTYPED] = {"UNTYPED", &R::untyped};
        it[TAG_FLOAT] = {"FLOAT", &R::floating};
        it[TAG_FUNCTION] = {"FUNCTION", &R::function};
        it[TAG_MEMBER] = {"MEMBER", &R::member};
        it[TAG_STATIC_FIELD] = {"STATIC_FIELD", &R::staticField};
        it[TAG_DYNAMIC_FIELD] = {"DYNAMIC_FIELD", &R::dynamicField};
        it[TAG_PARAMIN] = {"PARAMIN", &R::parameterIn};
        it[TAG_PARAMOUT] = {"PARAMOUT", &R::parameterOut};
        it[TAG_LIBRARY] = {"LIBRARY", &R::library};
        it[TAG_SETSCOPE] = {"SETSCOPE", &R::setScope};
        it[TAG_SCOPE_MODULE] = {"SCOPE_MODULE", &R::makeScope};
        it[TAG_SCOPE_FUNCTION] = {"SCOPE_FUNCTION", &R::makeScope};
        it[TAG_SCOPE_BLOCK] = {"SCOPE_BLOCK", &R::makeScope};
        it[TAG_DUP] = {"DUP", &R::duplicate};
        it[TAG_DROP] = {"DROP", &R::drop};
        it[TAG_SPACE] = {"SPACE", &R::space};
        it[TAG_ATTRIBUTE] = {"ATTRIBUTE", &R::attribute};
        it[TAG_FORWARDTYPE] = {"FORWARDTYPE", &R::forwardType};
        it[TAG_NOP] = {"NOP", &R::nothing};
        it[TAG_PROTECTED] = {"PROTECTED", &R::setProtected};
        it[TAG_CODELET] = {"CODELET", &R::codelet};
        it[TAG_STRUC] = {"STRUC", &R::struc};
        it[TAG_LINK_ORDER_PRIORITY] = {"LINK ORDER PRIORITY", &R::linkOrderPriority};
        it[TAG_PATCHABLE] = {"PATCHABLE", &R::patchable};
        it[TAG_INSTRUMENTATION_DATA] = {"INSTRUMENTATION DATA", &R::instrumentationData};
        it[TAG_PATCHED] = {"PATCHED", &R::patched};
        it[TAG_REGISTER] = {"REGISTER", &R::registerNumber};
        it[TAG_LOCAL_INSN] = {"LOCAL_INSN", &R::localInsn};
        it[TAG_SETFLAGS] = {"SETFLAGS", &R::setFlags};
        it[TAG_RESET_LOCUS] = {"RESET_LOCUS", &R::resetLocus};
        it[TAG_SET_FCT_SYMBOL] = {"SET_FCT_SYMBOL", &R::setFunctionSymbol};
        it[TAG_ADJUST_STACK] = {"ADJUST_STACK", &R::adjustStack};
        it[TAG_INIT] = {"INIT", &R::init};
        it[TAG_SYMBOL_LOCUS] = {"SYMBOL_LOCUS", &R::symbolLocus};
        it[TAG_END_OF_INFO] = {"END_OF_INFO", &R::endOfInfo};
        it[TAG_EXTENSION_WORD] = {"EXTENSION_WORD", &R::extensionWord};
        it[TAG_DEFADDR] = {"DEFADDR", &R::defAddr};
        for (unsigned tag = TAG_MEMSPACE_FIRST; tag <= TAG_MEMSPACE_LAST; ++tag)
            it[tag] = {"MEMSPACE", &R::memorySpace};
        it[TAG_PTR_REP] = {"PTR-REP", &R::pointerRepresentation};
        it[TAG_PTR_REP_ALTERNATIVE] = {"PTR-REP", &R::pointerRepresentation};
        it[TAG_LINKIF] = {"LINKIF", &R::linkIf};
        it[TAG_ENDLINKIF] = {"ENDLINKIF", &R::endLinkIf};
        return it;
    }();
    return table.data();
}

void TOBFReader::literalExtended()
{
    std::uint64_t value = 0;
    for (unsigned count = nextByte(); count > 0; --count)
        value = value << 8 | nextByte();
    pushConst(static_cast<std::int64_t>(value));
}

void TOBFReader::null() { push(nullptr); }

void TOBFReader::nullNull()
{
    push(nullptr);
    push(nullptr);
}

void TOBFReader::binary()
{
    constexpr std::uint32_t LargestExpression = 1000;
    TOBFExpr* right = popExpr();
    TOBFExpr* left = popExpr();
    TOBFExpr* result = TOBFBinaryExpr::make(m_tag, left, right);
    if (result->kind() == TOBFKind::BinaryExpr
        && static_cast<TOBFBinaryExpr*>(result)->size() > LargestExpression)
        throw HException("object file is nested too deeply");
    push(result);
}

void TOBFReader::makeSymbol()
{
    auto* symbol = new TOBFSymbol(popString());
    if (m_module != nullptr)
        m_module->addSymbol(symbol);
    push(symbol);
}

void TOBFReader::symbolValue() { push(new TOBFSymbolExpr(popSymbol())); }

void TOBFReader::alias()
{
    TOBFObject* object = m_aliases.find(static_cast<std::uint64_t>(popConst()));
    if (object == nullptr)
        throw HException("bad object file: alias not defined");
    push(object);
}

void TOBFReader::makeAlias()
{
    TOBFObject*& slot = m_aliases.at(static_cast<std::uint64_t>(popConst()));
    if (slot != nullptr)
        throw HException("bad object file: alias defined more than once");
    slot = popObject();
}

void TOBFReader::makeStringZ()
{
    const unsigned offset = popConst(0, m_stringPoolSize);
    const char* text = m_stringPool + offset;
    const unsigned room = m_stringPoolSize - offset;
    const void* end = std::memchr(text, 0, room);
    const auto length =
        end != nullptr ? static_cast<unsigned>(static_cast<const char*>(end) - text) : room;
    pushString(offset, length);
}

void TOBFReader::makeString()
{
    const unsigned length = popConst(0, m_stringPoolSize);
    const unsigned offset = popConst(0, m_stringPoolSize);
    if (length > m_stringPoolSize - offset)
        throw HException("bad object file: operand value error (constant out of range)");
    pushString(offset, length);
}

void TOBFReader::markerDef()
{
    TOBFMarker* it = marker(static_cast<std::uint64_t>(popConst()));
    if (HString* name = popStringOrNull())
        it->setName(name);
    addItem(it);
}

void TOBFReader::markerRef()
{
    push(new TOBFMarkerExpr(marker(static_cast<std::uint64_t>(popConst()))));
}

void TOBFReader::stringPool()
{
    const unsigned size = popConst(0, 0xFFFFFF);
    if (static_cast<std::size_t>(m_end - m_cursor) < size)
        throw HException("premature end of TOBF file");
    m_stringPool = reinterpret_cast<const char*>(m_cursor);
    m_stringPoolSize = size;
    m_cursor += size;
}

void TOBFReader::section() { m_section = popSection(); }

void TOBFReader::makeSection()
{
    auto* made = new TOBFSection(popString());
    if (m_module != nullptr)
        m_module->addSection(made);
    push(made);
}

void TOBFReader::symbolDef()
{
    TOBFExpr* definition = popExpr();
    TOBFSymbol* symbol = popSymbol();
    symbol->setDefinition(definition);
    if (symbol->type() == nullptr)
        symbol->setType(definition->type());
}

void TOBFReader::setType()
{
    TOBFType* type = popType();
    if (TOBFObject* object = popObject())
        object->setType(type);
}

void TOBFReader::setName()
{
    HString* name = popString();
    TOBFObject* object = popObject();
    if (object != nullptr)
        object->setName(name);
    push(object);
}

void TOBFReader::defBytes()
{
    const unsigned size = popConst(1, 4);
    addItem(new TOBFDefBytesInsn(popExpr(), static_cast<int>(size)));
}

void TOBFReader::fill()
{
    const std::int32_t count = popInt();
    const std::int32_t byte = popInt();
    addItem(new TOBFFillInsn(count, byte));
}

void TOBFReader::align() { addItem(new TOBFAlignInsn(popInt())); }
void TOBFReader::origin() { addItem(new TOBFOriginInsn(popInt())); }

void TOBFReader::fragmentBreak()
{
    currentSection()->newFragment();
    m_pendingBreak = true;
}

void TOBFReader::makePublic()
{
    TOBFSymbol* symbol = popSymbol();
    if (m_module != nullptr)
        m_module->makePublic(symbol);
}

void TOBFReader::locus()
{
    const std::int32_t line = popInt();
    auto* it = new TOBFLocus(popFilename(), line, TAG_LOCUS);
    place(it);
    if (m_keepLocus)
        it->setLocus(it);
    m_locus = it;
}

void TOBFReader::makeFilename() { push(new TOBFFilename(popString())); }

void TOBFReader::setPC()
{
    m_pc = popInt();
    if (m_pendingBreak) {
        place(new TOBFBreakInsn);
        m_pendingBreak = false;
    }
}

void TOBFReader::setBytes()
{
    const std::string_view bytes = popText();
    if (bytes.size() > m_imageBudget)
        throw HException("bad object file: operand value error (constant out of range)");
    m_imageBudget -= bytes.size();
    currentInsn()->appendBytes(reinterpret_cast<const unsigned char*>(bytes.data()),
                               static_cast<int>(bytes.size()));
}

void TOBFReader::simpleType() { push(new TOBFSimpleType(static_cast<TOBFTag>(m_tag), popInt())); }
void TOBFReader::oldStruc() { push(new TOBFStrucType(0)); }

void TOBFReader::array()
{
    const std::int32_t count = popInt();
    push(new TOBFArrayType(popType(), count));
}

void TOBFReader::countedArray()
{
    const std::int32_t count = popInt();
    TOBFType* element = popType();
    push(new TOBFCountedArrayType(popType(), element, count));
}

void TOBFReader::pointer()
{
    TOBFType* target = popType();
    TOBFObject* object = popObject();
    if (object == nullptr || object->kind() != TOBFKind::PtrType)
        throw HException("bad object file: operand type error (pointer expected)");
    m_lastPointer = static_cast<TOBFPtrType*>(object);
    m_lastPointer->setTarget(target);
}

void TOBFReader::untyped() { push(new TOBFUntypedType(popInt())); }
void TOBFReader::floating() { push(new TOBFFloatType(popInt())); }

void TOBFReader::function()
{
    const std::int32_t third = popInt();
    const std::int32_t second = popInt();
    const std::int32_t first = popInt();
    push(new TOBFFunctionType(first, second, third));
}

void TOBFReader::member() { push(new TOBFMemberFunctionType(popType())); }

void TOBFReader::staticField()
{
    TOBFType* type = popType();
    TOBFExpr* location = popExpr();
    HString* name = popStringOrNull();
    TOBFStrucType* struc = popStruc();
    struc->addField(new TOBFStaticField(name, location, type));
    push(struc);
}

void TOBFReader::dynamicField()
{
    TOBFType* type = popType();
    const std::int32_t size = popInt();
    const std::int32_t offset = popInt();
    HString* name = popStringOrNull();
    TOBFStrucType* struc = popStruc();
    struc->addField(new TOBFDynamicField(name, offset, size, type));
    push(struc);
}

void TOBFReader::parameterIn()
{
    TOBFSymbol* symbol = popSymbol();
    TOBFFunctionType* type = popFunction();
    type->addParameter(symbol);
    push(type);
}

void TOBFReader::parameterOut()
{
    TOBFSymbol* symbol = popSymbol();
    TOBFFunctionType* type = popFunction();
    type->addReturn(symbol);
    push(type);
}

void TOBFReader::library()
{
    HString* name = popString();
    if (m_module != nullptr)
        m_module->addLibrary(name);
}

void TOBFReader::setScope()
{
    TOBFSymbol* symbol = popSymbol();
    TOBFScope* scope = popScope();
    symbol->setScope(scope);
    push(scope);
}

void TOBFReader::makeScope()
{
    TOBFExpr* end = asMarkerExpr(popObject());
    TOBFExpr* start = asMarkerExpr(popObject());
    TOBFScope* parent = popScope(AllowNull);
    TOBFScope* made = nullptr;
    if (m_tag != TAG_SCOPE_MODULE)
        made = new TOBFScope(m_tag);
    else if (m_module != nullptr)
        made = new TOBFModule;
    else
        made = m_module = new TOBFModule(m_pool.get());
    made->setRange(start, end);
    made->setScope(parent);
    push(made);
}

void TOBFReader::duplicate()
{
    const Operand operand = popOperand();
    pushOperand() = operand;
    pushOperand() = operand;
}

void TOBFReader::space() { addItem(new TOBFSpaceInsn(popExpr())); }

void TOBFReader::attribute()
{
    HString* value = popString();
    HString* key = popString();
    if (m_module != nullptr)
        m_module->setAttribute(key, value);
}

void TOBFReader::forwardType() { push(new TOBFPtrType(popInt())); }

void TOBFReader::setProtected()
{
    if (m_module != nullptr)
        m_module->setProtected();
}

void TOBFReader::codelet()
{
    const std::int32_t number = popInt();
    TOBFSymbol* symbol = popSymbol();
    symbol->setCodelet(number);
    if (m_module != nullptr)
        m_module->addMarked(symbol);
    push(symbol);
}

void TOBFReader::struc() { push(new TOBFStrucType(popInt())); }

void TOBFReader::linkOrderPriority()
{
    const std::int32_t priority = popInt();
    if (m_module != nullptr)
        m_module->setPriority(priority);
}

void TOBFReader::patchable()
{
    const std::int32_t value = popInt();
    TOBFSymbol* symbol = popSymbol();
    symbol->setPatchable(value);
    if (m_module != nullptr)
        m_module->addMarked(symbol);
    push(symbol);
}

void TOBFReader::instrumentationData()
{
    const std::int32_t data = popInt();
    currentInsn()->setInstrumentationData(data);
}

void TOBFReader::patched()
{
    popConst();
    TOBFSymbol* symbol = popSymbol();
    symbol->setPatched();
    push(symbol);
}

void TOBFReader::registerNumber() { push(new TOBFRegisterExpr(popInt())); }
void TOBFReader::localInsn() { addItem(new TOBFLocalInsn(popExpr())); }

void TOBFReader::setFlags()
{
    const auto flags = static_cast<unsigned>(popConst());
    currentSection()->setFlags(flags);
}

void TOBFReader::setFunctionSymbol()
{
    TOBFSymbol* symbol = popSymbol();
    popScope()->setFunctionSymbol(symbol);
}

void TOBFReader::init() { addItem(new TOBFInitInsn(popString(), m_module)); }

void TOBFReader::symbolLocus()
{
    const std::int32_t line = popInt();
    TOBFFilename* file = popFilename();
    TOBFSymbol* symbol = popSymbol();
    symbol->setLocus(new TOBFLocus(file, line, TAG_SYMBOL_LOCUS));
    push(symbol);
}

void TOBFReader::endOfInfo()
{
    if (m_quick)
        m_cursor = m_end;
}

void TOBFReader::extensionWord()
{
    const std::int64_t word = popConst();
    currentInsn()->setExtensionWord(word);
}

void TOBFReader::defAddr() { addItem(new TOBFDefAddrInsn(popExpr())); }

void TOBFReader::memorySpace()
{
    push(new TOBFQualifiedType(popType(), static_cast<TOBFTag>(m_tag)));
}

void TOBFReader::pointerRepresentation()
{
    if (m_lastPointer == nullptr)
        throw HException("bad object file: operand type error (pointer expected)");
    m_lastPointer->setRepresentation(static_cast<TOBFTag>(m_tag));
}

void TOBFReader::linkIf() { addItem(new TOBFLinkIf(popExpr())); }
void TOBFReader::endLinkIf() { addItem(new TOBFEndLinkIf); }
