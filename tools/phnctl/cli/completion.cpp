#include "phnctl/cli/completion.h"

#include "phnctl/cli/command_tree.h"

#include <fmt/format.h>
#include <set>
#include <sstream>

namespace phnctl {

namespace {

struct Place
{
    const CLI::App* app;
    const CLI::Option* option = nullptr; // that waits for its value
    int arguments = 0;                   // given already
};

Place PlaceBehind(const CLI::App& app, const std::vector<std::string>& words)
{
    Place place{&app};
    for (const std::string& word : words) {
        if (place.option)
            place.option = nullptr;
        else if (word.starts_with("--"))
            place.option = TakesValue(*place.app, word) ? FindOption(*place.app, word) : nullptr;
        else if (const CLI::App* next = Child(*place.app, word))
            place.app = next;
        else
            ++place.arguments;
    }
    return place;
}

// The values of an option or argument, from what the help shows: alternatives in small letters, placeholders in
// capitals.
std::string Values(const CLI::Option& option, const std::string& prefix = "")
{
    std::string shown = option.get_type_name();
    if (shown == "TEXT")
        shown = option.get_name(); // an argument's
    if (shown == "FILE" || shown == "PATH")
        return ":files\n";
    if (shown == "DIR")
        return ":folders\n";
    if (shown.find('|') == std::string::npos)
        return "";
    std::string lines;
    std::istringstream alternatives(shown);
    for (std::string value; std::getline(alternatives, value, '|');)
        if (CLI::detail::to_lower(value) == value)
            lines += fmt::format("{}{}\t{}\n", prefix, value, option.get_description());
    return lines;
}

std::string ValuesOfArgument(const Place& place)
{
    int end = 0;
    for (const CLI::Option* option : place.app->get_options()) {
        if (!option->get_positional())
            continue;
        end += option->get_items_expected_max();
        if (place.arguments < end)
            return Values(*option);
    }
    return "";
}

// The command's own first, then those that every command takes.
std::string OptionNames(const CLI::App& app)
{
    std::set<std::string> names; // --help belongs to each
    std::string lines;
    for (const CLI::App* at = &app; at; at = at->get_parent())
        for (const CLI::Option* option : at->get_options())
            if (!option->get_positional() && names.insert(option->get_lnames().front()).second)
                lines += fmt::format("--{}\t{}\n", option->get_lnames().front(), option->get_description());
    return lines;
}

std::string Commands(const CLI::App& app)
{
    std::string lines;
    for (const CLI::App* child : app.get_subcommands({}))
        lines += fmt::format("{}\t{}\n", child->get_name(), child->get_description());
    return lines;
}

} // namespace

std::string Candidates(const CLI::App& app, const std::vector<std::string>& words)
{
    if (words.empty())
        return "";
    const Place place = PlaceBehind(app, {words.begin(), words.end() - 1});
    if (place.option)
        return Values(*place.option);
    const std::string& typed = words.back();
    if (!typed.starts_with("-"))
        return Commands(*place.app) + ValuesOfArgument(place);
    const std::size_t equals = typed.find('=');
    if (equals == std::string::npos)
        return OptionNames(*place.app);
    const CLI::Option* option = FindOption(*place.app, typed.substr(0, equals));
    return option ? Values(*option, typed.substr(0, equals + 1)) : "";
}

} // namespace phnctl
