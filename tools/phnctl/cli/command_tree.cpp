#include "phnctl/cli/command_tree.h"

namespace phnctl {

const CLI::App* Child(const CLI::App& app, const std::string& name)
{
    const auto children = app.get_subcommands([&](const CLI::App* child) { return child->get_name() == name; });
    return children.empty() ? nullptr : children.front();
}

const CLI::Option* FindOption(const CLI::App& app, const std::string& name)
{
    for (const CLI::App* at = &app; at; at = at->get_parent())
        if (const CLI::Option* option = at->get_option_no_throw(name))
            return option;
    return nullptr;
}

bool TakesValue(const CLI::App& app, const std::string& word)
{
    const CLI::Option* option = FindOption(app, word);
    return option && option->get_expected_min() > 0;
}

} // namespace phnctl
