// Wrong command lines: each says what is wrong and what is allowed, on standard error, before anything is loaded.
#include "phnctl/program.h"

#include <gtest/gtest.h>
#include <sstream>

namespace phnctl_test {
namespace {

TEST(CommandLine, SaysWhatIsWrongAndWhatIsAllowed)
{
    const struct
    {
        const char* words;
        const char* input;
        std::vector<const char*> says;
    } cases[] = {
        {"", "", {"needs a command", "info", "doctor"}},
        {"inof", "", {"unknown command 'inof'", "status", "Did you mean 'info'?", "See 'phnctl --help'"}},
        {"--simulator --wait 3 sttus", "", {"unknown command 'sttus'", "Did you mean 'status'?"}},
        {"parameters", "", {"needs a command: get, set"}},
        {"parameters gte", "", {"unknown command 'gte'", "get, set"}},
        {"--frob info", "", {"--frob"}},
        {"info surplus", "", {"surplus"}},
        {"radio", "", {"STATE"}},
        {"radio maybe", "", {"STATE: 'maybe'", "on, off"}},
        {"radio on off", "", {"off"}},
        {"info --wait 0", "", {"--wait", "1 to 3600", "See 'phnctl --help'"}},
        {"info --labels /nonexistent", "", {"--labels", "/nonexistent"}},
        {"info --library /nonexistent/library.so", "", {"was not found", "/nonexistent/library.so"}},
        {"info --wait soon", "", {"--wait"}},
        {"info --log loud", "", {"'loud'", "off, error, comment, all"}},
        {"lock on 123", "", {"exactly 4"}},
        {"lock on", "", {"no lock code", "standard input"}},
        {"lock-code 0000", "12345\n", {"exactly 4"}},
        {"parameters set uParameter1=256", "", {"uParameter1", "0 to 255"}},
        {"parameters set wParameter3=", "", {"wParameter3", "0 to 65535"}},
        {"parameters set uParameter=1", "", {"uParameter1=NUMBER"}},
        {"contacts", "", {"needs a command: list, get, export, put, import, delete, clear, sizes"}},
        {"contacts get first", "", {"'first'", "a number"}},
        {"contacts list --range 9-3", "", {"'9-3'", "0-499"}},
        {"contacts import /nonexistent.vcf", "", {"/nonexistent.vcf: No such file"}},
        {"error twelve", "", {"'twelve'", "names"}},
        {"error 150", "", {"150", "1000 to 1031"}},
        {"error 2006", "", {"2006", "2000 to 2005"}},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.words);
        Program program;
        const Outcome outcome = program.Run(Split(test.words), test.input);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.out, "");
        for (const char* text : test.says)
            EXPECT_NE(outcome.err.find(text), std::string::npos) << text << "\n" << outcome.err;
    }
}

// The words below "Subcommands:".
std::vector<std::string> CommandsIn(const std::string& help)
{
    std::vector<std::string> commands;
    std::istringstream lines(help.substr(std::min(help.find("Subcommands:\n"), help.size())));
    std::string line;
    for (std::getline(lines, line); std::getline(lines, line) && line.starts_with("  ");)
        if (line[2] != ' ')
            commands.push_back(line.substr(2, line.find(' ', 2) - 2));
    return commands;
}

void ExpectHelp(const std::string& words)
{
    SCOPED_TRACE(words);
    Program program;
    const Outcome outcome = program.Run(Split(words + " --help"));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    ASSERT_EQ(program.Run(Split("--wait 1 help " + words)).out, outcome.out);
    const std::vector<std::string> commands = CommandsIn(outcome.out);
    EXPECT_TRUE(!commands.empty() || outcome.out.find("\n  phnctl " + words) != std::string::npos) << outcome.out;
    for (const std::string& command : commands)
        ExpectHelp(words.empty() ? command : words + " " + command);
}

TEST(CommandLine, EveryCommandHasHelpWithAnExample)
{
    Program program;
    ASSERT_GE(CommandsIn(program.Run({"--help"}).out).size(), 10u);
    ExpectHelp("");
}

TEST(CommandLine, NamesTheLibraryThatDoesNotLoad)
{
    const std::pair<const char*, const char*> cases[] = {{"/etc/passwd", "does not load: /etc/passwd: "},
                                                         {"libc.so.6", "has no function PHN_Startup"}};
    for (const auto& [path, text] : cases) {
        SCOPED_TRACE(path);
        Program program;
        const Outcome outcome = program.Run({"info", "--library", path});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_NE(outcome.err.find(text), std::string::npos) << outcome.err;
    }
}

TEST(CommandLine, AnswersAFailureInJsonToo)
{
    const std::pair<const char*, const char*> cases[] = {
        {"--json inof", "{\"error\":{\"text\":\"unknown command 'inof'; "},
        {"--simulator lock on 9999 --json",
         "{\"error\":{\"code\":203,\"name\":\"PHN_ERROR_INVALID_LOCK_CODE\",\"text\":"
         "\"the lock code is wrong\",\"while\":\"locking the handset\"}}\n"}};
    for (const auto& [words, text] : cases) {
        Program program;
        const Outcome outcome = program.Run(Split(words));
        EXPECT_NE(outcome.status, 0);
        EXPECT_EQ(outcome.out.rfind(text, 0), 0u) << outcome.out;
        EXPECT_EQ(outcome.err.rfind("phnctl: ", 0), 0u) << outcome.err;
    }
}

TEST(CommandLine, NoAnswerIsLostInSilence)
{
    for (const char* words : {"--help", "--simulator info"}) {
        SCOPED_TRACE(words);
        Program program;
        program.SendOutputTo("/dev/full");
        const Outcome outcome = program.Run(Split(words));
        EXPECT_EQ(outcome.status, 1);
        EXPECT_NE(outcome.err.find("No space left"), std::string::npos) << outcome.err;
    }
}

} // namespace
} // namespace phnctl_test
