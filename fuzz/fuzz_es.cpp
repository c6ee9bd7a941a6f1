// The compiler of JavaScript with the machine that runs the code. The host ends each program after
// a while and bounds its memory.

#include "script/es/ESContext.h"
#include "script/es/ESErrors.h"

#include <cstdint>

namespace {

class BoundedContext : public ESContext {
public:
    BoundedContext() { memory().setLimit(qsizetype(32) << 20); }
    bool carryOnExecuting() override { return --m_polls > 0; }

private:
    int m_polls = 100;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString source =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    // A program that reads files would read those of the developer.
    if (source.contains(QStringLiteral("load")))
        return 0;
    BoundedContext context;
    try {
        const ESCompletion completion = context.eval(source);
        if (completion.kind == ESCompletion::Normal)
            context.toString(completion.value);
        else
            context.messageOf(completion);
    } catch (const ESFatalError&) {
    } catch (const ESException&) {
    }
    return 0;
}
