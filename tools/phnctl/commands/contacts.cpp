// phnctl contacts: the phonebook.
#include "phnctl/cli/print.h"
#include "phnctl/commands/entries/commands.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/contacts/kind.h"
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

} // namespace

std::vector<Command> ContactsCommands()
{
    std::vector<Command> commands = EntryCommands(ContactKind());
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
