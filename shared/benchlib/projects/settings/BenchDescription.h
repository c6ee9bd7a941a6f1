#pragma once

#include "projects/properties/StringProvider.h"
#include "projects/xml/XmlPP.h"

#include <QHash>

/// The description of the user interface, bench.xml: the texts of settings and actions by their
/// keys. A program without the file has empty texts, and works.
class BenchDescription : public StringProvider {
public:
    /// False with the error set if the file can't be read; the texts are as they were then.
    bool load(const QString& path, QString* errorText = nullptr, int* errorLine = nullptr,
              int* errorColumn = nullptr);

    /// The text of a key, which is an item's name, "." and the text's tag; empty if there is none.
    QString message(const QString& key) const { return m_messages.value(key); }
    QString string(const QString& key) const override { return message(key); }

    /// What was loaded, for those who read menus and toolbars from it.
    const QDomDocument& document() const { return m_source.document(); }

private:
    void addScheme(QLatin1StringView tag);

    XmlPP m_source;
    QHash<QString, QString> m_messages;
};
