// Contacts through the exports, against a simulated handset: what a host writes is what it reads.
#include "api/handset_fixture.h"

namespace {

class ContactExports : public HandsetTest
{
protected:
    ContactExports() { StartService(); }

    PHN_ERROR Set(uint32_t index, std::string text)
    {
        PHN_CONTACT_RECORD record{sizeof record, text.data(), static_cast<uint32_t>(text.size())};
        return CALL(PHN_SetContact)(index, &record);
    }

    PHN_ERROR Get(uint32_t index, std::string* text, uint32_t room = 4096)
    {
        text->assign(room, '#');
        PHN_CONTACT_RECORD record{sizeof record, text->data(), room};
        const PHN_ERROR error = CALL(PHN_GetContact)(index, &record);
        text->resize(text->find('\0'));
        return error;
    }
};

TEST_F(ContactExports, AContactIsWrittenReadReplacedAndDeleted)
{
    ASSERT_EQ(CALL(PHN_DeleteAllContacts)(), PHN_ERROR_NONE);
    std::string text;
    EXPECT_EQ(Get(3, &text), PHN_ERROR_NOT_FOUND);
    EXPECT_EQ(text, "");
    ASSERT_EQ(Set(3, "BEGIN:VCARD\nVERSION:3.0\nFN:Alpha Beta\nEMAIL:alpha\nTEL;TYPE=WORK:(555) 0100\n"
                     "X-PHN-DEFAULT-NO:3\nX-PHN-SPEEDDIAL-LIST:0,0,4,0,0\nEND:VCARD\n"),
              PHN_ERROR_NONE);
    ASSERT_EQ(Get(3, &text), PHN_ERROR_NONE);
    EXPECT_NE(text.find("\r\nFN:Alpha Beta\r\nEMAIL:alpha\r\nTEL;TYPE=WORK:5550100\r\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\r\nX-PHN-DEFAULT-NO:3\r\nX-PHN-SPEEDDIAL-LIST:0,0,4,0,0\r\n"), std::string::npos) << text;

    // What was read can be written as it is, and reads the same.
    const std::string first = text;
    ASSERT_EQ(Set(3, first), PHN_ERROR_NONE);
    ASSERT_EQ(Get(3, &text, static_cast<uint32_t>(first.size() + 1)), PHN_ERROR_NONE);
    EXPECT_EQ(text, first);
    EXPECT_EQ(Get(3, &text, static_cast<uint32_t>(first.size())), PHN_ERROR_FAILED);
    EXPECT_EQ(text, "");

    EXPECT_EQ(Set(3, "no card"), PHN_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(CALL(PHN_DeleteContact)(3), PHN_ERROR_NONE);
    EXPECT_EQ(Get(3, &text), PHN_ERROR_NOT_FOUND);
}

TEST_F(ContactExports, SizesAndNamesArrive)
{
    PHN_FIELD_SIZES sizes{};
    sizes.uSize = sizeof sizes;
    EXPECT_EQ(CALL(PHN_GetFieldSizes)(&sizes), PHN_ERROR_NONE);
    EXPECT_NE(+sizes.wFieldSize1, 0);

    const auto named = [](auto* call, uint32_t id) {
        PHN_GROUP record{};
        record.uSize = sizeof record;
        EXPECT_EQ(call(id, &record), PHN_ERROR_NONE);
        EXPECT_EQ(+record.dwID, id);
        return std::string(record.szName);
    };
    EXPECT_NE(named(Find<decltype(PHN_GetGroup)>("PHN_GetGroup"), 1), "");
    EXPECT_NE(named(Find<decltype(PHN_GetPictureID)>("PHN_GetPictureID"), 1), "");
    EXPECT_NE(named(Find<decltype(PHN_GetRingerID)>("PHN_GetRingerID"), 1), "");
}

} // namespace
