// The nouns of the command line, each with its commands, in the order in which the help shows them: one row here, and
// one file or folder beside this one.
#pragma once

#include "phnctl/cli/command.h"

#include <vector>

#define PHNCTL_NOUNS(ROW)                                                                                              \
    ROW(Info)                                                                                                          \
    ROW(Status)                                                                                                        \
    ROW(Watch)                                                                                                         \
    ROW(Radio)                                                                                                         \
    ROW(Lock)                                                                                                          \
    ROW(Parameters)                                                                                                    \
    ROW(Activate)                                                                                                      \
    ROW(Contacts)                                                                                                      \
    ROW(Events)                                                                                                        \
    ROW(Messages)                                                                                                      \
    ROW(Calls)                                                                                                         \
    ROW(Backup)                                                                                                        \
    ROW(Restore)                                                                                                       \
    ROW(Undo)                                                                                                          \
    ROW(Error)                                                                                                         \
    ROW(Doctor)                                                                                                        \
    ROW(Report)

namespace phnctl {

#define PHNCTL_ROW(noun) std::vector<Command> noun##Commands();
PHNCTL_NOUNS(PHNCTL_ROW)
#undef PHNCTL_ROW

} // namespace phnctl
