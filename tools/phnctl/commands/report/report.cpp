// phnctl report: what helps somebody else to find out what is wrong, in one file that its sender has seen before.
#include "phnctl/cli/print.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/commands/report/scrub.h"
#include "phnctl/handset/embedded.h"
#include "phnctl/handset/tool_run.h"
#include "phnctl/plan/safeguard.h"
#include "phnctl/text/counted.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/json.h"
#include "phnctl/text/text.h"
#include "phnctl/text/text_file.h"
#include "phnctl/text/zip_file.h"

#include <algorithm>
#include <ctime>
#include <fmt/format.h>
#include <iomanip>
#include <sstream>

namespace phnctl {

namespace {

constexpr const char* kRun = "--run";

std::vector<std::string> WordsOf(const std::string& line)
{
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

// The command without what was given to it: "messages send" of "messages send 5550100 hello". Throws Failure when there
// is no such command.
std::string CommandName(const std::string& line)
{
    std::string best;
#define PHNCTL_ROW(noun) noun##Commands,
    for (auto* list : {PHNCTL_NOUNS(PHNCTL_ROW)})
        for (const Command& command : list())
            if (command.run && (line + " ").starts_with(command.words + " ") && command.words.size() > best.size())
                best = command.words;
#undef PHNCTL_ROW
    if (best.empty() || best == "report")
        throw Failure(
            kUsage, fmt::format("{} \"{}\": that is no command to be run; write it as \"contacts list\"", kRun, line));
    return best;
}

std::string LogFileOf(const ToolRun& run)
{
    constexpr std::string_view kBegin = "log: ";
    std::istringstream stream(run.err);
    for (std::string line; std::getline(stream, line);)
        if (line.starts_with(kBegin) && line.ends_with(".log"))
            return line.substr(kBegin.size());
    return "";
}

// The lines of a log, which several runs of a minute share, from this second on: "11/25/26 19:30:00\t...".
std::string LoggedSince(std::time_t begin, const std::string& log)
{
    std::size_t line = 0;
    while (line < log.size()) {
        std::tm time{};
        time.tm_isdst = -1;
        std::istringstream stamp(log.substr(line, sizeof "11/25/26 19:30:00" - 1));
        if (stamp >> std::get_time(&time, "%m/%d/%y %H:%M:%S") && std::mktime(&time) >= begin)
            break;
        line = std::min(log.find('\n', line), log.size() - 1) + 1;
    }
    return log.substr(line);
}

std::vector<std::string> CommonWords(const Options& options)
{
    std::vector<std::string> words{"--wait", std::to_string(options.waitSeconds)};
    if (!options.library.empty())
        words.insert(words.end(), {"--library", options.library});
    return words;
}

class Collection
{
public:
    explicit Collection(const Options& options) : m_common(CommonWords(options)) {}

    void AddVersions() { Add("versions.txt", RunTool({"--version"}).out + SystemName() + "\n"); }

    void AddDoctor() { Add("doctor.txt", Run({"doctor"}).out); }

    // The command says what it says to the person as well.
    void AddRun(const std::string& line)
    {
        const std::string name = CommandName(line);
        std::vector<std::string> words = WordsOf(line);
        words.insert(words.begin(), {"--log", "all"});
        words.insert(words.begin(), m_common.begin(), m_common.end());
        std::vector<std::string> recordings;
        const std::time_t begin = std::time(nullptr);
        const ToolRun run = RunToolRecorded(words, recordings);
        fmt::print(stderr, "{}", PrintableLines(run.out + run.err));
        Add("command.txt", fmt::format("phnctl {} ...\nexit status {}\n{}", name, run.status,
                                       recordings.empty() ? "not recorded: no port was free\n" : ""));
        for (std::size_t i = 0; i < recordings.size(); ++i)
            m_entries.push_back({fmt::format("recording-{}.jsonl", i + 1), std::move(recordings[i])});
        if (const std::string log = LogFileOf(run); !log.empty())
            Add("library.log", LoggedSince(begin, ReadText(log)));
    }

    const std::vector<ZipEntry>& Entries() const { return m_entries; }

private:
    ToolRun Run(std::vector<std::string> words) const
    {
        words.insert(words.begin(), m_common.begin(), m_common.end());
        return RunTool(words);
    }

    void Add(const std::string& name, const std::string& text) { m_entries.push_back({name, Scrubbed(text)}); }

    const std::vector<std::string> m_common;
    std::vector<ZipEntry> m_entries;
};

// Short texts as they are; of the others, how much there is, and how all of it can be seen.
void Show(const std::string& file, const std::vector<ZipEntry>& entries)
{
    constexpr std::size_t kShort = 4000;
    fmt::print(stderr, "{} will hold:\n", file);
    for (const ZipEntry& entry : entries) {
        const auto lines = static_cast<std::size_t>(std::count(entry.text.begin(), entry.text.end(), '\n'));
        const bool isShown = entry.text.size() <= kShort && !entry.name.starts_with("recording");
        fmt::print(stderr, "--- {} ({}{})\n{}", entry.name, Counted(lines, "line"),
                   isShown ? "" : fmt::format("; once it is written, 'unzip -p {} {}' shows them", file, entry.name),
                   isShown ? PrintableLines(entry.text) : "");
    }
}

int MakeReport(const Invocation& invocation)
{
    if (!CanRunTool() || !CanWriteZip())
        throw Failure(kUsage, "this build makes no reports; 'phnctl doctor' and --log all are what one would hold");
    const std::string file = *invocation.Value("FILE");
    const auto run = invocation.Value(kRun);
    if (run)
        CommandName(*run);
    CheckZipCanBeMade(PathOf(file));
    const auto embedded = invocation.options.simulator ? StartEmbeddedHandset() : nullptr;
    Collection collection(invocation.options);
    collection.AddVersions();
    collection.AddDoctor();
    if (run)
        collection.AddRun(*run);
    Show(file, collection.Entries());
    Confirm(invocation, fmt::format("Write {}?", file));
    WriteZip(PathOf(file), collection.Entries());
    JsonList names;
    for (const ZipEntry& entry : collection.Entries())
        names.push_back({entry.name});
    if (invocation.options.json)
        fmt::print("{}\n", WriteJson({JsonObject{{"file", {file}}, {"holds", {std::move(names)}}}}));
    else
        fmt::print("{} is written.\n", file);
    return kDone;
}

} // namespace

std::vector<Command> ReportCommands()
{
    return {
        {"report",
         "Collect in a zip file what helps to find a fault",
         "Versions, and what 'doctor' finds. With --run, a command is run once more, and its exit status, the\n"
         "library's log and, where a port is free, a recording of what it exchanged with the handset go in as well.\n"
         "The recording is masked: numbers, names and texts are made-up ones, lock codes are zeros. What the\n"
         "command was given and what it said stay out. All is listed before it is written.\n\n"
         "Examples:\n"
         "  phnctl report fault.zip\n"
         "  phnctl report fault.zip --run \"contacts list\"\n",
         {{"FILE", "The zip file to make", Count::One, {}}},
         MakeReport,
         {{kRun, "COMMAND", "run this command of phnctl, its words parted by spaces, and record it"},
          ConfirmOption()}}};
}

} // namespace phnctl
