#pragma once

#include "base/XMLDocument.h"
#include "projects/properties/PropertyClass.h"
#include "projects/solution/ProjectPropertyValue.h"

#include <QDateTime>

#include <list>
#include <memory>
#include <vector>

/// One choice of a property group: the properties and definitions that it brings. Null when there
/// is no such choice.
class PropertyValueGroupEntry {
public:
    explicit PropertyValueGroupEntry(const XMLElement* element = nullptr) : m_element(element) { }

    bool isNull() const { return !m_element; }
    /// The value of the child with that tag and name; false if there is none.
    bool getTaggedValue(const char* tag, const QString& name, QString& value) const;
    /// The names of the children with that tag, in the order of the file.
    QStringList getTaggedNames(const char* tag) const;
    /// True if the choice brings a preprocessor definition.
    bool hasDefines() const;
    const XMLElement* element() const { return m_element; }

private:
    const XMLElement* m_element;
};

/// An enumeration property whose choice applies a set of other properties at once.
class PropertyValueGroupClass : public PropertyClass {
public:
    explicit PropertyValueGroupClass(const XMLElement& group);
    PropertyValueGroupEntry getGroupEntry(const QString& name) const;

private:
    QHash<QString, const XMLElement*> m_entries;
};

/// A file of property groups, read when its classes are first asked for.
class PropertyValueGroupFile {
public:
    explicit PropertyValueGroupFile(const QString& path);
    ~PropertyValueGroupFile();

    const QString& path() const { return m_path; }
    /// False if the file has another time of change than when this was made.
    bool isUpToDate() const;
    /// Empty, after a warning through Qt's message handler, for a file that can't be read.
    const std::vector<std::unique_ptr<PropertyValueGroupClass>>& classes();

private:
    void load();
    void warning(const QString& text) const;

    QString m_path;
    QDateTime m_time;
    bool m_loaded = false;
    std::unique_ptr<XMLDocument> m_document;
    std::vector<std::unique_ptr<PropertyValueGroupClass>> m_classes;
};

/// The files of property groups in use; the one set last stands at the end.
class PropertyValueGroups {
public:
    /// Holds the file, read anew if it has changed. "None" and an empty path do nothing.
    void setGroupFile(const QString& path);
    /// Null if no file has such a group. Files set later are asked first.
    const PropertyValueGroupClass* getGroupClass(const QString& name);
    /// Of the file set last.
    std::vector<const PropertyValueGroupClass*> classes();
    void clear() { m_files.clear(); }

private:
    std::list<PropertyValueGroupFile> m_files;
};

/// A property group's value at an element. Setting it stores the choice, and the properties that
/// the choice brings.
class PropertyValueGroupValue : public ProjectPropertyValue {
public:
    PropertyValueGroupValue(const PropertyValueGroupClass* groupClass, ProjectElement* node,
                            const QString& configuration)
        : ProjectPropertyValue(groupClass, node, configuration),
          m_groupClass(groupClass)
    {
    }

    void setPropertyValue(const QString& text) override { setPropertyValue(text, false); }
    /// A text that is no choice stands for the default.
    void setPropertyValue(const QString& text, bool transaction);
    /// Removes the choice and the properties that the default choice would bring.
    void removeProperty();

private:
    QString configurationOf(const XMLElement& property) const;

    const PropertyValueGroupClass* m_groupClass;
};
