#pragma once

#include "base/HException.h"
#include "target/TargetInterface.h"

/// A load session that ends with its scope. Call `end` behind the work, so that a failure of the
/// end is seen; when the work has failed, its own failure is the one that counts.
class TargetLoadSession {
public:
    explicit TargetLoadSession(TargetInterface& target) : m_target(target) { target.loadBegin(); }
    TargetLoadSession(const TargetLoadSession&) = delete;
    TargetLoadSession& operator=(const TargetLoadSession&) = delete;
    ~TargetLoadSession()
    {
        if (m_ended)
            return;
        try {
            m_target.loadEnd();
        } catch (const HException&) {
            // The work's failure is on its way.
        }
    }
    void end()
    {
        m_ended = true;
        m_target.loadEnd();
    }

private:
    TargetInterface& m_target;
    bool m_ended = false;
};
