// Call lists through the exports, against a simulated handset.
#include "api/handset_fixture.h"

namespace {

class CallExports : public HandsetTest
{
protected:
    CallExports() { StartService(); }

    // The values of a list's entries in order, and the code that ended it.
    std::vector<uint32_t> Read(int32_t type, PHN_ERROR* end)
    {
        std::vector<uint32_t> values;
        PHN_CALL_ENTRY entry{};
        entry.uSize = sizeof entry;
        for (*end = CALL(PHN_GetFirstCallEntry)(type, &entry); *end == PHN_ERROR_NONE;
             *end = CALL(PHN_GetNextCallEntry)(&entry))
            values.push_back(+entry.uEntry8); // a copy: the field is not aligned
        return values;
    }
};

// Type 1 is the handset's lists 2 and 3, one behind the other.
TEST_F(CallExports, ListsAreReadCountedAndCleared)
{
    const std::pair<int32_t, std::vector<uint32_t>> types[] = {{0, {4}}, {1, {2, 3}}, {2, {1}}};
    for (const auto& [type, lists] : types) {
        std::vector<uint32_t> expected;
        for (const uint32_t list : lists) {
            for (const auto& [id, call] : bench_.Handset().Snapshot().calls) {
                if (call.list == list)
                    expected.push_back(1000 * call.duration);
            }
        }
        PHN_ERROR end = PHN_ERROR_NONE;
        EXPECT_EQ(Read(type, &end), expected) << type;
        EXPECT_EQ(end, PHN_ERROR_NO_MORE_ENTRIES);
        EXPECT_EQ(CALL(PHN_GetCallEntryCount)(type), expected.size());
        EXPECT_EQ(CALL(PHN_ClearCallEntries)(type), PHN_ERROR_NONE);
        EXPECT_EQ(CALL(PHN_GetCallEntryCount)(type), 0u);
    }
    EXPECT_TRUE(bench_.Handset().Snapshot().calls.empty());
}

// The type that names no list asks the handset nothing and leaves no line but the entry's.
TEST_F(CallExports, TheTypeWithoutAListIsAnsweredAtOnce)
{
    PHN_CALL_ENTRY entry{};
    entry.uSize = sizeof entry;
    entry.uEntry8 = 1;
    EXPECT_EQ(CALL(PHN_GetCallEntryCount)(3), 0u);
    EXPECT_EQ(CALL(PHN_ClearCallEntries)(3), PHN_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(CALL(PHN_GetFirstCallEntry)(3, &entry), PHN_ERROR_NO_MORE_ENTRIES);
    EXPECT_EQ(+entry.uEntry8, 0u);
    EXPECT_EQ(bench_.TakeLog(), (std::vector<std::string>{
                                    "CCalderApp\tComment\tPHN_GetCallEntryCount is being executed.",
                                    "CCalderApp\tComment\tPHN_ClearCallEntries is being executed.",
                                    "CCalderApp\tComment\tPHN_GetFirstCallEntry is being executed.",
                                }));
    bench_.Handset().AddFault("status=7@28*1");
    EXPECT_EQ(CALL(PHN_ClearCallEntries)(0), PHN_ERROR_STATUS_7);
    EXPECT_EQ(bench_.TakeLog().back(), "CCalderApp\tError\tPHN_ClearCallEntries - pInstance->m_pCallHistoryObject->"
                                       "ClearCallEntries returned falseweError = 102(0x66).");
}

} // namespace
