// The instructions. A is the accumulator, S the stack; a load pushes A and sets it.

#include "script/es/ESArrayClass.h"
#include "script/es/ESCode.h"
#include "script/es/ESContext.h"
#include "script/es/ESVmOpcode.h"

#include <cmath>
#include <set>

using namespace Qt::Literals::StringLiterals;
using Op = ESVmOpcode;

/// One run of estmt: the code, and the place in it.
class ESMachine {
public:
    ESMachine(ESContext& context, ESCode& code)
        : m(context),
          m_code(code),
          m_bytes(code.bytes.data())
    {
        ++m.m_frames;
        m_handlers = m.m_handlers.size();
    }
    ~ESMachine()
    {
        --m.m_frames;
        m.m_handlers.resize(m_handlers);
    }
    ESMachine(const ESMachine&) = delete;
    ESMachine& operator=(const ESMachine&) = delete;

    void run();

private:
    enum class Step { Next, Stop };

    Step execute();
    bool poll();
    int operand()
    {
        const int value = m_bytes[m_at] << 8 | m_bytes[m_at + 1];
        m_at += 2;
        return value;
    }
    void jump(int target) { m_at = static_cast<std::size_t>(target); }
    void load(const ESValue& value)
    {
        m.push(m.m_a);
        m.m_a = value;
    }
    void drop() { m.m_a = m.pop(); }
    ESValue& global(int slot)
    {
        return m.m_global->properties[static_cast<std::size_t>(slot)].value;
    }
    ESValue& argument(int slot)
    {
        return m.m_stack[static_cast<std::size_t>(m.m_frame.base + slot)];
    }
    ESValue& local(int slot) { return argument(m.m_frame.count + slot); }
    ESValue& framed(int slot)
    {
        return m.m_frame.scope->primitive.object->properties[static_cast<std::size_t>(slot)].value;
    }
    ESValue& framedLocal(int slot) { return framed(m.m_frame.count + slot); }
    /// Adds to a variable. A conversion may run a script, which may move the variable.
    template <typename Slot> void step(Slot slot, double delta)
    {
        ESValue& value = slot();
        if (value.isNumber()) {
            value.number += delta;
        } else {
            const double before = m.toNumber(ESValue(value));
            slot() = before + delta;
        }
    }
    ESValue binary(Op opcode, const ESValue& left, const ESValue& right);
    void compoundMember(Op opcode);
    void callValue(const ESValue& function, ESObject* thisObject, int argc);
    void construct(int argc);
    void makeArray(int count);
    void makeArguments();
    void stepDynamic(double delta, bool prefix);
    void stepMember(double delta, bool prefix);
    const char* typeName() const;
    bool handle(const ESException& exception);

    ESContext& m;
    ESCode& m_code;
    const std::uint8_t* m_bytes;
    std::size_t m_at = 0;
    std::size_t m_handlers = 0;
};

void ESContext::estmt(ESCode* code) { ESMachine(*this, *code).run(); }

bool ESMachine::poll()
{
    if (m.m_stopped || !m.carryOnExecuting()) {
        // Each level of calls ends as soon as it goes on.
        m.m_stopped = true;
        m.m_pollCountdown = 1;
        return false;
    }
    m.m_pollCountdown = ESContext::PollInterval;
    return true;
}

void ESMachine::run()
{
    if (m.m_frames > ESContext::MaximumNesting)
        throw ESFatalError(u"virtual machine stack too small"_s);
    for (;;) {
        try {
            while (execute() == Step::Next) { }
            return;
        } catch (const ESException& exception) {
            if (!handle(exception))
                throw;
        }
    }
}

/// Goes on at the innermost handler of this run; false if there is none.
bool ESMachine::handle(const ESException& exception)
{
    if (m.m_handlers.size() == m_handlers)
        return false;
    const ESContext::Handler handler = m.m_handlers.back();
    m.m_handlers.pop_back();
    m.m_sp = handler.stackPointer;
    m.m_frame.scope = handler.scope;
    m.m_a = handler.accumulator;
    load(exception.value());
    jump(handler.target);
    return true;
}

ESValue ESMachine::binary(Op opcode, const ESValue& left, const ESValue& right)
{
    switch (opcode) {
    case Op::ADD: return m.add(left, right);
    case Op::SUB: return m.toNumber(left) - m.toNumber(right);
    case Op::MUL: return m.toNumber(left) * m.toNumber(right);
    case Op::DIV: return m.toNumber(left) / m.toNumber(right);
    case Op::MOD: return std::fmod(m.toNumber(left), m.toNumber(right));
    default: break;
    }
    const double a = m.toNumber(left);
    const double b = m.toNumber(right);
    const int count = int(ESContext::toUint32(b) & 31);
    switch (opcode) {
    case Op::BITAND: return double(ESContext::toInt32(a) & ESContext::toInt32(b));
    case Op::BITOR: return double(ESContext::toInt32(a) | ESContext::toInt32(b));
    case Op::BITXOR: return double(ESContext::toInt32(a) ^ ESContext::toInt32(b));
    case Op::SHL: return double(qint32(ESContext::toUint32(a) << count));
    case Op::SHR: return double(ESContext::toInt32(a) >> count);
    default: return double(ESContext::toUint32(a) >> count);
    }
}

/// The right side lies below the object below the key in A; leaves the result in A.
void ESMachine::compoundMember(Op opcode)
{
    const ESValue key = m.m_a;
    const ESValue object = m.top();
    const ESValue right = m.top(1);
    const ESValue result = binary(opcode, m.getElement(object, key), right);
    m.putElement(object, key, result);
    m.m_sp -= 2;
    m.m_a = result;
}

void ESMachine::callValue(const ESValue& function, ESObject* thisObject, int argc)
{
    if (!function.isObject() || !function.object->isCallable())
        m.throwTypeError(u"not a function object"_s);
    m.callOnStack(function.object, thisObject, argc);
}

void ESMachine::construct(int argc)
{
    if (!m.m_a.isObject() || !m.m_a.object->constructClosure)
        m.throwTypeError(u"new must be given a constructor object"_s);
    ESValue* const argv = &m.m_stack[static_cast<std::size_t>(m.m_sp - argc)];
    ESObject* const made = m.construct(m.m_a.object, argc, argv);
    m.m_sp -= argc;
    m.m_a = ESValue(made);
}

void ESMachine::makeArray(int count)
{
    m.push(m.m_a);
    ESValue* const values = &m.m_stack[static_cast<std::size_t>(m.m_sp - count)];
    ESObject* const array = m.newArray(count, values);
    m.m_sp -= count;
    m.m_a = ESValue(array);
}

void ESMachine::makeArguments()
{
    static ESString* const callee = ESStringPool::intern(u"callee"_s);
    ESObject* const made = m.newArray(m.m_frame.passed, &argument(0));
    made->append(callee, ESProperty::DontEnum, ESValue(m.m_frame.callee));
    load(ESValue(made));
}

void ESMachine::stepDynamic(double delta, bool prefix)
{
    ESString* const name = m.toEString(m.m_a);
    ESValue value;
    ESObject* holder = nullptr;
    m.dynamicGet(name, value, holder);
    const double before = m.toNumber(value);
    m.dynamicPut(name, ESValue(before + delta));
    m.m_a = ESValue(prefix ? before + delta : before);
}

void ESMachine::stepMember(double delta, bool prefix)
{
    const ESValue key = m.m_a;
    const ESValue object = m.top();
    const double before = m.toNumber(m.getElement(object, key));
    m.putElement(object, key, ESValue(before + delta));
    --m.m_sp;
    m.m_a = ESValue(prefix ? before + delta : before);
}

const char* ESMachine::typeName() const
{
    switch (m.m_a.tag) {
    case ESValue::Undefined: return "undefined";
    case ESValue::Boolean: return "boolean";
    case ESValue::Number: return "number";
    case ESValue::String:
    case ESValue::OwnedString: return "string";
    case ESValue::Object: return m.m_a.object->isCallable() ? "function" : "object";
    default: return "object";
    }
}

void ESContext::enumerate()
{
    std::set<ESString*> names;
    for (ESObject* at = toObject(m_a); at; at = at->prototype) {
        for (std::size_t i = 0; i < at->elements.size(); ++i)
            if (!at->elements[i].is(ESValue::Hole))
                names.insert(ESStringPool::number(static_cast<unsigned>(i)));
        for (const ESProperty& property : at->properties)
            if (property.name && !(property.flags & ESProperty::DontEnum))
                names.insert(property.name);
    }
    ESObject* list = mkobj(nullptr, m_plainClass.get());
    list->elements.assign(names.begin(), names.end());
    define(list, "index", ESValue(0.0));
    define(list, "length", ESValue(double(names.size())));
    m_a = ESValue(list);
}

/// The next name of an enumeration goes to A; false, with A popped, at its end.
bool ESContext::next()
{
    if (!m_a.isObject() || m_a.object->properties.size() < 2)
        throw ESFatalError(u"tos isn't a property object"_s);
    double& index = m_a.object->properties[0].value.number;
    if (index >= m_a.object->properties[1].value.number) {
        m_a = pop();
        return false;
    }
    const auto at = static_cast<std::size_t>(index);
    index += 1;
    m_a = m_a.object->elements[at];
    return true;
}

// Opcodes of variables stand in the order global, argument, and two more; see the table.
#define ES_VARIABLE_CASES(operation, action)                                                       \
    case Op::operation##G: {                                                                       \
        const int index = operand();                                                               \
        const auto slot = [&]() -> ESValue& { return global(index); };                             \
        action;                                                                                    \
        break;                                                                                     \
    }                                                                                              \
    case Op::operation##A: {                                                                       \
        const int index = operand();                                                               \
        const auto slot = [&]() -> ESValue& { return argument(index); };                           \
        action;                                                                                    \
        break;                                                                                     \
    }                                                                                              \
    case Op::operation##L: {                                                                       \
        const int index = operand();                                                               \
        const auto slot = [&]() -> ESValue& { return local(index); };                              \
        action;                                                                                    \
        break;                                                                                     \
    }                                                                                              \
    case Op::operation##LM: {                                                                      \
        const int index = operand();                                                               \
        const auto slot = [&]() -> ESValue& { return framedLocal(index); };                        \
        action;                                                                                    \
        break;                                                                                     \
    }

/// Numbers on both sides take this road; the rest goes the long way.
#define ES_ARITHMETIC(opcode, expression)                                                          \
    case Op::opcode: {                                                                             \
        const ESValue& left = m.top();                                                             \
        if (left.isNumber() && m.m_a.isNumber()) {                                                 \
            const double a = left.number;                                                          \
            const double b = m.m_a.number;                                                         \
            --m.m_sp;                                                                              \
            m.m_a = ESValue(expression);                                                           \
        } else {                                                                                   \
            const ESValue result = binary(Op::opcode, left, m.m_a);                                \
            --m.m_sp;                                                                              \
            m.m_a = result;                                                                        \
        }                                                                                          \
        break;                                                                                     \
    }

ESMachine::Step ESMachine::execute()
{
    for (;;) {
        const int countdown = m.m_pollCountdown - 1;
        m.m_pollCountdown = countdown;
        if (countdown <= 0 && !poll())
            return Step::Stop;
        const std::size_t start = m_at;
        m.m_line = m_code.lines[start];
        const auto opcode = static_cast<Op>(m_bytes[m_at++]);
        switch (opcode) {
        case Op::NUM: load(m_code.numbers[static_cast<std::size_t>(operand())]); break;
        case Op::NUM_0:
        case Op::NUM_1:
        case Op::NUM_2:
        case Op::NUM_3:
        case Op::NUM_4: load(double(int(opcode) - int(Op::NUM_0))); break;
        case Op::NUM_M1: load(-1.0); break;
        case Op::NULL_: load(ESValue::null()); break;
        case Op::TRUE_:
        case Op::FALSE_: load(ESValue::boolean(opcode == Op::TRUE_)); break;
        case Op::UNDEFINED: load({}); break;
        case Op::THIS: load(ESValue(m.m_frame.thisObject)); break;
        case Op::STR: load(ESValue(ESStringPool::get(operand()))); break;
        case Op::NEW: construct(0); break;
        case Op::NEWA: construct(operand()); break;
        case Op::DROP: drop(); break;
        case Op::DUP: m.push(m.m_a); break;
        case Op::VOID_: m.m_a = {}; break;
        case Op::TYPEOF: m.m_a = ESValue(ESStringPool::intern(QLatin1String(typeName()))); break;
        case Op::ENUM: m.enumerate(); break;
        case Op::NEXT: {
            const int target = operand();
            if (m.next())
                jump(target);
            break;
        }
        case Op::CLOSURE: load(ESValue(m.newFunction(ESContext::functionCode(operand())))); break;
        case Op::MKARRAY: makeArray(operand()); break;
        case Op::NEWOBJ: load(ESValue(m.newObject())); break;
        case Op::WITH: {
            ESObject* const object = m.toObject(m.m_a);
            m.m_frame.scope = m.scopeNode(object);
            drop();
            break;
        }
        case Op::ENDWITH: m.m_frame.scope = m.m_frame.scope->prototype; break;
        case Op::INITF: {
            ESString* const name = ESStringPool::get(operand());
            const ESValue value = m.m_a;
            drop();
            m.m_a.object->objectClass->put(&m, m.m_a.object, name, value);
            break;
        }
        case Op::CALLW: {
            ESString* const name = ESStringPool::get(operand());
            const int count = operand();
            m.push(m.m_a);
            ESValue function;
            ESObject* holder = nullptr;
            m.dynamicGet(name, function, holder);
            m.captureHolder(holder);
            callValue(function, holder, count);
            break;
        }
        case Op::CALLF: {
            ESString* const name = ESStringPool::get(operand());
            const int count = operand();
            m.callMethod(ESValue(m.m_a), name, count);
            break;
        }
        case Op::CALLX: {
            const int count = operand();
            const ESValue key = m.m_a;
            ESObject* const object = m.toObject(m.pop());
            callValue(m.getElement(ESValue(object), key), object, count);
            break;
        }
        case Op::CALLV: {
            const int count = operand();
            callValue(m.m_a, m.m_global, count);
            break;
        }
        case Op::CALLAM: {
            const ESValue function = framed(operand());
            const int count = operand();
            m.push(m.m_a);
            callValue(function, m.m_global, count);
            break;
        }
            ES_VARIABLE_CASES(CALL, {
                const ESValue function = slot();
                const int count = operand();
                m.push(m.m_a);
                callValue(function, m.m_global, count);
            })
        case Op::GETW: {
            ESValue value;
            ESObject* holder = nullptr;
            m.dynamicGet(ESStringPool::get(operand()), value, holder);
            load(value);
            break;
        }
        case Op::GETF: {
            ESString* const name = ESStringPool::get(operand());
            m.m_a = m.getProperty(m.m_a, name);
            break;
        }
        case Op::GETAM:
            load(framed(operand()));
            break;
            ES_VARIABLE_CASES(GET, load(slot()))
        case Op::GETX: {
            const ESValue result = m.getElement(m.top(), m.m_a);
            --m.m_sp;
            m.m_a = result;
            break;
        }
        case Op::PUTW:
            m.dynamicPut(ESStringPool::get(operand()), m.m_a);
            drop();
            break;
        case Op::PUTF: {
            ESString* const name = ESStringPool::get(operand());
            ESObject* const object = m.toObject(m.m_a);
            object->objectClass->put(&m, object, name, m.top());
            --m.m_sp;
            drop();
            break;
        }
        case Op::PUTAM:
            framed(operand()) = m.m_a;
            drop();
            break;
            ES_VARIABLE_CASES(PUT, {
                slot() = m.m_a;
                drop();
            })
        case Op::PUTX:
            m.putElement(m.top(), m.m_a, m.top(1));
            m.m_sp -= 2;
            drop();
            break;
            ES_ARITHMETIC(ADD, a + b)
            ES_ARITHMETIC(SUB, a - b)
            ES_ARITHMETIC(MUL, a * b)
            ES_ARITHMETIC(DIV, a / b)
        case Op::MOD:
        case Op::BITAND:
        case Op::BITOR:
        case Op::BITXOR:
        case Op::SHL:
        case Op::SHR:
        case Op::USHR: {
            const ESValue result = binary(opcode, m.top(), m.m_a);
            --m.m_sp;
            m.m_a = result;
            break;
        }
        case Op::ADDX:
        case Op::SUBX:
        case Op::MULX:
        case Op::DIVX:
        case Op::MODX:
        case Op::BITANDX:
        case Op::BITORX:
        case Op::BITXORX:
        case Op::SHLX:
        case Op::SHRX:
        case Op::USHRX: compoundMember(static_cast<Op>(int(opcode) - 1)); break;
        case Op::INC:
        case Op::DEC: m.m_a = m.toNumber(ESValue(m.m_a)) + (opcode == Op::INC ? 1 : -1); break;
        case Op::INCM:
        case Op::DECAM: {
            const int index = operand();
            step([&]() -> ESValue& { return framed(index); }, opcode == Op::INCM ? 1 : -1);
            break;
        }
            ES_VARIABLE_CASES(INC, step(slot, 1))
            ES_VARIABLE_CASES(DEC, step(slot, -1))
        case Op::PREINCX:
        case Op::POSTINCX: stepDynamic(1, opcode == Op::PREINCX); break;
        case Op::PREDECX:
        case Op::POSTDECX: stepDynamic(-1, opcode == Op::PREDECX); break;
        case Op::PREINCE:
        case Op::POSTINCE: stepMember(1, opcode == Op::PREINCE); break;
        case Op::PREDECE:
        case Op::POSTDECE: stepMember(-1, opcode == Op::PREDECE); break;
        case Op::DELETEW:
            load(ESValue::boolean(m.dynamicDelete(ESStringPool::get(operand()))));
            break;
        case Op::DELETEX: {
            const ESValue key = m.m_a;
            ESObject* const object = m.toObject(m.top());
            const bool deleted = m.deleteProperty(object, m.toEString(key));
            --m.m_sp;
            m.m_a = ESValue::boolean(deleted);
            break;
        }
        case Op::LT:
        case Op::LE: {
            const bool result = m.less(m.top(), m.m_a, opcode == Op::LE);
            --m.m_sp;
            m.m_a = ESValue::boolean(result);
            break;
        }
        case Op::EQ:
        case Op::NE: {
            const bool result = m.equal(m.top(), m.m_a);
            --m.m_sp;
            m.m_a = ESValue::boolean(result == (opcode == Op::EQ));
            break;
        }
        case Op::IDENTITY:
        case Op::NOTIDENTITY: {
            const bool result = ESContext::identical(m.top(), m.m_a);
            --m.m_sp;
            m.m_a = ESValue::boolean(result == (opcode == Op::IDENTITY));
            break;
        }
        case Op::LOGNOT: m.m_a = ESValue::boolean(!ESContext::toBoolean(m.m_a)); break;
        case Op::BITNOT: m.m_a = ESValue(double(~ESContext::toInt32(m.toNumber(m.m_a)))); break;
        case Op::POS: m.m_a = ESValue(m.toNumber(m.m_a)); break;
        case Op::NEG: m.m_a = ESValue(-m.toNumber(m.m_a)); break;
        case Op::LOGAND:
        case Op::LOGOR: {
            const int target = operand();
            if (ESContext::toBoolean(m.m_a) == (opcode == Op::LOGOR))
                jump(target);
            else
                drop();
            break;
        }
        case Op::J: jump(operand()); break;
        case Op::JT:
        case Op::JF: {
            const int target = operand();
            if (ESContext::toBoolean(m.m_a) == (opcode == Op::JT))
                jump(target);
            drop();
            break;
        }
        case Op::JT_DROP: {
            const int target = operand();
            const bool taken = ESContext::toBoolean(m.m_a);
            drop();
            if (taken) {
                drop();
                jump(target);
            }
            break;
        }
        case Op::JLT: {
            const int target = operand();
            const ESValue& left = m.top();
            const bool taken = left.isNumber() && m.m_a.isNumber() ? left.number < m.m_a.number
                                                                   : m.less(left, m.m_a, false);
            --m.m_sp;
            drop();
            if (taken)
                jump(target);
            break;
        }
        case Op::RET: return Step::Stop;
        case Op::RETU: load({}); return Step::Stop;
        case Op::THROW: throw ESException(m.m_a);
        case Op::TRY: m.m_handlers.push_back({operand(), m.m_sp, m.m_frame.scope, m.m_a}); break;
        case Op::ENDTRY: m.m_handlers.pop_back(); break;
        case Op::ARGUMENTS: makeArguments(); break;
        default: throw ESFatalError(u"bad opcode"_s);
        }
    }
}
