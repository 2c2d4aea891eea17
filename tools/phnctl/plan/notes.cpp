#include "phnctl/plan/notes.h"

#include <fmt/format.h>

namespace phnctl {

namespace {

std::string ListOf(const EntryForm& form, const std::vector<EntryField>& fields)
{
    std::string text;
    for (const EntryField& field : fields)
        text += fmt::format("{}{} {}", text.empty() ? "" : ", ", form.Label(field.property), field.value);
    return text;
}

void Tell(Candidate& candidate, const char* code, std::string text)
{
    candidate.notes.push_back({code, "", candidate.line, std::move(text)});
}

} // namespace

void TellRepeated(Candidate& candidate)
{
    Tell(candidate, "repeated", "the files hold it once more, before this one");
}

void TellKept(Candidate& candidate, const EntryForm& form, const std::vector<EntryField>& kept)
{
    if (!kept.empty())
        Tell(candidate, kKept,
             fmt::format("{}: only the handset has {}; --replace takes {} off", ListOf(form, kept),
                         kept.size() == 1 ? "it, and it stays" : "them, and they stay",
                         kept.size() == 1 ? "it" : "them"));
}

void TellDisplaced(Candidate& candidate, const EntryForm& form, const Merged& merged)
{
    for (const Displaced& displaced : merged.displaced)
        Tell(candidate, "other-place",
             fmt::format("{} {} is stored as {}, as {} is taken", form.Label(displaced.wanted.property),
                         displaced.wanted.value, form.Label(displaced.place), form.Label(displaced.wanted.property)));
}

void TellMerged(Candidate& candidate, const EntryForm& form, const Candidate& other)
{
    Tell(candidate, "merged",
         fmt::format("one {} with {}:{}, which has the same name and a number or address in common", form.One(),
                     other.file, other.line));
}

void TellNamesake(Candidate& candidate, const EntryForm& form, bool isOnHandset, const std::vector<EntryField>& noRoom)
{
    const std::string where = isOnHandset ? "on the handset" : "in the files";
    if (noRoom.empty())
        Tell(candidate, "namesake",
             fmt::format("another {} of this name is {} and is not taken for the same; both are kept", form.One(),
                         where));
    else
        Tell(candidate, "namesake",
             fmt::format("the {} of this name {} has no free place for {}, so it is added beside that", form.One(),
                         where, ListOf(form, noRoom)));
}

void TellShared(Candidate& candidate, const EntryForm& form, const Entry& other, const std::string& mark)
{
    Tell(candidate, "shared-number",
         fmt::format("another {} of the handset has {}: {}; both are kept", form.One(), mark, form.Title(other)));
}

void TellOldExport(Candidate& candidate, const EntryForm& form)
{
    Tell(candidate, "old-export",
         fmt::format("the handset's {} has changed since this one was exported, so nothing of it is overwritten; "
                     "export again before the next changes",
                     form.One()));
}

} // namespace phnctl
