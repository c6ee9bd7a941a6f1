// `gantry forth`.

#include "cli/CliTestSupport.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

class ForthCommand : public CliTest { };

TEST_F(ForthCommand, RunsFilesInTurnOnOneDictionary)
{
    make("one.fs", ": nine 9 ;\n");
    make("two.fs", "nine . cr bye nowhere\n");
    const Outcome outcome = gantry("forth " + path("one.fs") + " " + path("two.fs"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "9 \n");
    EXPECT_EQ(outcome.errors, "");
}

TEST_F(ForthCommand, RunsStandardInput)
{
    const Outcome outcome =
        shell("printf ': a\\n 1 2 + ; a .\\n 0 0 /\\n' | " GANTRY_ROOT_TREE "/bin/gantry forth");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "3 ");
    EXPECT_EQ(outcome.errors, "gantry: standard input:3: divide by zero: /\n");
}

TEST_F(ForthCommand, NamesThePlaceOfAnErrorAndStops)
{
    make("inner.fs", "1 .\nnowhere\n");
    const std::string outer = make("outer.fs", "include inner.fs 2 .\n");
    const Outcome outcome = gantry("forth " + outer + " " + outer);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "1 ");
    EXPECT_EQ(outcome.errors, "gantry: " + path("inner.fs") + ":2: undefined word: nowhere\n");
}

TEST_F(ForthCommand, SaysWhichFileIsMissing)
{
    const Outcome outcome = gantry("forth " + path("none.fs"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "gantry: i/o error: 2: " + path("none.fs") + "\n");
    EXPECT_EQ(gantry("forth --nothing").status, 2);
}

TEST_F(ForthCommand, WorksOnFilesOfTheDisk)
{
    const std::string program =
        make("files.fs",
             "variable f create b 80 allot\n"
             "s\" data.txt\" w/o create-file throw f ! s\" text\" f @ write-line throw f @ "
             "close-file .\n"
             "s\" data.txt\" r/w open-file throw f ! 2 0 f @ resize-file . b 80 f @ read-file . .\n"
             "f @ close-file . s\" data.txt\" delete-file . s\" .\" r/o open-file . .\n");
    const Outcome outcome =
        shell("cd " + folder.string() + " && " GANTRY_ROOT_TREE "/bin/gantry forth " + program);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.output, "0 0 0 2 0 0 -37 0 ");
}

TEST_F(ForthCommand, IsInterruptedBySignals)
{
    const std::string program = make("endless.fs", ": a begin again ;\n.( on) a\n");
    const Outcome outcome = shell(GANTRY_ROOT_TREE "/bin/gantry forth " + program
                                  + " & sleep 2; kill -INT $!; wait $!");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors, HasSubstr(":2: user interrupt: a\n"));
}

} // namespace
