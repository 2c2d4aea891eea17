// What an exchange asks of the memory once the handset is served: the exports of a busy host cost none.
#include <gtest/gtest.h>

#include "failures/allocation_faults.h"
#include "failures/handset_process.h"
#include "phnnrv.h"
#include "support/surroundings.h"

namespace {

class AllocationsTest : public testing::TestWithParam<const char*>
{
protected:
    AllocationsTest()
    {
        setenv("PHNNRV_PROMPT_READS", GetParam(), 1);
        handset_.Tell("plug");
        allocation_faults::SpareThisThread();
        library_ = LoadLibraryA(PHN_LIBRARY);
    }
    ~AllocationsTest() override { FreeLibrary(library_); }

    template <typename Function>
    Function* Find(const char* name) const
    {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(library_, name)));
    }

    // Those of this thread in the call, and of all the library's meanwhile.
    template <typename Call>
    static uint64_t MadeBy(Call call)
    {
        allocation_faults::Arm(0, 0);
        {
            const allocation_faults::LibraryScope scope;
            EXPECT_EQ(call(), PHN_ERROR_NONE);
        }
        allocation_faults::Disarm();
        return allocation_faults::Made();
    }

    // The first time may cost something.
    template <typename Record>
    void ExpectNone(const char* name) const
    {
        const auto get = Find<PHN_ERROR(Record*)>(name);
        ASSERT_TRUE(get) << name;
        Record record{};
        record.uSize = sizeof record;
        const auto ask = [&] { return get(&record); };
        EXPECT_EQ(ask(), PHN_ERROR_NONE) << name;
        uint64_t made = MadeBy(ask);
        for (int more = 0; made != 0 && more < 5; ++more) // the library's own threads make some now and then
            made = MadeBy(ask);
        EXPECT_EQ(made, 0u) << name;
    }

private:
    const Surroundings surroundings_;
    const HandsetProcess handset_{surroundings_.devices};
    HMODULE library_ = nullptr;
};

TEST_P(AllocationsTest, AStatusMakesNoneAndAContactFew)
{
    const auto startup = Find<decltype(PHN_Startup)>("PHN_Startup");
    const auto getContact = Find<decltype(PHN_GetContact)>("PHN_GetContact");
    ASSERT_TRUE(startup && getContact);
    ASSERT_EQ(startup(), PHN_ERROR_NONE);
    char text[4096];
    const auto askContact = [&](uint32_t index) {
        PHN_CONTACT_RECORD record{sizeof record, text, sizeof text};
        return getContact(index, &record);
    };
    EXPECT_GT(MadeBy([&] { return askContact(0); }), 0u) << "they are counted";
    ExpectNone<PHN_BATTERY_INFO>("PHN_GetBatteryInfo");
    ExpectNone<PHN_CONNECTION_INFO>("PHN_GetConnectionInfo");
    ExpectNone<PHN_NETWORK_INFO>("PHN_GetNetworkInfo");
    ExpectNone<PHN_DEVICE_INFO>("PHN_GetDeviceInfo");
    for (uint32_t index = 1; index <= 4; ++index)
        EXPECT_LE(MadeBy([&] { return askContact(index); }), 8u) << "contact " << index;
}

INSTANTIATE_TEST_SUITE_P(Reads, AllocationsTest, testing::Values("0", "1"));

} // namespace
