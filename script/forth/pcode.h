#pragma once

#include "script/forth/X.h"

#include <memory>

class FSContext;

/// The base of everything that can be executed. A definition is a chain of them.
class pcode {
public:
    pcode() = default;
    virtual ~pcode() = default;
    pcode(const pcode&) = delete;
    pcode& operator=(const pcode&) = delete;

    virtual void execute(FSContext* context);
    /// What pushes the address of a word's data. Throws for words without any.
    virtual pcode* getPFA();
    /// The word that this calls or heads.
    virtual PCFA* getCFA();
    /// What stores a cell from the stack into a word's value.
    virtual pcode* getToMethod();

    virtual QString name() const { return {}; }
    /// A new node that does the same, for use in a definition; null if the word has to be called.
    virtual std::unique_ptr<pcode> copy() const { return nullptr; }
    /// Lets branches go to what stands behind the labels that they name. Called once, when the
    /// labels of the definition lead there.
    virtual void passLabels() { }

    pcode* next() const { return m_next; }
    void setNext(pcode* next) { m_next = next; }

private:
    pcode* m_next = nullptr;
};

/// A place that branches go to. Does nothing, and is passed over once the definition is closed.
class PLabel : public pcode {
public:
    void execute(FSContext*) override { }
};
