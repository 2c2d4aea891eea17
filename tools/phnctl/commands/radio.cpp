// phnctl radio: switches the handset's radio.
#include "phnctl/cli/print.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/handset/session.h"

namespace phnctl {

namespace {

int Radio(const Invocation& invocation)
{
    const std::string state = *invocation.Value("STATE");
    return WithHandset(invocation.options, [&](const Handset& handset) {
        handset.Check(handset.Api().SetRadioPower(state == "on"), "switching the radio " + state);
        PrintDone(invocation.options, "The radio is " + state + ".", {{{"", "", {{"radio", "Radio", state}}}}});
    });
}

} // namespace

std::vector<Command> RadioCommands()
{
    return {{"radio",
             "Switch the handset's radio on or off",
             "Example:\n"
             "  phnctl radio off\n",
             {{"STATE", "The radio's new state", Count::One, {"on", "off"}}},
             Radio}};
}

} // namespace phnctl
