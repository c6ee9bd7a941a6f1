#pragma once

#include <QMap>
#include <QString>

/// The members that staging puts into package files, gathered so that each package is written once.
class StagedPackages {
public:
    /// The file joins the package under that name, or the member of that name leaves it.
    void add(const QString& package, const QString& member, const QString& file);
    void remove(const QString& package, const QString& member);
    /// Writes the packages; false with a text for the first that couldn't be. A package keeps being
    /// compressed or not; a new one is compressed.
    bool write(QString& errorText);
    void clear() { m_changes.clear(); }

private:
    /// By member name; an empty file removes it.
    using Members = QMap<QString, QString>;
    static bool writePackage(const QString& package, const Members& members);

    QMap<QString, Members> m_changes;
};
