#include "toolchain/common/Process.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

int runProcess(const std::vector<std::string>& words)
{
    std::vector<char*> arguments;
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    pid_t child = 0;
    if (posix_spawnp(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0)
        return -1;
    int status = 0;
    while (waitpid(child, &status, 0) < 0)
        if (errno != EINTR)
            return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
