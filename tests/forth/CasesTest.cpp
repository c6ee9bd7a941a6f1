// The case folders. Those of `ans` and `programs` are whole files, which gforth has to agree with;
// in the others each line is a console's.

#include "forth/ForthTestSupport.h"
#include "script/forth/ForthCore.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>

namespace {

namespace fs = std::filesystem;

const fs::path root = fs::path(GANTRY_TEST_DATA) / "cases";

std::string contents(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<std::string> caseNames()
{
    std::vector<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(root))
        if (entry.path().extension() == ".fs")
            names.push_back(fs::relative(entry.path(), root).replace_extension().string());
    std::sort(names.begin(), names.end());
    return names;
}

bool isStandard(const std::string& name)
{
    return name.starts_with("ans/") || name.starts_with("programs/");
}

void runCase(TestConsole& console, const std::string& name)
{
    const std::string text = contents(root / (name + ".fs"));
    if (isStandard(name)) {
        console.files().put(u"case.fs"_s, QByteArray::fromStdString(text));
        console.load(u"case.fs"_s);
        return;
    }
    for (const QString& line : QString::fromStdString(text).chopped(1).split(u'\n'))
        console.process(line);
}

class Cases : public testing::TestWithParam<std::string> { };

TEST_P(Cases, PrintWhatIsExpected)
{
    TestConsole console;
    runCase(console, GetParam());
    EXPECT_EQ(console.takeText(), contents(root / (GetParam() + ".out")));
}

class StandardCases : public testing::TestWithParam<std::string> { };

TEST_P(StandardCases, PrintTheSameUnderGforth)
{
    if (std::system("command -v gforth >/dev/null") != 0)
        GTEST_SKIP() << "gforth is not installed";
    const std::string command =
        "gforth " + (root / (GetParam() + ".fs")).string() + " -e bye 2>/dev/null";
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string output;
    for (int c; (c = std::fgetc(pipe.get())) != EOF;)
        output += static_cast<char>(c);
    EXPECT_EQ(output, contents(root / (GetParam() + ".out")));
}

std::string testName(const testing::TestParamInfo<std::string>& info)
{
    std::string name = info.param;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return !std::isalnum(c); }, '_');
    return name;
}

std::vector<std::string> standardNames()
{
    std::vector<std::string> names = caseNames();
    std::erase_if(names, [](const std::string& name) { return !isStandard(name); });
    return names;
}

INSTANTIATE_TEST_SUITE_P(Forth, Cases, testing::ValuesIn(caseNames()), testName);
INSTANTIATE_TEST_SUITE_P(Forth, StandardCases, testing::ValuesIn(standardNames()), testName);

/// A word of the core that notes that it has been executed.
class Recorder : public pcode {
public:
    Recorder(pcode* word, std::set<std::string>* executed) : m_word(word), m_executed(executed) { }
    void execute(FSContext* context) override
    {
        m_executed->insert(m_word->name().toStdString());
        m_word->execute(context);
    }
    std::unique_ptr<pcode> copy() const override
    {
        return std::make_unique<Recorder>(m_word, m_executed);
    }

private:
    pcode* m_word;
    std::set<std::string>* m_executed;
};

/// The words of the core as the dictionary has them: names, with " *" behind immediate ones.
std::set<std::string> dictionary(FSContext& context)
{
    std::set<std::string> words;
    for (const PCFA* word : context.forth()->words())
        words.insert(word->name().toStdString() + (word->isImmediate() ? " *" : ""));
    return words;
}

TEST(Dictionary, HasTheWordsOfTheCoreAndTwoConstants)
{
    std::set<std::string> wanted = {"TRUE", "FALSE"};
    std::ifstream in(fs::path(GANTRY_TEST_DATA) / "words.txt");
    for (std::string line; std::getline(in, line);)
        wanted.insert(line);
    TestConsole console;
    EXPECT_EQ(dictionary(console.context()), wanted);
    EXPECT_EQ(wanted.size(), 188U);
}

TEST(Dictionary, EachWordIsExecutedBySomeCase)
{
    std::set<std::string> executed;
    std::set<std::string> all;
    for (const std::string& name : caseNames()) {
        TestConsole console;
        FSContext& context = console.context();
        const auto words = context.forth()->words();
        for (PCFA* word : words) {
            if (!word->first()) // a constant
                continue;
            all.insert(word->name().toStdString());
            addDictionary(&context, context.make<Recorder>(word->first(), &executed), word->name(),
                          word->flags());
        }
        runCase(console, name);
    }
    EXPECT_EQ(all.size(), 186U);
    std::vector<std::string> missing;
    std::set_difference(all.begin(), all.end(), executed.begin(), executed.end(),
                        std::back_inserter(missing));
    EXPECT_THAT(missing, testing::IsEmpty());
}

} // namespace
