// phnctl contacts: the phonebook.
#include "phnctl/cli/print.h"
#include "phnctl/commands/entries/commands.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/contacts/contact.h"
#include "phnctl/contacts/fitter.h"
#include "phnctl/contacts/kind.h"
#include "phnctl/contacts/meeting.h"
#include "phnctl/handset/labels.h"
#include "phnctl/handset/session.h"
#include "phnctl/text/text.h"

namespace phnctl {

namespace {

int Sizes(const Invocation& invocation)
{
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const auto identity = handset.Read(handset.Api().GetDeviceInfo, "reading the identity");
        const Labels labels = Labels::ForModel(FromHandset(identity.szModel), invocation.options);
        const auto sizes = handset.Read(handset.Api().GetFieldSizes, "reading the field sizes");
        Print(invocation.options, {{{"",
                                     "",
                                     {labels.Named("wFieldSize1", std::uint16_t{sizes.wFieldSize1}),
                                      labels.Named("wFieldSize2", std::uint16_t{sizes.wFieldSize2}),
                                      labels.Named("wFieldSize3", std::uint16_t{sizes.wFieldSize3}),
                                      labels.Named("wFieldSize4", std::uint16_t{sizes.wFieldSize4}),
                                      labels.Named("wFieldSize5", std::uint16_t{sizes.wFieldSize5}),
                                      labels.Named("wFieldSize6", std::uint16_t{sizes.wFieldSize6}),
                                      labels.Named("wFieldSize7", std::uint16_t{sizes.wFieldSize7}),
                                      labels.Named("dwFieldSize8", std::uint32_t{sizes.dwFieldSize8}),
                                      labels.Named("dwFieldSize9", std::uint32_t{sizes.dwFieldSize9}),
                                      labels.Named("dwFieldSize10", std::uint32_t{sizes.dwFieldSize10}),
                                      labels.Named("dwFieldSize11", std::uint32_t{sizes.dwFieldSize11})}}}});
    });
}

using namespace contact_property;

struct TypedPlace
{
    const char* option;
    const char* property;
    const char* help;
};

constexpr TypedPlace kTypedPlaces[] = {{"--mobile", kCell, "A mobile number"},
                                       {"--home", kHome, "A number at home"},
                                       {"--work", kWork, "A number at work"},
                                       {"--fax", kFax, "A fax number"},
                                       {"--email", kEmail, "An address"}};

// Numbers without an option take the places that are left.
int Add(const Invocation& invocation)
{
    std::vector<Wish> wishes{{kName, *invocation.Value("NAME"), "NAME"}};
    for (const std::string& number : invocation.values.at("NUMBER"))
        wishes.push_back({kAnyNumber, number, "NUMBER"});
    for (const auto& [option, property, help] : kTypedPlaces)
        if (const auto value = invocation.Value(option))
            wishes.push_back({property, *value, option});
    return AddTyped(invocation, ContactKind(), FitContact(wishes), [](const Entry& typed, const Inventory& inventory) {
        return NotesOnKin(ContactKind(), typed, inventory);
    });
}

Command AddCommand()
{
    std::vector<CommandOption> options;
    for (const auto& [option, property, help] : kTypedPlaces)
        options.push_back({option, property == kEmail ? "ADDRESS" : "NUMBER", help});
    for (CommandOption& option : AddOptions())
        options.push_back(std::move(option));
    return {
        "contacts add",
        "Store a contact that is typed here",
        "Each number without an option takes the first place that is free: mobile, home, work, second mobile. The\n"
        "answer shows where each one is, and which contacts have the name or a number already. 'phnctl undo' takes\n"
        "it back.\n\n"
        "Examples:\n  phnctl contacts add \"Anna Berg\" \"+47 555 01 42\" --work 5550100\n"
        "  phnctl contacts add Office --email office@example.org --dry-run\n",
        {{"NAME", "The whole name, in quotes", Count::One, {}}, {"NUMBER", "Numbers", Count::Any, {}}},
        Add,
        options};
}

} // namespace

std::vector<Command> ContactsCommands()
{
    std::vector<Command> commands = EntryCommands(ContactKind());
    commands.push_back(AddCommand());
    commands.push_back({"contacts sizes",
                        "Show the sizes of the handset's phonebook",
                        "Under their field names unless a label file names them.\n\n"
                        "Example:\n"
                        "  phnctl contacts sizes\n",
                        {},
                        Sizes});
    return commands;
}

} // namespace phnctl
