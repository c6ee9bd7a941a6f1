#include "debugger/views/RegistersView.h"

#include "base/HException.h"
#include "build/memorymap/MemoryMap.h"
#include "debugger/expressions/ParserException.h"
#include "debugger/interface/SymbolicDebuggerInterface.h"
#include "debugger/views/TypedValue.h"

#include <array>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr unsigned LargestRegister = 4;

/// What the rows are found by again; no expression of a program looks like it.
QString groupKey(const QString& group) { return u"group "_s + group; }
QString registerKey(const QString& group, const MemoryRegister& it)
{
    return groupKey(group) + u" register "_s + it.name + u" %1"_s.arg(it.address);
}

QString typeText(unsigned bits) { return bits == 1 ? u"1 bit"_s : u"%1 bits"_s.arg(bits); }

unsigned maskOf(unsigned bits) { return bits >= 32 ? 0xFFFFFFFF : (1U << bits) - 1; }

} // namespace

// Descriptions

void RegistersView::setMemoryMap(const MemoryMap& map)
{
    clearRegisterGroups();
    QList<MemoryMapElement*> groups;
    if (map.root())
        MemoryMap::getElementsOfType(map.root(), MemoryMapElement::RegisterGroup, false, groups);
    for (const MemoryMapElement* const group : groups)
        addMemoryMapRegisterGroup(*group);
}

void RegistersView::addMemoryMapRegisterGroup(const MemoryMapElement& group)
{
    std::vector<MemoryRegister> registers;
    QList<MemoryMapElement*> elements;
    MemoryMap::getElementsOfType(&group, MemoryMapElement::Register, false, elements);
    for (const MemoryMapElement* const element : elements) {
        MemoryRegister made{element->name(), element->address(), element->size(), {}};
        QList<MemoryMapElement*> fields;
        MemoryMap::getElementsOfType(element, MemoryMapElement::BitField, false, fields);
        for (const MemoryMapElement* const field : fields)
            made.fields.push_back({field->name(), field->address(), field->size()});
        registers.push_back(std::move(made));
    }
    addRegisterGroup(group.name(), std::move(registers));
}

void RegistersView::addRegisterGroup(const QString& name, std::vector<MemoryRegister> registers)
{
    // Descriptions come from files: what can't be read or shown is left out.
    std::erase_if(registers, [](const MemoryRegister& it) {
        return it.size != 1 && it.size != 2 && it.size != LargestRegister;
    });
    for (MemoryRegister& it : registers)
        std::erase_if(it.fields, [&](const MemoryRegister::BitField& field) {
            return field.size == 0 || field.size > 8 * it.size
                || field.offset > 8 * it.size - field.size;
        });
    m_groups.push_back({name, std::move(registers)});
}

void RegistersView::clearRegisterGroups() { m_groups.clear(); }

// Rows

void RegistersView::update(Frame* frame)
{
    beginUpdate();
    invalidate();
    // The processor's are what one looks at first.
    if (!findDisplayed(groupKey(processorGroup())))
        setInterpretation(groupKey(processorGroup()), Structure, Dereference, 0);
    if (void* const handle = beginGroup(processorGroup())) {
        debugger().getRegisters(frame, this);
        endObject(handle);
    }
    for (const Group& group : m_groups) {
        void* const handle = beginGroup(group.name);
        if (!handle)
            continue;
        for (const MemoryRegister& it : group.registers)
            addRegister(group, it);
        endObject(handle);
    }
    cleanup();
    triggerUpdate();
}

void* RegistersView::beginGroup(const QString& name)
{
    const QString key = groupKey(name);
    const ExpressionType nothing("", 0);
    if (getStructEvalMode(name, key) != Value)
        return beginObject(name, key, nothing, QString(), nullptr, 0);
    addPrimitive(name, key, nothing, QString(), nullptr);
    return nullptr;
}

void RegistersView::addRegister(const Group& group, const MemoryRegister& it)
{
    const QString key = registerKey(group.name, it);
    std::array<unsigned char, LargestRegister> bytes{};
    debugger().getMemory(QString(), it.address, it.size, bytes.data());
    unsigned value = 0;
    for (unsigned i = 0; i < it.size; ++i)
        value |= unsigned(bytes[i]) << 8 * i;
    const ExpressionType shown(static_cast<unsigned long long>(value), it.size, 0);
    const QString type = typeText(8 * it.size);
    if (it.fields.empty() || getStructEvalMode(it.name, key) == Value) {
        addPrimitive(it.name, key, shown, type, nullptr);
        return;
    }
    void* const handle = beginObject(it.name, key, shown, type, nullptr, it.size);
    for (const MemoryRegister::BitField& field : it.fields)
        addPrimitive(field.name, key + u'.' + field.name,
                     ExpressionType(static_cast<unsigned long long>(value >> field.offset
                                                                    & maskOf(field.size)),
                                    it.size, field.size),
                     typeText(field.size), nullptr);
    endObject(handle);
}

// Changing

const MemoryRegister* RegistersView::findRegister(const QString& expression) const
{
    for (const Group& group : m_groups)
        for (const MemoryRegister& it : group.registers)
            if (registerKey(group.name, it) == expression)
                return &it;
    return nullptr;
}

void RegistersView::modify(VariableViewItem* item, const QString& text)
{
    if (item->expression().startsWith(groupKey(QString())) && item->parent() == &root())
        return;
    const MemoryRegister* const own = findRegister(item->expression());
    const MemoryRegister* const around = own ? own
        : item->parent()                     ? findRegister(item->parent()->expression())
                                             : nullptr;
    if (!around)
        return VariableView::modify(item, text);
    ExpressionType typed;
    if (!typedValue(item->value(), text, itemRadix(item), typed))
        debugger().evaluateExpression({host().selectedFrame(), Path(), -1}, text, typed);
    unsigned value = unsigned(typed.resolved().getUInteger());
    if (!own) {
        const auto field = std::find_if(around->fields.begin(), around->fields.end(),
                                        [&](const auto& it) { return it.name == item->name(); });
        std::array<unsigned char, LargestRegister> bytes{};
        debugger().getMemory(QString(), around->address, around->size, bytes.data());
        unsigned others = 0;
        for (unsigned i = 0; i < around->size; ++i)
            others |= unsigned(bytes[i]) << 8 * i;
        const unsigned mask = maskOf(field->size) << field->offset;
        value = (others & ~mask) | (value << field->offset & mask);
    }
    debugger().setMemory(QString(), around->address, value, around->size);
    host().setCall(host().selectedCall());
}
