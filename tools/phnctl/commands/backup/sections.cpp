#include "phnctl/commands/backup/sections.h"

#include "phnctl/commands/backup/entry_section.h"
#include "phnctl/commands/backup/history_sections.h"
#include "phnctl/contacts/kind.h"
#include "phnctl/events/kind.h"

namespace phnctl {

std::vector<std::unique_ptr<BackupSection>> Sections()
{
    std::vector<std::unique_ptr<BackupSection>> sections;
    sections.push_back(std::make_unique<EntrySection>(ContactKind()));
    sections.push_back(std::make_unique<EntrySection>(EventKind()));
    sections.push_back(std::make_unique<MessageSection>());
    sections.push_back(std::make_unique<CallSection>());
    return sections;
}

} // namespace phnctl
