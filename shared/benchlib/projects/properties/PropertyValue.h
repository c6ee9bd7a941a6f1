#pragma once

#include "projects/properties/PropertyClass.h"

#include <QRect>

#include <memory>
#include <vector>

class QActionGroup;
class QColor;
class QFont;
class QObject;

/// One place that can hold a setting. All values are stored as strings; the typed accessors convert
/// on the way in and out. A string that is empty reads as the class's default.
class PropertyValue {
public:
    explicit PropertyValue(const PropertyClass* propertyClass) : m_class(propertyClass) { }
    virtual ~PropertyValue() = default;
    PropertyValue(const PropertyValue&) = delete;
    PropertyValue& operator=(const PropertyValue&) = delete;

    /// The value's own mark, or the class's.
    virtual bool readOnly() const { return m_readOnly || m_class->readOnly(); }
    /// True if the value comes from elsewhere than this place.
    virtual bool inherited() const { return false; }
    virtual void setPropertyValue(const QString& text) = 0;
    /// What setPropertyValue stored; empty by default.
    virtual QString propertyValue() const { return {}; }

    const PropertyClass* propertyClass() const { return m_class; }
    void setReadOnly(bool readOnly) { m_readOnly = readOnly; }
    bool transient() const { return m_transient; }
    void setTransient(bool transient) { m_transient = transient; }
    bool visible() const { return m_visible; }
    void setVisible(bool visible) { m_visible = visible; }

    QString toString() const;
    bool toBool() const;
    /// For Boolean and Enumeration the index in enumerates(), or 0; otherwise the number, with "0x"
    /// honoured.
    int toInt() const;
    QStringList toStringList(bool keepEmpty = false) const;
    /// A null rectangle if the text isn't of four numbers.
    QRect toRect() const;

    /// For Boolean and Enumeration the index of a choice. Warns for another index, which stores
    /// the null string, and for a property that isn't a number, which stays as it was.
    void setValue(int value);
    /// 0 or 1; warns if the property isn't a Boolean.
    void setValue(bool value);
    void setValue(const QString& value);
    void setValue(const char* value);
    void setValue(const QStringList& value);
    void setValue(const QRect& value);
    void setToDefault();

    /// Defined where Qt's GUI types are linked.
    QColor toColor() const;
    QFont toFont(const QFont& fallback) const;
    void setValue(const QColor& value);
    void setValue(const QFont& value);
    /// An exclusive group with one toggle action per entry of enumerates(), the current one on;
    /// choosing one sets the value, which must live as long as the group.
    QActionGroup* actionGroup(QObject* parent);

private:
    const PropertyClass* m_class;
    bool m_readOnly = false;
    bool m_transient = false;
    bool m_visible = true;
};

/// A string of its own, for rows of information.
class SimplePropertyValue : public PropertyValue {
public:
    explicit SimplePropertyValue(const PropertyClass* propertyClass, const QString& value = {})
        : PropertyValue(propertyClass),
          m_value(value)
    {
    }
    void setPropertyValue(const QString& text) override { m_value = text; }
    QString propertyValue() const override { return m_value; }

private:
    QString m_value;
};

/// Values in the order in which they are shown; deletes them when made to own them.
class PropertyValueList {
public:
    explicit PropertyValueList(bool owning = false) : m_owning(owning) { }
    ~PropertyValueList();
    PropertyValueList(PropertyValueList&& other) noexcept;
    PropertyValueList& operator=(PropertyValueList&& other) noexcept;

    /// The value of that class, or null.
    PropertyValue* find(const PropertyClass* propertyClass) const;
    /// A value whose class is already in the list isn't added again, and deleted if the list owns.
    /// Throws HException "Bad property value in PropertyValueList::appendUnique" for null.
    void appendUnique(PropertyValue* value);

    /// True if the list holds values and all of them are transient.
    bool transient() const;

    bool isEmpty() const { return m_values.empty(); }
    std::size_t size() const { return m_values.size(); }
    PropertyValue* at(std::size_t index) const { return m_values[index]; }
    auto begin() const { return m_values.begin(); }
    auto end() const { return m_values.end(); }

private:
    bool m_owning;
    std::vector<PropertyValue*> m_values;
};
