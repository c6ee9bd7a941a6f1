#include "target/TargetIOServer.h"

#include "target/TargetIOOperations.h"

TargetIOFiles& TargetIOServer::files()
{
    static TargetIOFiles files;
    return files;
}

void TargetIOServer::init(QStringList arguments)
{
    files().closeAll();
    s_arguments = std::move(arguments);
    s_pushedBack = -1;
    s_lastErrno = 0;
}

const char* TargetIOServer::dumpString(unsigned address, bool fromCode)
{
    s_strings.push_back(readTargetString(fromCode ? *s_code : *s_data, address));
    return s_strings.back().c_str();
}

void TargetIOServer::handleOperation(TargetMemoryInterface* data, TargetMemoryInterface* code,
                                     unsigned operation, unsigned communicationWord)
{
    struct FreeStrings {
        ~FreeStrings() { s_strings.clear(); }
    } freeStrings;
    s_data = data;
    s_code = code;
    s_communication = communicationWord;
    Operations(data->peekWord(communicationWord), operation).run();
}
