#pragma once

#include "script/es/ESMemory.h"

#include <QString>

#include <deque>

/// A text that isn't interned: the first `length` characters of a buffer. Texts that grow by
/// appending share one buffer, so that building a text piece by piece takes time and memory in
/// proportion to its length.
struct ESText {
    QString* buffer;
    qsizetype length;

    QStringView view() const { return QStringView(*buffer).left(length); }
};

/// The texts of a context; they live as long as it does.
class ESTexts {
public:
    explicit ESTexts(ESMemory& memory) : m_memory(memory) { }

    ESText* make(const QString& text)
    {
        charge(text.size());
        QString* buffer = &m_buffers.emplace_back(text);
        return &m_texts.emplace_back(ESText{buffer, buffer->size()});
    }
    /// Both, one behind the other. A left text at the end of its buffer is continued there.
    ESText* append(const ESText& left, QStringView right)
    {
        if (left.length == left.buffer->size()) {
            charge(right.size());
            left.buffer->append(right);
            return &m_texts.emplace_back(ESText{left.buffer, left.buffer->size()});
        }
        return concatenate(left.view(), right);
    }
    ESText* concatenate(QStringView left, QStringView right)
    {
        charge(2 * (left.size() + right.size()));
        QString* buffer = &m_buffers.emplace_back();
        buffer->reserve(2 * (left.size() + right.size()));
        buffer->append(left);
        buffer->append(right);
        return &m_texts.emplace_back(ESText{buffer, buffer->size()});
    }

private:
    void charge(qsizetype characters)
    {
        constexpr qsizetype PerText = sizeof(ESText) + sizeof(QString);
        m_memory.charge(characters * qsizetype(sizeof(QChar)) + PerText);
    }

    ESMemory& m_memory;
    std::deque<QString> m_buffers;
    std::deque<ESText> m_texts;
};
