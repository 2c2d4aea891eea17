// phnctl status: battery, network and data connection on one screen.
#include "phnctl/cli/print.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/commands/status_report.h"
#include "phnctl/handset/session.h"
#include "phnctl/text/text.h"

namespace phnctl {

namespace {

int Status(const Invocation& invocation)
{
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const auto identity = handset.Read(handset.Api().GetDeviceInfo, "reading the identity");
        const std::string model = FromHandset(identity.szModel);
        const Labels labels = Labels::ForModel(model, invocation.options);
        Print(invocation.options, {{{"", "", {{"model", "Model", model}}},
                                    ReadBattery(handset, labels),
                                    ReadNetwork(handset, labels),
                                    ReadConnection(handset, labels)}});
    });
}

} // namespace

std::vector<Command> StatusCommands()
{
    return {{"status",
             "Show battery, network and data connection",
             "Values that only the model knows are shown under their field names unless a label\n"
             "file (--labels) names them; on a terminal they share lines. With --json the members are always\n"
             "the field names. 'phnctl watch' follows the changes.\n\n"
             "Examples:\n"
             "  phnctl status\n"
             "  phnctl --simulator status --json\n",
             {},
             Status}};
}

} // namespace phnctl
