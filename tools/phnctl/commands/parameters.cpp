// phnctl parameters: the three phone parameters, whose meaning only the handset knows.
#include "phnctl/cli/print.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/handset/labels.h"
#include "phnctl/handset/session.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/number.h"
#include "phnctl/text/text.h"

#include <fmt/format.h>
#include <functional>

namespace phnctl {

namespace {

struct Parameter
{
    const char* name;
    std::uint64_t largest; // the handset keeps no more
    void (*set)(PHN_PARAMETERS&, std::uint64_t);
};

constexpr Parameter kParameters[] = {
    {"uParameter1", 0xFF, [](PHN_PARAMETERS& p, std::uint64_t n) { p.uParameter1 = static_cast<std::uint32_t>(n); }},
    {"uParameter2", 0xFF, [](PHN_PARAMETERS& p, std::uint64_t n) { p.uParameter2 = static_cast<std::uint32_t>(n); }},
    {"wParameter3", 0xFFFF, [](PHN_PARAMETERS& p, std::uint64_t n) { p.wParameter3 = static_cast<std::uint16_t>(n); }},
};

using Change = std::function<void(PHN_PARAMETERS&)>;

Change ParseChange(const std::string& text)
{
    const std::size_t equals = text.find('=');
    for (const Parameter& parameter : kParameters) {
        if (equals == std::string::npos || text.compare(0, equals, parameter.name) != 0)
            continue;
        const auto number = ParseNumber(std::string_view(text).substr(equals + 1), parameter.largest);
        if (!number)
            throw Failure(kUsage, fmt::format("'{}': allowed for {} are the numbers 0 to {}", Printable(text),
                                              parameter.name, parameter.largest));
        return [set = parameter.set, value = *number](PHN_PARAMETERS& parameters) { set(parameters, value); };
    }
    throw Failure(kUsage, fmt::format("'{}' is no change; allowed: uParameter1=NUMBER, uParameter2=NUMBER, "
                                      "wParameter3=NUMBER",
                                      Printable(text)));
}

void Show(const Invocation& invocation, const Handset& handset)
{
    const auto identity = handset.Read(handset.Api().GetDeviceInfo, "reading the identity");
    const Labels labels = Labels::ForModel(FromHandset(identity.szModel), invocation.options);
    const auto parameters = handset.Read(handset.Api().GetParameters, "reading the parameters");
    Print(invocation.options, {{{"",
                                 "",
                                 {labels.Named("uParameter1", std::uint32_t{parameters.uParameter1}),
                                  labels.Named("uParameter2", std::uint32_t{parameters.uParameter2}),
                                  labels.Named("wParameter3", std::uint16_t{parameters.wParameter3})}}}});
}

int Get(const Invocation& invocation)
{
    return WithHandset(invocation.options, [&](const Handset& handset) { Show(invocation, handset); });
}

int Set(const Invocation& invocation)
{
    std::vector<Change> changes;
    for (const std::string& text : invocation.values.at("CHANGE"))
        changes.push_back(ParseChange(text));
    return WithHandset(invocation.options, [&](const Handset& handset) {
        auto parameters = handset.Read(handset.Api().GetParameters, "reading the parameters");
        for (const Change& change : changes)
            change(parameters);
        handset.Check(handset.Api().SetParameters(&parameters), "writing the parameters");
        Show(invocation, handset);
    });
}

} // namespace

std::vector<Command> ParametersCommands()
{
    return {{"parameters", "Show or change the three phone parameters", "", {}, nullptr},
            {"parameters get",
             "Show the three phone parameters",
             "Example:\n"
             "  phnctl parameters get\n",
             {},
             Get},
            {"parameters set",
             "Change some of the phone parameters and show what the handset then holds",
             "uParameter1 and uParameter2 take 0 to 255, wParameter3 0 to 65535, also as 0x...\n"
             "What is not named stays as it is.\n\n"
             "Example:\n"
             "  phnctl parameters set uParameter1=1 wParameter3=0x200\n",
             {{"CHANGE", "NAME=NUMBER", Count::Many, {}}},
             Set}};
}

} // namespace phnctl
