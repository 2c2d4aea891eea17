#include "phnctl/cli/manual.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <sstream>

namespace phnctl {

namespace {

// Text as it reads: what the formatter would take for a request, a typographic quote or a hyphen is none.
std::string Escaped(const std::string& text)
{
    std::string escaped = text.starts_with('.') || text.starts_with('\'') ? "\\&" : "";
    for (const char c : text) {
        switch (c) {
        case '\\':
            escaped += "\\e";
            break;
        case '-':
            escaped += "\\-";
            break;
        case '\'':
            escaped += "\\(aq";
            break;
        case '`':
            escaped += "\\(ga";
            break;
        case '^':
            escaped += "\\(ha";
            break;
        case '~':
            escaped += "\\(ti";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

std::string Bold(const std::string& text)
{
    return "\\fB" + Escaped(text) + "\\fR";
}

std::string Italic(const std::string& text)
{
    return "\\fI" + Escaped(text) + "\\fR";
}

std::string Item(const std::string& tag, const std::string& help)
{
    return fmt::format(".TP\n{}\n{}.\n", tag, Escaped(help));
}

std::string OptionItem(const std::string& name, const std::string& value, const std::string& help)
{
    return Item(Bold(name) + (value.empty() ? "" : " " + Italic(value)), help);
}

std::string OptionsSection(const CLI::App& app)
{
    std::string section = ".SH OPTIONS\nThey may stand before or behind the command.\n";
    for (const CLI::Option* option : app.get_options()) {
        const std::string initial = option->get_default_str();
        section += OptionItem("--" + option->get_lnames().front(),
                              option->get_expected_min() > 0 ? option->get_type_name() : "",
                              option->get_description() + (initial.empty() ? "" : " (default: " + initial + ")"));
    }
    return section;
}

// Paragraphs are filled; lines that begin with a blank, such as examples, stay as they are.
std::string Paragraphs(const std::string& text)
{
    std::string result;
    std::istringstream lines(text);
    bool isExample = false, begins = true;
    for (std::string line; std::getline(lines, line);) {
        if (line.empty()) {
            begins = true;
            continue;
        }
        if (isExample != line.starts_with(' ')) {
            isExample = !isExample;
            result += isExample ? ".nf\n" : ".fi\n";
        }
        result += (begins ? ".PP\n" : "") + Escaped(line) + '\n';
        begins = false;
    }
    return result + (isExample ? ".fi\n" : "");
}

std::string Shown(const Argument& argument)
{
    const bool isList = argument.count == Count::Many || argument.count == Count::Any;
    const bool mayMiss = argument.count == Count::Optional || argument.count == Count::Any;
    const std::string name = Italic(argument.name) + (isList ? "..." : "");
    return mayMiss ? "[" + name + "]" : name;
}

std::string CommandSection(const Command& command)
{
    std::string heading = Bold(command.words), items;
    for (const Argument& argument : command.arguments) {
        heading += " " + Shown(argument);
        items += Item(Italic(argument.name), argument.allowed.empty() ? argument.help
                                                                      : fmt::format("{}: {}", argument.help,
                                                                                    fmt::join(argument.allowed, ", ")));
    }
    for (const CommandOption& option : command.options)
        items += OptionItem(option.name, option.value, option.help);
    return fmt::format(".SS {}\n{}.\n{}{}", heading, Escaped(command.summary), items, Paragraphs(command.details));
}

} // namespace

std::string ManualSections(const CLI::App& app, const std::vector<Command>& commands)
{
    std::string sections = OptionsSection(app) + ".SH COMMANDS\n";
    for (const Command& command : commands)
        if (command.run)
            sections += CommandSection(command);
    return sections;
}

} // namespace phnctl
