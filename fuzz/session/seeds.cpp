// Writes the seeds of the session target into a folder: every call of a host as it should be, answered by the simulated
// handset, and the same with each way in which a reply may go wrong. A seed holds what the target reads: the host's
// bytes, and the replies where they were asked for.
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>

#include "fuzz/session/host_calls.h"
#include "fuzz/session/recorder.h"

namespace {

using fuzz::Arguments;
using fuzz::Bytes;
using fuzz::Call;
using fuzz::Departure;
using fuzz::HonestReply;
using fuzz::Recorder;
using fuzz::Script;

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
        Write(folder, name + "-null", Script(0, {"Startup", call.name}, 2), HonestReply(), 0);
        Write(folder, name + "-small", Script(0, {"Startup", call.name}, 1), HonestReply(), 0);
        Write(folder, name + "-no-buffer", Script(0, {"Startup", call.name}, 3), HonestReply(), 0);
        Write(folder, name + "-before-startup", Script(0, {call.name}), HonestReply(), 0);
        Write(folder, name + "-no-port", Script(fuzz::kPortRefuses, {call.name}), HonestReply(), 0);
    }
    int number = 0;
    for (const auto& [name, arguments] : fuzz::OddCalls())
        Write(folder, std::string(name) + "-odd-" + std::to_string(number++),
              Script(0, {"Startup"}).With(Call(name, arguments).bytes), HonestReply(), 0);
    for (unsigned type = 0; type < 12; ++type) { // registered, polled, registered again, removed twice, polled
        Arguments script = Script(0, {"Startup"});
        for (const unsigned remove : {0u, 0u, 1u, 1u, 0u})
            script = script.With(Call("SetCallback", Arguments().Byte(type).Byte(remove)).bytes)
                         .With(Call("Tick", {}).bytes);
        script = script.With(Call("GetBatteryInfo", Arguments().Byte(0)).bytes); // inside the last function's call
        Write(folder, "callback-" + std::to_string(type), script.With(Call("Remove", {}).bytes), HonestReply(), 0);
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
        return 2;
    const Folder folder(argv[1]);
    for (const Departure& departure : fuzz::Departures())
        WriteDepartures(folder, departure);
    WriteMistakes(folder);
    return 0;
}
