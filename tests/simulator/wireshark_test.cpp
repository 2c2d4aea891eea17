// What Wireshark's script reads of the wire, against what the simulated handset says it was asked and has answered.
#include "simulator/all_requests.h"
#include "simulator/commands/command.h"
#include "simulator/host_side.h"
#include "simulator/lines/device_directory.h"
#include "simulator/recording/pcapng.h"
#include "support/tshark.h"
#include "wire/golden_frames.h"

#include <optional>
#include <random>
#include <set>
#include <tuple>

namespace {

using namespace simulator;
using wire::Hex;

constexpr const char* kNote = "4194304";  // the expert severity of a refusal
constexpr const char* kError = "8388608"; // and of what is damaged

using Columns = std::set<std::string>;

class Wireshark : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!IsTsharkInstalled())
            GTEST_SKIP() << "tshark is not installed";
    }

    void Open(PortKind kind) { capture_.emplace(file_, kind); }
    void Capture(Sender sender, const Bytes& bytes)
    {
        capture_->Write({.time = std::chrono::system_clock::now(), .sender = sender, .bytes = bytes});
    }

    // A line for each packet: what it has in these columns.
    std::vector<std::string> Read(const Columns& columns)
    {
        std::string fields = " -T fields -E 'aggregator=;'";
        for (const std::string& column : columns)
            fields += " -e " + column;
        return Tshark(file_, "-2 -X lua_script:" WIRESHARK_SCRIPT + fields);
    }

private:
    const DeviceDirectory folder_;
    const std::string file_ = (folder_.Path() / "pcapng").string();
    std::optional<PcapngWriter> capture_;
};

class WiresharkPort : public Wireshark, public testing::WithParamInterface<PortKind>
{
};

INSTANTIATE_TEST_SUITE_P(Kinds, WiresharkPort, testing::Values(PortKind::Diagnostic, PortKind::Modem));

// As tshark prints it.
std::string Escaped(const std::string& text)
{
    std::string escaped;
    for (const char character : text)
        escaped += character == '\r' ? "\\r" : character == '\n' ? "\\n" : std::string(1, character);
    return escaped;
}

// One cell for each column, with all values of that name.
std::string Line(const Fields& fields, const Columns& columns)
{
    std::string line;
    for (const std::string& column : columns) {
        std::string cell;
        for (const Field& field : fields)
            if (field.name == column)
                cell += (cell.empty() ? "" : ";") + Escaped(field.value);
        line += cell + '\t';
    }
    line.pop_back();
    return line;
}

// What is to be read of a request or of its reply, and of the packet that is the other one.
Fields Expected(const Exchange& exchange, const Fields& told, const std::string& link, std::size_t packet)
{
    Fields fields{{"phnnrv." + link, std::to_string(packet)}};
    if (exchange.sequence)
        fields.push_back({"phnnrv.sequence", std::to_string(*exchange.sequence)});
    if (exchange.command != kAtCommands)
        fields.push_back({"phnnrv.command", std::to_string(exchange.command)});
    for (const Field& field : told) {
        fields.push_back({"phnnrv." + field.name, field.value});
        const bool isOutcome = (field.name == "status" && &field == &exchange.reply.front()) || field.name == "result";
        if (isOutcome && field.value != "0")
            fields.push_back({"_ws.expert.severity", kNote});
    }
    return fields;
}

TEST_P(WiresharkPort, ReadsWhatTheHandsetReadAndWrote)
{
    std::vector<Fields> packets;
    std::set<std::uint32_t> carriedOut;
    Handset handset;
    handset.Set("network/network26", "Señal");
    handset.Set("contacts/3/lastName", "Ærø 📞");
    handset.Set("messages/0/body", "¿Qué?\n漢字");
    handset.SetWatcher([&](const Exchange& exchange) {
        packets.push_back(Expected(exchange, exchange.request, "response_in", packets.size() + 2));
        packets.push_back(Expected(exchange, exchange.reply, "response_to", packets.size()));
        if (packets.back().back().name != "_ws.expert.severity")
            carriedOut.insert(exchange.command);
    });
    Open(GetParam());
    Session session(handset, GetParam());
    const auto exchange = [&](const Bytes& bytes) {
        Capture(Sender::Host, bytes);
        Capture(Sender::Handset, host::Sent(session.Receive(bytes)));
    };
    const bool isFramed = GetParam() == PortKind::Diagnostic;
    if (!isFramed)
        for (const std::string_view line : {"AT\r", "AT+MODE=2\r", "ate0\r", "AT?\r"})
            exchange(Bytes(line.begin(), line.end()));
    std::uint32_t sequence = 0x7D7D;
    const host::Requests requests(handset.Snapshot(), "*22");
    for (const Bytes& record : requests.All())
        exchange(isFramed ? host::Frame(++sequence, record) : record);

    for (const Command& command : AllCommands())
        EXPECT_TRUE(carriedOut.contains(command.number)) << command.name;
    Columns columns;
    for (const Fields& packet : packets)
        for (const Field& field : packet)
            columns.insert(field.name);
    const std::vector<std::string> lines = Read(columns);
    EXPECT_EQ(lines.size(), packets.size());
    for (std::size_t i = 0; i < std::min(lines.size(), packets.size()); ++i)
        EXPECT_EQ(lines[i], Line(packets[i], columns)) << "packet " << i + 1;
}

TEST_F(Wireshark, ReadsTheGoldenFrames)
{
    Open(PortKind::Diagnostic);
    Capture(Sender::Host, wire::kRequests[1].frame);
    Capture(Sender::Host, wire::kRequests[2].frame);
    for (const wire::GoldenFrame& reply : std::span(wire::kReplies).subspan(4))
        Capture(Sender::Handset, reply.frame);
    Capture(Sender::Handset, BuildReply({.sequence = 2, .payload = Bytes(8)})); // a handset that repeats no command
    EXPECT_EQ(Read({"_ws.col.Info", "phnnrv.check"}),
              (std::vector<std::string>{
                  "#2 write parameters: parameter1=126 parameter2=125 parameter3=300\t",
                  "#3 phone lock: lock=1 code=\"0000\"\t",
                  "#6 read contact: status=0 result=0 records=0\t",
                  "#7 first call: status=0 result=5\t",
                  "#8 ringer id: status=0 result=0 name=\"Bell\"\t",
                  "#2 write parameters: status=0\t",
              }));
}

const Columns kTroubles{"_ws.expert.message", "_ws.expert.severity", "_ws.lua.error", "_ws.malformed.dissector_bug"};

// Its severity is that of an error, and neither the script nor Wireshark have failed over it.
bool IsMarked(const std::string& line)
{
    return line.find(kError) != std::string::npos && line.ends_with("\t\t");
}

TEST_F(Wireshark, SaysWhatIsWrongWithAFrame)
{
    const Bytes startup = Hex("01000000 0100 0000");
    const std::tuple<Sender, Bytes, std::string> cases[] = {
        {Sender::Host, host::Frame(1, Hex("010000")), "command has 3 of its 4 bytes"},
        {Sender::Host, host::Frame(1, Hex("01000000 0200")), "A header that is not of this protocol"},
        {Sender::Host, host::Frame(1, host::Record(17, {0, 0})), "Bytes behind the end of the record"},
        {Sender::Host, host::Frame(1, {}), "No record in a frame of 10 bytes"},
        {Sender::Host, host::Frame(1, Bytes(8183)), "More bytes than there may be"},
        {Sender::Host, Hex("4B7D7E"), "An escape of no special byte"},
        {Sender::Host, Hex("4C001300 01000000 01000000 0100 BA25 7E"), "A header that is not of this protocol"},
        {Sender::Host, Hex("4B001300 01000000 01000000 0100 BA26 7E"), "The check value should be 0x25ba"},
        {Sender::Handset, BuildReply({.payload = startup, .wrongCheck = true}), "The check value should be"},
        {Sender::Handset, BuildReply({.payload = startup, .commandCode = 0x4C}), "A header that is not"},
        {Sender::Handset, BuildReply({.payload = startup, .length = 16}), "The length should be 15"},
        {Sender::Handset, BuildReply({.payload = Hex("050000000100 0000 01")}), "battery2 has 0 of its 1 bytes"},
        {Sender::Handset, BuildReply({.payload = Bytes(8181)}), "More bytes than there may be"},
        {Sender::Handset, {0x4B}, "The frame has no end"},
    };
    Open(PortKind::Diagnostic);
    for (const auto& [sender, bytes, message] : cases)
        Capture(sender, bytes);
    const std::vector<std::string> lines = Read(kTroubles);
    ASSERT_EQ(lines.size(), std::size(cases));
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_TRUE(IsMarked(lines[i])) << lines[i];
        EXPECT_NE(lines[i].find(std::get<2>(cases[i])), std::string::npos) << lines[i];
    }
}

// A request and a reply, cut everywhere, and with a bit of each byte turned around.
TEST_F(Wireshark, MarksEveryDamage)
{
    Handset handset;
    Session session(handset, PortKind::Diagnostic);
    const Bytes request = host::Frame(0x7D, host::Record(35, {3}));
    Open(PortKind::Diagnostic);
    for (const auto& [sender, frame] :
         {std::pair(Sender::Host, request), {Sender::Handset, host::Sent(session.Receive(request))}})
        for (std::size_t i = 0; i < frame.size(); ++i) {
            if (i > 0)
                Capture(sender, Bytes(frame.begin(), frame.begin() + static_cast<std::ptrdiff_t>(i)));
            Bytes turned = frame;
            turned[i] = static_cast<std::uint8_t>(turned[i] ^ 1 << i % 8);
            Capture(sender, turned);
        }
    const std::vector<std::string> lines = Read(kTroubles);
    EXPECT_GT(lines.size(), 1000u);
    for (std::size_t i = 0; i < lines.size(); ++i)
        EXPECT_TRUE(IsMarked(lines[i])) << "packet " << i + 1 << ": " << lines[i];
}

// Random bytes, of which many look like what begins a frame, a line or a record.
TEST_P(WiresharkPort, BearsGarbage)
{
    std::minstd_rand random(17); // NOLINT(cert-msc51-cpp): the same garbage each time
    const Bytes likely = Hex("00 01 4B 7D 7E 41 54 0D 13");
    Open(GetParam());
    for (int i = 0; i < 2000; ++i) {
        Bytes garbage(1 + random() % 60);
        for (std::uint8_t& byte : garbage)
            byte = random() % 4 == 0 ? static_cast<std::uint8_t>(random() / 8) : likely[random() % likely.size()];
        Capture(random() % 2 == 0 ? Sender::Host : Sender::Handset, garbage);
    }
    Columns columns = kTroubles;
    columns.insert("_ws.col.Protocol");
    for (const std::string& line : Read(columns)) {
        EXPECT_TRUE(line.starts_with("PHNNRV\t")) << line;
        EXPECT_TRUE(line.ends_with("\t\t")) << line;
    }
}

} // namespace
