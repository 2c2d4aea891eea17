// The nouns of the command line, each with its commands. One file or folder each; main.cpp puts them together.
#pragma once

#include "phnctl/cli/command.h"

#include <vector>

namespace phnctl {

std::vector<Command> InfoCommands();
std::vector<Command> StatusCommands();
std::vector<Command> WatchCommands();
std::vector<Command> RadioCommands();
std::vector<Command> LockCommands();
std::vector<Command> ParametersCommands();
std::vector<Command> ActivateCommands();
std::vector<Command> ErrorCommands();
std::vector<Command> ContactsCommands();
std::vector<Command> EventsCommands();
std::vector<Command> BackupCommands();
std::vector<Command> RestoreCommands();
std::vector<Command> MessagesCommands();
std::vector<Command> CallsCommands();
std::vector<Command> DoctorCommands();

} // namespace phnctl
