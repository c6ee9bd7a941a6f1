#pragma once

#include "target/TargetInterface.h"

#include <memory>
#include <vector>

class GantryBenchEnvironmentSettings;
class XMLDocument;
class XMLElement;

/// One target of the list. Its title is the row's text.
struct TargetListItem {
    QString className;
    std::unique_ptr<TargetInterface> target;
};

/// The targets that a user can connect, as they are stored in the settings and in files. A failure
/// is an HException, and leaves what could be read in the list.
class TargetList {
public:
    static constexpr const char* DocumentType = "GantryBench_Target_Definition_File";

    /// `defaultFile` is the file of the targets that an installation brings.
    TargetList(GantryBenchEnvironmentSettings& settings, const QString& defaultFile);
    ~TargetList();

    /// Empties the list and reads it from the settings; then takes in the default targets that
    /// haven't been taken in before. No target may be connected.
    void load();
    void save();
    /// Replaces the list by the targets of a file.
    void importTargetDefinitions(const QString& path);
    void exportTargetDefinitions(const QString& path) const;
    /// Replaces the list by the default targets.
    void restoreDefaultTargets();

    std::size_t size() const { return m_items.size(); }
    const TargetListItem& operator[](std::size_t index) const { return m_items[index]; }
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }
    /// Null if there is none of that name.
    TargetInterface* getTargetInterfaceByName(const QString& name) const;
    /// A new target of a class, with the description of its kind as its name; null for a class that
    /// this installation hasn't.
    TargetInterface* newTarget(const QString& className);
    void rename(TargetInterface* target, const QString& title);
    /// The target must not be connected.
    void remove(TargetInterface* target);
    /// The definition of a target as text, and a target made from one: the copy's name says so.
    QString copy(const TargetInterface* target) const;
    TargetInterface* paste(const QString& text);

private:
    static void readDocument(XMLDocument& document, const QString& path);
    TargetInterface* addElement(const XMLElement& element);
    void addChildren(const XMLDocument& document);
    void takeInDefaults();
    void write(XMLDocument& document, const TargetInterface* only = nullptr) const;

    GantryBenchEnvironmentSettings& m_settings;
    QString m_defaultFile;
    std::vector<TargetListItem> m_items;
};
