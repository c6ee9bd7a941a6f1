#include "cli/CheckCommand.h"

#include "base/TargetConstants.h"
#include "base/XMLDocument.h"
#include "build/workspace/Workspace.h"
#include "cli/CheckReport.h"
#include "cli/Command.h"
#include "cli/MemoryMapCheck.h"
#include "cli/SolutionCheck.h"
#include "cli/TemplateCheck.h"
#include "packages/archive/CompressedFile.h"
#include "projects/xml/XmlPP.h"

#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace {

using Check = void (*)(CheckReport& report, const QString& path);

/// Shows Qt's warnings, which the preprocessing of XML speaks through, in the report.
class WarningsInReport {
public:
    WarningsInReport(CheckReport& report, const QString& path)
    {
        s_report = &report;
        s_path = path;
        m_previous = qInstallMessageHandler(take);
    }
    ~WarningsInReport()
    {
        qInstallMessageHandler(m_previous);
        s_report = nullptr;
    }
    WarningsInReport(const WarningsInReport&) = delete;
    WarningsInReport& operator=(const WarningsInReport&) = delete;

private:
    static void take(QtMsgType, const QMessageLogContext&, const QString& text)
    {
        // The name of the function in front is for the developer.
        const qsizetype function = text.indexOf(u"(): "_s);
        s_report->warning(s_path, 0, function < 0 ? text : text.mid(function + 4));
    }

    inline static CheckReport* s_report = nullptr;
    inline static QString s_path;
    QtMessageHandler m_previous;
};

void checkSolution(CheckReport& report, const QString& path) { SolutionCheck(report, path).run(); }

/// Well-formedness alone.
void checkXml(CheckReport& report, const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        report.error(path, 0, u"can't be read"_s);
        return;
    }
    QXmlStreamReader reader(&file);
    while (!reader.atEnd())
        reader.readNext();
    if (reader.hasError())
        report.error(path, static_cast<int>(reader.lineNumber()), reader.errorString());
}

/// An XML file with conditions and includes.
void checkPreprocessedXml(CheckReport& report, const QString& path)
{
    XmlPP document;
    QString text;
    int line = 0;
    if (!document.load(path, QString(), false, &text, &line))
        report.error(path, line, text);
}

void refuseStapl(CheckReport& report, const QString& path)
{
    report.error(path, 0, u"STAPL scripts can't be checked yet"_s);
}

void refusePackage(CheckReport& report, const QString& path)
{
    report.error(path, 0, u"a packaged solution is checked after it was unpacked"_s);
}

void refuseUnknown(CheckReport& report, const QString& path)
{
    report.error(path, 0, u"neither XML nor any other file that can be checked"_s);
}

struct DocumentKind {
    const char* documentType;
    Check check;
};

constexpr DocumentKind DocumentKinds[] = {
    {"GantryBench_Project_File", checkSolution},
    {"GantryBench_Project_Templates_File", checkTemplates},
    {"Board_Memory_Definition_File", checkMemoryMap},
    {"Linker_Placement_File", checkMemoryMap},
    {"Property_Groups_File", checkPropertyGroups},
    {"GantryBench_Target_Definition_File", checkPreprocessedXml},
};

bool looksLikeXml(const QString& path)
{
    QFile file(path);
    constexpr qint64 Start = 1024;
    return file.open(QIODevice::ReadOnly)
        && QString::fromUtf8(file.read(Start)).trimmed().startsWith(u'<');
}

Check checkFor(const QString& path)
{
    const QString documentType = XMLDocument::xmlDocumentType(path);
    for (const DocumentKind& kind : DocumentKinds)
        if (documentType == QLatin1String(kind.documentType))
            return kind.check;
    const QFileInfo info(path);
    const QString extension = info.suffix().toLower();
    if (QTx::isCompressedFile(path))
        return refusePackage;
    if (extension == u"kvp")
        return checkSolution;
    if (extension == u"stapl" || extension == u"stp" || extension == u"jam")
        return refuseStapl;
    if (info.fileName() == u"bench.xml")
        return checkPreprocessedXml;
    return extension == u"xml" || looksLikeXml(path) ? checkXml : refuseUnknown;
}

bool checkFile(const QString& path)
{
    CheckReport report;
    if (!QFileInfo::exists(path))
        report.error(path, 0, u"does not exist"_s);
    else if (!QFileInfo(path).isFile())
        report.error(path, 0, u"is no file"_s);
    else {
        const WarningsInReport warnings(report, path);
        checkFor(path)(report, path);
    }
    report.print();
    return !report.hasErrors();
}

} // namespace

int checkCommand(std::span<const std::string> arguments)
{
    if (arguments.empty())
        throw UsageError{"no file is given"};
    for (const std::string& word : arguments)
        if (word.starts_with("-"))
            throw UsageError{"unknown option " + word};
    const Workspace workspace({});
    bool sound = true;
    for (const std::string& word : arguments)
        sound = checkFile(QString::fromLocal8Bit(word.c_str())) && sound;
    return sound ? 0 : 1;
}
