// phnctl backup: the whole handset in a folder of files that other programs read, with an index that says what is in
// them and what a restore does not bring back.
#include "phnctl/cli/ending.h"
#include "phnctl/commands/backup/sections.h"
#include "phnctl/commands/entries/commands.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/handset/session.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/iso_time.h"
#include "phnctl/text/json.h"
#include "phnctl/text/text.h"
#include "phnctl/text/text_file.h"

#include <ctime>
#include <fmt/format.h>

namespace phnctl {

namespace fs = std::filesystem;

namespace {

// The folder of the backup. One that this run makes goes again when the run ends before there is anything in it.
class Folder
{
public:
    explicit Folder(const Invocation& invocation) : m_path(PathOf(*invocation.Value("DIR")))
    {
        std::error_code error;
        m_isNew = MakeFolder(m_path);
        if (!fs::is_empty(m_path, error) && !invocation.Has(kForce))
            throw Failure(kUsage, fmt::format("the folder {} is not empty; {} replaces the backup in it",
                                              Printable(TextOf(m_path)), kForce));
        fs::remove(m_path / kBackupIndex, error); // what follows is another backup
        if (m_isNew)
            RemoveAtEnd(m_path);
    }
    ~Folder()
    {
        std::error_code error;
        if (m_isNew)
            Forget(m_path);
        if (m_isNew && fs::is_empty(m_path, error))
            fs::remove(m_path, error);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    const fs::path& Path() const { return m_path; }

private:
    const fs::path m_path;
    bool m_isNew = false;
};

struct Outcome
{
    SavedSection saved;
    std::string problem; // empty: none
};

Outcome SaveSection(const Invocation& invocation, const Handset& handset, const BackupSection& section,
                    const fs::path& folder)
{
    try {
        return {section.Save(invocation, handset, folder / section.File()), ""};
    } catch (const Failure& failure) {
        return {{}, failure.what()};
    }
}

void Tell(const BackupSection& section, const Outcome& outcome)
{
    if (!outcome.problem.empty())
        fmt::print(stderr, "phnctl: {}: {}\n", section.Name(), outcome.problem);
    else
        fmt::print("{:<10}{} in {}\n", section.Name(), outcome.saved.count, section.File());
}

Json ToJson(const BackupSection& section, const Outcome& outcome)
{
    return {JsonObject{{"name", {section.Name()}},
                       {"file", {section.File()}},
                       {"count", {static_cast<std::int64_t>(outcome.saved.count)}},
                       {"unread", {static_cast<std::int64_t>(outcome.saved.unread)}},
                       {"textLost", {static_cast<std::int64_t>(outcome.saved.textLost)}},
                       {"problem", {outcome.problem}},
                       {"losses", LossJson(outcome.saved.losses)}}};
}

void TellEnd(bool isWhole, const std::string& losses)
{
    fmt::print("The backup is {}whole.\n", isWhole ? "" : "NOT ");
    if (!losses.empty())
        fmt::print("If all of it were lost on the handset, 'phnctl restore' would not bring all of it back:\n{}",
                   losses);
}

int Backup(const Invocation& invocation)
{
    const Folder folder(invocation);
    bool isWhole = true;
    WithHandset(invocation.options, [&](const Handset& handset) {
        JsonList results;
        std::string losses;
        for (const auto& section : Sections()) {
            const Outcome outcome = SaveSection(invocation, handset, *section, folder.Path());
            isWhole = isWhole && outcome.problem.empty() && outcome.saved.unread == 0 && outcome.saved.textLost == 0;
            losses += LossText(outcome.saved.losses, section->One(), section->Name());
            if (!invocation.options.json || !outcome.problem.empty())
                Tell(*section, outcome);
            results.push_back(ToJson(*section, outcome));
        }
        const std::string index =
            WriteJson({JsonObject{
                {"time", {IsoTime(std::time(nullptr))}}, {"whole", {isWhole}}, {"sections", {std::move(results)}}}}) +
            '\n';
        WriteText(folder.Path() / kBackupIndex, index, Existing::Replace);
        if (invocation.options.json)
            fmt::print("{}", index);
        else
            TellEnd(isWhole, losses);
    });
    return isWhole ? kDone : kRefused;
}

} // namespace

std::vector<Command> BackupCommands()
{
    return {
        {"backup",
         "Write everything that the handset holds into a folder",
         "One file for each part, in forms that other programs read, and backup.json, which says what is in them and\n"
         "what a restore would not bring back; --json prints the same. A part that fails does not lose the others.\n\n"
         "Example:\n"
         "  phnctl backup my-handset\n",
         {{"DIR", "The folder; it is made if it is not there", Count::One, {}}},
         Backup,
         {{kForce, "", "Replace the backup that the folder holds"}}}};
}

} // namespace phnctl
