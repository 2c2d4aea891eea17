// The program: one command per run. All failures end here.
#include "phnctl/command_line.h"
#include "phnctl/ending.h"
#include "phnctl/failure.h"
#include "system/system.h"

#include <fmt/format.h>
#include <iterator>

namespace phnctl {

namespace {

std::vector<Command> AllCommands()
{
    std::vector<Command> commands;
    for (auto* list : {InfoCommands, StatusCommands, WatchCommands, RadioCommands, LockCommands, ParametersCommands,
                       ActivateCommands, ContactsCommands, MessagesCommands, CallsCommands, BackupCommands,
                       ErrorCommands, DoctorCommands})
        for (Command& command : list())
            commands.push_back(std::move(command));
    return commands;
}

int Run(std::vector<std::string> arguments)
{
    const std::vector<Command> commands = AllCommands();
    const ParsedLine line = ParseLine(commands, std::move(arguments));
    if (line.command)
        return line.command->run(line.invocation);
    fmt::print("{}", line.text);
    return kDone;
}

int RunSafely(int argc, char** argv)
{
    try {
        EndOnInterrupt();
        return Run(host::Arguments(argc, argv));
    } catch (const Failure& failure) {
        fmt::print(stderr, "phnctl: {}\n", failure.what());
        return failure.ExitStatus();
    } catch (const std::exception& error) {
        fmt::print(stderr, "phnctl: {}\n", error.what());
        return kRefused;
    }
}

} // namespace

} // namespace phnctl

int main(int argc, char** argv)
{
    phnctl::EndNow(phnctl::RunSafely(argc, argv));
}
