#pragma once

#include "projects/macros/MacroSystem.h"

#include <QList>
#include <QStringView>

/// Expands the macro references of one text in passes. A macro's value isn't looked into by itself;
/// a further pass runs when a reference held another one.
class MacroExpander {
public:
    explicit MacroExpander(const MacroMap& macros) : m_macros(macros) { }

    QString expand(const QString& text);

private:
    /// A reference whose name holds a reference: only its name is expanded in this pass.
    struct Outer {
        qsizetype nameEnd;
        qsizetype end; ///< behind the closing parenthesis
    };

    bool pass();
    /// The reference at `m_at`, and moves behind what is done with it.
    void expandReference(qsizetype close);
    void findClosing();
    qsizetype nameEnd(qsizetype begin, qsizetype close) const;
    QStringView between(qsizetype begin, qsizetype end) const;

    const MacroMap& m_macros;
    QString m_text;
    QString m_result;
    QList<qsizetype> m_closing; ///< of each "(", its ")" or -1
    QList<Outer> m_outer;
    qsizetype m_at = 0;
    qsizetype m_largest = 0;
    bool m_again = false;
    bool m_namesSettled = false; ///< no reference within a name can be expanded any more
};
