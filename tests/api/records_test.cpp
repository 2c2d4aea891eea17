// Contacts, events, messages and calls through the exports, against a simulated handset that keeps them.
#include <algorithm>
#include <set>

#include "api/handset_fixture.h"

namespace {

class RecordTest : public HandsetTest
{
protected:
    RecordTest() { StartService(); }

    // A text that is written is read, in a buffer that just holds it, can be written as it was read, and is deleted.
    template <typename Record, typename Set, typename Read>
    static void ExpectKept(Set& set, Read& get, decltype(PHN_DeleteContact)& remove, const std::string& line,
                           PHN_ERROR tooSmall, std::string text)
    {
        const auto call = [](auto& function, std::string& data) {
            Record record{sizeof record, data.data(), static_cast<uint32_t>(data.size())};
            return function(3, &record);
        };
        std::string first(4096, '#');
        ASSERT_EQ(call(set, text), PHN_ERROR_NONE);
        ASSERT_EQ(call(get, first), PHN_ERROR_NONE);
        first = first.c_str();
        EXPECT_NE(first.find(line), std::string::npos) << first;
        EXPECT_EQ(call(set, first), PHN_ERROR_NONE);
        std::string again(first.size() + 1, '#');
        EXPECT_EQ(call(get, again), PHN_ERROR_NONE);
        EXPECT_EQ(again, first + '\0');
        again.pop_back();
        EXPECT_EQ(call(get, again), tooSmall);
        EXPECT_EQ(again, std::string(first.size(), '\0'));
        text = "x";
        EXPECT_EQ(call(set, text), PHN_ERROR_INVALID_PARAMETER);
        EXPECT_EQ(remove(3), PHN_ERROR_NONE);
        EXPECT_EQ(call(get, text), PHN_ERROR_NOT_FOUND);
    }

    PHN_SMS_MESSAGE Message(size_t size)
    {
        PHN_SMS_MESSAGE message{};
        message.uSize = sizeof message;
        message.pIS637Data = buffer_;
        message.uSizeofData = static_cast<uint32_t>(size);
        return message;
    }

    // The indexes of a box, in the order of its listing.
    std::vector<uint32_t> List(int32_t box)
    {
        std::vector<uint32_t> indexes;
        PHN_SMS_MESSAGE message = Message(sizeof buffer_);
        PHN_ERROR error = CALL(PHN_GetFirstMessage)(box, &message);
        for (; error == PHN_ERROR_NONE; error = CALL(PHN_GetNextMessage)(&message)) {
            indexes.push_back(message.wIndex);
            message = Message(sizeof buffer_);
        }
        EXPECT_EQ(error, PHN_ERROR_NO_MORE_MESSAGES);
        EXPECT_EQ(indexes.size(), CALL(PHN_GetMessageCount)(box));
        return indexes;
    }

    uint8_t buffer_[400] = {};
};

TEST_F(RecordTest, ContactsAndTheirNames)
{
    ASSERT_EQ(CALL(PHN_DeleteAllContacts)(), PHN_ERROR_NONE);
    EXPECT_TRUE(bench_.Handset().Snapshot().contacts.empty());
    ExpectKept<PHN_CONTACT_RECORD>(CALL(PHN_SetContact), CALL(PHN_GetContact), CALL(PHN_DeleteContact),
                                   "\r\nFN:Alpha Beta\r\nEMAIL:alpha\r\nTEL;TYPE=WORK:5550100\r\n", PHN_ERROR_FAILED,
                                   "BEGIN:VCARD\nVERSION:3.0\nFN:Alpha Beta\nEMAIL:alpha\nTEL;TYPE=WORK:(555) 0100\n"
                                   "X-PHN-DEFAULT-NO:3\nX-PHN-SPEEDDIAL-LIST:0,0,4,0,0\nEND:VCARD\n");
    PHN_FIELD_SIZES sizes{};
    sizes.uSize = sizeof sizes;
    EXPECT_EQ(CALL(PHN_GetFieldSizes)(&sizes), PHN_ERROR_NONE);
    EXPECT_NE(+sizes.wFieldSize1, 0);
    for (auto* const call : {&CALL(PHN_GetGroup), &CALL(PHN_GetPictureID), &CALL(PHN_GetRingerID)}) {
        PHN_GROUP record{};
        record.uSize = sizeof record;
        EXPECT_EQ(call(1, &record), PHN_ERROR_NONE);
        EXPECT_EQ(+record.dwID, 1u);
        EXPECT_STRNE(record.szName, "");
    }
}

TEST_F(RecordTest, Events)
{
    ASSERT_EQ(CALL(PHN_DeleteAllEvents)(), PHN_ERROR_NONE);
    EXPECT_TRUE(bench_.Handset().Snapshot().events.empty());
    ExpectKept<PHN_EVENT_RECORD>(
        CALL(PHN_SetEvent), CALL(PHN_GetEvent), CALL(PHN_DeleteEvent), "\r\nDTSTART;TZID=PST:20090315T120000\r\n",
        PHN_ERROR_BUFFER_TOO_SMALL,
        "BEGIN:VCALENDAR\nVERSION:2.0\nBEGIN:VEVENT\nCREATED:20090105T080000Z\nLAST-MODIFIED:20090105T080000Z\n"
        "DESCRIPTION:Tea\nDTSTART;TZID=PST:20090315T120000\nDTEND;TZID=PST:20090315T130000\n"
        "RRULE:FREQ=DAILY;COUNT=5\nEND:VEVENT\nEND:VCALENDAR\n");
}

TEST_F(RecordTest, Messages)
{
    std::set<uint32_t> all;
    for (int32_t box = 0; box < 5; ++box) {
        for (const uint32_t index : List(box))
            all.insert(index);
    }
    EXPECT_EQ(all.size(), bench_.Handset().Snapshot().messages.size());

    const uint8_t pdu[] = {0,    4,    3,    0x00, 0xD5, 0x54, 8, 15,   1,  7, 0x10, 0x2C,
                           0x8C, 0xBB, 0x36, 0x6F, 0,    8,    1, 0x40, 10, 1, 0x40};
    std::copy_n(pdu, sizeof pdu, buffer_);
    const auto store = [&](auto& call) {
        PHN_SMS_MESSAGE message = Message(sizeof pdu);
        EXPECT_EQ(call(&message), PHN_ERROR_NONE);
        const simulator::Message stored = bench_.Handset().Snapshot().messages.at(message.wIndex);
        EXPECT_EQ(stored.address + stored.body, "555Hello");
        EXPECT_EQ(stored.priority + 2 * stored.replyOption, 3u);
        return message.wIndex;
    };
    const uint16_t sent = store(CALL(PHN_SendMessage));
    const uint16_t saved = store(CALL(PHN_SaveMessage)); // before a listing, which takes the buffer
    EXPECT_EQ(List(1).back(), saved);
    EXPECT_EQ(List(2).back(), sent);
    for (const uint32_t read : {0u, 1u}) {
        EXPECT_EQ(CALL(PHN_SetMessageStatus)(sent, read), PHN_ERROR_NONE);
        EXPECT_EQ(bench_.Handset().Snapshot().messages.at(sent).status, 2 - read);
    }
    EXPECT_EQ(CALL(PHN_DeleteMessage)(sent), PHN_ERROR_NONE);
    EXPECT_EQ(CALL(PHN_DeleteMessage)(sent), PHN_ERROR_MESSAGE_NOT_FOUND);
    EXPECT_EQ(CALL(PHN_DeleteAllMessages)(1), PHN_ERROR_NONE);
    EXPECT_TRUE(List(1).empty());
    EXPECT_FALSE(List(2).empty());
}

// Type 1 is the handset's lists 2 and 3, one behind the other.
TEST_F(RecordTest, Calls)
{
    const std::pair<int32_t, std::vector<uint32_t>> types[] = {{0, {4}}, {1, {2, 3}}, {2, {1}}};
    for (const auto& [type, lists] : types) {
        std::vector<uint32_t> expected, values;
        for (const uint32_t list : lists) {
            for (const auto& [id, call] : bench_.Handset().Snapshot().calls) {
                if (call.list == list)
                    expected.push_back(1000 * call.duration);
            }
        }
        PHN_CALL_ENTRY entry{};
        entry.uSize = sizeof entry;
        PHN_ERROR end = CALL(PHN_GetFirstCallEntry)(type, &entry);
        for (; end == PHN_ERROR_NONE; end = CALL(PHN_GetNextCallEntry)(&entry))
            values.push_back(+entry.uEntry8); // a copy: the field is not aligned
        EXPECT_EQ(values, expected) << type;
        EXPECT_EQ(end, PHN_ERROR_NO_MORE_ENTRIES);
        EXPECT_EQ(CALL(PHN_GetCallEntryCount)(type), expected.size());
        EXPECT_EQ(CALL(PHN_ClearCallEntries)(type), PHN_ERROR_NONE);
    }
    EXPECT_TRUE(bench_.Handset().Snapshot().calls.empty());
}

} // namespace
