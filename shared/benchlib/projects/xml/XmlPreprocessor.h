#pragma once

#include "projects/macros/MacroSystem.h"
#include "projects/xml/XmlDefinitions.h"
#include "projects/xml/XmlRepetition.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QtDebug>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

/// What holds for the elements of one file, or of one turn of a repetition.
struct XmlScope {
    QString directory; ///< of the file
    MacroMap macros;
    bool expandMacros = false; ///< in the attributes of every element
    int includes = 0;          ///< files around this one
};

/// A list of "name=value" separated by ";" as macros, over the system macros.
MacroMap macrosForXml(const QString& list);

/// The evaluator of the elements that adapt an XML file to the host, the product and the user's
/// macros, over any tree. A faulty element goes, with a warning.
///
/// A `Tree` has the types and static operations that are used below, and the constants
/// `Repetitions` (it has <for>, and what comes with memory maps) and `MacroDefinitions` (it has
/// <define_macro>, <expand_definition> and the attribute expand_attributes).
///
/// Nothing recurs: open elements, included files and repetitions are frames on a stack of its own.
template <typename Tree> class XmlPreprocessor {
public:
    using Node = typename Tree::Node;

    XmlPreprocessor(Tree& tree, XmlDefinitions& definitions)
        : m_tree(tree),
          m_definitions(definitions)
    {
    }

    /// Walks the node and the siblings behind it; they have a parent.
    void run(const Node& first, XmlScope scope)
    {
        m_frames.push_back({first, {}, std::make_shared<XmlScope>(std::move(scope)), {}, {}});
        while (!m_frames.empty())
            step();
    }

private:
    // A file can ask for more than there is memory and time for, by including itself or by large
    // repetitions.
    static constexpr int MaximumNestedIncludes = 16;
    static constexpr int MaximumIncludes = 1000;
    static constexpr qint64 MaximumIncludedBytes = 64 << 20;
    static constexpr int MaximumTurns = 16384;
    static constexpr int MaximumCopies = 1'000'000; ///< elements that repetitions make

    using Attributes = std::vector<std::pair<QString, QString>>;
    using Handler = void (XmlPreprocessor::*)(const Node& element);

    struct Repeated {
        XmlRepetition repetition;
        std::shared_ptr<XmlScope> scope; ///< around the repetition
    };

    /// Siblings that are to be walked: from `next` up to `end`.
    struct Frame {
        Node next;
        Node end; ///< null: to the last one
        std::shared_ptr<XmlScope> scope;
        Attributes inherited;             ///< given to each element that stays
        std::optional<Repeated> repeated; ///< the turns to come, in front of `end`
        bool removeEnd = false;           ///< `end` is the element that these stand for
    };

    static const QHash<QString, Handler>& handlers()
    {
        static const QHash<QString, Handler> table = [] {
            QHash<QString, Handler> result{
                {QStringLiteral("if"), &XmlPreprocessor::condition<true>},
                {QStringLiteral("ifnot"), &XmlPreprocessor::condition<false>},
                {QStringLiteral("ifdef"), &XmlPreprocessor::defined<true>},
                {QStringLiteral("ifndef"), &XmlPreprocessor::defined<false>},
                {QStringLiteral("define"), &XmlPreprocessor::define},
                {QStringLiteral("switch"), &XmlPreprocessor::choice},
                {QStringLiteral("include"), &XmlPreprocessor::include},
            };
            if constexpr (Tree::Repetitions)
                result.insert(QStringLiteral("for"), &XmlPreprocessor::repetition);
            if constexpr (Tree::MacroDefinitions) {
                result.insert(QStringLiteral("define_macro"), &XmlPreprocessor::defineMacro);
                result.insert(QStringLiteral("expand_definition"),
                              &XmlPreprocessor::expandDefinition);
            }
            return result;
        }();
        return table;
    }

    void step()
    {
        Frame& frame = m_frames.back();
        if (frame.next == frame.end) {
            finish();
            return;
        }
        const Node node = frame.next;
        frame.next = Tree::nextSibling(node);
        if (!Tree::isElement(node))
            return;
        expandAttributes(node);
        const Handler handler = handlers().value(Tree::tag(node));
        if (handler && !isNamedPart(node)) {
            (this->*handler)(node);
            return;
        }
        for (const auto& [name, value] : frame.inherited)
            Tree::setAttribute(node, name, value);
        m_frames.push_back({Tree::firstChild(node), {}, frame.scope, {}, {}});
    }

    /// A define that has content in place of a value, such as a menu's: a part of the document that
    /// readers look for by its name. It stays.
    static bool isNamedPart(const Node& element)
    {
        if (Tree::tag(element) != u"define" || Tree::hasAttribute(element, QStringLiteral("value")))
            return false;
        for (Node child = Tree::firstChild(element); !Tree::isNull(child);
             child = Tree::nextSibling(child))
            if (Tree::isElement(child))
                return true;
        return false;
    }

    void finish()
    {
        Frame& frame = m_frames.back();
        if constexpr (Tree::Repetitions) {
            if (frame.repeated && takeTurn(frame))
                return;
        }
        const Node end = frame.end;
        const bool remove = frame.removeEnd;
        m_frames.pop_back();
        if (remove)
            Tree::remove(end);
    }

    XmlScope& scope() { return *m_frames.back().scope; }

    void expandAttributes(const Node& element)
    {
        if (scope().expandMacros) {
            Tree::expandAttributeMacros(element, scope().macros);
            return;
        }
        if constexpr (Tree::MacroDefinitions) {
            const QString list = QStringLiteral("expand_attributes");
            if (!Tree::hasAttribute(element, list))
                return;
            const QStringList names = Tree::attribute(element, list).split(u',');
            Tree::removeAttribute(element, list);
            for (const QString& entry : names) {
                const QString name = entry.trimmed();
                if (Tree::hasAttribute(element, name))
                    Tree::setAttribute(
                        element, name,
                        MacroSystem::replaceMacros(scope().macros, Tree::attribute(element, name)));
            }
        }
    }

    static void warn(const QString& text)
    {
        qWarning("XmlPP::processConditionals(): %s", qUtf8Printable(text));
    }

    static void removeWithWarning(const Node& element, const QString& text)
    {
        warn(text);
        Tree::remove(element);
    }

    /// The text of an attribute; null if it is missing, never null otherwise.
    static QString attribute(const Node& element, const char* name)
    {
        const QString key = QLatin1StringView(name);
        if (!Tree::hasAttribute(element, key))
            return {};
        const QString text = Tree::attribute(element, key);
        return text.isNull() ? QStringLiteral("") : text;
    }

    /// The children of `from` take the element's place and are walked next.
    void replaceByChildren(const Node& element, const Node& from)
    {
        Frame& frame = m_frames.back();
        const Node first = moveChildren(from, element);
        if (!Tree::isNull(first))
            frame.next = first;
        Tree::remove(element);
    }

    /// Moves the children of `from` in front of `before` and returns the first one.
    static Node moveChildren(const Node& from, const Node& before)
    {
        const Node first = Tree::firstChild(from);
        for (Node child = first; !Tree::isNull(child); child = Tree::firstChild(from))
            Tree::insertBefore(child, before);
        return first;
    }

    /// Whether the definition has a value that is in the list.
    bool isIn(const QString& definition, const QString& list) const
    {
        const auto found = m_definitions.constFind(definition);
        if (found == m_definitions.constEnd())
            return false;
        for (const QStringView value : QStringView(list).split(u','))
            if (value.trimmed() == *found)
                return true;
        return false;
    }

    void decide(const Node& element, bool holds)
    {
        if (holds)
            replaceByChildren(element, element);
        else
            Tree::remove(element);
    }

    template <bool Wanted> void condition(const Node& element)
    {
        const QStringList names = Tree::attributeNames(element);
        if (names.size() != 1) {
            removeWithWarning(element, QStringLiteral("one condition required for <if[not]>"));
            return;
        }
        decide(element, isIn(names[0], Tree::attribute(element, names[0])) == Wanted);
    }

    template <bool Wanted> void defined(const Node& element)
    {
        decide(element, m_definitions.contains(attribute(element, "name")) == Wanted);
    }

    void define(const Node& element) { defineIn(m_definitions, element, "define"); }
    void defineMacro(const Node& element) { defineIn(scope().macros, element, "define_macro"); }

    static void defineIn(QMap<QString, QString>& map, const Node& element, const char* tag)
    {
        const QString name = attribute(element, "name");
        const QString value = attribute(element, "value");
        if (name.isNull() || value.isNull())
            warn(QStringLiteral("missing name and/or value in <%1>").arg(QLatin1StringView(tag)));
        else
            map.insert(name, value);
        Tree::remove(element);
    }

    void expandDefinition(const Node& element)
    {
        const QString text = m_definitions.value(attribute(element, "name"));
        Tree::insertBefore(m_tree.createText(text), element);
        Tree::remove(element);
    }

    void choice(const Node& element)
    {
        const QString name = attribute(element, "name");
        Node otherwise{};
        for (Node child = Tree::firstChild(element); !Tree::isNull(child);
             child = Tree::nextSibling(child)) {
            if (!Tree::isElement(child))
                continue;
            const QString tag = Tree::tag(child);
            if (tag == u"case" && isIn(name, attribute(child, "value"))) {
                replaceByChildren(element, child);
                return;
            }
            if (tag == u"default" && Tree::isNull(otherwise))
                otherwise = child;
        }
        if (Tree::isNull(otherwise))
            Tree::remove(element);
        else
            replaceByChildren(element, otherwise);
    }

    void include(const Node& element)
    {
        QString name = attribute(element, "filename");
        if (name.isNull()) {
            removeWithWarning(element, QStringLiteral("missing filename in <include>"));
            return;
        }
        if (Tree::Repetitions && macroSystem != nullptr)
            name = MacroSystem::replaceMacros(macroSystem->systemMacros(), name);
        if (QFileInfo(name).isRelative())
            name.prepend(scope().directory + u'/');
        const Node root = readIncluded(name);
        if (Tree::isNull(root)) {
            Tree::remove(element);
            return;
        }
        auto inner = std::make_shared<XmlScope>(scope());
        ++inner->includes;
        inner->directory = QFileInfo(name).path();
        if (Tree::hasAttribute(element, QStringLiteral("macros"))) {
            overlayMacros(inner->macros, attribute(element, "macros"));
            inner->expandMacros = true;
        }
        if (Tree::hasAttribute(element, QStringLiteral("expand_macros")))
            inner->expandMacros = true;

        const bool noRoot = Tree::hasAttribute(element, QStringLiteral("no_root"))
            || (Tree::Repetitions && Tree::tag(root) == u"envelope");
        Node first = root;
        if (noRoot)
            first = moveChildren(root, element);
        else
            Tree::insertBefore(root, element);
        if (Tree::isNull(first))
            first = element;
        m_frames.push_back({first, element, std::move(inner), inheritedFrom(element), {}, true});
    }

    /// The outermost element of the file, in no tree; null, with a warning, if it can't be had.
    Node readIncluded(const QString& name)
    {
        if constexpr (Tree::Repetitions)
            m_tree.noteInclude(name);
        QFile file(name);
        // A pipe or a device might never end.
        if (!QFileInfo(name).isFile() || !file.open(QIODevice::ReadOnly)) {
            warn(QStringLiteral("couldn't open include file ") + name);
            return {};
        }
        m_includedBytes += file.size();
        if (++m_includes > MaximumIncludes || m_includedBytes > MaximumIncludedBytes
            || scope().includes >= MaximumNestedIncludes) {
            warn(QStringLiteral("too many includes at include file ") + name);
            return {};
        }
        const QByteArray bytes = file.readAll();
        if (Tree::Repetitions && bytes.trimmed().isEmpty()) {
            warn(QStringLiteral("error: include file '%1' is empty").arg(name));
            return {};
        }
        QString error;
        int line = 0;
        int column = 0;
        const Node root = m_tree.parse(bytes, error, line, column);
        if (Tree::isNull(root))
            warn(QStringLiteral("error \"%1\" in include file %2 line:%3 column:%4")
                     .arg(error, name, QString::number(line), QString::number(column)));
        return root;
    }

    static void overlayMacros(MacroMap& macros, const QString& text)
    {
        const MacroMap added =
            MacroSystem::macrosFromStringList(MacroSystem::stringListFromString(text));
        for (auto it = added.constBegin(); it != added.constEnd(); ++it)
            macros.insert(it.key().trimmed(), it.value().trimmed());
    }

    /// What an include gives to its elements; what it was itself given counts more.
    Attributes inheritedFrom(const Node& element)
    {
        Attributes result;
        if constexpr (Tree::Repetitions) {
            for (const QString& entry : attribute(element, "inherit_attributes").split(u';')) {
                const QString name = entry.trimmed();
                if (Tree::hasAttribute(element, name))
                    result.emplace_back(name, Tree::attribute(element, name));
            }
        }
        const Attributes& outer = m_frames.back().inherited;
        result.insert(result.end(), outer.begin(), outer.end());
        return result;
    }

    void repetition(const Node& element)
    {
        const MacroMap& macros = scope().macros;
        const auto expanded = [&](const char* name) {
            const QString text = attribute(element, name);
            return text.isNull() ? text : MacroSystem::replaceMacros(macros, text);
        };
        const auto turns = XmlRepetition::fromAttributes(
            {attribute(element, "index"), attribute(element, "start"), attribute(element, "end"),
             attribute(element, "incr"), expanded("add"), expanded("sub"),
             attribute(element, "mul")});
        if (!turns) {
            removeWithWarning(
                element, QStringLiteral("<for index=\"i\" start=\"0\" end=\"32\" incr=\"1\">"));
            return;
        }
        if (!turns->advances()) {
            removeWithWarning(element, QStringLiteral("<for> with incr 0 would never end"));
            return;
        }
        Frame& frame = m_frames.back();
        m_frames.push_back(
            {element, element, frame.scope, frame.inherited, Repeated{*turns, frame.scope}, true});
    }

    /// Puts the elements of one turn in front of the <for> and makes the frame walk them. False if
    /// there is none.
    bool takeTurn(Frame& frame)
    {
        auto& [turns, outer] = *frame.repeated;
        const Node source = firstElement(Tree::firstChild(frame.end));
        if (turns.atEnd() || Tree::isNull(source))
            return false;
        if (m_turns >= MaximumTurns || m_copies >= MaximumCopies) {
            if (!std::exchange(m_exhausted, true))
                warn(QStringLiteral("too many elements made by <for>"));
            return false;
        }
        ++m_turns;
        frame.scope = std::make_shared<XmlScope>(*outer);
        turns.addMacros(frame.scope->macros);
        turns.next();
        Node first{};
        for (Node child = source; !Tree::isNull(child);
             child = firstElement(Tree::nextSibling(child))) {
            const Node copy = m_tree.copyAndExpand(child, frame.scope->macros, m_copies);
            Tree::insertBefore(copy, frame.end);
            if (Tree::isNull(first))
                first = copy;
        }
        frame.next = first;
        return true;
    }

    static Node firstElement(Node node)
    {
        while (!Tree::isNull(node) && !Tree::isElement(node))
            node = Tree::nextSibling(node);
        return node;
    }

    Tree& m_tree;
    XmlDefinitions& m_definitions;
    std::vector<Frame> m_frames;
    int m_includes = 0;
    qint64 m_includedBytes = 0;
    int m_turns = 0;
    int m_copies = 0;
    bool m_exhausted = false;
};
