// What is found, by whatever a person remembers of it; and where a listing ends: not silently before any entry.
#include "phnctl/handset_run.h"

#include <tuple>

using Find = HandsetRun;

TEST_F(Find, TakesWordsAndNumbersInAnySpelling)
{
    const RunRow cases[] = {
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
        {"messages find ''", 2, "there is nothing to look for"},
    };
    for (const auto& [words, status, says] : cases)
        Expect(status, words, {says});
}

TEST_F(Find, EndsWhereNothingFurtherIsLikely)
{
    Handset().Change(0, [](simulator::Phone& phone) {
        phone.limits.contacts = phone.limits.events = 100;
        phone.contacts[90] = phone.contacts.extract(phone.contacts.rbegin()->first).mapped();
        phone.events[90] = phone.events.at(0);
        for (std::uint32_t index = 10; index < 30; ++index)
            phone.events.erase(index);
    });
    const std::string unlabelled = " --labels " + m_folder.Path().string();
    const std::tuple<std::string, const char*, const char*> cases[] = {
        {"contacts list", "\n44 contacts\n",
         "The 44 contacts that the handset counts were found; --all asks every index.\n"},
        {"contacts list" + unlabelled, "\n43 contacts\n",
         "The last 32 indexes that were asked hold no contact; --all asks every index.\n"},
        {"contacts list --all" + unlabelled, "\n44 contacts\n", ""},
        {"contacts export " + Path("all.vcf") + unlabelled, "44 contacts written", ""},
        {"events list --stored", "\n15 events\n",
         "The last 40 indexes that were asked hold no event; --all asks every index.\n"},
        {"events list --days 1 --all", "of 16 events\n", ""},
    };
    for (const auto& [words, out, err] : cases) {
        const Outcome outcome = Run(words);
        EXPECT_TRUE(Has(outcome.out, out)) << words << "\n" << outcome.out;
        EXPECT_EQ(outcome.err, err) << words;
    }
}
