// Messages through the exports, against a simulated handset: what a host sends and saves is what it lists.
#include <set>

#include "api/handset_fixture.h"

namespace {

class MessageExports : public HandsetTest
{
protected:
    MessageExports() { StartService(); }

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
            EXPECT_EQ(+message.uIndexValid, 1u);
            indexes.push_back(message.wIndex);
            message = Message(sizeof buffer_);
        }
        EXPECT_EQ(error, PHN_ERROR_NO_MORE_MESSAGES);
        return indexes;
    }

    uint8_t buffer_[400] = {};
};

TEST_F(MessageExports, EveryBoxListsAsManyMessagesAsItCounts)
{
    std::set<uint32_t> all;
    for (int32_t box = 0; box < 5; ++box) {
        const std::vector<uint32_t> indexes = List(box);
        EXPECT_EQ(indexes.size(), CALL(PHN_GetMessageCount)(box));
        all.insert(indexes.begin(), indexes.end());
    }
    EXPECT_EQ(all.size(), bench_.Handset().Snapshot().messages.size());
    PHN_SMS_MESSAGE message = Message(sizeof buffer_);
    EXPECT_EQ(CALL(PHN_GetNextMessage)(&message), PHN_ERROR_NO_MORE_MESSAGES); // a count ends the listing
}

TEST_F(MessageExports, AMessageIsSentSavedMarkedAndDeleted)
{
    const uint8_t pdu[] = {0,    4,    3,    0x00, 0xD5, 0x54, 8, 15,   1,  7, 0x10, 0x2C,
                           0x8C, 0xBB, 0x36, 0x6F, 0,    8,    1, 0x40, 10, 1, 0x40};
    std::copy_n(pdu, sizeof pdu, buffer_);
    PHN_SMS_MESSAGE message = Message(sizeof pdu);
    ASSERT_EQ(CALL(PHN_SendMessage)(&message), PHN_ERROR_NONE);
    const uint16_t sent = message.wIndex;
    message = Message(sizeof pdu);
    ASSERT_EQ(CALL(PHN_SaveMessage)(&message), PHN_ERROR_NONE);
    const uint16_t saved = message.wIndex;
    const auto stored = [&](uint16_t index) { return bench_.Handset().Snapshot().messages.at(index); };
    for (const uint16_t index : {sent, saved}) {
        EXPECT_EQ(stored(index).address, "555");
        EXPECT_EQ(stored(index).body, "Hello");
        EXPECT_EQ(stored(index).priority, 1u);
        EXPECT_EQ(stored(index).replyOption, 1u);
    }
    EXPECT_EQ(List(1).back(), saved);
    EXPECT_EQ(List(2).back(), sent);

    EXPECT_EQ(CALL(PHN_SetMessageStatus)(sent, 0), PHN_ERROR_NONE);
    EXPECT_EQ(stored(sent).status, 2u);
    EXPECT_EQ(CALL(PHN_SetMessageStatus)(sent, 1), PHN_ERROR_NONE);
    EXPECT_EQ(stored(sent).status, 1u);
    EXPECT_EQ(CALL(PHN_DeleteMessage)(sent), PHN_ERROR_NONE);
    EXPECT_EQ(CALL(PHN_DeleteMessage)(sent), PHN_ERROR_MESSAGE_NOT_FOUND);
    EXPECT_EQ(CALL(PHN_DeleteAllMessages)(1), PHN_ERROR_NONE);
    EXPECT_EQ(List(1), std::vector<uint32_t>());
    EXPECT_NE(List(2), std::vector<uint32_t>());

    message = Message(sizeof pdu);
    message.pIS637Data = nullptr;
    EXPECT_EQ(CALL(PHN_SendMessage)(&message), PHN_ERROR_INVALID_PARAMETER);
    bench_.TakeLog();
    bench_.Handset().AddFault("status=7@15*1");
    EXPECT_EQ(CALL(PHN_GetMessageCount)(0), 0u);
    EXPECT_EQ(bench_.TakeLog().back(),
              "CCalderApp\tError\tPHN_GetMessageCount - pInstance->m_pSMSObject->GetMessageCount returned false.");
}

} // namespace
