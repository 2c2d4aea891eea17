#include "phnctl/cli/command_options.h"

#include "phnctl/cli/log_level.h"
#include "phnctl/text/text.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace phnctl {

namespace {

// The help shows the bounds in the option's own words.
CLI::Validator WaitRange()
{
    CLI::Validator range = CLI::Range(1u, 3600u);
    range.description("");
    return range;
}

CLI::Validator ExistingFolder()
{
    CLI::Validator folder = CLI::ExistingDirectory;
    folder.description("");
    return folder;
}

} // namespace

void AddOptions(CLI::App& app, Options& options, std::string& logLevel)
{
    app.add_flag("--simulator", options.simulator, "Use a simulated handset of the tool's own");
    app.add_flag("--json", options.json, "Answer with one JSON object");
    app.add_option("--wait", options.waitSeconds, "How long to look for a handset, 1 to 3600")
        ->type_name("SECONDS")
        ->capture_default_str()
        ->check(WaitRange());
    app.add_option("--library", options.library, "The handset library (default: the one that belongs to the tool)")
        ->type_name("PATH");
    app.add_option("--labels", options.labels,
                   "Folder of label files, which name what only a handset model knows (default: those of the tool)")
        ->type_name("DIR")
        ->check(ExistingFolder());
    app.add_option("--log", logLevel, "Write the library's log into a file beside the library")
        ->type_name(fmt::format("{}|NUMBER", fmt::join(LogLevelNames(), "|")));
    app.add_flag("--slow-reads", options.slowReads, "End each read by 10 ms of silence, for a handset that needs it");
    app.set_version_flag("--version", "phnctl " PHN_VERSION);
}

void AddArgument(CLI::App& app, const Argument& argument, std::vector<std::string>& values)
{
    CLI::Option* option = app.add_option(argument.name, values, argument.help);
    option->required(argument.count == Count::One || argument.count == Count::Many);
    option->type_name(argument.allowed.empty() ? "TEXT" : fmt::format("{}", fmt::join(argument.allowed, "|")));
    if (argument.count == Count::Many || argument.count == Count::Any)
        option->expected(-1);
    else
        option->expected(1)->allow_extra_args(false);
    if (!argument.allowed.empty())
        option->transform(CLI::Validator(
            [&argument](std::string& value) {
                const std::string lower = CLI::detail::to_lower(value);
                if (std::find(argument.allowed.begin(), argument.allowed.end(), lower) == argument.allowed.end())
                    return fmt::format("'{}' is not one of: {}", Printable(value), fmt::join(argument.allowed, ", "));
                value = lower;
                return std::string();
            },
            ""));
}

void AddCommandOption(CLI::App& app, const CommandOption& option, std::vector<std::string>& values)
{
    if (option.value.empty())
        app.add_flag_callback(
            option.name, [&values] { values.emplace_back(); }, option.help);
    else
        app.add_option(option.name, values, option.help)->type_name(option.value)->expected(1)->allow_extra_args(false);
}

} // namespace phnctl
