// The message service on a port in memory: what it sends, what it makes of replies, and where its listing stands.
#include "link/service_fixture.h"
#include "sms/message_bytes.h"
#include "sms/sms.h"

namespace {

constexpr uint8_t kPdu[] = {0, 4, 2, 0x00, 0x48, 8, 5, 1, 3, 0x10, 0x0C, 0x10}; // to "2", the text "A"

class MessageTest : public ServiceTest
{
protected:
    static constexpr size_t kRoom = 400;

    MessageTest() : ServiceTest("CSMS") {}

    PHN_SMS_MESSAGE Outgoing(const uint8_t* pdu = kPdu, size_t length = sizeof kPdu)
    {
        buffer_.assign(pdu, pdu + length);
        return Message(static_cast<uint32_t>(length));
    }

    PHN_SMS_MESSAGE Message(uint32_t size)
    {
        buffer_.resize(std::max<size_t>(size, buffer_.size()));
        return {0, buffer_.data(), size, 0, 0};
    }

    // One listing step; the codes, and the index that came.
    PHN_ERROR First(int32_t box, uint32_t room = kRoom) { return Step(room, &CSMS::GetFirstMessage, box); }
    PHN_ERROR Next(uint32_t room = kRoom) { return Step(room, &CSMS::GetNextMessage); }

    // A listing of box 0 that has returned message 7.
    void Begin()
    {
        Answer({});
        Answer({0, 1}, ToBytes({.index = 7}));
        ASSERT_EQ(First(0), PHN_ERROR_NONE);
        port_->requests.clear();
        log_.TakeLines();
    }

    Bytes LastRequest() const { return port_->requests.back(); }

    CSMS sms_;
    Bytes buffer_;
    PHN_SMS_MESSAGE last_{};

private:
    template <typename... Arguments>
    PHN_ERROR Step(uint32_t room, Arguments... arguments)
    {
        buffer_.assign(room, 0);
        last_ = Message(room);
        const PHN_ERROR error = Run(sms_, arguments..., &last_);
        const bool done = error == PHN_ERROR_NONE;
        EXPECT_EQ(+last_.uSize, done ? sizeof last_ : 0);
        EXPECT_EQ(+last_.uIndexValid, done ? 1u : 0u);
        return error;
    }
};

TEST_F(MessageTest, CountsInTheHandsetsBoxes)
{
    constexpr uint32_t kBoxes[] = {0, 2, 1, 3, 4};
    uint32_t count = 9;
    for (int32_t type = 0; type < 5; ++type) {
        Answer({0, 0x12345678});
        EXPECT_TRUE(sms_.GetMessageCount(Device(), type, &count));
        EXPECT_EQ(count, 0x12345678u);
        EXPECT_EQ(TakeRequest(), Request(15, {kBoxes[type]}));
    }
    EXPECT_EQ(port_->lastTimeout, 15000u);
    log_.TakeLines();
    Answer({1, 5});
    EXPECT_FALSE(sms_.GetMessageCount(Device(), 0, &count));
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(log_.TakeLines(), (Lines{"CSMS Comment GetMessageCount being executed.",
                                       "CSMS Error GetMessageCount - rcSMSMsg.dwResult = 1(0x1)."}));
}

TEST_F(MessageTest, SendsAndSavesTheRecordOfThePdu)
{
    Bytes record = ToBytes({.address = u"2", .body = std::u16string(u"A\0", 2)});
    std::fill_n(record.begin() + 4, 4, uint8_t{0}); // the handset's own field
    const std::pair<decltype(&CSMS::SendMessage), uint32_t> cases[] = {{&CSMS::SendMessage, 16},
                                                                       {&CSMS::SaveMessage, 19}};
    for (const auto& [method, command] : cases) {
        PHN_SMS_MESSAGE message = Outgoing();
        Answer({0, 0x1ABCD});
        EXPECT_EQ(Run(sms_, method, &message), PHN_ERROR_NONE);
        EXPECT_EQ(+message.uSize, sizeof message);
        EXPECT_EQ(+message.uIndexValid, 1u);
        EXPECT_EQ(+message.wIndex, 0xABCD);
        EXPECT_EQ(TakeRequest(), Request(command, {}, record));
    }
    // Without Bearer Data the record travels alone.
    PHN_SMS_MESSAGE message = Outgoing(kPdu, 5);
    Answer({0, 1});
    EXPECT_EQ(Run(sms_, &CSMS::SendMessage, &message), PHN_ERROR_NONE);
    EXPECT_EQ(TakeRequest().size(), 178u);
}

TEST_F(MessageTest, APduThatIsRejectedIsNotSent)
{
    const auto expect = [&](PHN_SMS_MESSAGE message, PHN_ERROR code) {
        EXPECT_EQ(Run(sms_, &CSMS::SendMessage, &message), code);
        EXPECT_EQ(log_.TakeLines().back(), "CSMS Error SendMessage - Unable to decode SMS PDU.");
        EXPECT_EQ(Run(sms_, &CSMS::SaveMessage, &message), code);
        EXPECT_EQ(log_.TakeLines().back(), "CSMS Error SaveMessage - Unable to decode SMS PDU");
        EXPECT_EQ(message.uSize + message.uIndexValid, 0u);
    };
    expect({0, nullptr, 5, 0, 0}, PHN_ERROR_INVALID_PARAMETER);
    expect(Message(0), PHN_ERROR_INVALID_PARAMETER);
    expect(Outgoing(kPdu, 3), PHN_ERROR_PDU_NO_DESTINATION);
    EXPECT_TRUE(port_->requests.empty());
}

TEST_F(MessageTest, DeletesAndMarks)
{
    const auto expect = [&](const Bytes& request, DWORD timeout, auto method, auto... arguments) {
        Answer({0, 0});
        EXPECT_EQ(Run(sms_, method, arguments...), PHN_ERROR_NONE);
        EXPECT_EQ(TakeRequest(), request);
        EXPECT_EQ(port_->lastTimeout, timeout);
    };
    expect(Request(20, {0x2345}), 15000, &CSMS::DeleteMessage, 0x12345);
    expect(Request(21, {1}), 301000, &CSMS::DeleteAllMessages, 2);
    expect(Request(22, {0xFFFF, 1}), 15000, &CSMS::SetMessageStatus, 0x1FFFF, 5);
    expect(Request(22, {3, 2}), 15000, &CSMS::SetMessageStatus, 3, 0);
}

TEST_F(MessageTest, EachCheckOfAReplyHasItsLineAndItsCode)
{
    PHN_SMS_MESSAGE message = Outgoing();
    const auto check = [&](const std::string& name, auto method, auto... arguments) {
        ExpectChecks({name, name, [=, this] { return Run(sms_, method, arguments...); }, 16, "SMS_RET_INDEX_RES",
                      "rcSMSMsg.dwResult", "rcRxHeader.wStatus", PHN_ERROR_MESSAGE_NOT_FOUND});
    };
    check("SendMessage", &CSMS::SendMessage, &message);
    check("SaveMessage", &CSMS::SaveMessage, &message);
    check("DeleteMessage", &CSMS::DeleteMessage, 1);
    check("DeleteAllMessages", &CSMS::DeleteAllMessages, 1);
    check("SetMessageStatus", &CSMS::SetMessageStatus, 1, 1);
    const auto first = [&] {
        port_->answers.push_front({.reply = Bytes(8)}); // the store is opened first
        return First(1);
    };
    ExpectChecks({"GetFirstMessage", "GetMessage", first, 16, "SMS_RET_INFO_RES", "rcRxSMSMsg.dwResult",
                  "rcRxHeader.wStatus", PHN_ERROR_MESSAGE_NOT_FOUND});
    EXPECT_EQ(+message.uSize, 0u);
}

TEST_F(MessageTest, AListingAsksForTheMessageAfterTheLastOne)
{
    Answer({});
    Answer({0, 3}, Join({ToBytes({.index = 0x10007, .body = u"a"}), ToBytes({.index = 8}), ToBytes({.index = 9})}));
    ASSERT_EQ(First(1), PHN_ERROR_NONE);
    EXPECT_EQ(+last_.wIndex, 7);
    EXPECT_EQ(port_->requests, (std::vector<Bytes>{Request(46), Request(17, {2})}));
    Answer({0, 1}, ToBytes({.index = 1}));
    EXPECT_EQ(Next(), PHN_ERROR_NONE);
    EXPECT_EQ(LastRequest(), Request(18, {2, 0x10007}));
    // Its end leaves it as it is.
    for (int i = 0; i < 2; ++i) {
        log_.TakeLines();
        Answer({0, 0});
        EXPECT_EQ(Next(), PHN_ERROR_NO_MORE_MESSAGES);
        EXPECT_EQ(LastRequest(), Request(18, {2, 1}));
        EXPECT_EQ(log_.TakeLines(),
                  (Lines{"CSMS Comment GetNextMessage being executed.",
                         "CSMS Error GetMessage - rcRxSMSMsg.dwNumOfSMS is less than or equal to 0."}));
    }
}

TEST_F(MessageTest, NoOtherOperationLeavesAListingOpen)
{
    PHN_SMS_MESSAGE message{};
    uint32_t count = 0;
    const std::function<void()> others[] = {
        [&] { sms_.GetMessageCount(Device(), 0, &count); }, [&] { Run(sms_, &CSMS::SendMessage, &message); },
        [&] { Run(sms_, &CSMS::SaveMessage, &message); },   [&] { Run(sms_, &CSMS::DeleteMessage, 0); },
        [&] { Run(sms_, &CSMS::DeleteAllMessages, 0); },    [&] { Run(sms_, &CSMS::SetMessageStatus, 0, 0); },
    };
    for (const auto& other : others) {
        Begin();
        AnswerFailure();
        other();
        port_->requests.clear();
        port_->answers.clear();
        log_.TakeLines();
        EXPECT_EQ(Next(), PHN_ERROR_NO_MORE_MESSAGES);
        EXPECT_TRUE(port_->requests.empty());
        EXPECT_EQ(log_.TakeLines().back(), "CSMS Error GetNextMessage - GetFirstMessage was not called.");
    }
}

TEST_F(MessageTest, AFailedBeginChangesNoMoreThanTheBox)
{
    EXPECT_EQ(Next(), PHN_ERROR_NO_MORE_MESSAGES);
    Begin();
    Answer({}, {}, 4);
    EXPECT_EQ(First(1), PHN_ERROR_NO_SERVICE_OBJECT);
    EXPECT_EQ(log_.TakeLines(), (Lines{"CSMS Comment GetFirstMessage being executed.",
                                       "CSMS Error OpenBrew - rcRxHeader.wStatus = 4(0x4).",
                                       "CSMS Error GetFirstMessage - OpenBrew returned false."}));
    Answer({0, 0});
    Next();
    EXPECT_EQ(LastRequest(), Request(18, {0, 7}));
    Answer({});
    Answer({0, 0});
    EXPECT_EQ(First(1), PHN_ERROR_NO_MORE_MESSAGES);
    Answer({0, 0});
    Next();
    EXPECT_EQ(LastRequest(), Request(18, {2, 7}));
}

TEST_F(MessageTest, TooSmallABufferCostsNoMessage)
{
    const auto expectRefused = [&](PHN_ERROR error) {
        EXPECT_EQ(error, PHN_ERROR_BUFFER_TOO_SMALL);
        EXPECT_EQ(+last_.uSizeofData, 25u);
        EXPECT_EQ(buffer_, Bytes(buffer_.size()));
    };
    const Bytes second = ToBytes({.index = 8, .callback = u"12345"});
    Begin();
    Answer({0, 1}, second);
    expectRefused(Next(24));
    Answer({0, 1}, second);
    EXPECT_EQ(Next(25), PHN_ERROR_NONE);
    EXPECT_EQ(LastRequest(), Request(18, {0, 7}));
    EXPECT_EQ(+last_.wIndex, 8);
    EXPECT_EQ(+last_.uSizeofData, 25u);
    Answer({});
    Answer({0, 1}, second);
    expectRefused(First(0, 1));
}

// The handset's counts and sizes are no reason to read beyond its reply.
TEST_F(MessageTest, AFirstMessageThatIsNotWholeFails)
{
    tail_ = 0;
    const Bytes whole = ToBytes({.index = 3, .address = u"555", .body = std::u16string(u"Hello\0", 6)});
    Answer({});
    Answer({0, 1}, Bytes(whole.begin(), whole.end() - 1));
    EXPECT_EQ(First(0), PHN_ERROR_FAILED);
    EXPECT_EQ(log_.TakeLines().back(), "CSMS Error GetMessage - The first of 1(0x1) messages is not whole.");
    EXPECT_EQ(Next(), PHN_ERROR_NO_MORE_MESSAGES);
    for (const uint32_t size : {14u, 0x7FFFFFFFu, 0xFFFFFF54u, 0xFFFFFFFFu}) {
        Bytes reply = whole;
        for (size_t i = 0; i < 4; ++i)
            reply[168 + i] = static_cast<uint8_t>(size >> 8 * i);
        Answer({});
        Answer({0, 0xFFFFFFFF}, reply);
        EXPECT_EQ(First(0), PHN_ERROR_FAILED) << size;
    }
    // A count that the reply does not keep is none of the first message's concern, nor is an odd size.
    Bytes reply = whole;
    reply[168] = 11;
    Answer({});
    Answer({0, 0xFFFFFFFF}, reply);
    EXPECT_EQ(First(0), PHN_ERROR_NONE);
    EXPECT_EQ(+last_.wIndex, 3);
}

} // namespace
