// What a command is: its words, its help, its arguments and the function that carries it out. Every noun has a file
// that lists its commands; command_line.cpp turns the lists into parsing and help, so a new noun touches neither.
#pragma once

#include "phnctl/cli/options.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace phnctl {

enum class Count
{
    One,
    Optional,
    Many, // at least one
    Any,  // or none
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

} // namespace phnctl
