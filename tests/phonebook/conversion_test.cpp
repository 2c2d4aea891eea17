// Both directions of the vCard conversion, as the members of the phonebook carry them out.
#include <gtest/gtest.h>

#include <tuple>

#include "phonebook/contact_bytes.h"
#include "phonebook/speed_dial_phonebook.h"

namespace {

struct Conversion
{
    bool converted;
    std::string text;
};

// The text of a record, read into a buffer of `room` bytes.
Conversion Write(const Contact& contact, size_t room = 8192)
{
    const Bytes bytes = ToBytes(contact);
    CSpeedDialPhonebook phonebook;
    PB_CONTACT record{};
    EXPECT_EQ(phonebook.ParseRecords(bytes.data(), static_cast<DWORD>(bytes.size()), &record, 1), 1u);
    std::vector<char> buffer(room, '#');
    PHN_CONTACT_RECORD host{sizeof host, buffer.data(), static_cast<uint32_t>(room)};
    const bool converted = phonebook.NorvikToVCard(&host, &record);
    phonebook.FreeEntries(&record, 1);
    if (!converted) {
        EXPECT_EQ(std::string(buffer.begin(), buffer.end()), std::string(room, '#')) << "a failure writes nothing";
        return {false, {}};
    }
    return {true, buffer.data()};
}

// The bytes of a text's record; none if the text is rejected.
Bytes Read(std::string text)
{
    CSpeedDialPhonebook phonebook;
    PHN_CONTACT_RECORD host{sizeof host, text.data(), static_cast<uint32_t>(text.size())};
    PB_CONTACT record{};
    Bytes bytes;
    const auto append = [&bytes](const void* data, size_t length) {
        const auto* const begin = static_cast<const uint8_t*>(data);
        bytes.insert(bytes.end(), begin, begin + length);
    };
    if (phonebook.VCardToNorvik(&record, &host)) {
        append(&record.rcRecord, sizeof record.rcRecord);
        append(record.pEntries, record.rcRecord.dwNumOfEntries * sizeof(PB_NUMBER_ENTRY));
    }
    phonebook.FreeEntries(&record, 1);
    return bytes;
}

std::string Card(const std::string& lines)
{
    return "BEGIN:VCARD\r\nVERSION:3.0\r\n" + lines + "END:VCARD\r\n";
}

TEST(Conversion, ARecordBecomesText)
{
    const auto expect = [](const Contact& contact, const std::string& lines, const std::string& defaultNo,
                           const std::string& speedDials, const std::string& group = "0",
                           const std::string& picture = "0", const std::string& ringer = "0") {
        EXPECT_EQ(Write(contact).text,
                  Card(lines + "REV:N/A\r\nUID:N/A\r\nX-PHN-GROUP-ID:" + group + "\r\nX-PHN-PICTURE-ID:" + picture +
                       "\r\nX-PHN-RINGER-ID:" + ringer + "\r\nX-PHN-DEFAULT-NO:" + defaultNo +
                       "\r\nX-PHN-SPEEDDIAL-LIST:" + speedDials + "\r\n"));
    };
    const std::string none = "0,0,0,0,0";
    const std::u16string wide(36, u'n');
    const std::string full(36, 'n');
    Contact contact{.first = u"Alpha", .last = u"Beta", .entries = {{0, u"5550100", 2, 1}, {5, u"alpha"}}};
    contact.group = 1;
    contact.pictureSet = 9;
    contact.ringer = 4;
    expect(contact, "FN:Alpha Beta\r\nTEL;TYPE=CELL:5550100\r\nEMAIL:alpha\r\n", "1", "2,0,0,0,0", "1", "0", "4");
    contact = {.first = u"Alpha", .group = 0xFFFFFFFF, .pictureGet = 0x80000000};
    expect(contact, "FN:Alpha\r\n", "", "", "-1", "-2147483648", "0");
    expect({.last = u"Beta"}, "FN:Beta\r\n", "", "");
    expect({}, "", "", "");
    expect({.first = wide, .last = wide}, "FN:" + full + " " + full + "\r\n", "", "");
    expect({.first = u"M\u00FCller", .last = u"\u65E5"}, "FN:M\xFCller ?\r\n", "", ""); // code page 1252
    expect({.entries = {{1, u"2", 0xFFFFFFFF, 1}}}, "X-PHN-MOBILE-2:2\r\n", "4", "0,0,0,-1,0");
    expect({.entries = {{0xFFFFFFFF, u"1", 1, 1}}}, "", "", none);
    expect({.entries = {{0, std::u16string(52, u'1')}}}, "TEL;TYPE=CELL:" + std::string(52, '1') + "\r\n", "", none);
    // The default has no position.
    expect({.entries = {{0, u"1", 0, 1}, {5, u"a", 0, 1}}}, "TEL;TYPE=CELL:1\r\nEMAIL:a\r\n", "", none);
    // Every type and its position; the last default counts, of two speed dials of a type the first.
    contact = {};
    contact.entries = {{6, u"b", 9},  {4, u"5", 50}, {3, u"4", 40}, {2, u"3", 30}, {1, u"2", 20, 1},
                       {0, u"1", 10}, {5, u"a", 9},  {0, u"6", 60}, {7, u"x", 70}, {4, u"", 0, 7}};
    expect(contact,
           "X-PHN-EMAIL-2:b\r\nTEL;TYPE=FAX:5\r\nTEL;TYPE=WORK:4\r\nTEL;TYPE=HOME:3\r\nX-PHN-MOBILE-2:2\r\n"
           "TEL;TYPE=CELL:1\r\nEMAIL:a\r\nTEL;TYPE=CELL:6\r\nTEL;TYPE=FAX:\r\n",
           "5", "10,30,40,20,50");
}

TEST(Conversion, TheTextMustFitTheHostsBufferAndItsOwnLimit)
{
    Contact contact{.first = u"Alpha", .entries = {{0, u"5550100"}}};
    const std::string text = Write(contact).text;
    EXPECT_EQ(Write(contact, text.size() + 1).text, text);
    EXPECT_FALSE(Write(contact, text.size()).converted);
    EXPECT_FALSE(Write(contact, 1).converted);

    // Lines of 14 + 52 + 2 characters, and one that fills the 4095 and then goes beyond them.
    contact.entries.assign(57, {0, std::u16string(52, u'1')});
    const size_t length = Write(contact).text.size();
    ASSERT_LT(length, 4095u);
    contact.entries.push_back({5, std::u16string(4095 - length - sizeof "EMAIL:\r\n" + 1, u'a')});
    EXPECT_EQ(Write(contact).text.size(), 4095u);
    contact.entries.back().value += u'a';
    EXPECT_FALSE(Write(contact).converted);
}

TEST(Conversion, ATextBecomesARecord)
{
    const std::tuple<const char*, Contact> cases[] = {
        {"fn:Alpha Beta Gamma\ntel;type=cell:(555) 123-4567 P 8W9\n",
         {.first = u"Alpha", .last = u"Beta Gamma", .entries = {{0, u"5551234567p8w9"}}}},
        {"FN:\nX-PHN-EMAIL-2:b\nEMAIL:a\nTEL;TYPE=FAX:5\nTEL;TYPE=WORK:4\nTEL;TYPE=HOME:3\nX-PHN-MOBILE-2:2\n"
         "TEL;TYPE=CELL:1\nX-PHN-SPEEDDIAL-LIST:1,2,3,4,5\nX-PHN-DEFAULT-NO:4\n",
         {.entries = {{6, u"b"}, {5, u"a"}, {4, u"5", 5}, {3, u"4", 3}, {2, u"3", 2}, {1, u"2", 4, 1}, {0, u"1", 1}}}},
        {"FN\nREV:A\nEMAIL:a:b \n", {.first = u"A", .entries = {{5, u"a:b "}}}}, // a colon on a later line
        // Only the first line of a key counts.
        {"FN:A\nTEL;TYPE=CELL:1\nEMAIL:a\nTEL;TYPE=CELL:2\nX-PHN-DEFAULT-NO: +1x\n",
         {.first = u"A", .entries = {{0, u"1", 0, 1}, {5, u"a"}}}},
        // No value, or nothing to dial: an entry all zero, which has the place of a mobile number in the list.
        {"FN:A\nTEL;TYPE=FAX:none\nEMAIL:\nTEL;TYPE=WORK:1\nX-PHN-DEFAULT-NO:5\nX-PHN-SPEEDDIAL-LIST:7,0,8,0,9\n",
         {.first = u"A", .entries = {{0, u"", 7}, {0, u"", 7}, {3, u"1", 8}}}},
        {"FN:A\nEMAIL:a\nX-PHN-DEFAULT-NO:6\nX-PHN-SPEEDDIAL-LIST:\n", {.first = u"A", .entries = {{5, u"a"}}}},
        {"FN:A\nEMAIL:a\nX-PHN-DEFAULT-NO:0\nX-PHN-GROUP-ID:123\nX-PHN-RINGER-ID:7\nX-PHN-PICTURE-ID:-1\n",
         {.first = u"A", .entries = {{5, u"a"}}, .group = 123, .pictureSet = 0xFFFFFFFF, .ringer = 7}},
        {"FN:A\nEMAIL:a\nX-PHN-GROUP-ID:4294967294\nX-PHN-RINGER-ID:-2147483648\nX-PHN-PICTURE-ID:4294967298\n",
         {.first = u"A", .entries = {{5, u"a"}}, .group = 0xFFFFFFFE, .pictureSet = 0xFFFFFFFF, .ringer = 0x80000000}},
        {"FN:M\xFCller\nEMAIL:\x80\n", {.first = u"M\u00FCller", .entries = {{5, u"\u20AC"}}}}, // code page 1252
    };
    for (const auto& [lines, contact] : cases)
        EXPECT_EQ(Read(Card(lines)), ToBytes(contact)) << lines;
}

TEST(Conversion, NamesAreCutAndValuesRejectedAtTheirLimits)
{
    const std::string name(37, 'n');
    const std::u16string cut(36, u'n');
    EXPECT_EQ(Read(Card("FN:" + name + " " + name + "\nEMAIL:a\n")),
              ToBytes({.first = cut, .last = cut, .entries = {{5, u"a"}}}));

    const std::tuple<std::string, bool> cases[] = {
        {"EMAIL:" + std::string(52, 'a'), true},
        {"EMAIL:" + std::string(53, 'a'), false},
        {"TEL;TYPE=FAX:" + std::string(52, '1'), true},
        {"TEL;TYPE=FAX:" + std::string(53, '1'), false},
        {"TEL;TYPE=FAX:" + std::string(259, '-'), true},
        {"TEL;TYPE=FAX:" + std::string(260, '-'), false},
        {"EMAIL:a\nX-PHN-DEFAULT-NO:" + std::string(260, '1'), false},
        {"EMAIL:a\nX-PHN-PICTURE-ID:" + std::string(260, '1'), false},
        {"EMAIL:a\nX-PHN-SPEEDDIAL-LIST:1,2,3,4," + std::string(251, '5'), true},
        {"EMAIL:a\nX-PHN-SPEEDDIAL-LIST:1,2,3,4," + std::string(252, '5'), false},
    };
    for (const auto& [line, isAccepted] : cases)
        EXPECT_EQ(Read(Card("FN:A\n" + line + "\n")).empty(), !isAccepted) << line;
    EXPECT_FALSE(Read(Card("FN:" + std::string(259, 'a') + "\nEMAIL:a\n")).empty());
}

} // namespace
