// The phonebook's operations: what they send, what they make of the replies, and what the index map becomes.
#include <cstring>
#include <thread>
#include <tuple>

#include "link/service_fixture.h"
#include "phn_platform_test.h"
#include "phonebook/contact_bytes.h"
#include "phonebook/speed_dial_phonebook.h"

namespace {

constexpr const char* kCard = "BEGIN:VCARD\nVERSION:3.0\nFN:Alpha\nTEL;TYPE=CELL:123\nEND:VCARD\n";

class Phonebook : public ServiceTest
{
protected:
    Phonebook() : ServiceTest("CPhonebook") {}

    PHN_ERROR Get(DWORD index, std::string* text = nullptr)
    {
        std::vector<char> buffer(4096);
        PHN_CONTACT_RECORD record{0, buffer.data(), static_cast<uint32_t>(buffer.size())};
        const PHN_ERROR error = Run(&CPhonebook::GetContact, index, &record);
        EXPECT_EQ(+record.uSize, error == PHN_ERROR_NONE ? sizeof record : 0);
        if (text)
            *text = buffer.data();
        return error;
    }
    PHN_ERROR Set(DWORD index, std::string text)
    {
        PHN_CONTACT_RECORD record{0, text.data(), static_cast<uint32_t>(text.size())};
        const PHN_ERROR error = Run(&CPhonebook::SetContact, index, &record);
        EXPECT_EQ(+record.uSize, error == PHN_ERROR_NONE ? sizeof record : 0);
        return error;
    }

    void AnswerWith(const Contact& contact) { Answer({0, 0xEEEEEEEE, 1}, ToBytes(contact)); }

    // The record id that a request is for.
    uint32_t TakeRecord()
    {
        uint32_t record = 0xAAAAAAAA;
        std::memcpy(&record, &TakeRequest().at(6), sizeof record);
        return record;
    }

    template <typename Method, typename... Arguments>
    PHN_ERROR Run(Method method, Arguments... arguments)
    {
        return ServiceTest::Run(phonebook_, method, arguments...);
    }
    PHN_ERROR Delete(DWORD index) { return Run(&CPhonebook::DeleteContact, index); }
    PHN_ERROR DeleteAll() { return Run(&CPhonebook::DeleteAllContacts); }
    PHN_ERROR Sizes(PHN_FIELD_SIZES* sizes) { return Run(&CPhonebook::GetFieldSizes, sizes); }
    PHN_ERROR Group(DWORD id, PHN_GROUP* group) { return Run(&CPhonebook::GetGroup, id, group); }

    CSpeedDialPhonebook phonebook_;
};

TEST_F(Phonebook, EachCheckOfAReplyHasItsLineAndItsCode)
{
    PHN_FIELD_SIZES sizes{};
    PHN_GROUP group{};
    ExpectChecks({"GetFieldSizes", "GetFieldSizes", [&] { return Sizes(&sizes); }, 50, "PB_RET_FIELDSIZE_RES", ""});
    ExpectChecks(
        {"GetContact", "GetContact", [&] { return Get(1); }, 20, "PB_RET_INFO_CNT_RES", "prcPBRetInfo->dwResult"});
    ExpectChecks(
        {"GetGroup", "GetName", [&] { return Group(1, &group); }, 84, "PB_RET_NAME_RES", "rcPBRetName->dwResult"});
    const auto check = [this](const std::string& name, const std::string& result, auto run) {
        ExpectChecks({name, name, run, 16, "PB_RET_RES", result, "rcPBRetRes.wStatus"});
    };
    check("SetContact", "rcPBRetRes->dwResult", [this] { return Set(1, kCard); });
    check("DeleteContact", "rcPBRetRes.dwResult", [this] { return Delete(1); });
    check("DeleteAllContacts", "rcPBRetRes.dwResult", [this] { return DeleteAll(); });
}

TEST_F(Phonebook, FieldSizesAreCopiedFromWhatWasReceived)
{
    Answer({0xFFFF0001, 2, 3, 4, 5, 6, 0x10007, 0xFFFFFFFF, 9, 10, 11});
    PHN_FIELD_SIZES sizes{};
    ASSERT_EQ(Sizes(&sizes), PHN_ERROR_NONE);
    EXPECT_EQ(TakeRequest(), Request(34));
    const PHN_FIELD_SIZES expected{34, 1, 2, 3, 4, 5, 6, 7, 0xFFFFFFFF, 9, 10, 11};
    EXPECT_EQ(std::memcmp(&sizes, &expected, sizeof sizes), 0) << testing::PrintToString(sizes);

    Answer({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 0x44332211});
    port_->answers.back().reply.resize(50); // half of the last value; the other half reads as zero
    port_->answers.back().extra = 0;
    ASSERT_EQ(Sizes(&sizes), PHN_ERROR_NONE);
    EXPECT_EQ(+sizes.dwFieldSize11, 0x2211u);
}

TEST_F(Phonebook, ReadsTheFirstContactOfAReply)
{
    Bytes two = ToBytes({.first = u"Alpha", .entries = {{0, u"123"}}});
    Append(two, ToBytes({.first = u"Beta"}));
    for (const uint32_t count : {1u, 3u, 0xFFFFFFFFu}) { // whatever the handset claims beyond it
        Answer({0, 0, count}, two);
        std::string text;
        ASSERT_EQ(Get(5, &text), PHN_ERROR_NONE) << count;
        EXPECT_EQ(TakeRequest(), Request(35, {5}));
        EXPECT_NE(text.find("\r\nFN:Alpha\r\nTEL;TYPE=CELL:123\r\n"), std::string::npos) << text;
    }
}

TEST_F(Phonebook, NothingIsTakenOnAHostileReplysWord)
{
    const Bytes whole = ToBytes({.entries = {{0, u"123"}, {0, u"456"}}});
    Bytes cut(whole.begin(), whole.end() - 14); // the frame's 13 trailing bytes do not make up for it
    Bytes entries = ToBytes({});
    std::fill(entries.begin() + 460, entries.end(), uint8_t{0xFF});
    Bytes wrapping = ToBytes({}); // times 116 its count is 4 in 32 bits
    wrapping[460] = 0x35, wrapping[461] = 0xC2, wrapping[462] = 0x72, wrapping[463] = 0x0F;
    const std::string notWhole = "The first of 1(0x1) records is not whole.";
    const std::tuple<uint32_t, Bytes, PHN_ERROR, std::string> cases[] = {
        {0, {}, 304, "prcPBRetInfo->dwNumOfRecs = 0(0x0)."},
        {0xFFFFFFFF, {}, 104, "The first of -1(0xFFFFFFFF) records is not whole."},
        {1, cut, 104, notWhole},
        {1, entries, 104, notWhole},
        {1, wrapping, 104, notWhole},
    };
    for (const auto& [count, records, error, line] : cases) {
        Answer({0, 0, count}, records);
        EXPECT_EQ(Get(1), error) << line;
        EXPECT_EQ(TakeLines(),
                  (Lines{"CPhonebook Comment GetContact being executed.", "CPhonebook Error GetContact - " + line}));
    }
    // None of it was mapped.
    Answer({0, 1});
    EXPECT_EQ(Set(2, kCard), PHN_ERROR_NONE);
    port_->requests.clear();
    Answer({0, 0, 0});
    Get(1);
    EXPECT_EQ(TakeRecord(), 0u);
}

TEST_F(Phonebook, ATextThatDoesNotFitIsAFailedRead)
{
    AnswerWith({});
    char buffer[20];
    PHN_CONTACT_RECORD record{0, buffer, sizeof buffer};
    EXPECT_EQ(Run(&CPhonebook::GetContact, DWORD{1}, &record), PHN_ERROR_FAILED);
    EXPECT_EQ(TakeLines(), (Lines{"CPhonebook Comment GetContact being executed.",
                                  "CPhonebook Error NorvikToVCard - VCardFormatData returned false.",
                                  "CPhonebook Error GetContact - NorvikToVCard returned false."}));
}

TEST_F(Phonebook, AWriteSendsTheWholeRecordOrNothing)
{
    Answer({0, 7});
    ASSERT_EQ(Set(7, "BEGIN:VCARD\nVERSION:3.0\nFN:Alpha Beta\nTEL;TYPE=WORK:1 2\nEMAIL:a\nX-PHN-DEFAULT-NO:3\n"
                     "X-PHN-PICTURE-ID:3\nX-PHN-GROUP-ID:2\nX-PHN-RINGER-ID:1\nX-PHN-SPEEDDIAL-LIST:0,0,9,0,0\nEND\n"),
              PHN_ERROR_NONE);
    Contact contact{.record = 7, .first = u"Alpha", .last = u"Beta", .entries = {{3, u"12", 9, 1}, {5, u"a"}}};
    contact.group = 2;
    contact.pictureSet = 3;
    contact.ringer = 1;
    EXPECT_EQ(TakeRequest(), Request(36, {}, ToBytes(contact)));
    TakeLines();

    EXPECT_EQ(Set(7, "BEGIN:VCARD\nVERSION:3.0\nFN:Alpha\nEND:VCARD\n"), PHN_ERROR_INVALID_PARAMETER);
    EXPECT_TRUE(port_->requests.empty());
    EXPECT_EQ(TakeLines(), (Lines{"CPhonebook Comment SetContact being executed.",
                                  "CPhonebook Error VCardToNorvik - ComposeNrvContact returned false.",
                                  "CPhonebook Error VCardToNorvik - CPhonebook::VCardToNorvik returned false.",
                                  "CPhonebook Error SetContact - VCardToNorvik returned false."}));
}

TEST_F(Phonebook, AnIndexFollowsItsContactThroughWritesAndDeletions)
{
    const auto set = [this](DWORD index, uint32_t stored) {
        Answer({0, stored});
        EXPECT_EQ(Set(index, kCard), PHN_ERROR_NONE);
        return TakeRecord();
    };
    const auto get = [this](DWORD index) {
        Answer({0, 0, 0});
        EXPECT_EQ(Get(index), PHN_ERROR_NOT_FOUND);
        return TakeRecord();
    };
    EXPECT_EQ(get(7), 7u); // finding nothing maps nothing
    EXPECT_EQ(set(5, 7), 5u);
    EXPECT_EQ(set(7, 20), 0u); // record 7 is taken: the lowest free one is asked for
    EXPECT_EQ(get(7), 20u);
    EXPECT_EQ(set(5, 8), 7u); // the handset moves the contact
    EXPECT_EQ(get(8), 0u);

    Answer({4, 30}); // a refused write leaves the map as it was
    EXPECT_EQ(Set(5, kCard), PHN_ERROR_RESULT_4);
    EXPECT_EQ(TakeRecord(), 8u);
    EXPECT_EQ(get(5), 8u);

    AnswerWith({}); // a read maps what it asked for
    EXPECT_EQ(Get(8), PHN_ERROR_NONE);
    EXPECT_EQ(TakeRecord(), 0u);
    EXPECT_EQ(get(0), 1u);

    // And the record of index 5 after it.
    const std::tuple<uint32_t, PHN_ERROR, uint32_t> deletions[] = {
        {1, PHN_ERROR_NOT_FOUND, 8}, {8, PHN_ERROR_INVALID_PARAMETER, 5}, {0, PHN_ERROR_NONE, 5}};
    for (const auto& [result, error, after] : deletions) {
        Answer({result, 0});
        EXPECT_EQ(Delete(5), error);
        port_->requests.clear();
        EXPECT_EQ(get(5), after);
    }

    Answer({1, 0});
    EXPECT_EQ(DeleteAll(), PHN_ERROR_NOT_FOUND);
    EXPECT_EQ(TakeRequest(), Request(38));
    EXPECT_EQ(port_->lastTimeout, 301000u);
    EXPECT_EQ(get(7), 20u);
    EXPECT_EQ(port_->lastTimeout, 15000u);
    Answer({0, 0});
    EXPECT_EQ(DeleteAll(), PHN_ERROR_NONE);
    port_->requests.clear();
    EXPECT_EQ(get(7), 7u);
    EXPECT_EQ(get(20), 20u);
}

TEST_F(Phonebook, ADeletionLeavesTheHandsetAloneFirst)
{
    Answer({0, 0});
    std::thread host([this] { EXPECT_EQ(Delete(3), PHN_ERROR_NONE); });
    EXPECT_TRUE(platform_test::AwaitBlocked(40));
    EXPECT_TRUE(port_->requests.empty());
    platform_test::AdvanceClock(40);
    host.join();
    EXPECT_EQ(TakeRequest(), Request(37, {3}));
}

TEST_F(Phonebook, NamesAreWholeCharactersOfWhatFits)
{
    std::string cut = "x"; // half a character more would fit
    for (int i = 0; i < 31; ++i)
        cut += "\x93\xFA";
    const std::tuple<const char*, std::u16string, std::string> cases[] = {
        {"1252", u"Caf\u00E9", "Caf\xE9"},
        {"932", u"x" + std::u16string(35, u'\u65E5'), cut},
    };
    for (const auto& [codePage, stored, name] : cases) {
        platform_test::NameAnsiCodePage(codePage);
        Bytes field;
        PutWide(field, stored, 36);
        Answer({0}, field);
        PHN_GROUP group{};
        EXPECT_EQ(Group(9, &group), PHN_ERROR_NONE);
        EXPECT_EQ(TakeRequest(), Request(41, {9}));
        EXPECT_EQ(std::string(group.szName, sizeof group.szName), name + std::string(64 - name.size(), '\0'));
        EXPECT_EQ(+group.uSize, 72u);
        EXPECT_EQ(+group.dwID, 9u);
    }
    platform_test::NameAnsiCodePage(nullptr);
}

TEST_F(Phonebook, NumbersAreFilteredByCharactersNotByBytes)
{
    platform_test::NameAnsiCodePage("932");
    Answer({0, 1});
    EXPECT_EQ(Set(1, "BEGIN:VCARD\nVERSION:3.0\nFN:A\nTEL;TYPE=CELL:5\x82\x50\x82\x57\nEND\n"), PHN_ERROR_NONE);
    platform_test::NameAnsiCodePage(nullptr);
    // Without "p" and "w".
    EXPECT_EQ(TakeRequest(), Request(36, {}, ToBytes({.record = 1, .first = u"A", .entries = {{0, u"5"}}})));
}

TEST_F(Phonebook, ANameRecordSaysWhatWasAskedForEvenWhenItIsRefused)
{
    const auto expect = [this](auto method, const Bytes& request) {
        PHN_PICTURE_ID record{};
        AnswerFailure();
        EXPECT_EQ(Run(method, DWORD{0x01020304}, &record), PHN_ERROR_FAILED);
        EXPECT_EQ(TakeRequest(), request);
        EXPECT_EQ(+record.uSize, 72u);
        EXPECT_EQ(+record.dwID, 0x01020304u);
    };
    expect(&CPhonebook::GetPictureID, Request(39, {0x01020304, 0}));
    expect(&CPhonebook::GetRingerID, Request(40, {0x01020304}));
    const std::string failed = "CPhonebook Error GetName - ExecCmd failed with dwErrSts = 121(0x79).";
    EXPECT_EQ(TakeLines(), (Lines{"CPhonebook Comment GetPictureID being executed.", failed,
                                  "CPhonebook Comment GetRingerID being executed.", failed}));
}

} // namespace
