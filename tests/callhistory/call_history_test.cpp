// The call history on a port in memory: what it asks, which lists it joins, and what of an entry reaches the host.
#include "callhistory/call_history.h"

#include "link/service_fixture.h"
#include "phn_platform_test.h"

#include <cstring>
#include <tuple>

namespace {

Bytes EntryBytes(uint32_t id, std::u16string_view text = u"", uint32_t value = 0)
{
    Bytes bytes;
    for (const uint32_t number : {id, 0xEEEEEEEEu, value})
        Put32(bytes, number);
    bytes.insert(bytes.end(), {0x17, 0x3B});
    Put16(bytes, 0x1234);
    bytes.insert(bytes.end(), {0xFF, 0x0C});
    Put16(bytes, 2009);
    bytes.resize(100, 0xEE);
    PutWide(bytes, text, 52);
    return bytes;
}

class CallTest : public ServiceTest
{
protected:
    CallTest() : ServiceTest("CCallHistory") { tail_ = 0; }

    void AnswerEntry(uint32_t id) { Answer({0, 1}, EntryBytes(id)); }

    bool Count(int32_t type, uint32_t* count) { return calls_.GetCallEntryCount(Device(), type, count); }
    PHN_ERROR First(int32_t type) { return Run(calls_, &CCallHistory::GetFirstCallEntry, type, &entry_); }
    PHN_ERROR Next() { return Run(calls_, &CCallHistory::GetNextCallEntry, &entry_); }
    PHN_ERROR Clear(int32_t type) { return Run(calls_, &CCallHistory::ClearCallEntries, type); }

    // Since the last call these requests were sent: the command and the parameters of each.
    void ExpectRequests(const std::vector<std::vector<uint32_t>>& expected)
    {
        std::vector<Bytes> requests;
        for (const std::vector<uint32_t>& numbers : expected)
            requests.push_back(Request(numbers.front(), {numbers.begin() + 1, numbers.end()}));
        EXPECT_EQ(TakeRequests(), requests);
    }

    using Requests = std::vector<std::vector<uint32_t>>;

    CCallHistory calls_;
    PHN_CALL_ENTRY entry_{};
};

TEST_F(CallTest, AnEntryReachesTheHostFieldByField)
{
    // All 22 bytes of the text are expected; of the last, half a character would fit.
    const std::tuple<const char*, std::u16string, std::string> cases[] = {
        {"1252", u"", ""},
        {"1252", u"\u00E9\u4E2D!", "\xE9?!"},
        {"1252", std::u16string(52, u'1'), std::string(22, '1')},
        {"932", u"123456789012345678901\u65E5", "123456789012345678901"},
    };
    for (const auto& [codePage, text, expected] : cases) {
        platform_test::NameAnsiCodePage(codePage);
        Bytes two = EntryBytes(9, text, 75);
        Append(two, EntryBytes(10));
        Answer({0, 2}, two);
        entry_ = {};
        ASSERT_EQ(First(0), PHN_ERROR_NONE);
        PHN_CALL_ENTRY entry{84, {}, 75000, {}, 2009, 12, 255, 0x17, 0x3B, 0x1234, {}};
        expected.copy(entry.szEntryText, sizeof entry.szEntryText);
        EXPECT_EQ(std::memcmp(&entry_, &entry, sizeof entry), 0) << testing::PrintToString(entry_);
    }
    platform_test::NameAnsiCodePage(nullptr);
    ExpectRequests(Requests(std::size(cases), {26, 4}));
    // The entry behind the first one is asked for by the first one's id.
    AnswerEntry(10);
    EXPECT_EQ(Next(), PHN_ERROR_NONE);
    ExpectRequests({{27, 4, 9}});
    EXPECT_EQ(port_->lastTimeout, 15000u);
}

TEST_F(CallTest, CountsAreTheSumOfJoinedLists)
{
    const auto expect = [&](int32_t type, bool counted, uint32_t expected, const Requests& requests) {
        uint32_t count = 77;
        EXPECT_EQ(Count(type, &count), counted);
        EXPECT_EQ(count, expected);
        ExpectRequests(requests);
    };
    Answer({0, 6});
    expect(0, true, 6, {{25, 4}});
    Answer({0, 7});
    expect(2, true, 7, {{25, 1}});
    Answer({0, 3});
    Answer({0, 2});
    expect(1, true, 5, {{25, 2}, {25, 3}});
    Answer({0, 3});
    Answer({1, 2});
    expect(1, false, 3, {{25, 2}, {25, 3}});
    Answer({0, 2}, {}, 4);
    expect(1, false, 0, {{25, 2}});
}

TEST_F(CallTest, ReadsJoinedListsAsOne)
{
    constexpr PHN_ERROR kEnd = PHN_ERROR_NO_MORE_ENTRIES;
    constexpr int32_t kNext = -1;
    // The list that is begun, the ids that the handset answers with (0: the list has ended), and what is asked.
    const auto expect = [&](int32_t type, const std::vector<uint32_t>& ids, PHN_ERROR expected,
                            const Requests& requests) {
        for (const uint32_t id : ids)
            id ? AnswerEntry(id) : Answer({5, 0});
        EXPECT_EQ(type == kNext ? Next() : First(type), expected);
        ExpectRequests(requests);
    };
    expect(1, {11}, 0, {{26, 2}});
    expect(kNext, {12}, 0, {{27, 2, 11}});
    expect(kNext, {0, 3}, 0, {{27, 2, 12}, {26, 3}});
    expect(kNext, {4}, 0, {{27, 3, 3}});
    expect(kNext, {0}, kEnd, {{27, 3, 4}});
    // The first list is empty; no reply says so more than one with no entries.
    Answer({0, 0});
    expect(1, {5}, 0, {{26, 2}, {26, 3}});
    expect(kNext, {0}, kEnd, {{27, 3, 5}});
    // Both are empty. The place that was read before is still there.
    expect(1, {0, 0}, kEnd, {{26, 2}, {26, 3}});
    expect(kNext, {0}, kEnd, {{27, 3, 5}});
    // Any other failure ends the step.
    Answer({1, 0});
    expect(1, {}, PHN_ERROR_NOT_FOUND, {{26, 2}});
    expect(1, {6}, 0, {{26, 2}});
    Answer({0, 1}, {}, 7);
    expect(kNext, {}, PHN_ERROR_STATUS_7, {{27, 2, 6}});
    Answer({5, 0});
    Answer({3, 1});
    expect(kNext, {}, PHN_ERROR_COMMUNICATION, {{27, 2, 6}, {26, 3}});
    // The end of any other list is the end.
    expect(2, {0}, kEnd, {{26, 1}});
}

TEST_F(CallTest, ACountEndsAReading)
{
    EXPECT_EQ(Next(), PHN_ERROR_NO_MORE_ENTRIES);
    AnswerEntry(11);
    EXPECT_EQ(First(0), 0u);
    Answer({0, 1});
    uint32_t count = 0;
    EXPECT_TRUE(Count(0, &count));
    TakeRequests();
    log_.TakeLines();
    EXPECT_EQ(Next(), PHN_ERROR_NO_MORE_ENTRIES);
    EXPECT_EQ(log_.TakeLines(), (Lines{"CCallHistory Comment GetNextCallEntry being executed.",
                                       "CCallHistory Error GetNextCallEntry - GetFirstCallEntry was not called."}));
    ExpectRequests({});
    AnswerEntry(11); // Clearing does not.
    EXPECT_EQ(First(0), 0u);
    Answer({});
    EXPECT_EQ(Clear(2), 0u);
    AnswerEntry(12);
    EXPECT_EQ(Next(), 0u);
    ExpectRequests({{26, 4}, {28, 1}, {27, 4, 11}});
}

TEST_F(CallTest, ClearsBothOfJoinedLists)
{
    Answer({});
    Answer({});
    EXPECT_EQ(Clear(1), 0u);
    ExpectRequests({{28, 2}, {28, 3}});
    log_.TakeLines();
    Answer({}, {}, 4);
    EXPECT_EQ(Clear(1), PHN_ERROR_NO_SERVICE_OBJECT);
    ExpectRequests({{28, 2}});
    Answer({});
    port_->answers.push_back({.reply = Bytes(7)});
    EXPECT_EQ(Clear(1), PHN_ERROR_FAILED);
    EXPECT_EQ(log_.TakeLines(),
              (Lines{"CCallHistory Comment ClearCallEntries being executed.",
                     "CCallHistory Error ClearEntry - rcRxHeader.wStatus = 4(0x4).",
                     "CCallHistory Error ClearCallEntries - 1st ClearEntry returned false.",
                     "CCallHistory Comment ClearCallEntries being executed.",
                     "CCallHistory Error ClearEntry - dwRetBufferLen(7, 0x7) is less than DEV_RX_HEADER(8, 0x8).",
                     "CCallHistory Error ClearCallEntries - 2nd ClearEntry returned false."}));
}

TEST_F(CallTest, EachCheckOfAReplyHasItsLineAndItsCode)
{
    ExpectChecks(
        {"GetFirstCallEntry", "GetEntry", [this] { return First(0); }, 16, "CH_RET_CNT_RES", "rcCHEntry.dwResult"});
}

TEST_F(CallTest, RepliesThatHoldLessThanTheySayFail)
{
    const auto expect = [&](std::initializer_list<uint32_t> numbers, size_t bytes, const std::string& line) {
        Answer(numbers, Bytes(bytes));
        EXPECT_EQ(First(0), PHN_ERROR_NO_MORE_ENTRIES);
        EXPECT_EQ(log_.TakeLines().back(), "CCallHistory Error GetEntry - " + line);
        EXPECT_EQ(+entry_.uSize, 0u);
    };
    expect({5, 1}, 0, "rcCHEntry.dwResult = 5(0x5).");
    expect({0, 0}, 0, "rcCHEntry.dwNumOfEntries is less than or equal to 0.");
    expect({0, 2}, 300, "dwPtr(300) is less than data to copy(408).");
    expect({0, 1}, 203, "dwPtr(203) is less than data to copy(204).");
    // As many entries as make their bytes a small number, if that were counted in 32 bits.
    expect({0, 0x40000001}, 8000, "dwPtr(8000) is less than data to copy(204).");
    uint32_t count = 1;
    Answer({6, 1});
    EXPECT_FALSE(Count(0, &count));
    EXPECT_EQ(log_.TakeLines().back(), "CCallHistory Error GetCount - rcCHEntry.dwResult = 6(0x6).");
}

} // namespace
