// What is found, by whatever a person remembers of it, and that nothing else is.
#include "phnctl/handset_run.h"

namespace {

using Find = HandsetRun;

TEST_F(Find, TakesWordsAndNumbersInAnySpelling)
{
    const struct
    {
        const char* words;
        int status;
        const char* says;
    } cases[] = {
        {"contacts find ODEGARD ase", 0, "Åse Ødegård"},
        {"contacts find \"ase lefevre\"", 1, "No contact has 'ase lefevre'.\n"},
        {"contacts find \"+47 (555) 20-\"", 0, "Åse Ødegård"},         // a part of it
        {"contacts find 0047.555.2000", 0, "\n1 contact\n"},           // another prefix
        {"contacts find 011475552000", 0, "\n1 contact\n"},            // and from elsewhere
        {"contacts find 5552000", 0, "+475552000"},                    // without any
        {"contacts find 95552000", 1, "No contact has '95552000'.\n"}, // another number with that end
        {"contacts find aase5@EXAMPLE", 0, "\n1 contact\n"},
        {"contacts find zzz --json", 1, "{\"contacts\":[]}\n"},
        {"events find STANDUP", 1, "No event has 'STANDUP'.\n"},
        {"events find up-meeting", 1, "No event has"},
        {"events find meeting stand", 0, "every weekday"},
        {"messages find 5551230310 --json", 0, "\"from\":\"5551230310\""},
        {"messages find _", 2, "there is nothing to look for"},
    };
    for (const auto& [words, status, says] : cases)
        Expect(status, words, {says});
}

} // namespace
