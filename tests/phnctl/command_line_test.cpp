// Wrong command lines: each says what is wrong and what is allowed, on standard error, before anything is loaded.
#include "phnctl/program.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

TEST(CommandLine, SaysWhatIsWrongAndWhatIsAllowed)
{
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {"", {"needs a command", "info", "doctor"}},
        {"--simulator --wait 3 sttus",
         {"unknown command 'sttus'", "info", "Did you mean 'status'?", "See 'phnctl --help'"}},
        {"parameters", {"needs a command: get, set"}},
        {"--frob info", {"--frob"}},
        {"radio", {"STATE"}},
        {"radio maybe", {"STATE: 'maybe'", "on, off"}},
        {"info --wait 0", {"--wait", "1 to 3600", "See 'phnctl --help'"}},
        {"info --library /nonexistent/library.so", {"was not found", "/nonexistent/library.so"}},
        {"info --log loud", {"'loud'", "off, error, comment, all"}},
        {"lock on 123", {"exactly 4"}},
        {"lock on", {"no lock code", "standard input"}},
        {"parameters set uParameter1=256", {"uParameter1", "0 to 255"}},
        {"contacts list --range 9-3", {"'9-3'", "0-499"}},
        {"contacts import /nonexistent.vcf", {"/nonexistent.vcf: No such file"}},
        {"contacts import /dev/null", {"/dev/null holds no contact"}},
        {"error twelve", {"'twelve'", "names"}},
    };
    for (const auto& [words, says] : cases) {
        SCOPED_TRACE(words);
        const Outcome outcome = Program().Run(words);
        Expect(outcome, 2, says);
        EXPECT_EQ(outcome.out, "");
    }
}

TEST(CommandLine, CommandsHaveHelpWithAnExample)
{
    const std::string all = Program().Run("--help").out;
    for (const std::string command : {"info", "watch", "contacts import", "events list", "messages send", "restore"}) {
        EXPECT_TRUE(Has(all, "\n  " + command.substr(0, command.find(' ')) + " ")) << all;
        Expect(Program().Run(command + " --help"), 0, {"\n  phnctl " + command});
    }
    EXPECT_EQ(Program().Run("--wait 1 help contacts get").out, Program().Run("contacts get --help").out);
}

TEST(CommandLine, NamesTheLibraryThatDoesNotLoad)
{
    Expect(Program().Run("info --library /etc/passwd"), 1, {"does not load: /etc/passwd: "});
    Expect(Program().Run("info --library libc.so.6"), 1, {"has no function PHN_Startup"});
}

TEST(CommandLine, FailuresAreAnsweredInJsonTooAndNoneIsLostInSilence)
{
    Expect(Program().Run("--json inof"), 2, {"{\"error\":{\"text\":\"unknown command 'inof'; ", "}\nphnctl: "});
    Expect(Program().Run("--simulator lock on 9999 --json"), 1,
           {"{\"error\":{\"code\":203,\"name\":\"PHN_ERROR_INVALID_LOCK_CODE\",\"text\":\"the lock code is wrong\","
            "\"while\":\"locking the handset\"}}\nphnctl: "});
    for (const char* words : {"--help", "--simulator info"}) {
        Program program;
        program.SendOutputTo("/dev/full");
        Expect(program.Run(words), 1, {"No space left"});
    }
}

// What a shell is told for the last of some words, which may be ''.
std::string CandidatesFor(const std::string& words)
{
    std::istringstream lines(Program().Run("__complete " + words).out);
    std::string candidates;
    for (std::string line; std::getline(lines, line);)
        candidates += (candidates.empty() ? "" : " ") + line.substr(0, line.find('\t'));
    return candidates;
}

TEST(Completion, OffersWhatMayStandThere)
{
    const std::pair<const char*, const char*> cases[] = {
        {"parameters ''", "get set"},
        {"--simulator --wait 5 --wait=5 help calls ''", "list count export clear"},
        {"messages get --", "--help --pdu --simulator --json --wait --library --labels --log --slow-reads --version"},
        {"lock ''", "on off"},
        {"messages send --priority ''", "0 1 2 3"},
        {"info --log ''", "off error comment all"},
        {"info --log=e", "--log=off --log=error --log=comment --log=all"},
        {"contacts put ''", ":files"},
        {"contacts put card.vcf ''", ""},
        {"contacts import a.vcf b.vcf ''", ":files"},
        {"backup ''", ":folders"},
    };
    for (const auto& [words, candidates] : cases)
        EXPECT_EQ(CandidatesFor(words), candidates) << words;
}

} // namespace
