// Runs the folders of cases: one area a folder. In a file NAME.cases each program stands before the
// line "// => " with its result; a program NAME.js echoes what stands in NAME.out.

#include "script/ScriptTestSupport.h"
#include "script/es/ESCode.h"
#include "script/es/ESCompiler.h"
#include "script/es/ESVmOpcode.h"
#include "script/host/BuiltinScript.h"

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

namespace {

const std::filesystem::path Cases = std::filesystem::path(GANTRY_TEST_DATA) / "cases";

struct ScriptCase {
    std::string source;
    std::string result;
};

std::vector<std::string> filesOf(const std::string& extension)
{
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(Cases))
        if (entry.path().extension() == extension)
            files.push_back(std::filesystem::relative(entry.path(), Cases).string());
    std::sort(files.begin(), files.end());
    return files;
}

std::string contentsOf(const std::filesystem::path& path)
{
    std::ifstream in(path);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::vector<ScriptCase> casesOf(const std::string& file)
{
    const std::string mark = "// => ";
    std::vector<ScriptCase> cases;
    std::istringstream lines(contentsOf(Cases / file));
    std::string source;
    bool behindResult = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(mark)) {
            cases.push_back({source, line.substr(mark.size())});
            source.clear();
            behindResult = true;
        } else if (!(behindResult && line.empty())) {
            source += line + "\n";
            behindResult = false;
        } else {
            behindResult = false;
        }
    }
    return cases;
}

std::string nameOf(const testing::TestParamInfo<std::string>& info)
{
    std::string name = info.param.substr(0, info.param.rfind('.'));
    for (char& c : name)
        if (!std::isalnum(static_cast<unsigned char>(c)))
            c = '_';
    return name;
}

using ScriptCases = testing::TestWithParam<std::string>;

TEST_P(ScriptCases, GiveTheirResults)
{
    for (const ScriptCase& one : casesOf(GetParam())) {
        ESContext context;
        context.memory().setLimit(qsizetype(64) << 20);
        EXPECT_EQ(run(context, one.source.c_str()), one.result) << one.source;
    }
}

INSTANTIATE_TEST_SUITE_P(Folder, ScriptCases, testing::ValuesIn(filesOf(".cases")), nameOf);

using ScriptPrograms = testing::TestWithParam<std::string>;

TEST_P(ScriptPrograms, EchoTheirOutput)
{
    QString echoed;
    BuiltinScript script([&](const QString& line) { echoed += line + u'\n'; });
    ESContext context;
    script.install(&context);
    const ESCompletion completion =
        context.eval(QString::fromStdString(contentsOf(Cases / GetParam())));
    ASSERT_EQ(completion.kind, ESCompletion::Normal) << context.messageOf(completion).toStdString();
    EXPECT_EQ(echoed.toStdString(), contentsOf((Cases / GetParam()).replace_extension(".out")));
}

INSTANTIATE_TEST_SUITE_P(Folder, ScriptPrograms, testing::ValuesIn(filesOf(".js")), nameOf);

/// The opcodes of a code and of the functions that it makes.
void collectOpcodes(const ESCode& code, std::set<int>& opcodes)
{
    for (int offset = 0; offset < code.size();) {
        const auto at = static_cast<std::size_t>(offset);
        opcodes.insert(code.bytes[at]);
        if (code.bytes[at] == std::uint8_t(ESVmOpcode::CLOSURE))
            collectOpcodes(*ESContext::functionCode(code.bytes[at + 1] << 8 | code.bytes[at + 2]),
                           opcodes);
        ESCompiler::printInsn(nullptr, code, offset, offset);
    }
}

TEST(ScriptCaseFolders, ExecuteEveryOpcode)
{
    // No statement makes these; MachineTest runs them.
    std::set<int> opcodes = {int(ESVmOpcode::INC), int(ESVmOpcode::DEC),
                             int(ESVmOpcode::NOTIDENTITY)};
    for (const std::string& file : filesOf(".cases"))
        for (const ScriptCase& one : casesOf(file)) {
            ESContext context;
            ESCompiler compiler(&context);
            compiler.setSource(QString::fromStdString(one.source));
            try {
                collectOpcodes(*compiler.parse(), opcodes);
            } catch (const ESSyntaxError&) {
                continue;
            }
        }
    for (int opcode = 0; opcode < 256; ++opcode)
        EXPECT_TRUE(!esOpcodeInfo(std::uint8_t(opcode)) || opcodes.contains(opcode))
            << esOpcodeInfo(std::uint8_t(opcode))->mnemonic;
}

TEST(ScriptCaseFolders, CallEveryFunctionOfTheLibrary)
{
    std::string all;
    for (const std::string& file : filesOf(".cases"))
        for (const ScriptCase& one : casesOf(file))
            all += one.source;
    const char* program =
        "function names(object, into) { for (var name in object)"
        "    if (object.hasOwnProperty(name) && typeof object[name] == 'function')"
        "        into[name] = 1 }"
        "var found = {}, global = this; names(global, found);"
        "for (var name in found) if (global[name] && global[name].prototype)"
        "    names(global[name].prototype, found);"
        "names(Math, found); names(String, found);"
        "var list = ''; for (name in found) if (found[name] == 1 && name != "
        "'names') list += name + ' '; list";
    std::istringstream names(run(program));
    int count = 0;
    for (std::string name; names >> name; ++count)
        EXPECT_NE(all.find(name + "("), std::string::npos) << name << " is never called";
    EXPECT_GT(count, 80);
}

} // namespace
