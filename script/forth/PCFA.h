#pragma once

#include "script/forth/pcode.h"

class WordList;

/// A dictionary entry, and the head of a definition. As it is, it stands for a word of the core: a
/// body of one node, which takes no call.
class PCFA : public PLabel {
public:
    /// Executed, not compiled, in compiling state.
    static constexpr int Immediate = 2;

    explicit PCFA(const QString& name) : m_name(name) { }

    void execute(FSContext* context) override;
    PCFA* getCFA() override { return this; }
    QString name() const override { return m_name; }
    /// The node that a definition gets for a use of this word.
    virtual pcode* reference(FSContext* context);

    int flags() const { return m_flags; }
    void setFlags(int flags) { m_flags = flags; }
    bool isImmediate() const { return (m_flags & Immediate) != 0; }

    pcode* first() const { return m_first; }
    void addPcode(pcode* code);
    /// Ends the body: its branches know where they go, and nothing can be added any more.
    void close();
    bool isClosed() const { return m_closed; }

    /// Makes room for one more local in each call; its index.
    int addLocal() { return m_locals++; }
    int locals() const { return m_locals; }

    /// The list that it was added to; null for none.
    WordList* wordList() const { return m_wordList; }
    void setWordList(WordList* list) { m_wordList = list; }

    void setPFA(pcode* pfa) { m_pfa = pfa; }

protected:
    pcode* pfa() const { return m_pfa; }

private:
    QString m_name;
    int m_flags = 0;
    int m_locals = 0;
    bool m_closed = false;
    pcode* m_first = nullptr;
    pcode* m_last = nullptr;
    pcode* m_pfa = nullptr;
    WordList* m_wordList = nullptr;
};

/// A colon definition.
class PColonChild : public PCFA {
public:
    using PCFA::PCFA;
    void execute(FSContext* context) override;
    pcode* reference(FSContext* context) override;
};

/// What stands behind DOES>: called with the address of a word's data on the stack.
class PDoesChild : public PColonChild {
public:
    PDoesChild() : PColonChild(QString()) { }
};

/// A word made by CREATE: pushes the address of its data, and runs what DOES> gave it.
class PCreateChild : public PCFA {
public:
    using PCFA::PCFA;
    void execute(FSContext* context) override;
    pcode* reference(FSContext* context) override;
    pcode* getPFA() override { return pfa(); }
    void setDoes(PDoesChild* does) { m_does = does; }

private:
    PDoesChild* m_does = nullptr;
};

/// A variable: its place never changes, so that a definition holds the address.
class PVariableChild : public PCFA {
public:
    using PCFA::PCFA;
    void execute(FSContext* context) override { pfa()->execute(context); }
    pcode* reference(FSContext* context) override;
    pcode* getPFA() override { return pfa(); }
};

class PConstantChild : public PCFA {
public:
    PConstantChild(const QString& name, const X& value) : PCFA(name), m_value(value) { }
    void execute(FSContext* context) override;
    pcode* reference(FSContext* context) override;

private:
    X m_value;
};

class PValueChild : public PCFA {
public:
    PValueChild(const QString& name, const X& value) : PCFA(name), m_value(value) { }
    void execute(FSContext* context) override;
    pcode* reference(FSContext* context) override;
    pcode* getToMethod() override { return m_store.get(); }

private:
    /// Stores the top of the stack in a value.
    class Store : public pcode {
    public:
        explicit Store(X* value) : m_value(value) { }
        void execute(FSContext* context) override;
        std::unique_ptr<pcode> copy() const override { return std::make_unique<Store>(m_value); }

    private:
        X* m_value;
    };

    X m_value;
    std::unique_ptr<Store> m_store = std::make_unique<Store>(&m_value);
};

/// A local of the definition being compiled. It can be used in that definition only.
class PLocalChild : public PCFA {
public:
    PLocalChild(const QString& name, int index) : PCFA(name), m_store(index), m_index(index) { }
    void execute(FSContext* context) override;
    pcode* reference(FSContext* context) override;
    pcode* getToMethod() override { return &m_store; }

    /// Stores the top of the stack in a local of the running definition.
    class PLocalStore : public pcode {
    public:
        explicit PLocalStore(int index) : m_index(index) { }
        void execute(FSContext* context) override;
        std::unique_ptr<pcode> copy() const override
        {
            return std::make_unique<PLocalStore>(m_index);
        }

    private:
        int m_index;
    };

private:
    PLocalStore m_store;
    int m_index;
};
