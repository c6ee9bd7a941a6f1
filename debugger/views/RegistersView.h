#pragma once

#include "debugger/views/VariableView.h"

#include <vector>

class MemoryMap;
class MemoryMapElement;

/// A register in memory, as a device's description names it.
struct MemoryRegister {
    struct BitField {
        QString name;
        unsigned offset; ///< of the lowest bit
        unsigned size;   ///< bits
    };

    QString name;
    unsigned address = 0;
    unsigned size = 1; ///< 1, 2 or 4 bytes
    std::vector<BitField> fields;
};

/// The registers by groups: those of the processor, and those of its peripherals. A group that is
/// closed isn't read, since reading a peripheral may do something.
class RegistersView : public VariableView {
public:
    static QString processorGroup() { return QStringLiteral("CPU"); }

    using VariableView::VariableView;

    /// The groups of a memory map, in place of those that were there.
    void setMemoryMap(const MemoryMap& map);
    /// One more group, from any other description.
    void addRegisterGroup(const QString& name, std::vector<MemoryRegister> registers);
    void clearRegisterGroups();

    void update(Frame* frame) override;
    /// Bits of a register are put among the others.
    void modify(VariableViewItem* item, const QString& text) override;

private:
    struct Group {
        QString name;
        std::vector<MemoryRegister> registers;
    };

    void addMemoryMapRegisterGroup(const MemoryMapElement& group);
    /// Null if the group is closed.
    void* beginGroup(const QString& name);
    void addRegister(const Group& group, const MemoryRegister& it);
    const MemoryRegister* findRegister(const QString& expression) const;

    std::vector<Group> m_groups;
};
