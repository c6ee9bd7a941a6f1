#pragma once

#include <QString>

#include <exception>

/// Codes of exceptions: those of ANS Forth down to -57, and the system's own from -256.
enum class ForthError : qint64 {
    Abort = -1,
    StackUnderflow = -3,
    StackOverflow = -4,
    ReturnStackOverflow = -5,
    ReturnStackUnderflow = -6,
    LoopStackOverflow = -7,
    InvalidAddress = -9,
    DivideByZero = -10,
    TypeMismatch = -12,
    UndefinedWord = -13,
    CompileOnly = -14,
    StringOverflow = -17,
    ControlMismatch = -22,
    InvalidArgument = -24,
    ReturnStackImbalance = -25,
    LoopParameters = -26,
    InvalidRecursion = -27,
    UserInterrupt = -28,
    NoBody = -31,
    FilePosition = -36,
    FileFault = -37,
    NoFile = -38,
    UnexpectedEnd = -39,
    SearchOrderOverflow = -49,
    SearchOrderUnderflow = -50,
    ExceptionStackOverflow = -53,
    NoDefinition = -256,
    LeaveOutsideLoop = -257,
    NoLoop = -264,
    InvalidWordList = -266,
    Unimplemented = -267,
    NoStoreMethod = -268,
    OutOfContext = -269,
    Sealed = -270,
};

/// The failure of everything in the Forth system: a code, which CATCH gives to a program, and a
/// text for the user.
class ForthException : public std::exception {
public:
    /// `text`: what is known more exactly than by the code; empty for the code's own text.
    explicit ForthException(ForthError error, const QString& text = {})
        : ForthException(static_cast<qint64>(error), text)
    {
    }
    /// A code that a program throws.
    explicit ForthException(qint64 code, const QString& text = {}) : m_code(code), m_text(text) { }

    qint64 code() const { return m_code; }
    bool is(ForthError error) const { return m_code == static_cast<qint64>(error); }
    const QString& text() const { return m_text; }
    /// The text, or the one that stands in the table for the code.
    QString message() const;

    /// Names what it is about, in place of the word that was being interpreted.
    ForthException about(const QString& subject) const;
    /// Where it arose. `line` counts from 1; 0 where there are no lines. The first call counts.
    void locate(const QString& source, int line, const QString& word);
    /// The message, with its source and line if that has a name, and the word that was being
    /// interpreted.
    QString report() const;

    const char* what() const noexcept override { return "Forth exception"; }

private:
    qint64 m_code;
    QString m_text;
    bool m_located = false;
    QString m_source;
    int m_line = 0;
    QString m_subject;
};
