#pragma once

#include <QHash>
#include <QStringList>

#include <memory>
#include <vector>

class CodeEditParser;
class CodeSyntaxChecker;

/// The languages that the editor knows, by file extension and by description.
class LanguageRegistry {
public:
    LanguageRegistry();
    ~LanguageRegistry();
    LanguageRegistry(const LanguageRegistry&) = delete;
    LanguageRegistry& operator=(const LanguageRegistry&) = delete;

    /// The description is a menu's text. Takes the parser over.
    void registerParser(const QStringList& extensions, const QString& description,
                        std::unique_ptr<CodeEditParser> parser);
    void registerSyntaxChecker(const QStringList& extensions, const QString& description,
                               std::unique_ptr<CodeSyntaxChecker> checker);

    /// Null if there is none. The case of extensions doesn't matter.
    CodeEditParser* parserForExtension(const QString& extension) const;
    CodeEditParser* parserForDescription(const QString& description) const;
    CodeSyntaxChecker* syntaxCheckerForExtension(const QString& extension) const;
    CodeSyntaxChecker* syntaxCheckerForDescription(const QString& description) const;
    /// Empty for null.
    QString parserDescription(const CodeEditParser* parser) const;
    QString syntaxCheckerDescription(const CodeSyntaxChecker* checker) const;
    /// In the order of registration.
    QStringList registeredParserDescriptions() const;
    QStringList registeredSyntaxCheckerDescriptions() const;

private:
    template <typename T> struct Table;

    std::unique_ptr<Table<CodeEditParser>> m_parsers;
    std::unique_ptr<Table<CodeSyntaxChecker>> m_checkers;
};

/// With every language of the product.
LanguageRegistry& languages();
