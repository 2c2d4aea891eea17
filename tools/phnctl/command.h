// What a command is: its words, its help, its arguments and the function that carries it out. Every noun has a file
// that lists its commands; command_line.cpp turns the lists into parsing and help, so a new noun touches neither.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace phnctl {

// The options that every command takes.
struct Options
{
    bool simulator = false;
    bool json = false;
    unsigned waitSeconds = 40;
    std::string library; // empty: the usual places
    std::string labels;  // the folder of the label files; empty: the shipped one
    std::optional<std::uint32_t> logLevel;
};

enum class Count
{
    One,
    Optional,
    Many,
};

struct Argument
{
    std::string name; // as the help shows it: CODE
    std::string help;
    Count count = Count::One;
    std::vector<std::string> allowed; // empty: any text
};

// An option that belongs to one command.
struct CommandOption
{
    std::string name;  // "--range"
    std::string value; // as the help shows its value: A-B; empty: the option takes none
    std::string help;
};

struct Invocation
{
    Options options;
    std::map<std::string, std::vector<std::string>> values; // by the name of the argument or command option

    bool Has(const std::string& name) const
    {
        const auto found = values.find(name);
        return found != values.end() && !found->second.empty();
    }

    // The value that was given once, or nothing.
    std::optional<std::string> Value(const std::string& name) const
    {
        const auto found = values.find(name);
        return found == values.end() || found->second.empty() ? std::nullopt
                                                              : std::optional<std::string>(found->second.front());
    }
};

struct Command
{
    std::string words; // "info", or "parameters get"
    std::string summary;
    std::string details; // what to know, and examples
    std::vector<Argument> arguments;
    std::function<int(const Invocation&)> run; // none: a heading for the commands that begin with this word
    std::vector<CommandOption> options = {};
};

// The nouns, one file each.
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
