// What a run calls lost, and what it does not: a handset as shipped holds entries, one that refuses may seem to
// succeed.
#include "soak/ledger.h"

#include "api/handset_fixture.h"
#include "soak/saved_messages.h"

namespace soak {
namespace {

class LedgerTest : public HandsetTest
{
protected:
    LedgerTest()
    {
        bench_.Handset().SetWatcher([this](const simulator::Exchange& exchange) { refusals_.Heed(exchange); });
        StartService();
    }

    void AddFault(const std::string& fault, std::uint32_t command)
    {
        bench_.Handset().AddFault(fault + "@" + std::to_string(command) + "*1");
    }

    const FindExport find_ = [this](const char* name) { return reinterpret_cast<void*>(Find<void()>(name)); };
    Refusals refusals_;
};

TEST_F(LedgerTest, AnEntryIsLostThatASuccessHasWrittenAndTheHandsetHasTaken)
{
    for (const Store& store : {Events(find_), Contacts(find_)}) {
        SCOPED_TRACE(store.name);
        Ledger ledger(store, refusals_, bench_.Handset().Snapshot());
        const auto lost = [&] { return ledger.Compare(bench_.Handset().Snapshot()).size(); };
        EXPECT_EQ(lost(), 0u) << "it was shipped with these";
        EXPECT_EQ(ledger.Write(0, 1, 7), PHN_ERROR_NONE);
        EXPECT_EQ(lost(), 0u);
        const simulator::Phone with = bench_.Handset().Snapshot();
        EXPECT_EQ(ledger.Delete(0, 1), PHN_ERROR_NONE);
        EXPECT_EQ(lost(), 0u);
        EXPECT_EQ(ledger.Compare(with).size(), 1u);

        EXPECT_EQ(ledger.Write(0, 1, 8), PHN_ERROR_NONE);
        EXPECT_EQ(ledger.Compare(with).size(), 1u);
        AddFault("status=5", store.write);
        AddFault("payload=3", store.write); // and of the status nothing is left
        EXPECT_EQ(ledger.Write(0, 1, 9), PHN_ERROR_NONE);
        EXPECT_EQ(lost(), 0u);
        AddFault("result=1", store.removeAll);
        EXPECT_EQ(ledger.DeleteAll() == PHN_ERROR_NONE, store.name == "event");
        EXPECT_EQ(lost(), 0u);
        EXPECT_EQ(ledger.Compare(with).size(), 1u);
    }
}

TEST_F(LedgerTest, AMessageIsLostThatWasSavedAndKeptThatWasDeleted)
{
    SavedMessages messages(find_, refusals_);
    const simulator::Phone without = bench_.Handset().Snapshot();
    EXPECT_EQ(messages.Save(5), PHN_ERROR_NONE);
    const simulator::Phone with = bench_.Handset().Snapshot();
    EXPECT_EQ(messages.Compare(with).size(), 0u);
    EXPECT_EQ(messages.Compare(without).size(), 1u);
    EXPECT_EQ(messages.DeleteAll(), PHN_ERROR_NONE);
    EXPECT_EQ(messages.Compare(bench_.Handset().Snapshot()).size(), 0u);
    EXPECT_EQ(messages.Compare(with).size(), 1u);
}

} // namespace
} // namespace soak
