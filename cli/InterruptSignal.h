#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

/// While it lives, SIGINT and SIGTERM become calls from the event loop instead of ending the
/// program. One at a time.
class InterruptSignal {
public:
    explicit InterruptSignal(std::function<void()> interrupted);
    ~InterruptSignal();
    InterruptSignal(const InterruptSignal&) = delete;
    InterruptSignal& operator=(const InterruptSignal&) = delete;

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};
