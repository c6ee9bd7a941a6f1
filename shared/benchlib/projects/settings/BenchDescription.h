#pragma once

#include "projects/properties/StringProvider.h"
#include "projects/xml/XMLPP2.h"
#include "projects/xml/XmlPP.h"

#include <QMultiHash>

#include <memory>

/// The description of the user interface, bench.xml: the texts of settings and actions by their
/// keys. A program without the file has empty texts, and works.
///
/// Every program reads the texts at its start, few read the menus: those are read when they are
/// asked for.
class BenchDescription : public StringProvider {
public:
    /// False with the error set if the file can't be read; the texts are as they were then. The
    /// column is 0.
    bool load(const QString& path, QString* errorText = nullptr, int* errorLine = nullptr,
              int* errorColumn = nullptr);

    /// The text of a key, which is an item's name, "." and the text's tag; empty if there is none.
    QString message(const QString& key) const;
    QString string(const QString& key) const override { return message(key); }

    /// What was loaded, for those who read menus and toolbars from it.
    const QDomDocument& document();

private:
    void addScheme(const char* tag);

    QString m_path;
    std::unique_ptr<XMLPP2> m_texts = std::make_unique<XMLPP2>();
    /// The items of the schemes by name; of equal ones the last wins.
    QMultiHash<QString, const XMLElement*> m_items;
    std::unique_ptr<XmlPP> m_source;
};
