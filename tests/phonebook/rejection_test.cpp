// Why a text is rejected, line by line.
#include <gtest/gtest.h>

#include "log/log_capture.h"
#include "phonebook/speed_dial_phonebook.h"

TEST(Rejection, EachReasonHasItsOwnLine)
{
    LogCapture log(0x00020006);
    const std::string head = "BEGIN:VCARD\nVERSION:3.0\nEND:VCARD\n";
    const std::string card = head + "FN:A\nTEL;TYPE=CELL:1\n";
    const std::string list = card + "X-PHN-SPEEDDIAL-LIST:";
    const std::string base = "CPhonebook::VCardToNorvik returned false.";
    const std::string compose = "ComposeNrvContact returned false.";
    const std::string count = "NBR_OF_DELIMITERS(5, 0x5) is not equal to nNbrDelimiters";
    const auto expect = [&](std::string text, const Lines& lines, bool isNull = false) {
        CSpeedDialPhonebook phonebook;
        PHN_CONTACT_RECORD host{sizeof host, isNull ? nullptr : text.data(), static_cast<uint32_t>(text.size())};
        PB_CONTACT record{};
        EXPECT_EQ(phonebook.VCardToNorvik(&record, &host), lines.empty()) << text;
        phonebook.FreeEntries(&record, 1);
        Lines expected;
        for (const std::string& line : lines)
            expected.push_back("CPhonebook Error VCardToNorvik - " + line);
        EXPECT_EQ(log.TakeLines(), expected) << text;
    };
    expect("null", {"pRecord->pContactData is NULL.", base}, true);
    expect("", {"VCARD_BEGIN not found.", base});
    expect("VERSION:3.0\nEND:VCARD\nFN:A\nEMAIL:a\n", {"VCARD_BEGIN not found.", base});
    expect("BEGIN:VCALENDAR\nVERSION\nEND\nFN:A\nEMAIL:a\n", {"VCARD_VCARD not found.", base});
    expect("BEGIN: vCard\nEND:VCARD\nFN:A\nEMAIL:a\n", {"VCARD_VERSION not found.", base});
    expect("BEGIN:VCARD\nVERSION\nFN:A\nEMAIL:a\n", {"VCARD_END not found.", base});
    expect("BEGIN:VCARD\nVERSION\nN:A\nEMAIL:a\nEND", {"VCARD_FN not found.", base});
    expect(head + "FN:A\n", {compose, base});
    expect(head + "FN:" + std::string(260, 'a') + "\n", {"Value of FN has 260 characters, more than 259.", base});
    expect(head + "FN:A\nTEL;TYPE=CELL:" + std::string(260, '-') + "\n",
           {"Value of TEL;TYPE=CELL has 260 characters, more than 259.", compose, base});
    expect(head + "FN:A\nX-PHN-EMAIL-2:" + std::string(53, 'a') + "\n",
           {"Value of X-PHN-EMAIL-2 is longer than 52 UTF-16 units.", compose, base});
    expect(card + "X-PHN-RINGER-ID:" + std::string(260, '0') + "\n",
           {"Value of X-PHN-RINGER-ID has 260 characters, more than 259.", base});
    expect(list + "1, 2,3,4,5\n", {"Digit is not number."});
    expect(list + "1,2,3,4\n", {count + "(4, 0x4)."});
    expect(list + "1,2,3,4,5,6,7,8,9,10\n", {count + "(10, 0xA)."});
    expect(card, {});
}
