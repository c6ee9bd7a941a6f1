#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class PropertyEditor;
class QColor;
class XMLElement;

/// The description of one named setting: its type, where it is shown, its limits and default.
/// Made once, by the system that reads the setting, and alive until the program ends.
class PropertyClass {
public:
    /// The numbers are those used in memory; typeName gives the names used in XML.
    enum class Type {
        Boolean,
        Integer,
        IntegerHex,
        IntegerRange,
        String,
        FileName,
        ProjFileName,
        StringList,
        DirPath,
        DirPathList,
        Enumeration,
        Color,
        Font,
        FixedPitchFont,
        Custom
    };

    PropertyClass(const QString& saveName, Type type, const QString& page, const QString& group,
                  const QString& shortDescription, const QString& longDescription,
                  const QString& defaultValue = {});
    /// An integer range.
    PropertyClass(const QString& saveName, Type type, int minimum, int maximum, const QString& page,
                  const QString& group, const QString& shortDescription,
                  const QString& longDescription, int defaultValue);
    /// An enumeration.
    PropertyClass(const QString& saveName, Type type, const QStringList& enumerates,
                  const QString& page, const QString& group, const QString& shortDescription,
                  const QString& longDescription, const QString& defaultValue);
    /// A Boolean.
    PropertyClass(const QString& saveName, const QString& page, const QString& group,
                  const QString& shortDescription, const QString& longDescription,
                  bool defaultValue);
    /// A colour. Defined where Qt's GUI types are linked.
    PropertyClass(const QString& saveName, const QString& page, const QString& group,
                  const QString& shortDescription, const QString& longDescription,
                  const QColor& defaultValue);
    /// From a description with the attributes name, type, group, short, long, and optionally
    /// default, minimum, maximum, enumeration (split at ";") and specialvalue.
    explicit PropertyClass(const XMLElement& description);
    /// Keyed: all texts, enumerates and the default come from the string provider, by the save name
    /// and ".page", ".group", ".short", ".long", ".default", ".enumerates", ".suffix", ".minimum",
    /// ".maximum".
    PropertyClass(const QString& saveName, Type type);
    PropertyClass(const QString& saveName, Type type, int minimum, int maximum);
    virtual ~PropertyClass() = default;
    PropertyClass(const PropertyClass&) = delete;
    PropertyClass& operator=(const PropertyClass&) = delete;

    /// The name of a type in XML descriptions, such as "IntegerRange".
    static QString typeName(Type type);
    /// False, with `type` as it was, for a name that isn't one.
    static bool typeFromName(const QString& name, Type& type);

    /// The attribute's name in a solution file, the key in the settings file.
    const QString& saveName() const { return m_saveName; }
    Type type() const { return m_type; }
    const QString& page() const { return m_page; }
    const QString& group() const { return m_group; }
    const QString& shortDescription() const { return m_shortDescription; }
    const QString& longDescription() const { return m_longDescription; }
    /// The default in stored form.
    const QString& defaultValue() const { return m_defaultValue; }
    /// The unit shown behind an integer, such as " lines".
    const QString& suffix() const { return m_suffix; }
    const QString& dialogDescription() const { return m_dialogDescription; }
    /// What is shown for the lowest value of an integer.
    const QString& specialValueText() const { return m_specialValueText; }
    bool readOnly() const { return m_readOnly; }
    /// False for a property that is stored and read in "Common" only.
    bool perConfiguration() const { return m_perConfiguration; }
    int minimum() const { return m_minimum; }
    int maximum() const { return m_maximum; }
    PropertyEditor* editor() const { return m_editor; }
    /// The legal values; "No" and "Yes" for a Boolean without a list of its own.
    const QStringList& enumerates() const;

    void setDefaultValue(const QString& value) { m_defaultValue = value; }
    void setEnumerates(const QStringList& enumerates) { m_enumerates = enumerates; }
    void setSuffix(const QString& suffix) { m_suffix = suffix; }
    void setDialogDescription(const QString& text) { m_dialogDescription = text; }
    void setSpecialValueText(const QString& text) { m_specialValueText = text; }
    void setReadOnly(bool readOnly) { m_readOnly = readOnly; }
    void setPerConfiguration(bool perConfiguration) { m_perConfiguration = perConfiguration; }
    void setRange(int minimum, int maximum);
    void setEditor(PropertyEditor* editor) { m_editor = editor; }

private:
    void readProvider();

    QString m_saveName;
    QString m_group;
    QString m_shortDescription;
    QString m_longDescription;
    QString m_suffix;
    QString m_dialogDescription;
    QString m_defaultValue;
    QString m_specialValueText;
    QString m_page;
    bool m_readOnly = false;
    bool m_perConfiguration = true;
    Type m_type = Type::String;
    QStringList m_enumerates;
    int m_minimum = 0;
    int m_maximum = 0;
    PropertyEditor* m_editor = nullptr;
};

/// Classes in the order in which they are shown; owns nothing.
class PropertyClassList : public QList<const PropertyClass*> {
public:
    using QList::QList;
    /// Does nothing when the class is already in the list.
    void appendUnique(const PropertyClass* propertyClass);
};
