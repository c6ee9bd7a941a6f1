// What `gantry pack` writes and says.

#include "cli/CliTestSupport.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

class PackTest : public CliTest {
protected:
    std::string makeSolution() const
    {
        make("main.c", "int main(void) { return 0; }\n");
        return make("s.kvp",
                    "<!DOCTYPE GantryBench_Project_File>\n"
                    "<solution Name=\"s\" version=\"2\"><project Name=\"p\">"
                    "<file file_name=\"main.c\"/><file file_name=\"missing.c\"/>"
                    "</project></solution>\n");
    }
};

TEST_F(PackTest, WritesACompressedArchiveAndNamesWhatIsLeftOut)
{
    const Outcome outcome = gantry("pack " + makeSolution() + ' ' + path("s.kvr"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(outcome.errors, HasSubstr("gantry: warning: missing.c is left out"));
    EXPECT_EQ(contents("s.kvr").substr(0, 8), std::string("\x7A\xF4\x31\xB2\x01\0\0\0", 8));

    const Outcome build = gantry("build " + path("s.kvr"));
    EXPECT_EQ(build.status, 1);
    EXPECT_THAT(build.errors, HasSubstr("is a packaged solution"));
    const Outcome check = gantry("check " + path("s.kvr"));
    EXPECT_EQ(check.status, 1);
    EXPECT_THAT(check.errors, HasSubstr("packaged solution"));
}

TEST_F(PackTest, Fails)
{
    const std::string solution = makeSolution();
    EXPECT_EQ(gantry("pack " + solution).status, 2);
    EXPECT_EQ(gantry("pack --fast " + solution + ' ' + path("o")).status, 2);
    EXPECT_EQ(gantry("pack " + path("none.kvp") + ' ' + path("o")).status, 1);
    EXPECT_EQ(gantry("pack " + solution + ' ' + path("no/such/o")).status, 1);
    EXPECT_EQ(gantry("pack " + solution + ' ' + solution).status, 1);
    EXPECT_THAT(contents("s.kvp"), HasSubstr("DOCTYPE")) << "the solution stays";
}

} // namespace
