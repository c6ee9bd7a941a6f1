#pragma once

#include "base/Path.h"

#include <QDateTime>
#include <QMap>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class ProjectElement;

/// One place that a look-up met on its way to a property's value.
struct PropertyInheritanceItem {
    QString name; ///< of the configuration or element; empty for the class's default
    QString value;
    const ProjectElement* element = nullptr; ///< null for the class's default
};
/// In the order in which the look-up met them, nearest first.
using PropertyInheritanceInformation = QList<PropertyInheritanceItem>;

/// The name of the configuration that every look-up reaches last at each level.
extern const QString CommonConfiguration;

/// One node of the project tree: a solution, configuration, project, folder or file.
///
/// Attributes of an element are what the solution file has at it; the values of properties are
/// attributes of the element's configurations, which are held by name and aren't among its
/// children. An element owns its children and configurations.
///
/// Within a transaction, changes are queued and seen by attribute(), hasAttribute() and
/// configuration() only; commitTransaction performs them and rollBackTransaction drops them.
class ProjectElement {
public:
    enum class Kind { Solution, Configuration, Project, Folder, File };

    explicit ProjectElement(Kind kind);
    ~ProjectElement();
    ProjectElement(const ProjectElement&) = delete;
    ProjectElement& operator=(const ProjectElement&) = delete;

    static QString tag(Kind kind);
    /// False, with `kind` as it was, for a tag that no element has.
    static bool kindOfTag(const QByteArray& tag, Kind& kind);

    Kind kind() const { return m_kind; }
    bool isSolution() const { return m_kind == Kind::Solution; }
    bool isProject() const { return m_kind == Kind::Project; }
    bool isFolder() const { return m_kind == Kind::Folder; }
    bool isFile() const { return m_kind == Kind::File; }
    /// A folder whose files are those of a directory.
    bool isDynamicFolder() const { return isFolder() && hasAttribute(QStringLiteral("path")); }
    /// The root of a solution that another one imports.
    bool isImported() const { return m_imported; }
    void setImported(bool imported) { m_imported = imported; }

    ProjectElement* parent() const { return m_parent; }
    /// Children in the order of the file, without configurations.
    ProjectElement* firstChild() const { return m_firstChild; }
    ProjectElement* nextSibling() const { return m_nextSibling; }
    /// Takes the child over. A configuration of a name that is there already gives its attributes
    /// to that one.
    ProjectElement* appendChild(std::unique_ptr<ProjectElement> child);
    /// Takes the child out and deletes it.
    void removeChild(ProjectElement* child);
    const QMap<QString, ProjectElement*>& configurations() const { return m_configurations; }
    /// The configuration of that name, or null; sees those that are queued.
    ProjectElement* configuration(const QString& name) const;

    ProjectElement* containingProject();
    ProjectElement* containingSolution();
    const ProjectElement* containingProject() const;
    const ProjectElement* containingSolution() const;

    QString attribute(const QString& name) const;
    bool hasAttribute(const QString& name) const;
    /// Marks the element modified and notes when, outside a transaction; `transaction` is
    /// remembered for setWithTransaction.
    void setAttribute(const QString& name, const QString& value, bool transaction = false);
    void removeAttribute(const QString& name);
    const QMap<QString, QString>& attributes() const { return m_attributes; }
    bool setWithTransaction(const QString& name) const { return m_transactional.value(name); }
    /// Sets what is read from a file: no mark, no time.
    void restoreAttribute(const QString& name, const QString& value);
    void forgetAttribute(const QString& name);

    /// The attribute Name; without one, the name part of file_name; without that "<NULL>".
    QString getName() const;

    bool modified() const { return m_modified; }
    void setModified(bool modified) { m_modified = modified; }

    /// Adds the configuration's attribute to `value`, behind ";" if it isn't empty, and to the
    /// record if there is one. False if the configuration or its attribute is missing.
    bool getProperty(const QString& configuration, const QString& name, QString& value,
                     PropertyInheritanceInformation* record) const;
    /// `newer` tells whether the property was changed after `since`; the result, whether the search
    /// may stop here.
    bool propertyHasChanged(const QString& configuration, const QString& name,
                            const QDateTime& since, bool& newer);
    /// Of this element and all below it.
    void clearChangeTimes();
    /// Counts all changes of attributes in the process, so that a look-up for changes can be
    /// skipped when nothing has changed.
    static quint64 changeCount() { return s_changes; }

    /// Of a solution: reads the lists of inherited configurations anew.
    void updateInheritenceMap();
    /// The names that a configuration inherits, by the nearest solution that has a list for it.
    const QStringList& inheritedConfigurations(const QString& configuration) const;

    /// Of a solution: its projects and those of its imports, by global name.
    const QMap<QString, ProjectElement*>& projects() const { return m_projects; }
    void setProjects(QMap<QString, ProjectElement*> projects) { m_projects = std::move(projects); }

    /// Act on this element and all below it.
    void startTransaction();
    void commitTransaction();
    void rollBackTransaction();
    bool inTransaction() const { return m_transaction != nullptr; }

    /// A file's absolute path, a solution's own file, otherwise an empty path.
    const Path& path() const;
    /// Of a solution: the file that it was loaded from.
    void setPath(const Path& path);
    /// The directory of the containing project, of the containing solution outside any project.
    QString projectDirectory() const;
    /// The directory of the containing solution's file.
    QString solutionDirectory() const;
    bool inProjectDirectory() const;
    bool belowProjectDirectory() const;
    /// Forgets the paths computed for this element and all below it.
    void clearFileStuff();

private:
    struct Transaction;

    void checkDoFileStuff() const;
    QString computeProjectDirectory() const;
    void insertChild(ProjectElement* child);
    std::unique_ptr<ProjectElement> takeChild(ProjectElement* child);
    void recordChange(const QString& name);
    template <typename Visit> void forEachBelow(Visit&& visit);

    ProjectElement* m_parent = nullptr;
    ProjectElement* m_nextSibling = nullptr;
    ProjectElement* m_firstChild = nullptr;
    ProjectElement* m_lastChild = nullptr;
    QMap<QString, ProjectElement*> m_configurations;
    Kind m_kind;
    QMap<QString, QString> m_attributes;
    bool m_modified = false;
    bool m_imported = false;
    QMap<QString, QDateTime> m_changeTimes;
    std::unique_ptr<Transaction> m_transaction;
    QMap<QString, bool> m_transactional;
    QMap<QString, ProjectElement*> m_projects;
    QMap<QString, QStringList> m_inheritance;

    mutable bool m_fileStuffValid = false;
    mutable Path m_path;
    mutable QString m_projectDirectory;
    mutable bool m_inProjectDirectory = false;
    mutable bool m_belowProjectDirectory = false;

    static quint64 s_changes;
};
