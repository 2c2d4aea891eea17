#include "phnctl/plan/journal.h"

#include "phnctl/text/failure.h"
#include "phnctl/text/json.h"
#include "phnctl/text/text.h"
#include "phnctl/text/text_file.h"
#include "system/system.h"

#include <algorithm>
#include <fmt/format.h>
#include <fstream>
#include <functional>
#include <span>
#include <stdexcept>
#include <system_error>
#include <windows.h>

namespace phnctl {

namespace fs = std::filesystem;

namespace {

constexpr const char* kFile = "journal.jsonl";
constexpr std::size_t kRunsKept = 50;
constexpr std::size_t kBytesForStep = 160; // of the lines that tell of its begin and its end, without the entry

Json ToJson(const std::optional<Entry>& entry)
{
    if (!entry)
        return {nullptr};
    JsonList fields;
    for (const EntryField& field : entry->fields)
        fields.push_back({JsonList{{field.property}, {field.value}}});
    return {std::move(fields)};
}

Json ToJson(std::size_t number)
{
    return {static_cast<std::int64_t>(number)};
}

Json ToJson(const std::optional<std::uint32_t>& index)
{
    return index ? Json{std::int64_t{*index}} : Json{nullptr};
}

std::string Line(JsonObject members)
{
    return WriteJson({std::move(members)}) + '\n';
}

// A member of the wrong sort is like one that is missing.
std::string TextOf(const Json& json, const char* member)
{
    const Json* found = json.Find(member);
    const std::string* text = found ? found->Text() : nullptr;
    return text ? *text : "";
}

std::optional<std::uint32_t> NumberOf(const Json& json, const char* member)
{
    const Json* found = json.Find(member);
    const auto* number = found ? std::get_if<std::int64_t>(&found->value) : nullptr;
    return number && *number >= 0 && *number <= 0xFFFFFFFF ? std::optional(static_cast<std::uint32_t>(*number))
                                                           : std::nullopt;
}

std::optional<Entry> EntryOf(const Json& json, const char* member)
{
    const Json* found = json.Find(member);
    const auto* fields = found ? std::get_if<JsonList>(&found->value) : nullptr;
    if (!fields)
        return std::nullopt;
    Entry entry;
    for (const Json& field : *fields) {
        const auto* pair = std::get_if<JsonList>(&field.value);
        if (!pair || pair->size() != 2 || !pair->front().Text() || !pair->back().Text())
            throw std::runtime_error("a field is no pair of texts");
        entry.fields.push_back({*pair->front().Text(), *pair->back().Text()});
    }
    return entry;
}

// The steps that a line tells of.
std::span<JournalStep> StepsOf(JournalRun& run, std::uint32_t first, const Json& line)
{
    const std::uint32_t count = NumberOf(line, "count").value_or(0);
    if (first > run.steps.size() || count > run.steps.size() - first)
        throw std::runtime_error("there is no such step");
    return std::span(run.steps).subspan(first, count);
}

void Take(JournalRun& run, const Json& line)
{
    if (line.Find("kind")) {
        run.steps.push_back(
            {TextOf(line, "kind"), NumberOf(line, "index"), EntryOf(line, "before"), EntryOf(line, "after")});
    } else if (const auto begun = NumberOf(line, "begin")) {
        for (JournalStep& step : StepsOf(run, *begun, line)) {
            step.isBegun = true;
            if (const auto index = NumberOf(line, "index"))
                step.index = index;
        }
    } else if (const auto done = NumberOf(line, "done")) {
        for (JournalStep& step : StepsOf(run, *done, line)) {
            step.isDone = true;
            if (const auto index = NumberOf(line, "index"))
                step.index = index;
            if (auto holds = EntryOf(line, "after"))
                step.after = std::move(holds);
        }
    } else {
        run.isOver = run.isOver || line.Find("over");
        run.isSettled = run.isSettled || line.Find("settled");
    }
}

// Of a run that was cut off, the last line may be half a one.
std::optional<JournalRun> ReadRun(const fs::path& folder)
{
    std::ifstream file(folder / kFile, std::ios::binary);
    JournalRun run;
    std::string line;
    try {
        while (std::getline(file, line)) {
            const Json json = ParseJson(line);
            if (!run.name.empty()) {
                Take(run, json);
                continue;
            }
            run.name = phnctl::TextOf(folder.filename());
            run.command = TextOf(json, "run");
            run.handset = {TextOf(json, "model"), TextOf(json, "serial")};
            run.takesBack = TextOf(json, "takesBack");
            run.continues = TextOf(json, "continues");
        }
    } catch (const std::exception&) {
        // What stands before it counts.
    }
    return run.name.empty() ? std::nullopt : std::optional(std::move(run));
}

std::vector<fs::path> RunFolders()
{
    std::vector<fs::path> folders;
    std::error_code error;
    for (const auto& item : fs::directory_iterator(RunsFolder(), error))
        if (item.is_directory(error) && !item.is_symlink(error))
            folders.push_back(item.path());
    std::ranges::sort(folders, std::greater());
    return folders;
}

void Mark(const JournalRun& run, const std::string& lines)
{
    const fs::path file = RunsFolder() / run.name / kFile;
    try {
        host::GrowingFile(file).Append(lines);
    } catch (const std::system_error& error) {
        throw Failure(kRefused, fmt::format("{}: {}", Printable(phnctl::TextOf(file)), error.code().message()));
    }
}

} // namespace

bool JournalRun::IsWhole() const
{
    return isOver && std::ranges::all_of(steps, &JournalStep::isDone);
}

Journal::Journal(const fs::path& folder, const JournalRun& run)
try : m_file(folder / kFile) {
    Append(Line({{"run", {run.command}},
                 {"model", {run.handset.model}},
                 {"serial", {run.handset.serial}},
                 {"takesBack", {run.takesBack}},
                 {"continues", {run.continues}}}));
} catch (const std::system_error& error) {
    throw Failure(kRefused, fmt::format("{}: {}. Nothing was changed.", Printable(TextOf(folder / kFile)),
                                        error.code().message()));
}

std::size_t Journal::Expect(const std::vector<JournalStep>& steps)
{
    const std::size_t first = m_steps;
    std::string lines;
    for (const JournalStep& step : steps)
        lines += Line({{"kind", {step.kind}},
                       {"index", ToJson(step.index)},
                       {"before", ToJson(step.before)},
                       {"after", ToJson(step.after)}});
    Append(lines);
    Reserve(lines.size() + steps.size() * kBytesForStep); // what is done is told with what was then there
    m_steps += steps.size();
    return first;
}

void Journal::BeginAt(std::size_t step, std::uint32_t index)
{
    Append(Line({{"begin", ToJson(step)}, {"count", ToJson(std::size_t{1})}, {"index", {std::int64_t{index}}}}));
}

void Journal::Begin(std::size_t first, std::size_t count)
{
    Append(Line({{"begin", ToJson(first)}, {"count", ToJson(count)}}));
}

void Journal::Done(std::size_t first, std::size_t count)
{
    Append(Line({{"done", ToJson(first)}, {"count", ToJson(count)}}));
}

void Journal::DoneAt(std::size_t step, std::uint32_t index, const Entry& holds)
{
    Append(Line({{"done", ToJson(step)},
                 {"count", ToJson(std::size_t{1})},
                 {"index", {std::int64_t{index}}},
                 {"after", ToJson(holds)}}));
}

void Journal::Over()
{
    Append(Line({{"over", {true}}}));
}

void Journal::Append(const std::string& lines)
{
    try {
        m_file.Append(lines);
    } catch (const std::system_error& error) {
        throw Failure(kRefused, fmt::format("the journal of this run cannot be written: {}", error.code().message()),
                      "What was written to the handset so far is in it; 'phnctl undo' takes it back.");
    }
}

// A disk that is going to be full ends the run before the handset hears of anything.
void Journal::Reserve(std::size_t size)
{
    try {
        m_file.Reserve(size);
    } catch (const std::system_error& error) {
        throw Failure(kRefused, fmt::format("there is no room for the journal of this run: {}. Nothing was changed.",
                                            error.code().message()));
    }
}

fs::path RunsFolder()
{
    const fs::path state = host::StateDirectory();
    return state.empty() ? fs::path("phnctl-runs") : state / "runs";
}

fs::path MakeRunFolder(const std::string& name)
{
    const std::vector<fs::path> folders = RunFolders();
    std::error_code ignored;
    for (std::size_t i = kRunsKept - 1; i < folders.size(); ++i)
        fs::remove_all(folders[i], ignored);
    SYSTEMTIME now{};
    GetLocalTime(&now);
    const std::string stamp = fmt::format("{:04}{:02}{:02}-{:02}{:02}{:02}.{:03}-{}", now.wYear, now.wMonth, now.wDay,
                                          now.wHour, now.wMinute, now.wSecond, now.wMilliseconds, name);
    const fs::path folder = RunsFolder() / stamp;
    try {
        host::MakePrivateFolder(folder);
    } catch (const std::system_error& error) {
        throw Failure(kRefused,
                      fmt::format("{}: {}. Nothing was changed.", Printable(TextOf(folder)), error.code().message()));
    }
    return folder;
}

std::vector<JournalRun> KeptRuns()
{
    std::vector<JournalRun> runs;
    for (const fs::path& folder : RunFolders())
        if (auto run = ReadRun(folder))
            runs.push_back(std::move(*run));
    return runs;
}

void MarkSettled(const JournalRun& run)
{
    Mark(run, Line({{"settled", {true}}}));
}

void MarkWhole(const JournalRun& run)
{
    Mark(run, Line({{"done", ToJson(std::size_t{0})}, {"count", ToJson(run.steps.size())}}) + Line({{"over", {true}}}));
}

} // namespace phnctl
