#include "editor/parsers/LanguageRegistry.h"

#include "base/TargetConstants.h"
#include "editor/parsers/CodeEditAssemblyParser.h"
#include "editor/parsers/CodeEditDocGenParser.h"
#include "editor/parsers/CodeEditForthParser.h"
#include "editor/parsers/CodeEditSTAPLParser.h"
#include "editor/parsers/CodeEditSVFParser.h"
#include "editor/parsers/CodeEditVHDLParser.h"
#include "editor/parsers/CodeEditXMLParser.h"
#include "editor/parsers/CodeSyntaxChecker.h"

using namespace Qt::Literals::StringLiterals;

template <typename T> struct LanguageRegistry::Table {
    struct Entry {
        QString description;
        std::unique_ptr<T> object;
    };
    std::vector<Entry> entries;
    QHash<QString, T*> byExtension;

    void add(const QStringList& extensions, const QString& description, std::unique_ptr<T> object)
    {
        for (const QString& extension : extensions)
            byExtension.insert(extension.toLower(), object.get());
        entries.push_back({description, std::move(object)});
    }
    T* forExtension(const QString& extension) const
    {
        return byExtension.value(extension.toLower());
    }
    T* forDescription(const QString& description) const
    {
        for (const Entry& entry : entries)
            if (entry.description == description)
                return entry.object.get();
        return nullptr;
    }
    QString descriptionOf(const T* object) const
    {
        for (const Entry& entry : entries)
            if (entry.object.get() == object)
                return entry.description;
        return {};
    }
    QStringList descriptions() const
    {
        QStringList result;
        for (const Entry& entry : entries)
            result.append(entry.description);
        return result;
    }
};

LanguageRegistry::LanguageRegistry()
    : m_parsers(std::make_unique<Table<CodeEditParser>>()),
      m_checkers(std::make_unique<Table<CodeSyntaxChecker>>())
{
}

LanguageRegistry::~LanguageRegistry() = default;

void LanguageRegistry::registerParser(const QStringList& extensions, const QString& description,
                                      std::unique_ptr<CodeEditParser> parser)
{
    m_parsers->add(extensions, description, std::move(parser));
}

void LanguageRegistry::registerSyntaxChecker(const QStringList& extensions,
                                             const QString& description,
                                             std::unique_ptr<CodeSyntaxChecker> checker)
{
    m_checkers->add(extensions, description, std::move(checker));
}

CodeEditParser* LanguageRegistry::parserForExtension(const QString& extension) const
{
    return m_parsers->forExtension(extension);
}

CodeEditParser* LanguageRegistry::parserForDescription(const QString& description) const
{
    return m_parsers->forDescription(description);
}

CodeSyntaxChecker* LanguageRegistry::syntaxCheckerForExtension(const QString& extension) const
{
    return m_checkers->forExtension(extension);
}

CodeSyntaxChecker* LanguageRegistry::syntaxCheckerForDescription(const QString& description) const
{
    return m_checkers->forDescription(description);
}

QString LanguageRegistry::parserDescription(const CodeEditParser* parser) const
{
    return m_parsers->descriptionOf(parser);
}

QString LanguageRegistry::syntaxCheckerDescription(const CodeSyntaxChecker* checker) const
{
    return m_checkers->descriptionOf(checker);
}

QStringList LanguageRegistry::registeredParserDescriptions() const
{
    return m_parsers->descriptions();
}

QStringList LanguageRegistry::registeredSyntaxCheckerDescriptions() const
{
    return m_checkers->descriptions();
}

namespace {

QStringList extensions(QStringView text) { return text.toString().split(u' '); }

void registerLanguages(LanguageRegistry& to)
{
    to.registerParser({u"java"_s}, u"&Java"_s, std::make_unique<CodeEditJavaParser>());
    to.registerParser(extensions(u"js jse"), u"JavaScri&pt"_s,
                      std::make_unique<CodeEditJavaScriptParser>());
    to.registerParser(extensions(u"xml htm kvp kvs"), u"&XML and HTML"_s,
                      std::make_unique<CodeEditXMLParser>());
    to.registerParser({u"vhd"_s}, u"&VHDL"_s, std::make_unique<CodeEditVHDLParser>());
    to.registerParser(extensions(u"c cpp cxx cc h hpp hxx"), u"&C/C++"_s,
                      std::make_unique<CodeEditCParser>());
    to.registerParser(extensions(u"fth f fs"), u"&Forth"_s,
                      std::make_unique<CodeEditForthParser>());
    to.registerParser(extensions(u"asm s inc") + QStringList{Get_ASM_FILE_EXTENSION()},
                      u"&Assembly Language"_s, std::make_unique<CodeEditAssemblyParser>());
    to.registerParser({u"bat"_s}, u"&Batch File"_s, std::make_unique<CodeEditBatchParser>());
    to.registerParser({u"dg"_s}, u"&DocGen File"_s, std::make_unique<CodeEditDocGenParser>());
    to.registerParser({u"svf"_s}, u"&SVF"_s, std::make_unique<CodeEditSVFParser>());
    to.registerParser(extensions(u"stp stapl jam"), u"STAP&L"_s,
                      std::make_unique<CodeEditSTAPLParser>());
    to.registerSyntaxChecker({u"xml"_s}, u"&XML"_s, std::make_unique<CodeSyntaxXMLChecker>());
}

} // namespace

LanguageRegistry& languages()
{
    static LanguageRegistry registry;
    static const bool registered = (registerLanguages(registry), true);
    Q_UNUSED(registered)
    return registry;
}
