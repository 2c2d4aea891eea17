// Parts of a backup, or of a run, that are put back: planned one by one, then carried out and shown. Used by restore,
// undo and resume.
#pragma once

#include "phnctl/commands/backup/section.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace phnctl {

struct Part
{
    std::unique_ptr<BackupSection> section;
    std::optional<Restoration> restoration{};
    std::string problem{}; // why there is none
};

// Plans each of them. A part that fails says so and does not lose the others; true when none has.
bool Prepare(std::vector<Part>& parts,
             const std::function<std::optional<Restoration>(const BackupSection& section)>& prepare);

// "3 contacts and 1 event", of what is written and of what is deleted; empty where there is nothing of the kind.
std::string AmountToWrite(const std::vector<Part>& parts);
std::string AmountToDelete(const std::vector<Part>& parts);

// Carries the plans out, unless the invocation says otherwise, and shows them. Returns the exit status.
int PutBack(const Invocation& invocation, std::vector<Part>& parts, RunRecord& record);

} // namespace phnctl
