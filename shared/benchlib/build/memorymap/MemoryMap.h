#pragma once

#include "build/memorymap/MemoryMapElement.h"
#include "projects/xml/XMLPP2.h"

#include <QDateTime>
#include <QList>

#include <memory>
#include <vector>

/// A memory map, which names the memory segments and registers of a device, or a section placement,
/// which names the program sections that go into segments. The elements live as long as it does.
class MemoryMap : public XMLPP2 {
public:
    using ElementType = MemoryMapElement::ElementType;

    /// Reads the file and those that it imports, with the conditions and includes of the
    /// preprocessing language evaluated if `preprocess`, and computes all addresses. Global macros
    /// are expanded in the path; `macros` is a list of "name=value" separated by ";". False, with
    /// errorText() and errorLine() set, if the file can't be read; an import that can't is passed
    /// over.
    bool load(const QString& path, const QString& macros, bool preprocess);
    /// The same of a text without preprocessing, which belongs to no file.
    bool loadFromString(const QString& text);
    /// Writes the document back, imports as what they were.
    bool store(const QString& path);

    /// As it was read; empty for a text.
    const QString& path() const { return m_path; }
    /// The file's name.
    QString name() const;
    const QString& macros() const { return m_macros; }
    bool preprocess() const { return m_preprocess; }
    /// Whether the file couldn't be written when it was read.
    bool fileReadOnly() const { return m_readOnly; }

    /// Whether the files are as they were when they were read.
    bool upToDate() const;

    /// Null in an empty document.
    MemoryMapElement* root() const { return static_cast<MemoryMapElement*>(documentElement()); }

    /// Adds the elements of that type in `parent` to the list, in document order at its back or, if
    /// `prepend`, one by one at its front. An element that is added isn't looked into.
    static void getElementsOfType(const MemoryMapElement* parent, ElementType type, bool prepend,
                                  QList<MemoryMapElement*>& list);
    /// All memory segments; with `prepend` in reverse document order.
    QList<MemoryMapElement*> getSegments(bool prepend) const;
    /// The program sections in the element, in document order or in reverse.
    QList<MemoryMapElement*> getSections(const MemoryMapElement* element, bool inOrder) const;
    /// The first one of that name, or null.
    MemoryMapElement* getSegment(const QString& name) const;
    static MemoryMapElement* getNamedElementOfType(const MemoryMapElement* parent,
                                                   const QString& name, ElementType type);
    /// In document order, the root first.
    QList<MemoryMapElement*> getAllElements() const;

    /// Computes the addresses and sizes of the whole tree.
    void fixupAddresses();

protected:
    XMLElement* newElement(const QByteArray& tag) override;

private:
    /// A file that the document came from, with the time of its last change, invalid if it wasn't
    /// there.
    struct Source {
        QString path;
        QDateTime time;
    };

    bool load1(const QString& path);
    void processImports();
    QString resolved(const QString& path) const;
    bool filesAreCurrent() const;

    QString m_path;
    QString m_macros;
    bool m_preprocess = false;
    bool m_readOnly = false;
    std::vector<Source> m_sources; ///< the file itself and what it includes
    /// The roots of those that could be read are in this tree.
    std::vector<std::unique_ptr<MemoryMap>> m_imports;
};
