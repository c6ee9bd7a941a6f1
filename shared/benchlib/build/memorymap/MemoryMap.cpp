#include "build/memorymap/MemoryMap.h"

#include "base/Path.h"
#include "base/QTx.h"

#include <QFileInfo>

#include <algorithm>

bool MemoryMap::load(const QString& path, const QString& macros, bool preprocess)
{
    m_path.clear();
    m_imports.clear();
    m_macros = macros;
    m_preprocess = preprocess;
    if (!load1(path))
        return false;
    processImports();
    fixupAddresses();
    return true;
}

bool MemoryMap::loadFromString(const QString& text)
{
    m_path.clear();
    m_imports.clear();
    m_sources.clear();
    if (!XMLDocument::loadFromBytes(text.toUtf8()))
        return false;
    processImports();
    fixupAddresses();
    return true;
}

/// Reads one file; its imports stay as they are.
bool MemoryMap::load1(const QString& path)
{
    m_path = resolved(path);
    m_readOnly = !QFileInfo(m_path).isWritable();
    // Before the file is read: a change in the meantime makes it out of date.
    m_sources = {{m_path, QTx::getUTCModificationTime(m_path)}};
    const bool loaded =
        m_preprocess ? XMLPP2::load(m_path, m_macros, true) : XMLDocument::load(m_path);
    if (m_preprocess) {
        for (const QString& included : includedFiles())
            m_sources.push_back({included, QTx::getUTCModificationTime(included)});
    }
    return loaded && documentElement() != nullptr;
}

/// A relative path lies in the directory of the document.
QString MemoryMap::resolved(const QString& path) const
{
    const QString expanded = macroSystem != nullptr
        ? MacroSystem::replaceMacros(macroSystem->globalMacros(true), path)
        : path;
    return Path(expanded)
        .absolute(m_path.isEmpty() ? QString() : QFileInfo(m_path).path())
        .osPath();
}

/// Only the root's own children bring in files, so that files that import one another end.
void MemoryMap::processImports()
{
    XMLElement* next = nullptr;
    for (XMLElement* import = documentElement()->firstChildElement(); import != nullptr;
         import = next) {
        next = import->nextElement();
        if (!import->hasTag("Import"))
            continue;
        auto file = std::make_unique<MemoryMap>();
        file->m_macros = m_macros;
        file->m_preprocess = m_preprocess;
        if (file->load1(resolved(import->attribute("filename")))) {
            MemoryMapElement* root = file->root();
            root->m_import = import;
            documentElement()->insertBefore(root, import);
            documentElement()->removeChild(import);
        }
        m_imports.push_back(std::move(file));
    }
}

bool MemoryMap::store(const QString& path)
{
    const auto swap = [](XMLElement* in, XMLElement* out) {
        out->parent()->insertBefore(in, out);
        out->parent()->removeChild(out);
    };
    QList<MemoryMapElement*> imported;
    for (const auto& file : m_imports) {
        if (file->root() != nullptr && file->root()->parent() != nullptr)
            imported.append(file->root());
    }
    for (MemoryMapElement* root : imported)
        swap(root->m_import, root);
    const bool saved = save(path, 2);
    for (MemoryMapElement* root : imported)
        swap(root, root->m_import);
    return saved;
}

QString MemoryMap::name() const { return Path(m_path).fileName(); }

bool MemoryMap::filesAreCurrent() const
{
    return std::ranges::all_of(m_sources, [](const Source& source) {
        return QTx::getUTCModificationTime(source.path) == source.time;
    });
}

bool MemoryMap::upToDate() const
{
    return filesAreCurrent()
        && std::ranges::all_of(m_imports, [](const auto& file) { return file->filesAreCurrent(); });
}

XMLElement* MemoryMap::newElement(const QByteArray& tag) { return new MemoryMapElement(tag); }

void MemoryMap::fixupAddresses()
{
    const XMLElement* top = documentElement();
    for (XMLElement* element = documentElement(); element != nullptr; element = element->next(top))
        static_cast<MemoryMapElement*>(element)->fixup();
}

void MemoryMap::getElementsOfType(const MemoryMapElement* parent, ElementType type, bool prepend,
                                  QList<MemoryMapElement*>& list)
{
    XMLElement* element = parent->firstChildElement();
    while (element != nullptr) {
        auto* found = static_cast<MemoryMapElement*>(element);
        if (found->type() != type) {
            element = element->next(parent);
            continue;
        }
        if (prepend)
            list.prepend(found);
        else
            list.append(found);
        element = element->nextOutside(parent);
    }
}

QList<MemoryMapElement*> MemoryMap::getSegments(bool prepend) const
{
    QList<MemoryMapElement*> list;
    if (root() != nullptr)
        getElementsOfType(root(), ElementType::MemorySegment, prepend, list);
    return list;
}

QList<MemoryMapElement*> MemoryMap::getSections(const MemoryMapElement* element, bool inOrder) const
{
    QList<MemoryMapElement*> list;
    getElementsOfType(element, ElementType::ProgramSection, !inOrder, list);
    return list;
}

MemoryMapElement* MemoryMap::getSegment(const QString& name) const
{
    return root() != nullptr ? getNamedElementOfType(root(), name, ElementType::MemorySegment)
                             : nullptr;
}

MemoryMapElement* MemoryMap::getNamedElementOfType(const MemoryMapElement* parent,
                                                   const QString& name, ElementType type)
{
    for (XMLElement* element = parent->firstChildElement(); element != nullptr;
         element = element->next(parent)) {
        auto* candidate = static_cast<MemoryMapElement*>(element);
        if (candidate->type() == type && candidate->name() == name)
            return candidate;
    }
    return nullptr;
}

QList<MemoryMapElement*> MemoryMap::getAllElements() const
{
    QList<MemoryMapElement*> list;
    for (XMLElement* element = documentElement(); element != nullptr;
         element = element->next(documentElement()))
        list.append(static_cast<MemoryMapElement*>(element));
    return list;
}
