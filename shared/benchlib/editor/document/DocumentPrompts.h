#pragma once

#include <QString>
#include <QStringList>

/// What a document asks its user. This one, without a user, gives the answers that lose nothing.
class DocumentPrompts {
public:
    virtual ~DocumentPrompts() = default;

    /// Something that the user has to know; waits until it is read.
    virtual void warn(const QString& text) { Q_UNUSED(text) }
    /// The index of the button that was pressed; `escape` when the question was left.
    virtual int ask(const QString& text, const QStringList& buttons, int escape)
    {
        Q_UNUSED(text)
        Q_UNUSED(buttons)
        return escape;
    }
    /// A file to save to; empty if none was chosen.
    virtual QString fileToSave(const QString& suggestion)
    {
        Q_UNUSED(suggestion)
        return {};
    }
    /// A file to read; empty if none was chosen.
    virtual QString fileToInsert() { return {}; }
};
