// Which parts a backup has. Used by backup and restore; a new part is one line in sections.cpp.
#pragma once

#include "phnctl/commands/backup/section.h"

#include <memory>
#include <vector>

namespace phnctl {

// All parts, in the order in which they are saved and put back.
std::vector<std::unique_ptr<BackupSection>> Sections();

} // namespace phnctl
