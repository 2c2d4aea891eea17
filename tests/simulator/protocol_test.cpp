// Frames, request checks and the modem dialogue of the simulated handset.
#include "simulator/commands/command.h"
#include "simulator/host_side.h"
#include "wire/golden_frames.h"

#include <gtest/gtest.h>

#include <map>
#include <tuple>

namespace {

using namespace simulator;

Bytes Answer(Session& session, const Bytes& bytes)
{
    return host::Sent(session.Receive(bytes));
}

TEST(SimulatorProtocol, AnswersGoldenRequestsWithGoldenReplies)
{
    Phone phone;
    phone.battery = {0x7E, 0x50};
    phone.variance = kNetworkChanged | kBatteryChanged | kMessagesChanged;
    phone.setup.lockCode = "1234";
    phone.ringers[3] = "Bell";
    Handset handset(phone);
    Session session(handset, PortKind::Diagnostic);
    std::map<std::uint32_t, Bytes> frames; // by the sequence identifier of the request
    for (const wire::GoldenFrame& request : wire::kRequests)
        frames[request.sequence] = request.frame;
    frames[6] = host::Frame(6, host::Record(35, {0}));
    frames[7] = host::Frame(7, host::Record(26, {1}));
    frames[8] = host::Frame(8, host::Record(40, {3}));
    for (const wire::GoldenFrame& reply : wire::kReplies)
        EXPECT_EQ(Answer(session, frames.at(reply.sequence)), reply.frame) << reply.name;
}

TEST(SimulatorProtocol, TurnsBrokenFramesAwayAndAnswersTheNext)
{
    const Bytes good = host::Frame(1, host::Record(1, {}));
    Bytes wrong = good;
    wrong[8] = 0x02;
    Bytes endless(kLongestRequestFrame, 0x4B);
    endless.push_back(kFlag);
    const std::tuple<Bytes, const char*> cases[] = {
        {wrong, "a wrong check value"},
        {{0x4B, 0x00, 0x7E}, "a frame of 2 bytes"},
        {{0x4B, 0x7D, 0x7E}, "an escape right before the flag"},
        {host::Frame(1, Bytes(5)), "a request of 5 bytes"},
        {endless, "a frame of more than 8193 bytes"},
    };
    Handset handset;
    Session session(handset, PortKind::Diagnostic);
    for (const auto& [bytes, reason] : cases) {
        EXPECT_EQ(Answer(session, bytes), Bytes()) << reason;
        EXPECT_EQ(handset.LastRejection(), reason);
        Bytes reply;
        for (const std::uint8_t byte : good)
            reply = Answer(session, {byte});
        EXPECT_FALSE(reply.empty()) << reason;
    }
    EXPECT_EQ(handset.Rejected(), std::size(cases));
}

TEST(SimulatorProtocol, HoldsEveryCommandToItsRequestSize)
{
    for (const Command& command : AllCommands()) {
        Handset handset;
        Session session(handset, PortKind::Diagnostic);
        FieldWriter record = host::Record(command.number);
        record.Zeros(command.requestSize - kRequestHeaderSize);
        Bytes bytes = record.Written();
        const auto isRefused = [&] { return Answer(session, host::Frame(1, bytes))[19] == kMalformedRequest; };
        bytes[4] = 2; // always 1
        EXPECT_TRUE(isRefused()) << command.name;
        bytes[4] = 1;
        EXPECT_FALSE(isRefused()) << command.name;
        bytes.push_back(0);
        EXPECT_TRUE(isRefused()) << command.name;
    }
    Handset handset;
    Session session(handset, PortKind::Diagnostic);
    EXPECT_EQ(Answer(session, host::Frame(1, host::Record(7, {})))[19], kUnknownCommand);
    FieldWriter contact = host::Record(36);
    contact.Zeros(460);
    contact.U32("entries", 0xFFFFFFFF);
    EXPECT_EQ(Answer(session, host::Frame(1, contact.Written()))[19], kMalformedRequest);
}

TEST(SimulatorProtocol, SpeaksAtAndThenRawRecordsOnTheModemPort)
{
    const std::string startup("\x01\x00\x00\x00\x01\x00", 6);
    const std::string started("\x01\x00\x00\x00\x01\x00\x00\x00", 8);
    const std::pair<std::string, std::string> cases[] = {
        {startup, ""}, // not before the mode is set
        {"AT+MODE=7\r", "AT+MODE=7\r\r\nERROR\r\n"},
        {"AT+MO", ""},
        {"DE=2\r", "AT+MODE=2\r\r\nOK\r\n"},
        {"ATE0\r", "ATE0\r\r\nOK\r\n"},
        {"at+mode?\r", "\r\n+MODE: 2\r\n\r\nOK\r\n"},
        {startup.substr(0, 3), ""},
        {startup.substr(3), started},
        {startup + "AT\r\n", started + "\r\nOK\r\n"},
        {"AT" + std::string(600, 'x') + "\r", ""},
        {"AT\r", "\r\nOK\r\n"},
    };
    Handset handset;
    Session session(handset, PortKind::Modem);
    for (const auto& [sent, expected] : cases) {
        const Bytes answer = Answer(session, Bytes(sent.begin(), sent.end()));
        EXPECT_EQ(std::string(answer.begin(), answer.end()), expected) << sent;
    }
}

} // namespace
