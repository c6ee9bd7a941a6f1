#include "cli/InterruptSignal.h"

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

// A handler may only do what is safe in one: it writes a byte that the event loop reads.
int ends[2] = {-1, -1};

void handle(int)
{
    const char byte = 0;
    [[maybe_unused]] const auto written = write(ends[1], &byte, 1);
}

void install(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

} // namespace

InterruptSignal::InterruptSignal(std::function<void()> interrupted)
{
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated,
                     [call = std::move(interrupted)] {
                         char byte;
                         while (read(ends[0], &byte, 1) == 1) { }
                         call();
                     });
    install(handle);
}

InterruptSignal::~InterruptSignal()
{
    if (!m_notifier)
        return;
    install(SIG_DFL);
    m_notifier.reset();
    close(ends[0]);
    close(ends[1]);
}
