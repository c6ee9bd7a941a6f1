// The parsers of tools' messages on arbitrary lines, and the build log over them. Short lines are
// also read by the regular expressions that define the messages' forms.

#include "build/log/BuildLogModel.h"
#include "build/log/MessageToken.h"
#include "build/log/RegexpDiagnosticParser.h"
#include "build/log/STAPLDiagnosticParser.h"
#include "build/log/TOBFDiagnosticParser.h"

#include <QRegularExpression>

#include <cstdint>
#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype LongestForExpressions = 300;

void require(bool condition)
{
    if (!condition)
        std::abort();
}

QRegularExpressionMatch match(const QString& pattern, const QString& line)
{
    const QRegularExpression expression(pattern,
                                        QRegularExpression::DotMatchesEverythingOption

                                            | QRegularExpression::UseUnicodePropertiesOption);
    return expression.match(line);
}

struct Expected {
    bool found = false;
    QString path;
    int line = -1;
    QString message;
};

Expected expectedOf(const QString& line)
{
    for (const QString& word : {u"note"_s, u"warning"_s, u"error"_s, u"fatal"_s}) {
        if (!line.contains(u": "_s + word))
            continue;
        const auto full = match(u"(.*)\\(([0-9]+)\\): %1.*:\\s(.+)\\z"_s.arg(word), line);
        if (full.hasMatch())
            return {true, full.captured(1).replace(u'\\', u'/'), full.captured(2).toInt(),
                    full.captured(3)};
        const auto brief = match(u": %1:\\s(.+)\\z"_s.arg(word), line);
        if (brief.hasMatch() && brief.capturedStart() > 0)
            return {true, QString(), -1, brief.captured(1)};
        return {};
    }
    return {};
}

void checkTOBF(const QString& line)
{
    TOBFDiagnosticParser parser;
    DiagnosticData data;
    const bool found = parser.parse(Path(), line, data);
    // Characters that are no text of their own are read differently by expressions.
    if (line.size() > LongestForExpressions || !line.isValidUtf16())
        return;
    const Expected expected = expectedOf(line);
    require(found == expected.found);
    require(!found
            || (data.path == Path(expected.path) && data.line == expected.line
                && data.message == expected.message));
}

void checkLog(const QString& text)
{
    BuildLogModel log(BuildLogModel::Kind::Main);
    auto parser = std::make_unique<RegexpDiagnosticParser>();
    parser->setRegexp(DiagnosticData::Warning, u"(.*)\\((\\d+)\\): warning: (.*)"_s);
    parser->setRegexp(DiagnosticData::Error, u"(.*):(\\d+): (.*)"_s);
    log.setParser(std::move(parser));
    log.setWorkingDirectory(Path(u"/work"_s));
    for (const QString& line : text.split(u'\n')) {
        log.processOutput(line);
        quotedToken(line);
    }
    for (int i = 0; i < 3; ++i)
        log.locateNext();
    log.copyAll();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    checkTOBF(text);
    STAPLDiagnosticParser stapl;
    DiagnosticData result;
    stapl.parse(Path(), text, result);
    checkLog(text);
    return 0;
}
