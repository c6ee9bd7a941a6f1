#pragma once

#include <QString>

struct Frame;
class VariableViewItem;

/// What a data view asks of the window that it belongs to.
class VariableViewHost {
public:
    virtual ~VariableViewHost() = default;

    /// The frame of the call stack that the user has selected; null for none.
    virtual Frame* selectedFrame() = 0;
    virtual int selectedCall() = 0;
    /// Selects a call, and brings all data views up to date.
    virtual void setCall(int call) = 0;
    /// Asks for a number; false if the user doesn't give one. `number` comes with the one to offer.
    virtual bool askNumber(const QString& title, const QString& label, unsigned lowest,
                           unsigned highest, unsigned& number) = 0;
    /// Shows that memory.
    virtual void locateMemory(unsigned address, unsigned size) = 0;
};

/// Hears of a view's rows. A null parent is the root.
class VariableViewListener {
public:
    virtual ~VariableViewListener() = default;

    virtual void rowsToBeInserted(VariableViewItem* parent, int first, int last) = 0;
    virtual void rowsInserted() = 0;
    virtual void rowsToBeRemoved(VariableViewItem* parent, int first, int last) = 0;
    virtual void rowsRemoved() = 0;
    virtual void rowsToBeSorted() = 0;
    virtual void rowsSorted() = 0;
    /// Texts and styles may be others.
    virtual void valuesChanged() = 0;
};
