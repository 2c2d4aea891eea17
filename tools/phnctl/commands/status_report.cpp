#include "phnctl/commands/status_report.h"

#include "phnctl/text/error_names.h"
#include "phnctl/text/text.h"

#include <fmt/format.h>

namespace phnctl {

// Packed fields are copied: a reference to one may be misaligned.

Section ReadBattery(const Handset& handset, const Labels& labels)
{
    const auto info = handset.Read(handset.Api().GetBatteryInfo, "reading the battery");
    return {"battery",
            "Battery",
            {labels.Named("uBattery1", std::uint32_t{info.uBattery1}),
             labels.Named("uBattery2", std::uint32_t{info.uBattery2})},
            true};
}

Section ReadNetwork(const Handset& handset, const Labels& labels)
{
    const auto info = handset.Read(handset.Api().GetNetworkInfo, "reading the network");
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
             labels.Named("uNetwork64", std::uint32_t{info.uNetwork64})},
            true};
}

Section ReadConnection(const Handset& handset, const Labels& labels)
{
    const auto info = handset.Read(handset.Api().GetConnectionInfo, "reading the connection");
    const PHN_ERROR error = info.uNetworkError;
    const auto known = NetworkError(error);
    const std::string text = known ? known->name + known->joint + known->meaning : "";
    Field lastEnd("uNetworkError", "Last call ended", error);
    lastEnd.shown = error ? fmt::format("{} {}", error, text) : "no reason reported";
    return {"connection",
            "Connection",
            {labels.Named("uConnection0", std::uint32_t{info.uConnection0}),
             labels.Named("uConnection4", std::uint32_t{info.uConnection4}),
             labels.Named("uConnection8", std::uint32_t{info.uConnection8}),
             labels.Named("uConnection12", std::uint32_t{info.uConnection12}),
             labels.Named("uConnection16", std::uint32_t{info.uConnection16}),
             labels.Named("uConnection18", std::uint32_t{info.uConnection18}), lastEnd,
             Field("networkErrorText", "", text)},
            true};
}

Section ReadMessageCounts(const Handset& handset, const Labels& labels)
{
    Section section{"messages", "Messages", {}, true};
    for (std::int32_t box = PHN_MESSAGE_BOX_FIRST; box <= PHN_MESSAGE_BOX_LAST; ++box) {
        const std::string key = fmt::format("box{}", box);
        const std::string name = labels.NameOf("messageBox", box);
        section.fields.emplace_back(key, name.empty() ? key : name, handset.Api().GetMessageCount(box));
    }
    return section;
}

} // namespace phnctl
