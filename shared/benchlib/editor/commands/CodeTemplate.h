#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// An abbreviation and what it stands for; "|" marks where the caret gets.
struct CodeTemplate {
    QString keyword;
    QString description;
    QString expansion;

    /// From a flat list of keyword, description and expansion. An incomplete last one is left out.
    static QList<CodeTemplate> listFrom(const QStringList& texts)
    {
        QList<CodeTemplate> result;
        for (qsizetype i = 0; i + 2 < texts.size(); i += 3)
            result.append({texts[i], texts[i + 1], texts[i + 2]});
        return result;
    }
};
