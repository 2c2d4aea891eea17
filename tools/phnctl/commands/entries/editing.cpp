// edit of every kind of entry: its text in the person's own editor, checked before anything is written.
#include "phnctl/cli/ending.h"
#include "phnctl/cli/print.h"
#include "phnctl/commands/entries/commands.h"
#include "phnctl/commands/entries/parts.h"
#include "phnctl/handset/session.h"
#include "phnctl/plan/run_record.h"
#include "phnctl/plan/safeguard.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"
#include "phnctl/text/text_file.h"
#include "system/editor.h"
#include "system/system.h"

#include <algorithm>
#include <fmt/format.h>

namespace phnctl {

namespace {

// Gone with all that the editor leaves beside it, however the process ends, unless it is kept.
class EditedFile
{
public:
    explicit EditedFile(const std::string& extension)
        : m_folder(host::MakeEditingFolder()), m_path(m_folder / ("entry" + extension))
    {
        RemoveAtEnd(m_folder);
    }
    ~EditedFile()
    {
        std::error_code error;
        if (!m_isKept)
            std::filesystem::remove_all(m_folder, error);
        Forget(m_folder);
    }
    EditedFile(const EditedFile&) = delete;
    EditedFile& operator=(const EditedFile&) = delete;

    std::string Name() const { return TextOf(m_path); }
    // What the person has made of it was not written.
    void Keep(const EntryKind& kind, std::uint32_t index)
    {
        m_isKept = true;
        fmt::print(stderr, "phnctl: the edited text is kept: 'phnctl {} put {} {}' writes it.\n", kind.Many(),
                   Printable(Name()), index);
    }
    void Write(const std::string& text) const { WriteText(m_path, text, Existing::Replace); }

    // What the person makes of it.
    std::string Edited() const
    {
        const StopRequest whileEditing([] {}); // Ctrl-C is the editor's
        if (!host::Edit(m_path))
            throw Failure(kRefused, "the editor could not be started, or ended with a failure. Nothing was changed.",
                          "VISUAL or EDITOR names the editor.");
        return ReadText(Name());
    }

private:
    const std::filesystem::path m_folder;
    const std::filesystem::path m_path;
    bool m_isKept = false;
};

// The name stands once, in FN: in N, which cards have besides, the former one would win.
void TakeOutNameInParts(std::string& text)
{
    const std::size_t begin = text.find("\nN:");
    if (begin == std::string::npos)
        return;
    std::size_t end = text.find('\n', begin + 1);
    while (text.compare(end, 2, "\n ") == 0) // it goes on in the next line
        end = text.find('\n', end + 1);
    text.erase(begin, end - begin);
}

// Empty values stand for what could be filled in.
std::string TextToEdit(const EntryKind& kind, StoredEntry stored)
{
    for (const std::string& property : kind.SheetProperties())
        if (!stored.entry.Find(property))
            stored.entry.fields.push_back({property, ""});
    std::string text = kind.Format({&stored, 1});
    std::erase(text, '\r');
    TakeOutNameInParts(text);
    return text;
}

// On standard error, with its line; true when there is any. What was edited is written whole or not at all.
bool TellProblems(const EntryKind& kind, const std::vector<Candidate>& candidates)
{
    if (candidates.size() != 1) {
        fmt::print(stderr, "phnctl: the text holds {} {}; it must be one.\n", candidates.size(), kind.Many());
        return true;
    }
    bool isAny = false;
    for (const Note& note : candidates.front().notes) {
        if (candidates.front().fits && note.code == "number-rewritten")
            continue;
        isAny = true;
        fmt::print(stderr, "phnctl: {}{}: {}.\n", note.line ? fmt::format("line {}, ", note.line) : "",
                   note.property.empty() ? kind.One() : Printable(note.property), Printable(note.text));
    }
    return isAny;
}

void AskToEditAgain()
{
    const auto answer = host::Ask("Edit it again? [Y/n] ");
    if (!answer || (!answer->empty() && *answer != "y" && *answer != "Y" && *answer != "yes"))
        throw Failure(kRefused, "nothing was changed.");
}

// Nothing: it stays as it is.
std::optional<Candidate> EditedEntry(const Invocation& invocation, const EntryKind& kind, const StoredEntry& stored,
                                     const EditedFile& file)
{
    const std::string before = TextToEdit(kind, stored);
    for (file.Write(before);; AskToEditAgain()) {
        if (file.Edited() == before)
            return std::nullopt;
        std::vector<Candidate> candidates = ReadCandidates(kind, {file.Name()}, invocation.Has(kAcceptLoss));
        if (TellProblems(kind, candidates))
            continue;
        candidates.front().file.clear(); // it will be gone
        candidates.front().line = 0;
        return std::move(candidates.front());
    }
}

int Write(const Invocation& invocation, const Handset& handset, const EntryKind& kind, const StoredEntry& stored,
          Candidate edited)
{
    if (ReadOne(handset, kind, stored.index) != stored.entry)
        throw Failure(kRefused, fmt::format("the handset's {} has become another one meanwhile. Nothing was changed.",
                                            kind.One()));
    return Store(invocation, handset, kind, std::move(edited), stored.index, "edit");
}

int Edit(const Invocation& invocation, const EntryKind& kind)
{
    const std::uint32_t index = ParseIndex(*invocation.Value("INDEX"));
    int status = kDone;
    WithHandset(invocation.options, [&](const Handset& handset) {
        const StoredEntry stored{index, ReadOne(handset, kind, index)};
        EditedFile file(kind.Extension());
        auto edited = EditedEntry(invocation, kind, stored, file);
        if (!edited)
            return PrintDone(invocation.options, "Nothing was changed.", {{{"", "", {{"changed", "", 0}}}}});
        try {
            status = Write(invocation, handset, kind, stored, std::move(*edited));
        } catch (const Failure&) {
            file.Keep(kind, index);
            throw;
        }
        if (status == kRefused)
            file.Keep(kind, index);
    });
    return status;
}

} // namespace

std::vector<Command> EditingCommands(const EntryKind& kind)
{
    const auto help = [&](const char* text) { return HelpText(kind, text); };
    return {
        {kind.Many() + " edit",
         help("Change one {one} in an editor"),
         help("The editor is what VISUAL or EDITOR names. It gets the text of a {ext} file. What the handset cannot\n"
              "hold is told with its line, and nothing is written; nor is it when the text stays as it was.\n"
              "'phnctl undo' takes the change back.\n\n"
              "Examples:\n  phnctl {many} edit 4\n  EDITOR=nano phnctl {many} edit 4 --dry-run\n"),
         {{"INDEX", "The index that 'list' shows", Count::One, {}}},
         Bind(Edit, kind),
         Joined({{kDryRun, "", "Show the plan and write nothing"}, AcceptLossOption()}, CopyOptions())}};
}

} // namespace phnctl
