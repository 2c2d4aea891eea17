// phnctl activate: over-the-air service provisioning.
#include "phnctl/cli/print.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/handset/session.h"

namespace phnctl {

namespace {

int Activate(const Invocation& invocation)
{
    return WithHandset(invocation.options, [&](const Handset& handset) {
        PHN_ACTIVATION_DATA data{};
        data.uSize = sizeof data;
        data.bAutomatic = 1;
        const PHN_ERROR answer = handset.Api().Activate(&data);
        if (answer != PHN_ERROR_ACTIVATION_STARTED)
            handset.Check(answer, "starting the activation");
        PrintDone(invocation.options, "Activation has started. The handset goes on by itself.",
                  {{{"", "", {{"activation", "Activation", "started"}}}}});
    });
}

} // namespace

std::vector<Command> ActivateCommands()
{
    return {{"activate",
             "Start over-the-air activation of the handset",
             "The handset dials the provisioning service by itself; this command only starts it.\n\n"
             "Example:\n"
             "  phnctl activate\n",
             {},
             Activate}};
}

} // namespace phnctl
