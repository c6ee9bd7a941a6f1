// The table of the operations, and those that need neither a file nor the terminal.
#include "target/TargetIOOperations.h"

#include <cerrno>
#include <cstdlib>
#include <ctime>

using Operations = TargetIOServer::Operations;

namespace {

struct Range {
    unsigned first;
    unsigned last;
    unsigned step;
};

} // namespace

Operations::Operations(std::uint64_t communication, unsigned number)
    : m_communication(communication),
      m_number(number),
      m_arguments(*s_data, static_cast<std::uint32_t>(communication))
{
}

void Operations::run()
{
    if (Operation operation = find(m_number); operation != nullptr)
        (this->*operation)();
}

Operations::Operation Operations::find(unsigned number)
{
    struct Row {
        Range numbers;
        Operation operation;
    };
    using O = Operations;
    static constexpr Row rows[] = {
        {{1, 4, 1}, &O::error},
        {{5, 5, 1}, &O::errorText},
        {{6, 6, 1}, &O::open},
        {{7, 7, 1}, &O::flush},
        {{8, 8, 1}, &O::close},
        {{9, 11, 2}, &O::printToFile},
        {{49, 51, 2}, &O::printToFile},
        {{57, 63, 2}, &O::printToFile},
        {{10, 12, 2}, &O::print},
        {{50, 52, 2}, &O::print},
        {{58, 64, 2}, &O::print},
        {{13, 15, 2}, &O::scanFromFile},
        {{53, 55, 2}, &O::scanFromFile},
        {{65, 71, 2}, &O::scanFromFile},
        {{14, 16, 2}, &O::scan},
        {{54, 56, 2}, &O::scan},
        {{66, 72, 2}, &O::scan},
        {{17, 17, 1}, &O::getFromFile},
        {{18, 18, 1}, &O::getsFromFile},
        {{19, 19, 1}, &O::putToFile},
        {{20, 20, 1}, &O::putsToFile},
        {{21, 21, 1}, &O::getCharacter},
        {{22, 22, 1}, &O::gets},
        {{23, 23, 1}, &O::put},
        {{24, 24, 1}, &O::puts},
        {{25, 28, 1}, &O::readInteger},
        {{29, 30, 1}, &O::readReal},
        {{31, 32, 1}, &O::readInteger},
        {{33, 33, 1}, &O::read},
        {{34, 34, 1}, &O::write},
        {{35, 75, 40}, &O::seek},
        {{36, 74, 38}, &O::tell},
        {{37, 37, 1}, &O::rewind},
        {{38, 38, 1}, &O::fileLength},
        {{39, 39, 1}, &O::clearErrors},
        {{40, 40, 1}, &O::endOfFile},
        {{41, 41, 1}, &O::errorOfFile},
        {{42, 42, 1}, &O::breakIn},
        {{43, 43, 1}, &O::keyAvailable},
        {{44, 44, 1}, &O::getKey},
        {{Exit, Exit, 1}, &O::exit},
        {{47, 47, 1}, &O::time},
        {{48, 48, 1}, &O::divide},
        {{73, 73, 1}, &O::ungetc},
        {{76, 76, 1}, &O::reopen},
        {{77, 77, 1}, &O::perror},
        {{78, 78, 1}, &O::remove},
        {{79, 79, 1}, &O::rename},
        {{80, 80, 1}, &O::temporaryFile},
        {{81, 81, 1}, &O::temporaryName},
        {{82, 82, 1}, &O::getEnvironment},
        {{83, 83, 1}, &O::system},
        {{84, 84, 1}, &O::arguments},
        {{120, 120, 1}, &O::loadSymbols},
    };
    for (const Row& row : rows) {
        const Range& range = row.numbers;
        if (number >= range.first && number <= range.last
            && (number - range.first) % range.step == 0)
            return row.operation;
    }
    return nullptr;
}

void Operations::setResult(std::int64_t value)
{
    s_data->pokeWord(s_communication, static_cast<std::uint64_t>(value));
}

const char* Operations::stringArgument(bool fromCode)
{
    return dumpString(m_arguments.getPtrArg(), fromCode);
}

bool Operations::storeString(unsigned address, unsigned size, const std::string& text)
{
    if (text.size() + 1 > size)
        return false;
    s_data->pokeBytes(address, static_cast<unsigned>(text.size()) + 1,
                      reinterpret_cast<const unsigned char*>(text.c_str()));
    return true;
}

void Operations::error()
{
    static constexpr const char* texts[] = {"divide by zero", "stack overflow", "stack underflow",
                                            "assert() failed"};
    if (s_helper != nullptr)
        s_helper->errorOccurred(texts[m_number - 1]);
}

void Operations::errorText()
{
    const char* text = dumpString(static_cast<unsigned>(m_communication), false);
    if (s_helper != nullptr)
        s_helper->errorOccurred(text);
}

void Operations::breakIn()
{
    if (s_helper != nullptr)
        s_helper->debugBreakOccurred();
}

void Operations::exit()
{
    const auto code = static_cast<int>(m_arguments.getIntArg());
    if (s_helper != nullptr)
        s_helper->exitOccurred(code);
}

void Operations::time()
{
    const std::uint32_t address = m_arguments.getPtrArg();
    s_data->pokeNumber(address, 4, static_cast<std::uint64_t>(std::time(nullptr)));
}

void Operations::divide()
{
    const std::int64_t dividend = m_arguments.getLongLongArg();
    const std::int64_t divisor = m_arguments.getLongLongArg();
    // The two quotients that the host's division can't give: 0 and the dividend itself.
    const auto negated = static_cast<std::int64_t>(0 - static_cast<std::uint64_t>(dividend));
    const std::int64_t quotient = divisor == 0 ? 0 : divisor == -1 ? negated : dividend / divisor;
    s_data->pokeNumber(s_communication, 8, static_cast<std::uint64_t>(quotient));
}

void Operations::getEnvironment()
{
    const char* value = std::getenv(stringArgument());
    const std::uint32_t buffer = m_arguments.getPtrArg();
    const auto size = static_cast<unsigned>(m_arguments.getUnsignedArg());
    setResult(value != nullptr && storeString(buffer, size, value) ? 0 : -1);
}

void Operations::system()
{
    const char* command = stringArgument();
    if (s_systemAllowed) {
        errno = 0;
        const int status = std::system(command);
        return setFileResult(status);
    }
    errno = EPERM;
    setFileResult(-1);
}

void Operations::arguments()
{
    const std::uint32_t block = m_arguments.getPtrArg();
    const auto size = static_cast<unsigned>(m_arguments.getUnsignedArg());
    const unsigned word = s_data->wordLength();
    unsigned room = size > word ? size - word : 0;
    std::vector<std::string> fitting;
    for (const QString& argument : s_arguments) {
        const std::string text = argument.toStdString();
        if (word + text.size() + 1 > room)
            break;
        room -= word + static_cast<unsigned>(text.size()) + 1;
        fitting.push_back(text);
    }
    std::uint32_t pointer = block;
    std::uint32_t string = block + word * (static_cast<unsigned>(fitting.size()) + 1);
    for (const std::string& text : fitting) {
        s_data->pokeWord(pointer, string);
        storeString(string, static_cast<unsigned>(text.size()) + 1, text);
        pointer += word;
        string += static_cast<unsigned>(text.size()) + 1;
    }
    if (size >= word)
        s_data->pokeWord(pointer, 0);
    setResult(static_cast<std::int64_t>(fitting.size()));
}

void Operations::loadSymbols()
{
    const char* name = stringArgument();
    const std::uint32_t address = m_arguments.getPtrArg();
    if (s_helper != nullptr)
        s_helper->loadSymbols(name, address);
}
