#pragma once

#include <QString>

#include <ostream>
#include <string>
#include <vector>

/// How GoogleTest shows a text.
inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

/// Qt's warnings while it lives, instead of on standard error.
class CapturedWarnings {
public:
    CapturedWarnings()
    {
        s_texts.clear();
        m_previous =
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
                s_texts.push_back(text.toStdString());
            });
    }
    ~CapturedWarnings() { qInstallMessageHandler(m_previous); }
    CapturedWarnings(const CapturedWarnings&) = delete;
    CapturedWarnings& operator=(const CapturedWarnings&) = delete;

    /// Those since the last call.
    std::vector<std::string> take() { return std::exchange(s_texts, {}); }

private:
    inline static std::vector<std::string> s_texts;
    QtMessageHandler m_previous;
};
