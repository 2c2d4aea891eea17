#include "fuzz/session/script.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <string>

#include "fuzz/session/host_calls.h"

namespace fuzz {
namespace {

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

} // namespace

const std::vector<OddCall>& OddCalls()
{
    static const std::vector<OddCall> calls = {
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
    return calls;
}

Arguments Call(std::string_view name, const Arguments& arguments)
{
    const auto calls = HostCalls();
    const auto found = std::ranges::find(calls, name, &HostCall::name);
    if (found == calls.end())
        throw std::invalid_argument(std::string(name));
    return Arguments().Byte(static_cast<unsigned>(found - calls.begin())).With(arguments.bytes);
}

Arguments Script(unsigned port, std::initializer_list<std::string_view> calls, unsigned mistake)
{
    auto arguments = ArgumentsWith(mistake);
    Arguments script = Arguments().Byte(port);
    for (const std::string_view call : calls)
        script = script.With(Call(call, arguments[call]).bytes);
    return script;
}

} // namespace fuzz
