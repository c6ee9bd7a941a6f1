#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

class Path;
class PropertyValue;

/// Names and values of macros; names are case-sensitive.
using MacroMap = QMap<QString, QString>;

/// Macro references `$(Name)` in settings and paths: their syntax, the system macros, and the
/// global macros, which live in the setting Environment/Macros/Global Macros.
class MacroSystem {
public:
    /// Holds the dynamic macros and those of the host.
    MacroSystem();

    /// The version, name and directory macros; `root` is the root of the installation.
    void setupDefaultSystemMacros(const QString& root);
    /// PackagesDir, TargetsDir and SamplesDir.
    void setupPackageMacros(const QString& packagesDirectory);

    QString systemMacro(const QString& name) const { return m_system.value(name); }
    const MacroMap& systemMacros() const { return m_system; }
    void setSystemMacro(const QString& name, const QString& value);
    /// Stores the path in its slash form.
    void setSystemMacroPath(const QString& name, const Path& path);

    /// The setting that holds the global macros as a list of "name=value"; null for none. Not
    /// owned.
    void setGlobalMacrosValue(PropertyValue* value) { m_globalMacros = value; }
    /// The value of a global or system macro.
    QString globalMacro(const QString& name) const;
    /// Rewrites the setting; an empty value removes the entry.
    void setGlobalMacro(const QString& name, const QString& value);
    /// The global macros, over the system macros if those are included.
    MacroMap globalMacros(bool includeSystem) const;

    /// Expands the references in the text. An unknown one stays, unless it has a fallback behind
    /// ":"; "::" is a fallback that starts no further pass. An unterminated one is dropped, with
    /// what stands behind it. Text that doesn't come to an end stays as far as it has come.
    static QString replaceMacros(const MacroMap& macros, const QString& text);
    /// Computes a dynamic macro, such as Date; false for any other name.
    static bool dynamicMacro(const QString& name, QString& value);

    /// From entries "name=value"; of two of the same name the later one counts.
    static MacroMap macrosFromStringList(const QStringList& list);
    static QStringList stringListFromMacros(const MacroMap& macros);
    /// `base` with each entry of `over` on top.
    static MacroMap overwriteMacros(const MacroMap& base, const MacroMap& over);

    /// Entries joined by ";", each with a backslash in front of its own ";" and backslashes.
    static QString stringFromStringList(const QStringList& list);
    /// The reverse: a backslash takes the next character literally. Empty entries are dropped
    /// unless `keepEmpty`.
    static QStringList stringListFromString(const QString& text, bool keepEmpty = false);
    static QString escape(const QString& text);

private:
    MacroMap m_system;
    PropertyValue* m_globalMacros = nullptr;
};

/// Null until its owner sets it.
extern MacroSystem* macroSystem;
