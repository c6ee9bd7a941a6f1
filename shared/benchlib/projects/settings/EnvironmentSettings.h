#pragma once

#include "projects/settings/EnvironmentPropertyValue.h"
#include "projects/settings/FindOptions.h"
#include "projects/settings/Settings.h"

#include <QHash>
#include <QStringList>
#include <QTimer>

#include <memory>
#include <vector>

struct SettingDescription;

/// Everything that the user can set of the program itself. A setting is reached by the member that
/// the table names, or by its key with findProperty.
class EnvironmentSettings : public QObject {
    Q_OBJECT
public:
    explicit EnvironmentSettings(QObject* parent = nullptr);
    ~EnvironmentSettings() override;

    /// Reads the settings files: the maker's, which all its products share, and the product's.
    /// Files that aren't there yet are made by the first save. In a program with an event loop
    /// settings are saved every minute from then on.
    void init(const QString& makerPath, const QString& productPath);

    /// Makes the members. Called once, by the owner; the string provider, if there is one, must be
    /// installed by then.
    virtual void createEntries();

    /// The value of a new setting, which may be another library's, registered on its page unless it is internal.
    EnvironmentPropertyValue* createEntry(const SettingDescription& description);

    /// The stored value, or the class's default.
    QString readSetting(const PropertyClass* propertyClass) const;
    void writeSetting(const PropertyClass* propertyClass, const QString& text);
    void removeSetting(const PropertyClass* propertyClass);

    /// Makes a value known by its key and shows it on that page of the options dialog.
    void registerProperty(const QString& category, EnvironmentPropertyValue* value);
    /// Null for a key that there isn't. Internal settings are found as well.
    EnvironmentPropertyValue* findProperty(const QString& key) const;

    /// The pages of the options dialog in their order.
    QStringList categories() const;
    /// Empty for a page that there isn't.
    const PropertyValueList& category(const QString& name) const;

    /// Puts the text at the front of a list of the 10 most recent ones.
    static void addToHistoryStringList(PropertyValue* value, const QString& text,
                                       Qt::CaseSensitivity sensitivity = Qt::CaseSensitive);

    /// The last search: its texts, empty if there was none, and its options.
    void getLastFindSettings(QString& findText, QString& replaceText, FindOptions& options) const;

    QString emailAddress() const;
    void setEmailAddress(const QString& text);

    /// Brings memory and files together; see Settings::sync.
    void saveSettings();

#define SETTING(member, ...) EnvironmentPropertyValue* member = nullptr;
#include "projects/settings/EnvironmentSettings.inc"
#undef SETTING

signals:
    /// On every write and removal.
    void settingChanged(const QString& key);

protected:
    /// Makes the members that a table of `member` and `description` pairs names.
    template <typename Owner, typename Table> void createTable(Owner* owner, const Table& table)
    {
        for (const auto& row : table)
            owner->*row.member = createEntry(row.description);
    }

private:
    struct Category {
        QString name;
        PropertyValueList values;
    };

    Settings m_makerSettings;
    Settings m_settings;
    QTimer m_saveTimer{this};
    std::vector<std::unique_ptr<PropertyClass>> m_classes;
    QHash<QString, EnvironmentPropertyValue*> m_values;
    std::vector<Category> m_categories;
};

/// Null until its owner sets it.
extern EnvironmentSettings* environment;
