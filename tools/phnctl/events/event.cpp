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

bool IsAllDay(const EventDraft& draft)
{
    if (!draft.zone.empty() || !draft.start || !draft.end)
        return false;
    const auto isMidnight = [](const EventTime& time) {
        return time.hour == 0 && time.minute == 0 && time.second == 0;
    };
    const bool isLastMinute = draft.end->hour == 23 && draft.end->minute == 59;
    return isMidnight(*draft.start) && *draft.start < *draft.end && (isLastMinute || isMidnight(*draft.end));
}

bool IsAllDay(const Entry& entry)
{
    return IsAllDay(DraftOf(entry));
}

EventDraft DraftOf(const Entry& entry)
{
    EventDraft draft;
    draft.text = ValueOf(entry, kText);
    draft.start = ParseEventTime(ValueOf(entry, kStart));
    draft.end = ParseEventTime(ValueOf(entry, kEnd));
    draft.zone = ValueOf(entry, kZone);
    draft.rule = ParseRule(ValueOf(entry, kRule));
    if (const auto alarm = ParseNumber(ValueOf(entry, kAlarm), 0x7FFFFFFF))
        draft.alarm = static_cast<std::int64_t>(*alarm);
    draft.ringer = ValueOf(entry, kRinger);
    draft.uid = ValueOf(entry, kUid);
    draft.created = ParseEventTime(ValueOf(entry, kCreated));
    draft.modified = ParseEventTime(ValueOf(entry, kModified));
    return draft;
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
