// phnctl events: the calendar.
#include "phnctl/commands/entries/commands.h"
#include "phnctl/commands/event_adding.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/events/event.h"
#include "phnctl/events/file.h"
#include "phnctl/events/kind.h"
#include "phnctl/events/words.h"
#include "phnctl/handset/session.h"
#include "phnctl/plan/inventory.h"
#include "phnctl/text/counted.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/number.h"
#include "phnctl/text/table.h"
#include "phnctl/text/text.h"
#include "system/system.h"

#include <algorithm>
#include <fmt/format.h>

namespace phnctl {

namespace {

constexpr const char* kStored = "--stored";
constexpr const char* kFrom = "--from";
constexpr const char* kDays = "--days";
constexpr std::int64_t kDay = 86400;
constexpr std::int64_t kDefaultDays = 30;
constexpr std::size_t kMostOfOne = 1000;

struct Span
{
    EventTime from;
    EventTime to; // local times
};

struct Occurrence
{
    EventTime start; // local times
    EventTime end;
    Event event;
    const StoredEntry* stored;
};

Span SpanOf(const Invocation& invocation)
{
    Span span{LocalNow(), {}};
    if (const auto date = invocation.Value(kFrom)) {
        std::string digits = *date;
        std::erase(digits, '-');
        const auto from = ParseStatedTime(digits);
        if (!from || from->form != StatedTime::Form::Day)
            throw Failure(kUsage,
                          fmt::format("{} '{}': allowed is a date such as 2009-03-10", kFrom, Printable(*date)));
        span.from = from->time;
    }
    std::int64_t days = kDefaultDays;
    if (const auto text = invocation.Value(kDays)) {
        const auto number = ParseNumber(*text, 36600);
        if (!number || *number == 0)
            throw Failure(kUsage, fmt::format("{} '{}': allowed is a number from 1 to 36600", kDays, Printable(*text)));
        days = static_cast<std::int64_t>(*number);
    }
    span.to = TimeOf(SecondsOf(span.from) + days * kDay);
    return span;
}

// Those of one event that are not over before the span begins.
void Collect(const StoredEntry& stored, const Span& span, std::vector<Occurrence>& found)
{
    const Event event = EventOf(stored.entry);
    if (!event.start || !event.end)
        return;
    EventRule rule = event.rule;
    rule.EndInOwnTime(event.zone);
    const std::int64_t length = SecondsOf(*event.end) - SecondsOf(*event.start);
    // A day more on both sides, as the span is local time and the event's may be another.
    const EventTime first = TimeOf(SecondsOf(span.from) - length - kDay);
    const EventTime last = TimeOf(SecondsOf(span.to) + kDay);
    const auto starts = rule.Repeats() ? Occurrences(*event.start, rule, first, last, kMostOfOne)
                                       : std::vector<EventTime>{*event.start};
    for (const EventTime& start : starts) {
        const EventTime end = TimeOf(SecondsOf(start) + length);
        Occurrence occurrence{LocalTimeOf(start, event.zone), LocalTimeOf(end, event.zone), event, &stored};
        if (occurrence.end >= span.from && occurrence.start < span.to)
            found.push_back(std::move(occurrence));
    }
}

Json OccurrenceJson(const Occurrence& occurrence)
{
    const Event& event = occurrence.event;
    const bool repeats = event.rule.Repeats();
    return {JsonObject{{"start", {IsoText(occurrence.start, "")}},
                       {"end", {IsoText(occurrence.end, "")}},
                       {"allDay", {IsAllDay(event)}},
                       {"title", {EventKind().Title(occurrence.stored->entry)}},
                       {"rule", repeats ? Json{event.rule.written} : Json{nullptr}},
                       {"repeats", repeats ? Json{RuleInWords(event.rule, event.zone)} : Json{nullptr}},
                       {"alarm", event.alarm ? Json{*event.alarm} : Json{nullptr}},
                       {"index", {std::int64_t{occurrence.stored->index}}}}};
}

Json OccurrencesJson(const std::vector<Occurrence>& occurrences)
{
    JsonList list;
    for (const Occurrence& occurrence : occurrences)
        list.push_back(OccurrenceJson(occurrence));
    return {JsonObject{{"occurrences", {std::move(list)}}}};
}

std::string OccurrencesText(const std::vector<Occurrence>& occurrences)
{
    std::vector<std::vector<std::string>> rows;
    for (const Occurrence& occurrence : occurrences) {
        const Event& event = occurrence.event;
        const ShownSpan span = SpanInWords(occurrence.start, occurrence.end, IsAllDay(event));
        rows.push_back({span.start, span.end, EventKind().Title(occurrence.stored->entry),
                        RuleInWords(event.rule, event.zone), LeadInWords(event.alarm),
                        std::to_string(occurrence.stored->index)});
    }
    return TableText({"Start", "End", "Text", "Repeats", "Alarm", "Index"}, rows, host::TerminalWidth(stdout));
}

int ListOccurrences(const Invocation& invocation)
{
    const IndexRange range = RangeOf(invocation);
    const Span span = SpanOf(invocation);
    int status = kDone;
    WithHandset(invocation.options, [&](const Handset& handset) {
        const Inventory inventory = Search(invocation, handset, EventKind(), range);
        TellUnread(EventKind(), inventory);
        TellGarbled(EventKind(), inventory.entries);
        status = inventory.unread.empty() ? kDone : kRefused;
        std::vector<Occurrence> occurrences;
        for (const StoredEntry& stored : inventory.entries)
            Collect(stored, span, occurrences);
        std::ranges::stable_sort(occurrences, {}, &Occurrence::start);
        if (invocation.options.json)
            return fmt::print("{}\n", WriteJson(OccurrencesJson(occurrences)));
        fmt::print("{}{} from {} to {}, of {}\n", occurrences.empty() ? "" : OccurrencesText(occurrences) + '\n',
                   Counted(occurrences.size(), "occurrence"), Shown(span.from), Shown(span.to),
                   Counted(inventory.entries.size(), "event"));
    });
    return status;
}

} // namespace

std::vector<Command> EventsCommands()
{
    std::vector<Command> commands = EntryCommands(EventKind());
    Command& list = *std::ranges::find(commands, "events list", &Command::words);
    const auto listStored = list.run;
    list.summary = "List what is coming, in order";
    list.details = "Each occurrence of each event with its local time and how it repeats.\n\n"
                   "Examples:\n  phnctl events list\n  phnctl events list --from 2009-03-01 --days 7\n"
                   "  phnctl events list --stored\n";
    list.options.push_back({kFrom, "DATE", "From the begin of this day on (default: from now)"});
    list.options.push_back({kDays, "N", fmt::format("So many days of it (default: {})", kDefaultDays)});
    list.options.push_back({kStored, "", "The events as they are stored, by index"});
    list.run = [listStored](const Invocation& invocation) {
        return invocation.Has(kStored) ? listStored(invocation) : ListOccurrences(invocation);
    };
    commands.push_back(EventAddCommand());
    return commands;
}

} // namespace phnctl
