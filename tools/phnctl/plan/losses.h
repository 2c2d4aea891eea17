// What a restore does not bring back of what a file holds, known while the handset still has it. It is found by
// planning the restore onto an empty handset, so that both always agree. Used by backup and by the commands that delete
// much.
#pragma once

#include "phnctl/plan/entry_kind.h"
#include "phnctl/text/json.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace phnctl {

struct Loss
{
    std::string code; // stable: "not-restored" of whole entries, "part" of something in them
    std::string text; // of a part, how the entry comes back: "without the time"; else why it does not
    std::size_t count = 0;
    std::vector<std::string> titles{}; // of the entries; none where all are meant
};

using Losses = std::vector<Loss>;

inline constexpr const char* kNotRestored = "not-restored";
inline constexpr const char* kPart = "part";

// One entry more that loses just this.
void AddLoss(Losses& losses, const std::string& code, const std::string& text, const std::string& title);

Losses LossesOf(const EntryKind& kind, std::span<const StoredEntry> entries);

// A sentence for each, in the words for one entry and for many; empty when nothing is lost.
std::string LossText(const Losses& losses, const std::string& one, const std::string& many);

Json LossJson(const Losses& losses);

// On standard error, before a question. Nothing when nothing is lost.
void TellLosses(const Losses& losses, const std::string& one, const std::string& many);

} // namespace phnctl
