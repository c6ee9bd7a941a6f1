#include "cli/InterruptFlag.h"

#include <csignal>

namespace {

volatile std::sig_atomic_t interrupted = 0;

void handle(int) { interrupted = 1; }

void install(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    sigaction(SIGINT, &action, nullptr);
}

} // namespace

InterruptFlag::InterruptFlag()
{
    clear();
    install(handle);
}

InterruptFlag::~InterruptFlag() { install(SIG_DFL); }

bool InterruptFlag::isSet() { return interrupted != 0; }

void InterruptFlag::clear() { interrupted = 0; }
