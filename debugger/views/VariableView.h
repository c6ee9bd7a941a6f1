#pragma once

#include "debugger/interface/VariableListBuilder.h"
#include "debugger/views/VariableViewHost.h"
#include "debugger/views/VariableViewItem.h"

class SymbolicDebuggerInterface;

/// The rows of a window that shows values. They live from stop to stop: a row is found again by its
/// expression, is marked if its value has changed, and goes when its value isn't there any more.
///
/// Pointers, arrays and structures begin as one closed row, and nothing below them is read. How the
/// user wants them shown is kept by their expression.
class VariableView : public VariableListBuilder {
public:
    enum PointerType { Array, Pointer, Structure, NotKnown };

    /// How a value is shown.
    struct DisplayedInfo {
        static constexpr unsigned FirstCount = 10;
        /// More are never shown at once.
        static constexpr unsigned MostElements = 0x10000;

        pointerEvalMode mode = Value;
        PointerType kind = NotKnown;
        unsigned count = FirstCount; ///< of elements that are wanted
        int radix = DefaultDisplay;
    };

    /// Both outlive the view.
    VariableView(SymbolicDebuggerInterface& debugger, VariableViewHost& host);
    ~VariableView() override;
    VariableView(const VariableView&) = delete;
    VariableView& operator=(const VariableView&) = delete;

    /// Null for none.
    void setListener(VariableViewListener* listener) { m_listener = listener; }
    VariableViewItem& root() { return m_root; }
    const VariableViewItem& root() const { return m_root; }
    VariableViewItem* selected() const { return m_selected; }
    void select(VariableViewItem* item) { m_selected = item; }

    /// Shows the values of a stop. May throw what the target throws; the view can be updated again.
    virtual void update(Frame* frame) = 0;
    /// Shows the values again, without a stop between: what is marked as changed stays so.
    virtual void refresh();
    /// Empties the view, at the end of a session.
    virtual void reset();
    /// The user has chosen another form for numbers without one of their own.
    void defaultDisplayModeChanged();

    /// Whether something can be shown below the row.
    bool isExpandable(const VariableViewItem* item) const;
    void itemExpanded(VariableViewItem* item);
    void setInterpretation(VariableViewItem* item, pointerEvalMode mode, unsigned count);
    void setInterpretation(const QString& expression, PointerType kind, pointerEvalMode mode,
                           unsigned count);
    void setRadix(VariableViewItem* item, int radix);
    void setRadix(const QString& expression, int radix);
    int itemRadix(const VariableViewItem* item) const;

    unsigned getNumElements(const QString& expression) const;
    bool isPointer(const QString& expression) const;
    /// Null if the expression isn't shown.
    const DisplayedInfo* findDisplayed(const QString& expression) const;

    // Of the selected row; without one they do nothing.
    void showValue() { interpretSelected(Value); }
    void dereference() { interpretSelected(Dereference); }
    void showAsString() { interpretSelected(AsString); }
    /// Asks for the number of elements.
    void showAsArray();
    void showAsAscii() { setRadix(m_selected, AsciiDisplay); }
    void showAsHexadecimal() { setRadix(m_selected, HexadecimalDisplay); }
    void showAsUnsigned() { setRadix(m_selected, UnsignedDisplay); }
    void showAsDecimal() { setRadix(m_selected, DecimalDisplay); }
    void showAsOctal() { setRadix(m_selected, OctalDisplay); }
    void showAsBinary() { setRadix(m_selected, BinaryDisplay); }
    void locateMemory();

    /// Evaluates the selected row's expression with this behind it and, if `repeat`, the expression
    /// once more. Throws ParserException.
    void dataSet(const QString& text, bool repeat);
    void dataSetToZero() { dataSet(QStringLiteral("=0"), false); }
    void dataSetToOne() { dataSet(QStringLiteral("=1"), false); }
    void dataIncrement() { dataSet(QStringLiteral("++"), false); }
    void dataDecrement() { dataSet(QStringLiteral("--"), false); }
    void dataInvert() { dataSet(QStringLiteral("=~"), true); }
    void dataNegate() { dataSet(QStringLiteral("=-"), true); }
    /// Assigns what was typed in place of a value: a number in the row's form, or any expression.
    /// Throws ParserException.
    virtual void modify(VariableViewItem* item, const QString& text);

    /// Sorts the rows at the top, now and whenever one joins them.
    void sortAlphabetic() { setOrder(Alphabetic); }
    /// By registers and addresses.
    void sortNumeric() { setOrder(Numeric); }

    pointerEvalMode getPointerEvalMode(const QString& name, const QString& expression,
                                       unsigned size, unsigned& count) override;
    pointerEvalMode getArrayEvalMode(const QString& name, const QString& expression,
                                     unsigned& count) override;
    pointerEvalMode getStructEvalMode(const QString& name, const QString& expression) override;
    void addPrimitive(const QString& name, const QString& expression, const ExpressionType& value,
                      const QString& type, MarkerType* marker) override;
    void* beginObject(const QString& name, const QString& expression, const ExpressionType& value,
                      const QString& type, MarkerType* marker, unsigned size) override;
    void endObject(void* handle) override;
    void* beginArray(const QString& name, const QString& expression, const ExpressionType& value,
                     const QString& type, MarkerType* marker, unsigned size) override;
    void endArray(void* handle) override { endObject(handle); }
    void clear() override { reset(); }

protected:
    SymbolicDebuggerInterface& debugger() const { return m_debugger; }
    VariableViewHost& host() const { return m_host; }

    /// What is reported from now on goes to the top.
    void beginUpdate();
    /// What is reported from now on goes below this row.
    void beginUpdate(VariableViewItem* parent);
    /// The next value that is reported at the top belongs to this row.
    void beginUpdateOf(VariableViewItem* item);
    void invalidate() { m_root.invalidate(); }
    /// Removes the rows that are still invalid, and what is known of them.
    void cleanup();
    void triggerUpdate();
    /// Ages the rows at the top.
    void newGeneration();
    /// Invalidates the rows at the top of this generation and older ones.
    void trimGeneration(int generation);

    /// A row made by hand.
    VariableViewItem* addRow(VariableViewItem* parent, const QString& name,
                             const QString& expression);
    void removeRows(VariableViewItem* parent, std::size_t first, std::size_t last);

private:
    enum Order { Reported, Alphabetic, Numeric };
    /// An object that is being reported.
    struct Level {
        VariableViewItem* item;
        std::size_t next = 0; ///< where the next new row goes
    };

    VariableViewItem* add(const QString& name, const QString& expression,
                          const ExpressionType& value, const QString& type, MarkerType* marker,
                          unsigned size);
    VariableViewItem* insertRow(VariableViewItem* parent, std::size_t at, const QString& name,
                                const QString& expression);
    DisplayedInfo& addDisplayed(const QString& expression, PointerType kind);
    void removeDisplayed(const VariableViewItem& item);
    void cleanup(VariableViewItem& parent);
    void interpretSelected(pointerEvalMode mode);
    bool askCount(DisplayedInfo& info);
    void applyRadix(VariableViewItem& item, int radix);
    void setOrder(Order order);
    void sort();
    VariableViewItem* parentForListener(VariableViewItem* item) const
    {
        return item == &m_root ? nullptr : item;
    }

    SymbolicDebuggerInterface& m_debugger;
    VariableViewHost& m_host;
    VariableViewListener* m_listener = nullptr;
    VariableViewItem m_root{QString(), QString()};
    VariableViewItem* m_selected = nullptr;
    QHash<QString, DisplayedInfo> m_displayed;
    std::vector<Level> m_open;
    VariableViewItem* m_target = nullptr; ///< the row of the next value at the top
    Order m_order = Reported;
    bool m_unsorted = false; ///< rows have joined since they were sorted
    bool m_sameStop = false;
};
