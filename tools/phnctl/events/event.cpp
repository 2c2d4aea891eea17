#include "phnctl/events/event.h"

#include "phnctl/text/number.h"

namespace phnctl {

using namespace event_property;

namespace {

constexpr const char* kNoRinger = "255";

} // namespace

void EventDraft::Tell(const char* code, const std::string& property, std::string words)
{
    const auto found = lines.find(property);
    notes.push_back({code, property, found == lines.end() ? line : found->second, std::move(words)});
}

std::string ValueOf(const Entry& entry, const char* property)
{
    const std::string* value = entry.Find(property);
    return value ? *value : std::string();
}

Event EventOf(const Entry& entry)
{
    Event event;
    event.text = ValueOf(entry, kText);
    event.start = ParseEventTime(ValueOf(entry, kStart));
    event.end = ParseEventTime(ValueOf(entry, kEnd));
    event.zone = ValueOf(entry, kZone);
    event.rule = ParseRule(ValueOf(entry, kRule));
    event.alarm = ParseNumber(ValueOf(entry, kAlarm), kLargestNumber);
    event.ringer = ParseNumber(ValueOf(entry, kRinger), kLargestNumber);
    event.uid = ValueOf(entry, kUid);
    event.created = ParseEventTime(ValueOf(entry, kCreated));
    event.modified = ParseEventTime(ValueOf(entry, kModified));
    return event;
}

Entry EntryOf(const Event& event)
{
    const auto number = [](const std::optional<std::int64_t>& value) { return value ? std::to_string(*value) : ""; };
    Entry entry;
    entry.fields = {{kText, event.text},
                    {kStart, EventTimeText(event.start)},
                    {kEnd, EventTimeText(event.end)},
                    {kZone, event.zone},
                    {kRule, event.rule.Text()},
                    {kAlarm, number(event.alarm)},
                    {kRinger, number(event.ringer)},
                    {kCreated, EventTimeText(event.created)},
                    {kModified, EventTimeText(event.modified)},
                    {kUid, event.uid}};
    std::erase_if(entry.fields, [](const EntryField& field) { return field.value.empty(); }); // the same as none
    return entry;
}

bool IsAllDay(const Event& event)
{
    if (!event.zone.empty() || !event.start || !event.end)
        return false;
    const auto isMidnight = [](const EventTime& time) {
        return time.hour == 0 && time.minute == 0 && time.second == 0;
    };
    const bool isLastMinute = event.end->hour == 23 && event.end->minute == 59;
    return isMidnight(*event.start) && *event.start < *event.end && (isLastMinute || isMidnight(*event.end));
}

Entry CompleteEvent(const Entry& wanted, const Entry* replaced)
{
    const auto chosen = [&](const char* property, const char* otherwise) {
        const std::string own = ValueOf(wanted, property);
        const std::string old = own.empty() && replaced ? ValueOf(*replaced, property) : own;
        return old.empty() ? std::string(otherwise) : old;
    };
    Entry entry;
    const auto add = [&](const char* property, const std::string& value) {
        if (!value.empty())
            entry.fields.push_back({property, value});
    };
    for (const char* property : {kText, kStart, kEnd, kZone, kRule, kAlarm})
        add(property, ValueOf(wanted, property));
    if (wanted.Find(kAlarm))
        add(kRinger, chosen(kRinger, kNoRinger));
    add(kUid, chosen(kUid, ""));
    add(kCreated, chosen(kCreated, ""));
    add(kModified, ValueOf(wanted, kModified));
    return entry;
}

} // namespace phnctl
