#include "phnctl/command_line.h"

#include "phnctl/failure.h"
#include "phnctl/log_level.h"
#include "phnctl/text.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace phnctl {

namespace {

constexpr const char* kDescription = "Uses a CDMA handset attached by USB or by a serial port.";
constexpr const char* kEpilogue = "Exit status: 0 done; 1 the handset or the library refused, or there is none;\n"
                                  "2 the command line is wrong, or this build cannot do it.\n\n"
                                  "A first session, without a handset:\n"
                                  "  phnctl --simulator info\n"
                                  "  phnctl --simulator status\n"
                                  "  phnctl doctor";
constexpr const char* kLogLevelName = "--log";

// The help shows the bounds in the option's own words.
CLI::Validator WaitRange()
{
    CLI::Validator range = CLI::Range(1u, 3600u);
    range.description("");
    return range;
}

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
    app.add_option("--labels", options.labels, "Folder of label files, which name what only a handset model knows")
        ->type_name("DIR");
    app.add_option(kLogLevelName, logLevel, "Let the library write its log: " + LogLevelNames() + ", or a number")
        ->type_name("LEVEL");
    app.set_version_flag("--version", "phnctl " PHN_VERSION);
}

void AddArgument(CLI::App& app, const Argument& argument, std::vector<std::string>& values)
{
    CLI::Option* option = app.add_option(argument.name, values, argument.help);
    option->required(argument.count != Count::Optional);
    option->type_name(argument.allowed.empty() ? "TEXT" : fmt::format("{}", fmt::join(argument.allowed, "|")));
    if (argument.count == Count::Many)
        option->expected(-1);
    else
        option->expected(1)->allow_extra_args(false);
    if (!argument.allowed.empty())
        option->check([&argument](const std::string& value) {
            if (std::find(argument.allowed.begin(), argument.allowed.end(), value) != argument.allowed.end())
                return std::string();
            return fmt::format("'{}' is not one of: {}", Printable(value), fmt::join(argument.allowed, ", "));
        });
}

void AddCommandOption(CLI::App& app, const CommandOption& option, std::vector<std::string>& values)
{
    if (option.value.empty())
        app.add_flag_callback(
            option.name, [&values] { values.emplace_back(); }, option.help);
    else
        app.add_option(option.name, values, option.help)->type_name(option.value)->expected(1);
}

class Line
{
public:
    Line(const std::vector<Command>& commands, ParsedLine& result) : m_result(result)
    {
        m_app.name("phnctl");
        m_app.footer(kEpilogue);
        AddOptions(m_app, result.invocation.options, m_logLevel);
        for (const Command& command : commands)
            Add(command);
    }

    void Parse(std::vector<std::string> arguments)
    {
        RefuseUnknownCommand(arguments);
        std::reverse(arguments.begin(), arguments.end());
        try {
            m_app.parse(arguments);
        } catch (const CLI::Success& success) {
            m_result.text = HelpOrVersion(success);
            return;
        } catch (const CLI::ParseError& error) {
            throw Failure(kUsage, fmt::format("{}\nSee '{} --help'.", Printable(error.what()), Name(Deepest())));
        }
        m_result.command = m_commands.at(Deepest());
        if (!m_logLevel.empty())
            m_result.invocation.options.logLevel = ParseLogLevel(m_logLevel);
    }

private:
    void Add(const Command& command)
    {
        const std::size_t space = command.words.find(' ');
        CLI::App* parent = space == std::string::npos ? &m_app : m_app.get_subcommand(command.words.substr(0, space));
        CLI::App* app = parent->add_subcommand(
            space == std::string::npos ? command.words : command.words.substr(space + 1), command.summary);
        app->fallthrough();
        app->footer(command.details);
        if (!command.run)
            app->require_subcommand(1);
        for (const Argument& argument : command.arguments)
            AddArgument(*app, argument, m_result.invocation.values[argument.name]);
        for (const CommandOption& option : command.options)
            AddCommandOption(*app, option, m_result.invocation.values[option.name]);
        m_commands[app] = &command;
    }

    // The parsing library takes a misspelt word for a surplus argument; a person meant a command.
    void RefuseUnknownCommand(const std::vector<std::string>& arguments) const
    {
        const CLI::App* at = &m_app;
        for (std::size_t i = 0; i < arguments.size() && !at->get_subcommands({}).empty(); ++i) {
            const std::string& word = arguments[i];
            if (word.starts_with("--")) {
                i += TakesValue(word);
            } else if (const CLI::App* next = Child(*at, word)) {
                at = next;
            } else {
                throw Failure(kUsage, fmt::format("unknown command '{}'; allowed after '{}': {}", Printable(word),
                                                  Name(at), fmt::join(ChildNames(*at), ", ")));
            }
        }
        const bool asksForText = std::any_of(arguments.begin(), arguments.end(), [](const std::string& word) {
            return word == "--help" || word == "-h" || word == "--version";
        });
        if (!at->get_subcommands({}).empty() && !asksForText)
            throw Failure(kUsage, fmt::format("'{}' needs a command: {}\nSee '{} --help'.", Name(at),
                                              fmt::join(ChildNames(*at), ", "), Name(at)));
    }

    bool TakesValue(const std::string& word) const
    {
        const CLI::Option* option = m_app.get_option_no_throw(word);
        return option && option->get_expected_min() > 0;
    }

    static const CLI::App* Child(const CLI::App& app, const std::string& word)
    {
        const auto children = app.get_subcommands([&](const CLI::App* child) { return child->get_name() == word; });
        return children.empty() ? nullptr : children.front();
    }

    static std::vector<std::string> ChildNames(const CLI::App& app)
    {
        std::vector<std::string> names;
        for (const CLI::App* child : app.get_subcommands({}))
            names.push_back(child->get_name());
        return names;
    }

    const CLI::App* Deepest() const
    {
        const CLI::App* app = &m_app;
        while (!app->get_subcommands().empty())
            app = app->get_subcommands().front();
        return app;
    }

    static std::string Name(const CLI::App* app)
    {
        return app->get_parent() ? Name(app->get_parent()) + " " + app->get_name() : app->get_name();
    }

    std::string HelpOrVersion(const CLI::Success& success) const
    {
        if (success.get_name() == "CallForVersion")
            return std::string(success.what()) + '\n';
        const CLI::App* app = Deepest();
        return app->help(app->get_parent() ? Name(app->get_parent()) : "");
    }

    CLI::App m_app{kDescription};
    std::string m_logLevel;
    std::map<const CLI::App*, const Command*> m_commands;
    ParsedLine& m_result;
};

} // namespace

ParsedLine ParseLine(const std::vector<Command>& commands, std::vector<std::string> arguments)
{
    ParsedLine result;
    Line(commands, result).Parse(std::move(arguments));
    return result;
}

} // namespace phnctl
