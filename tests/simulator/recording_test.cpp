// Recordings: what packets say, what a mask lets through, and what a replay takes for the same conversation.
#include "simulator/all_requests.h"
#include "simulator/lines/device_directory.h"
#include "simulator/phone/utf.h"
#include "simulator/recording/mask.h"
#include "simulator/recording/replay.h"
#include "simulator/recording/turns.h"
#include "support/files.h"

#include <gtest/gtest.h>

#include <tuple>

namespace {

using namespace simulator;

const char* const kNumber = "5558675309";
const char* const kIdentityDigits = "05050508060705030A09"; // the number in an identity record, in hexadecimal
const char* const kName = "Zaphod Quux";
const char* const kMail = "zaphod@quux.example";
const char* const kCode = "Zq7K";
using host::kNewCode;

// A host and a simulated handset on a diagnostic port, with all that is sent.
class Talk
{
public:
    Talk()
    {
        handset.Change(0, [](Phone& phone) { phone.setup.lockCode = kCode; });
        handset.SetWatcher([this](const Exchange& exchange) { exchanges.push_back(exchange); });
    }

    void Ask(const Bytes& record)
    {
        const Bytes frame = host::Frame(++sequence_, record);
        packets.push_back({.time = {}, .sender = Sender::Host, .bytes = frame});
        packets.push_back({.time = {}, .sender = Sender::Handset, .bytes = host::Sent(session_.Receive(frame))});
    }

    Recording Recorded() const
    {
        Recording recording;
        for (const Packet& packet : packets)
            recording.packets.push_back({static_cast<unsigned>(recording.packets.size()) + 2, packet});
        return recording;
    }

    Handset handset;
    std::vector<Exchange> exchanges;
    std::vector<Packet> packets;

private:
    Session session_{handset, PortKind::Diagnostic};
    std::uint32_t sequence_ = 0;
};

void AskEverything(Talk& talk)
{
    const host::Requests requests(talk.handset.Snapshot(), kNumber);
    for (const Bytes& record : requests.All())
        talk.Ask(record);
}

TEST(Dissecting, ReadsWhatTheHandsetHasWritten)
{
    Talk talk;
    AskEverything(talk);
    Dissector dissector(PortKind::Diagnostic);
    for (std::size_t i = 0; i < talk.exchanges.size(); ++i) {
        const Exchange& told = talk.exchanges[i];
        SCOPED_TRACE(told.name);
        const Exchange request = dissector.Dissect(talk.packets[2 * i]).exchange;
        const Exchange reply = dissector.Dissect(talk.packets[2 * i + 1]).exchange;
        EXPECT_EQ(request.name + request.rejection, told.name + told.rejection);
        EXPECT_EQ(ToString(request.request), ToString(told.request));
        EXPECT_EQ(ToString(reply.reply), ToString(told.reply));
        EXPECT_EQ(reply.sequence, told.sequence);
    }
}

// All forms in which a value may lie in a file: itself, UTF-16, seven bits a character; as they are and in hexadecimal.
std::vector<std::string> FormsOf(const std::string& value)
{
    std::string wide, packed;
    for (const char16_t unit : ToUtf16(value))
        wide.append({static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)});
    unsigned bits = 0, count = 0;
    for (const char c : value) {
        bits = bits << 7 | static_cast<unsigned char>(c);
        for (count += 7; count >= 8; count -= 8)
            packed.push_back(static_cast<char>(bits >> (count - 8)));
    }
    std::vector<std::string> forms{value, wide, packed};
    for (const std::string& form : std::vector(forms)) {
        std::string hex;
        for (const char c : form) {
            constexpr char kDigits[] = "0123456789ABCDEF";
            hex.append({kDigits[static_cast<unsigned char>(c) >> 4], kDigits[c & 0xF]});
        }
        forms.push_back(hex);
    }
    return forms;
}

class Masking : public testing::Test
{
protected:
    Masking()
    {
        talk.handset.Change(0, [](Phone& phone) {
            phone.identity = {.number = kNumber,
                              .esn = 0x7E7D1234,
                              .info20 = kName,
                              .model = "Fjord 40",
                              .info148 = kName,
                              .info216 = kNumber,
                              .info253 = kName};
            phone.network.network26 = kName;
            phone.groups[0] = phone.pictures[1] = phone.ringers[0] = kName;
            phone.contacts[3] = {.text = kName,
                                 .firstName = kName,
                                 .lastName = kName,
                                 .entries = {{0, 0, kNumber, 0}, {0, 5, kMail, 0}}};
            phone.events[0].description = phone.events[0].uid = kName;
            phone.messages[0] = {.address = kNumber, .callback = kNumber, .body = kName};
            for (auto& [id, call] : phone.calls)
                call.text = kNumber;
        });
        AskEverything(talk);
        FieldWriter unknown = host::Record(99);
        unknown.Text("text", kName, 36);
        talk.Ask(unknown.Written());
        Bytes broken = host::Frame(1, unknown.Written());
        broken[20] ^= 1;
        talk.packets.push_back({.time = {}, .sender = Sender::Host, .bytes = broken});
        RecordingWriter writer(before, {});
        for (const Packet& packet : talk.packets)
            writer.Write(packet);
        MaskRecording(before, after);
    }

    Talk talk;
    const DeviceDirectory folder;
    const std::filesystem::path before = folder.Path() / "before", after = folder.Path() / "after";
};

TEST_F(Masking, LeavesNoPrivateValue)
{
    const std::string plain = ReadAll(before), masked = ReadAll(after);
    for (const char* value : {kNumber, kName, kMail, kIdentityDigits, "Zaphod", kCode, kNewCode, "2122125876"})
        for (const std::string& form : FormsOf(value))
            EXPECT_EQ(masked.find(form), std::string::npos) << value << " as " << testing::PrintToString(form);
    for (const char* value : {kNumber, kName, kMail, kIdentityDigits, kCode, kNewCode, "2122125876"})
        EXPECT_NE(plain.find(value), std::string::npos) << value << " was never there";
    EXPECT_NE(masked.find("Fjord 40"), std::string::npos);
}

TEST_F(Masking, LeavesAConversationOfEqualShape)
{
    const Recording masked = ReadRecording(after);
    ASSERT_EQ(masked.packets.size(), talk.packets.size());
    EXPECT_TRUE(masked.header.isMasked);
    EXPECT_GT(masked.packets.back().blanked, 0u);
    Dissector real(PortKind::Diagnostic), made(PortKind::Diagnostic);
    std::string address, dialled;
    for (std::size_t i = 0; i + 1 < talk.packets.size(); ++i) {
        const Dissection was = real.Dissect(talk.packets[i]), is = made.Dissect(masked.packets[i].packet);
        SCOPED_TRACE(was.exchange.name);
        EXPECT_EQ(is.plain.size(), was.plain.size());
        EXPECT_TRUE(is.isCheckRight);
        EXPECT_EQ(is.fields.size(), was.fields.size());
        for (const Field& field : is.exchange.request) {
            address = field.name == "address" ? field.value : address;
            dialled = field.name == "dial" ? field.value : dialled;
        }
    }
    EXPECT_EQ(address, dialled);
    EXPECT_EQ(address.size(), std::string(kNumber).size());
}

TEST(MaskingOfAModemPort, LeavesTheKnownAtLines)
{
    Mask mask(PortKind::Modem);
    const std::tuple<Sender, std::string, std::string> cases[] = {
        {Sender::Host, "AT+MODE=2\r", "AT+MODE=2\r"},
        {Sender::Handset, "AT+MODE=2\r\r\nOK\r\n", "AT+MODE=2\r\r\nOK\r\n"},
        {Sender::Host, "at+PIN=4711\r", "atxxxxxxxxx\r"},
        {Sender::Handset, "at+PIN=4711\r\r\n+PIN: 4711\r\nOK\r\n", "atxxxxxxxxx\r\r\nxxxxxxxxxx\r\nOK\r\n"},
        {Sender::Host, "4711", std::string(4, '\0')},
    };
    for (const auto& [sender, real, made] : cases) {
        const Bytes bytes =
            mask.Apply({.time = {}, .sender = sender, .bytes = {real.begin(), real.end()}}).packet.bytes;
        EXPECT_EQ(std::string(bytes.begin(), bytes.end()), made);
    }
}

class NoLine : public Line
{
    std::size_t Read(std::span<std::uint8_t>) override { return 0; }
    bool Write(std::span<const std::uint8_t>) override { return false; }
    bool Pause(std::chrono::milliseconds) override { return false; }
    void Interrupt() override {}
};

// The commands that a host sends where 1, 6, 5, 5, 35(0), 37(0), 35(0), 2 were recorded, and what is said of it.
TEST(Replaying, TellsWhatDepartsFromWhatHostsMayDo)
{
    Talk talk;
    const auto ask = [](std::uint32_t command) {
        return command == 35 || command == 37 ? host::Record(command, {0}) : host::Record(command, {});
    };
    for (const std::uint32_t command : {1, 6, 5, 5, 35, 37, 35, 2})
        talk.Ask(ask(command));
    const std::pair<std::vector<std::uint32_t>, std::string> cases[] = {
        {{1, 6, 5, 5, 35, 37, 35, 2}, ""},
        {{1, 6, 35, 37, 35, 2}, ""},                // polls less
        {{1, 5, 6, 5, 35, 5, 5, 37, 5, 35, 2}, ""}, // polls otherwise
        {{1, 1, 6, 6, 35, 35, 37, 35, 35, 2}, ""},  // asks again
        {{1, 6, 35, 37, 2}, "14: read contact id=0 was expected, but shutdown came"},
        {{1, 35}, "4: device information was expected, but read contact id=0 came"},
        {{1, 6, 35, 37, 35, 2, 35, 37}, "17: nothing more was expected, but delete contact id=0 came"},
        {{1, 6, 35, 37, 6}, "14: read contact id=0 was expected, but device information came"}, // may have changed
        {{1, 6, 35}, "12: delete contact id=0 was expected, but never came"},
    };
    for (const auto& [commands, expected] : cases) {
        SCOPED_TRACE(testing::PrintToString(commands));
        std::string said;
        Replay replay(talk.Recorded(), [&](const Deviation& deviation) {
            if (said.empty())
                said = std::to_string(deviation.line) + ": " + deviation.what;
        });
        Handset unused;
        NoLine line;
        const auto voice = replay.Conversations()(unused, line);
        std::uint32_t sequence = 0x7D7E0000; // other than the recorded ones, and stuffed
        for (const std::uint32_t command : commands) {
            const Bytes reply = host::Sent(voice->Receive(host::Frame(++sequence, ask(command))));
            if (!said.empty())
                break;
            const Bytes frame = Unstuff(std::span(reply).first(reply.size() - 1));
            EXPECT_EQ(host::NumberAt(frame, kReplySequenceOffset), sequence);
            EXPECT_EQ(host::NumberAt(frame, kReplyPayloadOffset), command);
            const std::uint16_t check = CheckValue(std::span(frame).first(frame.size() - 2));
            EXPECT_EQ(frame[frame.size() - 2] | frame.back() << 8, check);
        }
        if (const auto missing = replay.Missing(); missing && said.empty())
            said = std::to_string(missing->line) + ": " + missing->what;
        EXPECT_EQ(said, expected);
    }
}

// There, nothing but the recording tells where a request ends.
TEST(Replaying, FindsTheRequestsOfAModemPort)
{
    Handset handset;
    Session session(handset, PortKind::Modem);
    Recording recording;
    recording.header.kind = PortKind::Modem;
    Bytes all, answers;
    const std::string at = "AT\r", mode = "AT+MODE=2\r";
    for (const Bytes& request : {Bytes(at.begin(), at.end()), Bytes(mode.begin(), mode.end()), host::Record(5, {}),
                                 host::Record(35, {0}), host::Record(35, {1})}) {
        const Bytes answer = host::Sent(session.Receive(request));
        recording.packets.push_back({0, {.time = {}, .sender = Sender::Host, .bytes = request}});
        recording.packets.push_back({0, {.time = {}, .sender = Sender::Handset, .bytes = answer}});
        all.insert(all.end(), request.begin(), request.end());
        answers.insert(answers.end(), answer.begin(), answer.end());
    }
    Replay replay(recording, [](const Deviation& deviation) { ADD_FAILURE() << deviation.what; });
    NoLine line;
    const auto voice = replay.Conversations()(handset, line);
    EXPECT_EQ(host::Sent(voice->Receive(all)), answers);
    EXPECT_FALSE(replay.Missing());
}

} // namespace
