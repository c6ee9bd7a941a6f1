#pragma once

#include "target/TargetIOFiles.h"
#include "target/TargetIOInterfaces.h"
#include "target/TargetMemoryInterface.h"

#include <QStringList>

#include <list>
#include <string>

/// Carries out the debug I/O of a target program: console, host files, time, arguments. A request
/// is an operation number and the address of the communication word, which holds the address of the
/// arguments and takes the result. Failures of target memory come up as HException.
///
/// What a request asks for that waits for input and finds none is answered "not yet": -2 for a
/// character of `getchar` and `fgetc`, -1 for a line or a key, after `inputRequested`; the program
/// asks again. When the terminal is at its end the answers change places, so that asking again
/// ends: -1 (EOF) for a character, -2 for a line or a key.
class TargetIOServer {
public:
    static constexpr unsigned Exit = 46;

    static void setHelperFunctions(TargetIOServerHelperFunctions* helper) { s_helper = helper; }
    static void setTerminal(TargetIOServerTerminalInterface* terminal) { s_terminal = terminal; }
    /// Whether a program may run commands of the host. Off at first: a program under test is not
    /// trusted with a shell unless its user says so; the operation then gives -1.
    static void setSystemAllowed(bool allowed) { s_systemAllowed = allowed; }

    /// Closes every open file and keeps the program's arguments; runs at each start.
    static void init(QStringList arguments);

    /// `communicationWord` is the address of that word in `data`. An unknown operation does
    /// nothing.
    static void handleOperation(TargetMemoryInterface* data, TargetMemoryInterface* code,
                                unsigned operation, unsigned communicationWord);

    /// A zero-terminated string from target memory, at most 1024 bytes with its end, which lives
    /// until the end of the request.
    static const char* dumpString(unsigned address, bool fromCode);

    static int lastErrno() { return s_lastErrno; }

    struct Operations;

private:
    inline static TargetMemoryInterface* s_data = nullptr;
    inline static TargetMemoryInterface* s_code = nullptr;
    inline static TargetIOServerHelperFunctions* s_helper = nullptr;
    inline static TargetIOServerTerminalInterface* s_terminal = nullptr;
    inline static bool s_systemAllowed = false;
    inline static int s_lastErrno = 0;
    inline static unsigned s_communication = 0;
    inline static int s_pushedBack = -1;
    inline static QStringList s_arguments;
    inline static std::list<std::string> s_strings;
    static TargetIOFiles& files();
};
