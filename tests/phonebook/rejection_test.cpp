// Why a text is rejected, line by line.
#include <gtest/gtest.h>

#include "log/log_capture.h"
#include "phonebook/speed_dial_phonebook.h"

#include <tuple>

namespace {

TEST(Rejection, EachReasonHasItsOwnLine)
{
    LogCapture log(0x00020006);
    const std::string head = "BEGIN:VCARD\nVERSION:3.0\nEND:VCARD\n";
    const std::string card = head + "FN:A\nTEL;TYPE=CELL:1\n";
    const std::string list = "X-PHN-SPEEDDIAL-LIST:";
    const std::string_view base = "CPhonebook Error VCardToNorvik - CPhonebook::VCardToNorvik returned false.";
    const std::string_view compose = "CPhonebook Error VCardToNorvik - ComposeNrvContact returned false.";
    const std::tuple<std::string, std::vector<std::string_view>> cases[] = {
        {"", {"CPhonebook Error VCardToNorvik - VCARD_BEGIN not found.", base}},
        {"VERSION:3.0\nEND:VCARD\nFN:A\nEMAIL:a\n", {"CPhonebook Error VCardToNorvik - VCARD_BEGIN not found.", base}},
        {"BEGIN:VCALENDAR\nVERSION\nEND\nFN:A\nEMAIL:a\n",
         {"CPhonebook Error VCardToNorvik - VCARD_VCARD not found.", base}},
        {"BEGIN: vCard\nEND:VCARD\nFN:A\nEMAIL:a\n",
         {"CPhonebook Error VCardToNorvik - VCARD_VERSION not found.", base}},
        {"BEGIN:VCARD\nVERSION\nFN:A\nEMAIL:a\n", {"CPhonebook Error VCardToNorvik - VCARD_END not found.", base}},
        {"BEGIN:VCARD\nVERSION\nN:A\nEMAIL:a\nEND", {"CPhonebook Error VCardToNorvik - VCARD_FN not found.", base}},
        {head + "FN:A\n", {compose, base}},
        {head + "FN:" + std::string(260, 'a') + "\n",
         {"CPhonebook Error VCardToNorvik - Value of FN has 260 characters, more than 259.", base}},
        {head + "FN:A\nTEL;TYPE=CELL:" + std::string(260, '-') + "\n",
         {"CPhonebook Error VCardToNorvik - Value of TEL;TYPE=CELL has 260 characters, more than 259.", compose, base}},
        {head + "FN:A\nX-PHN-EMAIL-2:" + std::string(53, 'a') + "\n",
         {"CPhonebook Error VCardToNorvik - Value of X-PHN-EMAIL-2 is longer than 52 UTF-16 units.", compose, base}},
        {card + "X-PHN-RINGER-ID:" + std::string(260, '0') + "\n",
         {"CPhonebook Error VCardToNorvik - Value of X-PHN-RINGER-ID has 260 characters, more than 259.", base}},
        {card + list + "1, 2,3,4,5\n", {"CPhonebook Error VCardToNorvik - Digit is not number."}},
        {card + list + "1,2,3,4\n",
         {"CPhonebook Error VCardToNorvik - NBR_OF_DELIMITERS(5, 0x5) is not equal to nNbrDelimiters(4, 0x4)."}},
        {card + list + "1,2,3,4,5,6,7,8,9,10\n",
         {"CPhonebook Error VCardToNorvik - NBR_OF_DELIMITERS(5, 0x5) is not equal to nNbrDelimiters(10, 0xA)."}},
        {card, {}},
    };
    for (auto [text, lines] : cases) {
        CSpeedDialPhonebook phonebook;
        PHN_CONTACT_RECORD host{sizeof host, text.data(), static_cast<uint32_t>(text.size())};
        PB_CONTACT record{};
        EXPECT_EQ(phonebook.VCardToNorvik(&record, &host), lines.empty()) << text;
        phonebook.FreeEntries(&record, 1);
        EXPECT_EQ(log.TakeLines(), std::vector<std::string>(lines.begin(), lines.end())) << text;
    }

    CSpeedDialPhonebook phonebook;
    PHN_CONTACT_RECORD host{sizeof host, nullptr, 5};
    PB_CONTACT record{};
    EXPECT_FALSE(phonebook.VCardToNorvik(&record, &host));
    EXPECT_EQ(log.TakeLines(),
              (std::vector<std::string>{"CPhonebook Error VCardToNorvik - pRecord->pContactData is NULL.",
                                        std::string(base)}));
}

} // namespace
