#pragma once

#include "script/forth/PCFA.h"

/// The nodes of definitions that aren't words of the core: literals, calls, branches, loops.

class PLiteralChild : public pcode {
public:
    explicit PLiteralChild(const X& value) : m_value(value) { }
    void execute(FSContext* context) override;
    std::unique_ptr<pcode> copy() const override
    {
        return std::make_unique<PLiteralChild>(m_value);
    }

private:
    X m_value;
};

class PCall : public pcode {
public:
    explicit PCall(PCFA* word) : m_word(word) { }
    void execute(FSContext* context) override { m_word->execute(context); }
    PCFA* getCFA() override { return m_word; }
    QString name() const override { return m_word->name(); }

private:
    PCFA* m_word;
};

/// Ends the running definition.
class PExitRun : public pcode {
public:
    void execute(FSContext* context) override;
};

/// Goes to its target. A branch without one yet ends the definition.
class PBranch : public pcode {
public:
    explicit PBranch(PLabel* target = nullptr) : m_target(target) { }
    void execute(FSContext* context) override;
    void setTarget(PLabel* target) { m_target = target; }
    void passLabels() override;

protected:
    pcode* target() const { return m_target; }

private:
    pcode* m_target;
};

/// Takes a cell, and goes to the target if it is false.
class PZeroBranch : public PBranch {
public:
    using PBranch::PBranch;
    void execute(FSContext* context) override;
};

/// Goes to the target, keeping the selector, if the two upper cells differ.
class POfBranch : public PBranch {
public:
    using PBranch::PBranch;
    void execute(FSContext* context) override;
};

class PDoRun : public pcode {
public:
    void execute(FSContext* context) override;
};

/// Goes to the target if there is no turn to make.
class PQuestionDoRun : public PBranch {
public:
    using PBranch::PBranch;
    void execute(FSContext* context) override;
};

class PLoopRun : public PBranch {
public:
    using PBranch::PBranch;
    void execute(FSContext* context) override;
};

class PPlusLoopRun : public PBranch {
public:
    using PBranch::PBranch;
    void execute(FSContext* context) override;
};

class PLeaveRun : public PBranch {
public:
    using PBranch::PBranch;
    void execute(FSContext* context) override;
};

class PIRun : public pcode {
public:
    void execute(FSContext* context) override;
};

class PJRun : public pcode {
public:
    void execute(FSContext* context) override;
};

/// Pushes a local of the running definition.
class PLocalRun : public pcode {
public:
    explicit PLocalRun(int index) : m_index(index) { }
    void execute(FSContext* context) override;

private:
    int m_index;
};

/// Appends a use of a word to the definition that is open when this runs.
class PPostponeRun : public pcode {
public:
    explicit PPostponeRun(PCFA* word) : m_word(word) { }
    void execute(FSContext* context) override;

private:
    PCFA* m_word;
};

/// Gives the latest word made by CREATE what stands behind DOES>, and ends the definition.
class PDoesRun : public pcode {
public:
    explicit PDoesRun(PDoesChild* does) : m_does(does) { }
    void execute(FSContext* context) override;

private:
    PDoesChild* m_does;
};

class PDotQuoteRun : public pcode {
public:
    explicit PDotQuoteRun(const QString& text) : m_text(text) { }
    void execute(FSContext* context) override;

private:
    QString m_text;
};

/// Where a word run by CATCH returns to.
class PCatchRun : public pcode {
public:
    void execute(FSContext* context) override;
};
