// The directives that make bytes, or room for them.

#include "objfile/model/TOBFDirectives.h"
#include "objfile/model/TOBFExpr.h"
#include "toolchain/kas/AsmDirectives.h"

#include <bit>
#include <limits>

namespace {

constexpr std::int64_t HighestAddress = 0xFFFFF;
constexpr std::int64_t MaximumCount = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t MaximumAlignment = 0x8000;

/// Items that one `.fill` of several bytes may make.
constexpr std::int64_t MaximumItems = 65536;

void requireFit(const TOBFExpr* expr, int size)
{
    const auto value = knownValue(expr);
    const std::int64_t range = std::int64_t{1} << (8 * size);
    if (value && (*value < -range / 2 || *value >= range))
        throw AsmError{"value " + std::to_string(*value) + " doesn't fit " + std::to_string(size)
                       + (size == 1 ? " byte" : " bytes")};
}

/// True if the low `size` bytes of the value are all the same.
bool isUniform(std::int64_t value, int size)
{
    for (int i = 1; i < size; ++i)
        if ((value >> (8 * i) & 0xFF) != (value & 0xFF))
            return false;
    return true;
}

} // namespace

void AsmDirectives::add(TOBFInsn* insn) { m_asm.m_sections.add(insn, AsmSections::Flow::Data); }

void AsmDirectives::addBytes(const std::string& bytes)
{
    for (const char byte : bytes)
        add(new TOBFDefBytesInsn(new TOBFConstExpr(static_cast<unsigned char>(byte)), 1));
}

void AsmDirectives::numbers(int size)
{
    do {
        if (size == 1 && m_tokens.peek().kind == AsmToken::Text) {
            addBytes(m_tokens.expectString());
            continue;
        }
        TOBFExpr* value = expression();
        requireFit(value, size);
        add(new TOBFDefBytesInsn(value, size));
    } while (m_tokens.accept(","));
}

void AsmDirectives::quads(int)
{
    do {
        const std::int64_t value = m_asm.m_expressions.parseKnown(m_tokens, m_asm.m_where, "value");
        add(new TOBFDefBytesInsn(new TOBFConstExpr(value & 0xFFFFFFFF), 4));
        add(new TOBFDefBytesInsn(new TOBFConstExpr(value >> 32 & 0xFFFFFFFF), 4));
    } while (m_tokens.accept(","));
}

void AsmDirectives::strings(int terminators)
{
    do {
        addBytes(m_tokens.expectString()
                 + std::string(static_cast<std::size_t>(terminators), '\0'));
    } while (m_tokens.accept(","));
}

/// `SIZE[, FILL]`
void AsmDirectives::space(int)
{
    TOBFExpr* size = expression();
    const auto value = knownValue(size);
    if (value && (*value < 0 || *value > MaximumCount))
        throw AsmError{"size " + std::to_string(*value) + " is out of range"};
    if (value)
        size = new TOBFConstExpr(*value);
    const std::int64_t fill = m_tokens.accept(",") ? known("fill", -128, 255) : 0;
    if (fill == 0)
        return add(new TOBFSpaceInsn(size));
    if (!value)
        throw AsmError{"size has to be known while assembling"};
    add(new TOBFFillInsn(static_cast<int>(*value), static_cast<int>(fill & 0xFF)));
}

/// `COUNT[, SIZE[, VALUE]]`
void AsmDirectives::fill(int)
{
    const std::int64_t count = known("count", 0, MaximumCount);
    const int size = m_tokens.accept(",") ? static_cast<int>(known("size", 1, 4)) : 1;
    TOBFExpr* expr = m_tokens.accept(",") ? expression() : new TOBFConstExpr(0);
    requireFit(expr, size);
    const auto value = knownValue(expr);
    if (value && isUniform(*value, size) && count * size <= MaximumCount)
        return add(
            new TOBFFillInsn(static_cast<int>(count * size), static_cast<int>(*value & 0xFF)));
    if (count > MaximumItems)
        throw AsmError{"count " + std::to_string(count)
                       + " is too high for values of more than a byte"};
    for (std::int64_t i = 0; i < count; ++i)
        add(new TOBFDefBytesInsn(expr, size));
}

/// `.align` and `.balign` take bytes, `.p2align` a power of two; a fill byte and a limit behind
/// have no effect, as the gap is zero.
void AsmDirectives::align(int powerOfTwo)
{
    const std::int64_t alignment = powerOfTwo != 0 ? std::int64_t{1} << known("alignment", 0, 15)
                                                   : known("alignment", 1, MaximumAlignment);
    if (!std::has_single_bit(static_cast<std::uint64_t>(alignment)))
        throw AsmError{"alignment " + std::to_string(alignment) + " isn't a power of two"};
    while (m_tokens.accept(","))
        if (!m_tokens.sees(",") && !m_tokens.atEnd())
            expression();
    add(new TOBFAlignInsn(static_cast<int>(alignment)));
}

void AsmDirectives::even(int) { add(new TOBFAlignInsn(2)); }

void AsmDirectives::origin(int)
{
    add(new TOBFOriginInsn(static_cast<int>(known("origin", 0, HighestAddress))));
}

void AsmDirectives::init(int)
{
    add(new TOBFInitInsn(HString::intern(m_tokens.expectString()), m_asm.m_module));
}
