#include "phnctl/handset/tool_run.h"

#include "phnctl/cli/ending.h"
#include "phnctl/handset/port_finding.h"
#include "phnctl/handset/surroundings.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text_file.h"
#include "simulator/lines/bridge.h"
#include "simulator/lines/device_directory.h"
#include "simulator/lines/simulator.h"
#include "simulator/recording/mask.h"
#include "simulator/recording/recording.h"
#include "simulator/recording/tap.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fmt/format.h>
#include <memory>
#include <spawn.h>
#include <sys/utsname.h>
#include <sys/wait.h>
#include <unistd.h>

namespace phnctl {

namespace {

namespace fs = std::filesystem;

constexpr const char* kSelf = "/proc/self/exe";

// A folder that goes with the object, and when the process ends early.
class PrivateFolder
{
public:
    PrivateFolder() { RemoveAtEnd(m_folder.Path()); }
    ~PrivateFolder() { Forget(m_folder.Path()); }
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;

    const fs::path& Path() const { return m_folder.Path(); }

private:
    simulator::DeviceDirectory m_folder;
};

// One port under its own name in another directory, as long as the object lives.
class RecordedPort
{
public:
    RecordedPort(const PortEntry& port, const fs::path& devices, const fs::path& recording)
        : m_kind(port.kind == "modem interface" ? simulator::PortKind::Modem : simulator::PortKind::Diagnostic),
          m_mask(m_kind),
          m_recording(recording, {.program = "phnctl " PHN_VERSION, .kind = m_kind, .isMasked = true}),
          m_packets(m_kind, [this](const simulator::Packet& packet) { Write(packet); }),
          m_simulator(simulator::Tapped(simulator::PtyLines(devices, port.name),
                                        [this](const simulator::Chunk& chunk) { m_packets.Take(chunk); }),
                      simulator::BridgeTo(simulator::DeviceLines(port.path), [] {}))
    {
        m_simulator.Start();
    }

private:
    void Write(const simulator::Packet& packet)
    {
        const auto [masked, blanked] = m_mask.Apply(packet);
        m_recording.Write(masked, blanked);
    }

    const simulator::PortKind m_kind;
    simulator::Mask m_mask;
    simulator::RecordingWriter m_recording;
    simulator::PacketAssembler m_packets;
    simulator::Simulator m_simulator;
};

} // namespace

bool CanRunTool()
{
    return true;
}

ToolRun RunTool(const std::vector<std::string>& words)
{
    const PrivateFolder folder;
    const std::string out = folder.Path() / "out", err = folder.Path() / "err";
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, out.c_str(), O_WRONLY | O_CREAT, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, err.c_str(), O_WRONLY | O_CREAT, 0600);
    std::vector<std::string> texts{"phnctl"};
    texts.insert(texts.end(), words.begin(), words.end());
    std::vector<char*> arguments;
    for (std::string& text : texts)
        arguments.push_back(text.data());
    arguments.push_back(nullptr);
    pid_t process = 0;
    const int error = posix_spawn(&process, kSelf, &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    while (error == 0 && waitpid(process, &status, 0) < 0 && errno == EINTR)
        ;
    if (error != 0)
        throw Failure(kRefused, fmt::format("{} does not start: {}", kSelf, std::strerror(error)));
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 256 + WTERMSIG(status), ReadText(out), ReadText(err)};
}

ToolRun RunToolRecorded(const std::vector<std::string>& words, std::vector<std::string>& recordings)
{
    const PrivateFolder devices, files;
    std::vector<std::unique_ptr<RecordedPort>> ports;
    std::vector<fs::path> names;
    const std::vector<PortEntry> entries = LookAround().entries;
    const std::vector<PortFinding> findings = LookAtPorts(entries);
    for (std::size_t i = 0; i < findings.size(); ++i) {
        if (!findings[i].isAsked)
            continue;
        names.push_back(files.Path() / std::to_string(i));
        ports.push_back(std::make_unique<RecordedPort>(entries[i], devices.Path(), names.back()));
    }
    if (!ports.empty())
        setenv("PHNNRV_DEVICES", devices.Path().c_str(), 1);
    ToolRun run = RunTool(words);
    ports.clear();
    for (const fs::path& name : names)
        recordings.push_back(ReadText(name));
    return run;
}

std::string SystemName()
{
    utsname name{};
    return uname(&name) == 0 ? fmt::format("{} {} {}", name.sysname, name.release, name.machine) : "";
}

} // namespace phnctl
