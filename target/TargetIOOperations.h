#pragma once

#include "target/TargetIOArguments.h"
#include "target/TargetIOServer.h"

#include <functional>

/// The operations of one request, over the server's state.
struct TargetIOServer::Operations {
    Operations(std::uint64_t communication, unsigned number);
    /// Carries the request out and writes its result.
    void run();

    using Operation = void (Operations::*)();
    /// By operation number; null where there is none.
    static Operation find(unsigned number);

    void error();
    void errorText();
    void open();
    void flush();
    void close();
    void printToFile();
    void print();
    void scanFromFile();
    void scan();
    void getCharacter();
    void getFromFile();
    void getsFromFile();
    void gets();
    void putToFile();
    void putsToFile();
    void put();
    void puts();
    void readInteger();
    void readReal();
    void read();
    void write();
    void seek();
    void tell();
    void rewind();
    void fileLength();
    void clearErrors();
    void endOfFile();
    void errorOfFile();
    void breakIn();
    void keyAvailable();
    void getKey();
    void exit();
    void time();
    void divide();
    void ungetc();
    void reopen();
    void perror();
    void remove();
    void rename();
    void temporaryFile();
    void temporaryName();
    void getEnvironment();
    void system();
    void arguments();
    void loadSymbols();

    // Shared by the above.
    void setResult(std::int64_t value);
    /// Notes errno and gives the result of a file call.
    void setFileResult(std::int64_t value);
    const char* stringArgument(bool fromCode = false);
    /// The file of the next argument; with none, the result is set to -1 and errno to 9.
    std::FILE* fileArgument();
    std::FILE* file(int handle);
    bool formatIsInCode() const;
    bool passesFloats() const;
    bool takesArgumentPointer() const;
    std::string printed();
    int scanned(std::function<int()> source, int& left);
    void addOutput(const std::string& text);
    bool takeLine(std::string& line);
    void scanLine();
    bool storeString(unsigned address, unsigned size, const std::string& text);
    void refuseForLackOfInput(int notYet, int atEnd);

    std::uint64_t m_communication;
    unsigned m_number;
    TargetIOArguments m_arguments;
};
