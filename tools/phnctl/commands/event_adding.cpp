#include "phnctl/commands/event_adding.h"

#include "phnctl/commands/entries/commands.h"
#include "phnctl/events/event.h"
#include "phnctl/events/kind.h"
#include "phnctl/events/typed.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/number.h"
#include "phnctl/text/text.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace phnctl {

namespace {

constexpr const char* kRepeat = "--repeat";
constexpr const char* kLead = "--alarm";

std::int64_t LeadOf(const std::string& text)
{
    const auto minutes = ParseNumber(text, 0xFFFF);
    if (!minutes || !std::ranges::count(AlarmLeads(), static_cast<std::int64_t>(*minutes)))
        throw Failure(kUsage, fmt::format("{} '{}': the handset has alarms {} minutes before the start", kLead,
                                          Printable(text), fmt::join(AlarmLeads(), ", ")));
    return static_cast<std::int64_t>(*minutes);
}

int Add(const Invocation& invocation)
{
    EventDraft draft;
    draft.text = *invocation.Value("TEXT");
    if (OneLine(draft.text).empty())
        throw Failure(kUsage, "an event needs a text");
    const TypedSpan span = ParseTypedSpan(fmt::format("{}", fmt::join(invocation.values.at("WHEN"), " ")), LocalNow());
    draft.start = span.start;
    draft.end = span.end;
    if (const auto rule = invocation.Value(kRepeat))
        draft.rule = ParseTypedRule(*rule, span.start);
    if (const auto lead = invocation.Value(kLead))
        draft.alarm = LeadOf(*lead);
    return AddTyped(invocation, EventKind(), FitEvent(draft));
}

} // namespace

Command EventAddCommand()
{
    std::vector<CommandOption> options = AddOptions();
    options.insert(options.begin(), {{kRepeat, "RULE",
                                      "daily, weekly, weekly mon,wed, monthly or yearly; then x10 or "
                                      "until 2009-06-01"},
                                     {kLead, "MINUTES", "An alarm so long before the start"}});
    return {
        "events add",
        "Store an event that is typed here",
        "WHEN is a day (2009-03-15, today, tomorrow, fri), then a time (18:30), then how long (45m, 1h30, 2d), in\n"
        "local time. Without a time it is a whole day, or several (2d). Without a length it ends when it starts.\n"
        "What is over, or may mean two things, is refused. The answer shows the event in full, and 'phnctl undo'\n"
        "takes it back.\n\n"
        "Examples:\n  phnctl events add Dentist tomorrow 9:00 1h30 --alarm 60\n"
        "  phnctl events add Choir thu 19:30 2h --repeat \"weekly until 2009-06-25\"\n"
        "  phnctl events add Holidays 2009-07-06 14d --dry-run\n",
        {{"TEXT", "What it is, in quotes", Count::One, {}}, {"WHEN", "A day, a time and a length", Count::Many, {}}},
        Add,
        options};
}

} // namespace phnctl
