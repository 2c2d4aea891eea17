// Where a listing ends: never before an entry that the handset counts, and not silently before any other.
#include "phnctl/handset_run.h"

namespace {

using Search = HandsetRun;

TEST_F(Search, EndsWhereNothingFurtherIsLikely)
{
    Handset().Change(0, [](simulator::Phone& phone) {
        phone.limits.contacts = phone.limits.events = 100;
        phone.contacts[90] = phone.contacts.extract(phone.contacts.rbegin()->first).mapped();
        phone.events[90] = phone.events.at(0);
        for (std::uint32_t index = 10; index < 30; ++index)
            phone.events.erase(index);
    });
    const std::string unlabelled = " --labels " + m_folder.Path().string();
    const struct
    {
        std::string words;
        const char* out;
        const char* err;
    } cases[] = {
        {"contacts list", "\n44 contacts\n",
         "phnctl: the 44 contacts that the handset counts were found; --all asks every index.\n"},
        {"contacts list" + unlabelled, "\n43 contacts\n",
         "phnctl: the last 32 indexes that were asked hold no contact; --all asks every index.\n"},
        {"contacts list --all" + unlabelled, "\n44 contacts\n", ""},
        {"contacts export " + Path("all.vcf") + unlabelled, "44 contacts written", ""},
        {"events list --stored", "\n15 events\n",
         "phnctl: the last 40 indexes that were asked hold no event; --all asks every index.\n"},
        {"events list --days 1 --all", "of 16 events\n", ""},
    };
    for (const auto& [words, out, err] : cases) {
        const Outcome outcome = Run(words);
        EXPECT_TRUE(Has(outcome.out, out)) << words << "\n" << outcome.out;
        EXPECT_EQ(outcome.err, err) << words;
    }
}

} // namespace
