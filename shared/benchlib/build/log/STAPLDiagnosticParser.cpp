#include "build/log/STAPLDiagnosticParser.h"

#include "build/log/SourceReference.h"

bool STAPLDiagnosticParser::parse(const Path&, const QString& line, DiagnosticData& data)
{
    const auto reference = findSourceReference(line, u": error: ", line.size(), false);
    if (!reference)
        return false;
    data.level = DiagnosticData::Error;
    data.path = Path(reference->file.toString());
    data.line = reference->line();
    data.message = line.sliced(reference->end);
    return true;
}
