#include "phnctl/cli/command_line.h"

#include "phnctl/cli/command_options.h"
#include "phnctl/cli/command_tree.h"
#include "phnctl/cli/completion.h"
#include "phnctl/cli/log_level.h"
#include "phnctl/cli/manual.h"
#include "phnctl/cli/options.h"
#include "phnctl/cli/spelling.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"
#include "phnctl/text/wrapping.h"
#include "system/system.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <map>

namespace phnctl {

namespace {

constexpr const char* kDescription = "Uses a CDMA handset attached by USB or by a serial port.";
constexpr fmt::string_view kEpilogue =
    "Exit status: 0 done; 1 not done, or not all of it: the handset or the library refused,\n"
    "there is none, or a question was answered with no; 2 the command line is wrong, or this\n"
    "build cannot do it; 130 ended by Ctrl-C.\n\n"
    "With --json a failure is an object too: {{\"error\":{{\"code\":203,\"name\":...,\"text\":...,\n"
    "\"while\":...}}}}; code and name where the library or the handset gave one. A value that only\n"
    "the handset's model knows is a member named like its field in phnnrv.h (uBattery1); all\n"
    "others have names of their own (model, esn). Label files name such a value for people;\n"
    "README.md beside those that come with the tool describes them: {}\n\n"
    "A first session, without a handset:\n"
    "  phnctl --simulator info\n"
    "  phnctl --simulator status\n"
    "  phnctl doctor";
constexpr const char* kCommandEpilogue = "\nThe options of 'phnctl --help' can be given here, too.";

class Line
{
public:
    Line(const std::vector<Command>& commands, ParsedLine& result) : m_result(result)
    {
        m_app.name("phnctl");
        m_app.footer(Flowing(fmt::format(kEpilogue, LabelFolder().string())));
        AddOptions(m_app, result.invocation.options, m_logLevel);
        for (const Command& command : commands)
            Add(command);
    }

    const CLI::App& App() const { return m_app; }

    void Parse(std::vector<std::string> arguments)
    {
        TurnHelpIntoOption(arguments);
        RefuseUnknownCommand(arguments);
        std::reverse(arguments.begin(), arguments.end());
        try {
            m_app.parse(arguments);
        } catch (const CLI::Success& success) {
            m_result.text = HelpOrVersion(success);
            return;
        } catch (const CLI::ParseError& error) {
            throw Failure(kUsage, Printable(error.what()), SeeHelp(Owner(error.what())));
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
        app->footer(Flowing(command.details) + (command.run ? kCommandEpilogue : ""));
        if (!command.run)
            app->require_subcommand(1);
        for (const Argument& argument : command.arguments)
            AddArgument(*app, argument, m_result.invocation.values[argument.name]);
        for (const CommandOption& option : command.options)
            AddCommandOption(*app, option, m_result.invocation.values[option.name]);
        m_commands[app] = &command;
    }

    // "help contacts list" is "contacts list --help".
    void TurnHelpIntoOption(std::vector<std::string>& arguments) const
    {
        std::size_t i = 0;
        while (i < arguments.size() && arguments[i].starts_with("--"))
            i += TakesValue(m_app, arguments[i]) ? 2 : 1;
        if (i >= arguments.size() || arguments[i] != "help")
            return;
        arguments.erase(arguments.begin() + static_cast<std::ptrdiff_t>(i));
        arguments.emplace_back("--help");
    }

    // The parsing library takes a misspelt word for a surplus argument; a person meant a command.
    void RefuseUnknownCommand(const std::vector<std::string>& arguments) const
    {
        const CLI::App* at = &m_app;
        for (std::size_t i = 0; i < arguments.size() && !at->get_subcommands({}).empty(); ++i) {
            const std::string& word = arguments[i];
            if (word.starts_with("--")) {
                i += TakesValue(*at, word);
            } else if (const CLI::App* next = Child(*at, word)) {
                at = next;
            } else {
                const std::vector<std::string> names = ChildNames(*at);
                throw Failure(kUsage,
                              fmt::format("unknown command '{}'; allowed after '{}': {}", Printable(word), Name(at),
                                          fmt::join(names, ", ")),
                              DidYouMean(word, names) + SeeHelp(at));
            }
        }
        const bool asksForText = std::any_of(arguments.begin(), arguments.end(), [](const std::string& word) {
            return word == "--help" || word == "-h" || word == "--version";
        });
        if (!at->get_subcommands({}).empty() && !asksForText)
            throw Failure(kUsage, fmt::format("'{}' needs a command: {}", Name(at), fmt::join(ChildNames(*at), ", ")),
                          SeeHelp(at));
    }

    // The help that shows the option which a message of the parsing library begins with: "--wait: ...".
    const CLI::App* Owner(const std::string& message) const
    {
        return m_app.get_option_no_throw(message.substr(0, message.find(':'))) ? &m_app : Deepest();
    }

    static std::string SeeHelp(const CLI::App* app) { return fmt::format("See '{} --help'.", Name(app)); }

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
        const unsigned terminal = host::TerminalWidth(stdout);
        return Wrapped(app->help(app->get_parent() ? Name(app->get_parent()) : ""), terminal ? terminal : 80, 0);
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
    Line line(commands, result);
    if (!arguments.empty() && arguments.front() == "__complete")
        result.text = Candidates(line.App(), {arguments.begin() + 1, arguments.end()});
    else if (!arguments.empty() && arguments.front() == "__man")
        result.text = ManualSections(line.App(), commands);
    else
        line.Parse(std::move(arguments));
    return result;
}

} // namespace phnctl
