// phnctl info: who the handset is.
#include "phnctl/cli/print.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/handset/labels.h"
#include "phnctl/handset/session.h"
#include "phnctl/text/text.h"

namespace phnctl {

namespace {

Report Describe(const PHN_DEVICE_INFO& info, const Labels& labels)
{
    // Packed fields are copied: a reference to one may be misaligned.
    return {{
        {"",
         "",
         {{"model", "Model", FromHandset(info.szModel)},
          {"number", "Number", FromHandset(info.szNumber)},
          {"esn", "Serial number", FromHandset(info.szESN)}}},
        {"",
         "",
         {labels.Named("uInfo19", std::uint32_t{info.uInfo19}), labels.Named("szInfo20", FromHandset(info.szInfo20)),
          labels.Named("szInfo148", FromHandset(info.szInfo148)),
          labels.Named("szInfo212", FromHandset(info.szInfo212)),
          labels.Named("szInfo216", FromHandset(info.szInfo216)),
          labels.Named("uInfo238", std::uint32_t{info.uInfo238}),
          labels.Named("uInfo242", std::uint32_t{info.uInfo242}),
          labels.Named("uInfo246", std::uint32_t{info.uInfo246}),
          labels.Named("uInfo250", std::uint32_t{info.uInfo250}),
          labels.Named("uInfo251", std::uint32_t{info.uInfo251}),
          labels.Named("szInfo253", FromHandset(info.szInfo253))}},
    }};
}

int Info(const Invocation& invocation)
{
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const auto info = handset.Read(handset.Api().GetDeviceInfo, "reading the identity");
        Print(invocation.options, Describe(info, Labels::ForModel(FromHandset(info.szModel), invocation.options)));
    });
}

} // namespace

std::vector<Command> InfoCommands()
{
    return {{"info",
             "Show the handset's identity",
             "Model, own number, serial number, and the values that only the model knows, under\n"
             "their field names unless a label file (--labels) names them.\n\n"
             "Examples:\n"
             "  phnctl info\n"
             "  phnctl --simulator info --json\n",
             {},
             Info}};
}

} // namespace phnctl
