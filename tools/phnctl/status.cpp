// phnctl status: battery, network and data connection on one screen.
#include "phnctl/command.h"
#include "phnctl/labels.h"
#include "phnctl/print.h"
#include "phnctl/session.h"
#include "phnctl/text.h"

#include <fmt/format.h>

namespace phnctl {

namespace {

Section Battery(const PHN_BATTERY_INFO& info, const Labels& labels)
{
    return {"battery",
            "Battery",
            {labels.Named("uBattery1", std::uint32_t{info.uBattery1}),
             labels.Named("uBattery2", std::uint32_t{info.uBattery2})}};
}

Section Network(const PHN_NETWORK_INFO& info, const Labels& labels)
{
    return {"network",
            "Network",
            {labels.Named("uNetwork0", std::uint32_t{info.uNetwork0}),
             labels.Named("uNetwork4", std::uint32_t{info.uNetwork4}),
             labels.Named("uNetwork5", std::uint32_t{info.uNetwork5}),
             labels.Named("wNetwork6", std::uint16_t{info.wNetwork6}),
             labels.Named("wNetwork8", std::uint16_t{info.wNetwork8}),
             labels.Named("wNetwork10", std::uint16_t{info.wNetwork10}),
             labels.Named("wNetwork12", std::uint16_t{info.wNetwork12}),
             labels.Named("wNetwork14", std::uint16_t{info.wNetwork14}),
             labels.Named("wNetwork16", std::uint16_t{info.wNetwork16}),
             labels.Named("wNetwork18", std::uint16_t{info.wNetwork18}),
             labels.Named("uNetwork20", std::uint32_t{info.uNetwork20}),
             labels.Named("nNetwork22", std::int32_t{info.nNetwork22}),
             labels.Named("szNetwork26", FromHandset(info.szNetwork26)),
             labels.Named("nNetwork60", std::int32_t{info.nNetwork60}),
             labels.Named("uNetwork64", std::uint32_t{info.uNetwork64})}};
}

Section Connection(const Handset& handset, const PHN_CONNECTION_INFO& info, const Labels& labels)
{
    const PHN_ERROR error = info.uNetworkError;
    const std::string text = error ? handset.NetworkErrorText(error) : "";
    Field lastEnd("uNetworkError", "Last call ended", error);
    lastEnd.shown = error ? fmt::format("{} {}", error, text) : "no reason reported";
    Field lastEndText("networkErrorText", "", text);
    Section section{"connection",
                    "Connection",
                    {labels.Named("uConnection0", std::uint32_t{info.uConnection0}),
                     labels.Named("uConnection4", std::uint32_t{info.uConnection4}),
                     labels.Named("uConnection8", std::uint32_t{info.uConnection8}),
                     labels.Named("uConnection12", std::uint32_t{info.uConnection12}),
                     labels.Named("uConnection16", std::uint32_t{info.uConnection16}),
                     labels.Named("uConnection18", std::uint32_t{info.uConnection18}), lastEnd, lastEndText}};
    return section;
}

int Status(const Invocation& invocation)
{
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const Library& api = handset.Api();
        const auto identity = handset.Read(api.GetDeviceInfo, "reading the identity");
        const std::string model = FromHandset(identity.szModel);
        const Labels labels = Labels::ForModel(model, invocation.options);
        Print(invocation.options,
              {{{"", "", {{"model", "Model", model}}},
                Battery(handset.Read(api.GetBatteryInfo, "reading the battery"), labels),
                Network(handset.Read(api.GetNetworkInfo, "reading the network"), labels),
                Connection(handset, handset.Read(api.GetConnectionInfo, "reading the connection"), labels)}});
    });
}

} // namespace

std::vector<Command> StatusCommands()
{
    return {{"status",
             "Show battery, network and data connection",
             "Values that only the model knows are shown under their field names unless a label\n"
             "file names them. With --json the members are always the field names.\n\n"
             "Examples:\n"
             "  phnctl status\n"
             "  phnctl --simulator status --json\n",
             {},
             Status}};
}

} // namespace phnctl
