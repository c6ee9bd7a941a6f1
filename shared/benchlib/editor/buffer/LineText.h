#pragma once

#include <QString>

/// The characters of one line, without a terminator. Either owns them, or refers to a part of a
/// text that outlives it: a loaded file then costs nothing a line but this object.
class LineText {
public:
    /// Longer lines are cut.
    static constexpr qsizetype MaximumLength = 0x3fffffff;

    LineText() = default;
    explicit LineText(QStringView text) { assign(text); }
    LineText(LineText&& other) noexcept { swap(other); }
    LineText& operator=(LineText&& other) noexcept
    {
        swap(other);
        return *this;
    }
    LineText(const LineText&) = delete;
    LineText& operator=(const LineText&) = delete;
    ~LineText() { release(); }

    /// The text must outlive this object, or the next change of it.
    static LineText referringTo(QStringView text);

    /// Valid until the next change.
    QStringView view() const { return {m_data, m_length}; }
    int length() const { return m_length; }

    void assign(QStringView text);
    /// Both positions are limited to the line. The text may be a part of this one.
    void replace(int position, int length, QStringView text);

private:
    void release();
    void swap(LineText& other) noexcept;

    char16_t* m_data = nullptr;
    int m_length = 0;
    int m_capacity = 0; ///< 0 when the characters are someone else's
};
