#pragma once

#include <exception>
#include <string>
#include <utility>

/// The failure of the object layer and of the targets: one message, which is the whole report.
class HException : public std::exception {
public:
    explicit HException(std::string message) : m_message(std::move(message)) { ++s_count; }
    HException(const HException& other) : std::exception(other), m_message(other.m_message)
    {
        ++s_count;
    }
    HException& operator=(const HException&) = default;
    ~HException() override { --s_count; }

    const std::string& message() const { return m_message; }
    const char* what() const noexcept override { return m_message.c_str(); }

    /// The number of exceptions alive; 0 when every failure has been dealt with.
    static int count() { return s_count; }

private:
    std::string m_message;
    inline static int s_count = 0;
};
