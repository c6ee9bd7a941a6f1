#pragma once

/// Counts how deep the model's recursive walks are, so that a file of absurd nesting ends in a
/// message and not in an exhausted stack, and how many steps one walk takes, so that objects which
/// refer to each other twice over do not take forever.
class RecursionLimit {
public:
    static constexpr int Deepest = 2000;
    static constexpr int MostSteps = 10000;

    RecursionLimit()
    {
        if (s_depth++ == 0)
            s_steps = 0;
        ++s_steps;
    }
    ~RecursionLimit() { --s_depth; }
    RecursionLimit(const RecursionLimit&) = delete;
    RecursionLimit& operator=(const RecursionLimit&) = delete;

    bool tooDeep() const { return s_depth > Deepest; }
    bool exceeded() const { return tooDeep() || s_steps > MostSteps; }

    /// Throws HException if the nesting is too deep.
    void check() const;

private:
    static int s_depth;
    static int s_steps;
};
