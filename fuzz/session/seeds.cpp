// Writes the seeds of the session target into a folder: every call of a host as it should be, answered by the simulated
// handset, and the same with each way in which a reply may go wrong. A seed holds what the target reads: the host's
// bytes from the tables below, the replies where they were asked for.
#include "fuzz/session/host_calls.h"
#include "fuzz/session/session.h"
#include "simulator/handset/session.h"

#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

using fuzz::Bytes;
using fuzz::Form;

// ---- The host's bytes

struct Arguments
{
    Bytes bytes{};
    Arguments Byte(unsigned value) const { return With({static_cast<std::uint8_t>(value)}); }
    Arguments Word(unsigned value) const { return Byte(value & 0xFF).Byte(value >> 8); }
    Arguments Text(std::string_view text) const { return With({text.begin(), text.end()}); }
    Arguments Field(std::string_view text) const { return Word(static_cast<unsigned>(text.size())).Text(text); }
    Arguments Field(const Bytes& more) const { return Word(static_cast<unsigned>(more.size())).With(more); }
    Arguments With(const Bytes& more) const
    {
        Arguments result = *this;
        result.bytes.insert(result.bytes.end(), more.begin(), more.end());
        return result;
    }
};

constexpr std::string_view kContact =
    "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Ada\r\nTEL;TYPE=CELL:5551234\r\nEMAIL:ada@example.com\r\n"
    "X-PHN-DEFAULT-NO:1\r\nX-PHN-SPEEDDIAL-LIST:2,0,0,0,0\r\nEND:VCARD\r\n";
constexpr std::string_view kEvent =
    "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nDESCRIPTION:Lunch\r\nDTSTART:20251201T120000Z\r\n"
    "DTEND:20251201T130000Z\r\nRRULE:FREQ=DAILY;COUNT=3\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
// Teleservice, destination address 5551234, bearer data with the text "Hi".
constexpr std::string_view kPdu("\x00\x00\x02\x10\x02\x04\x05\x01\xD5\x54\x8C\xD0\x08\x0B\x00\x03\x20\x00\x00\x01\x04"
                                "\x10\x14\x8D\x20",
                                25);

// What a correct call takes, or one with this mistake in its record (HostRecord); a call that is not here takes
// nothing.
std::map<std::string_view, Arguments> ArgumentsWith(unsigned mistake)
{
    const Arguments none;
    const Arguments record = none.Byte(mistake);
    const Arguments text = none.Word(0).With(record.bytes).Word(4096);
    const Arguments numbered = none.Word(1).With(record.bytes);
    return {
        {"GetConnectionInfo", record},
        {"GetNetworkInfo", record},
        {"GetBatteryInfo", record},
        {"GetNetworkErrorString", none.Word(1025).Byte(200)},
        {"GetDeviceInfo", record},
        {"Activate", record.Byte(1)},
        {"SetRadioPower", none.Word(1)},
        {"SetLock", none.Byte(1).Byte(4).Text("0000")},
        {"ChangeLockCode", none.Byte(4).Text("0000").Byte(4).Text("1234")},
        {"GetParameters", record},
        {"SetParameters", record},
        {"GetFieldSizes", record},
        {"GetContact", text},
        {"SetContact", none.Word(3).With(record.bytes).Field(kContact)},
        {"DeleteContact", none.Word(1)},
        {"GetPictureID", numbered},
        {"GetRingerID", numbered},
        {"GetGroup", numbered},
        {"GetEvent", text},
        {"SetEvent", none.Word(3).With(record.bytes).Field(kEvent)},
        {"DeleteEvent", none.Word(1)},
        {"GetMessageCount", none.Byte(0)},
        {"SendMessage", record.Field(kPdu)},
        {"SaveMessage", record.Field(kPdu)},
        {"GetFirstMessage", none.Byte(0).With(record.bytes).Word(512)},
        {"GetNextMessage", record.Word(512)},
        {"DeleteMessage", none.Word(1)},
        {"DeleteAllMessages", none.Word(0)},
        {"SetMessageStatus", none.Word(1).Byte(1)},
        {"GetCallEntryCount", none.Byte(1)},
        {"GetFirstCallEntry", numbered},
        {"GetNextCallEntry", record},
        {"ClearCallEntries", none.Word(1)},
        {"SetCallback", none.Byte(0).Byte(0)},
        {"Arrive", none.Byte(0)},
    };
}

// What a host may get wrong beside its records.
const std::pair<std::string_view, Arguments> kOddArguments[] = {
    {"GetNetworkErrorString", Arguments().Word(1).Byte(200)},
    {"GetNetworkErrorString", Arguments().Word(1025).Byte(10)},
    {"GetNetworkErrorString", Arguments().Word(1025).Byte(0)},
    {"Activate", Arguments().Byte(0).Byte(0)},
    {"SetLock", Arguments().Byte(1).Byte(3).Text("000")},
    {"ChangeLockCode", Arguments().Byte(4).Text("0000").Byte(5).Text("12345")},
    {"ChangeLockCode", Arguments().Byte(0).Byte(4).Text("1234")},
    {"GetContact", Arguments().Word(0).Byte(0).Word(0)},
    {"GetContact", Arguments().Word(0).Byte(0).Word(20)},
    {"SetContact", Arguments().Word(0).Byte(0).Word(0)},
    {"SetContact", Arguments().Word(0).Byte(0).Field("no card")},
    {"GetEvent", Arguments().Word(0).Byte(0).Word(0)},
    {"GetEvent", Arguments().Word(0).Byte(0).Word(20)},
    {"SetEvent", Arguments().Word(0).Byte(0).Word(0)},
    {"SetEvent", Arguments().Word(0).Byte(0).Field("no calendar")},
    {"GetMessageCount", Arguments().Byte(5)},
    {"GetMessageCount", Arguments().Byte(255)},
    {"SendMessage", Arguments().Byte(0).Word(0)},
    {"SendMessage", Arguments().Byte(0).Field("no PDU")},
    {"SaveMessage", Arguments().Byte(0).Word(0)},
    {"GetFirstMessage", Arguments().Byte(5).Byte(0).Word(512)},
    {"GetFirstMessage", Arguments().Byte(0).Byte(0).Word(0)},
    {"GetFirstMessage", Arguments().Byte(0).Byte(0).Word(10)},
    {"GetNextMessage", Arguments().Byte(0).Word(0)},
    {"DeleteAllMessages", Arguments().Word(9)},
    {"GetCallEntryCount", Arguments().Byte(3)},
    {"GetCallEntryCount", Arguments().Byte(4)},
    {"GetFirstCallEntry", Arguments().Word(3).Byte(0)},
    {"GetFirstCallEntry", Arguments().Word(4).Byte(0)},
    {"ClearCallEntries", Arguments().Word(3)},
    {"ClearCallEntries", Arguments().Word(4)},
    {"ClearCallEntries", Arguments().Word(2)},
    {"SetCallback", Arguments().Byte(6).Byte(0)},
    {"SetCallback", Arguments().Byte(17).Byte(0)},
    {"SetCallback", Arguments().Byte(0).Byte(1)},
    {"SetCallback", Arguments().Byte(0).Byte(2)},
    {"SetCallback", Arguments().Byte(255).Byte(0)},
    {"SetLock", Arguments().Byte(1).Byte(1).Text("0")},
    {"SetLock", Arguments().Byte(1).Byte(2).Text("00")},
    {"SetLock", Arguments().Byte(1).Byte(255)},
    {"ChangeLockCode", Arguments().Byte(255)},
    {"ChangeLockCode", Arguments().Byte(0).Byte(255)},
    {"GetCallEntryCount", Arguments().Byte(255)},
    {"GetCallEntryCount", Arguments().Byte(0)},
    {"GetFirstCallEntry", Arguments().Word(0).Byte(0)},
    {"GetNetworkErrorString", Arguments().Word(1025).Byte(255)},
    {"SetMessageStatus", Arguments().Word(1).Byte(0)},
};

Arguments Call(std::string_view name, const Arguments& arguments)
{
    const auto calls = fuzz::HostCalls();
    const auto found = std::ranges::find(calls, name, &fuzz::HostCall::name);
    if (found == calls.end())
        throw std::invalid_argument(std::string(name));
    return Arguments().Byte(static_cast<unsigned>(found - calls.begin())).With(arguments.bytes);
}

Arguments Script(unsigned port, std::initializer_list<std::string_view> calls, unsigned mistake = 0)
{
    auto arguments = ArgumentsWith(mistake);
    Arguments script = Arguments().Byte(port);
    for (const std::string_view call : calls)
        script = script.With(Call(call, arguments[call]).bytes);
    return script;
}

// ---- The handset's replies, as HostileReply reads them

Bytes Encoded(Form form, unsigned reading, unsigned writing, const Bytes& payload)
{
    const unsigned first = static_cast<unsigned>(form) | reading << 3 | writing << 6;
    return Arguments().Byte(first).Field(payload).bytes;
}

Bytes Honest(Bytes payload)
{
    return Encoded(Form::Framed, 0, 0, payload);
}

Bytes Lengthened(const Bytes& payload, std::size_t size)
{
    const auto zeros = static_cast<unsigned>(size - std::min(size, payload.size()));
    return Arguments().Byte(static_cast<unsigned>(Form::Lengthened)).Byte(zeros / 64).Field(payload).bytes;
}

// The reply's frame and what follows it, in two reads, of which the second ends so.
Bytes Followed(const Bytes& payload, const Bytes& more, unsigned ending)
{
    const Bytes frame = fuzz::MemoryPort::Get().Frame(payload);
    return Arguments()
        .Byte(static_cast<unsigned>(Form::RawCut))
        .Field(Arguments().With(frame).With(more).bytes)
        .Byte(1 | ending << 2)
        .Word(static_cast<unsigned>(frame.size()))
        .bytes;
}

Bytes OfEarlier(Bytes payload, unsigned ending)
{
    Bytes followed = Followed(payload, Bytes(20, 0), ending);
    followed[3 + 9] ^= 1; // the sequence identifier
    return followed;
}

Bytes Overwritten(Bytes payload, std::size_t from, std::size_t count, std::uint8_t value)
{
    for (std::size_t i = from; i < std::min(from + count, payload.size()); ++i)
        payload[i] = value;
    return payload;
}

Bytes Resized(Bytes payload, std::size_t size)
{
    payload.resize(size);
    return payload;
}

struct Departure
{
    const char* name;
    Bytes (*encode)(Bytes payload);
};

constexpr Departure kHonest{"honest", Honest};
constexpr Departure kDepartures[] = {
    kHonest,
    {"late", [](Bytes p) { return Encoded(Form::Framed, 4, 2, p); }},
    {"time-out", [](Bytes p) { return Encoded(Form::Framed, 5, 0, p); }},
    {"read-fails", [](Bytes p) { return Encoded(Form::Framed, 6, 0, p); }},
    {"read-fails-late", [](Bytes p) { return Encoded(Form::Framed, 7, 0, p); }},
    {"write-fails",
     [](Bytes) { return Arguments().Byte(3 << 6 | static_cast<unsigned>(Form::Silence)).Byte(6).bytes; }},
    {"write-fails-late",
     [](Bytes) { return Arguments().Byte(3 << 6 | static_cast<unsigned>(Form::Silence)).Byte(7).bytes; }},
    {"write-time-out",
     [](Bytes) { return Arguments().Byte(3 << 6 | static_cast<unsigned>(Form::Silence)).Byte(5).bytes; }},
    {"silence", [](Bytes) { return Arguments().Byte(static_cast<unsigned>(Form::Silence)).bytes; }},
    {"cut", [](Bytes p) { return Encoded(Form::FramedCut, 0, 0, p); }},
    {"other-sequence",
     [](Bytes p) {
         const Bytes honest = Honest(p);
         return Arguments()
             .Byte(static_cast<unsigned>(Form::Twisted))
             .Byte(9)
             .Byte(1)
             .With({honest.begin() + 1, honest.end()})
             .bytes;
     }},
    {"empty", [](Bytes) { return Honest({}); }},
    {"status", [](Bytes p) { return Honest(Overwritten(std::move(p), 6, 1, 12)); }},
    {"result", [](Bytes p) { return Honest(Overwritten(std::move(p), 8, 1, 1)); }},
    {"short", [](Bytes p) { return Honest(Resized(std::move(p), 9)); }},
    {"long", [](Bytes p) { return Lengthened(p, 8180); }},
    {"too-long", [](Bytes p) { return Lengthened(p, 9000); }},
    {"many", [](Bytes p) { return Honest(Overwritten(std::move(p), 12, 8, 0xFF)); }},
    {"none", [](Bytes p) { return Honest(Overwritten(std::move(p), 12, 8, 0)); }},
    {"full", [](Bytes p) { return Honest(Overwritten(std::move(p), 20, 9000, 'A')); }},
    {"and-more", [](Bytes p) { return Followed(p, Bytes(5, 'x'), 0); }},
    {"earlier", [](Bytes p) { return OfEarlier(p, 0); }},
    {"earlier-fails", [](Bytes p) { return OfEarlier(p, 6); }},
    {"noise", [](Bytes) { return Encoded(Form::Raw, 0, 0, Bytes(40, 0x7E)); }},
};

// Answers as the simulated handset does, departs from it behind the first replies, and writes the seed.
class Recorder final : public fuzz::Replier
{
public:
    Recorder(const Arguments& script, const Departure& departure, unsigned honestReplies)
        : script_(script.bytes), departure_(departure), honestReplies_(honestReplies)
    {
        handset_.Change(0xFFFF, [](simulator::Phone&) {});
    }

    Bytes Record()
    {
        fuzz::Session(input_, *this).Run();
        TakeScript();
        return std::move(seed_);
    }

    fuzz::Reply Answer(std::span<const std::uint8_t> request, bool isFramed) override
    {
        TakeScript();
        const Departure& departure = replies_++ < honestReplies_ ? kHonest : departure_;
        const Bytes encoded = departure.encode(Payload(request, isFramed));
        seed_.insert(seed_.end(), encoded.begin(), encoded.end());
        fuzz::Input reply(encoded);
        return fuzz::HostileReply(reply, isFramed);
    }

private:
    // The script's bytes that the session has read by now stand in front of the reply.
    void TakeScript()
    {
        const auto end = script_.end() - static_cast<std::ptrdiff_t>(input_.Left());
        seed_.insert(seed_.end(), taken_, end);
        taken_ = end;
    }

    Bytes Payload(std::span<const std::uint8_t> request, bool isFramed)
    {
        Bytes bytes;
        for (const simulator::Step& step : (isFramed ? diagnostic_ : modem_).Receive(request))
            bytes.insert(bytes.end(), step.bytes.begin(), step.bytes.end());
        if (!isFramed || bytes.size() <= 16)
            return bytes;
        const Bytes frame = simulator::Unstuff(std::span(bytes).first(bytes.size() - 1));
        return {frame.begin() + simulator::kReplyPayloadOffset, frame.end() - simulator::kCheckSize};
    }

    simulator::Handset handset_;
    simulator::Session diagnostic_{handset_, simulator::PortKind::Diagnostic};
    simulator::Session modem_{handset_, simulator::PortKind::Modem};
    const Bytes script_;
    Bytes::const_iterator taken_ = script_.begin();
    fuzz::Input input_{script_};
    const Departure& departure_;
    const unsigned honestReplies_;
    unsigned replies_ = 0;
    Bytes seed_;
};

class Folder
{
public:
    explicit Folder(std::string path) : path_(std::move(path)) {}
    void Write(const std::string& name, const Bytes& seed) const
    {
        std::ofstream file(path_ + "/" + name, std::ios::binary);
        file.write(reinterpret_cast<const char*>(seed.data()), static_cast<std::streamsize>(seed.size()));
        if (!file.flush())
            throw std::runtime_error(path_ + "/" + name);
    }

private:
    const std::string path_;
};

constexpr unsigned kStartupReplies = 2;
constexpr unsigned kModemReplies = 3; // AT, AT+MODE=2, ATE0

void Write(const Folder& folder, const std::string& name, const Arguments& script, const Departure& departure,
           unsigned honestReplies)
{
    folder.Write(name + "." + departure.name, Recorder(script, departure, honestReplies).Record());
}

void WriteDepartures(const Folder& folder, const Departure& departure)
{
    for (const fuzz::HostCall& call : fuzz::HostCalls())
        Write(folder, std::string(call.name), Script(0, {"Startup", call.name}), departure, kStartupReplies);
    const struct
    {
        const char* name;
        Arguments script;
        unsigned honestReplies;
    } sessions[] = {
        {"startup", Script(0, {"Startup"}), 0},
        {"model", Script(0, {"Startup"}), 1},
        {"messages", Script(0, {"Startup", "GetFirstMessage", "GetNextMessage", "GetNextMessage"}), 4},
        {"calls", Script(0, {"Startup", "GetFirstCallEntry", "GetNextCallEntry", "GetNextCallEntry"}), 3},
        {"prompt", Script(fuzz::kPromptReads, {"Startup", "GetContact", "GetFirstMessage"}), kStartupReplies},
        {"untold", Script(fuzz::kPromptReads | fuzz::kPortTellsNothing, {"Startup", "GetContact", "GetFirstMessage"}),
         kStartupReplies},
        {"full", Script(fuzz::kWindowIsFull, {"Startup", "SetCallback", "SetCallback", "Tick"}), kStartupReplies},
        {"modem", Script(fuzz::kModemPort, {"Startup", "GetContact"}), kModemReplies + kStartupReplies},
        {"dialogue", Script(fuzz::kModemPort, {"Startup"}), 0},
        {"mode", Script(fuzz::kModemPort, {"Startup"}), 1},
        {"echo", Script(fuzz::kModemPort, {"Startup"}), 2},
        {"poll", Script(0, {"Startup", "SetCallback", "Tick", "GetBatteryInfo", "Shutdown", "Tick"}), kStartupReplies},
        {"lost", Script(0, {"Startup", "SetCallback", "Remove", "GetBatteryInfo", "Arrive", "Startup"}),
         kStartupReplies},
        {"again", Script(0, {"Startup", "Arrive", "GetBatteryInfo"}), kStartupReplies},
    };
    for (const auto& session : sessions)
        Write(folder, session.name, session.script, departure, session.honestReplies);
}

void WriteMistakes(const Folder& folder)
{
    for (const fuzz::HostCall& call : fuzz::HostCalls()) {
        const std::string name(call.name);
        Write(folder, name + "-null", Script(0, {"Startup", call.name}, 2), kHonest, 0);
        Write(folder, name + "-small", Script(0, {"Startup", call.name}, 1), kHonest, 0);
        Write(folder, name + "-no-buffer", Script(0, {"Startup", call.name}, 3), kHonest, 0);
        Write(folder, name + "-before-startup", Script(0, {call.name}), kHonest, 0);
        Write(folder, name + "-no-port", Script(fuzz::kPortRefuses, {call.name}), kHonest, 0);
    }
    int number = 0;
    for (const auto& [name, arguments] : kOddArguments)
        Write(folder, std::string(name) + "-odd-" + std::to_string(number++),
              Script(0, {"Startup"}).With(Call(name, arguments).bytes), kHonest, 0);
    for (unsigned type = 0; type < 12; ++type) { // registered, polled, registered again, removed twice, polled
        Arguments script = Script(0, {"Startup"});
        for (const unsigned remove : {0u, 0u, 1u, 1u, 0u})
            script = script.With(Call("SetCallback", Arguments().Byte(type).Byte(remove)).bytes)
                         .With(Call("Tick", {}).bytes);
        script = script.With(Call("GetBatteryInfo", Arguments().Byte(0)).bytes); // inside the last function's call
        Write(folder, "callback-" + std::to_string(type), script.With(Call("Remove", {}).bytes), kHonest, 0);
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
        return 2;
    const Folder folder(argv[1]);
    for (const Departure& departure : kDepartures)
        WriteDepartures(folder, departure);
    WriteMistakes(folder);
    return 0;
}
