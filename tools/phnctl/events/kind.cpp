#include "phnctl/events/kind.h"

#include "phnctl/events/event.h"
#include "phnctl/events/file.h"
#include "phnctl/events/meeting.h"
#include "phnctl/events/words.h"
#include "phnctl/text/text.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>

namespace phnctl {

using namespace event_property;

namespace {

constexpr std::size_t kTextSize = 4096; // holds any text that the library writes

struct PropertyLabel
{
    std::string_view property;
    const char* label;
};

constexpr PropertyLabel kLabels[] = {
    {kText, "Text"},   {kStart, "Start"},   {kEnd, "End"}, {kZone, "Zone"},       {kRule, "Repeats"},
    {kAlarm, "Alarm"}, {kRinger, "Ringer"}, {kUid, "Id"},  {kCreated, "Created"}, {kModified, "Modified"}};

class Events : public EntryKind
{
public:
    Events() : EntryKind("event", "events", {".ics", ".vcs"}) {}

    std::optional<Entry> Read(const Handset& handset, std::uint32_t index) const override
    {
        std::string text(kTextSize, '\0');
        PHN_EVENT_RECORD record{sizeof record, text.data(), static_cast<std::uint32_t>(text.size())};
        const PHN_ERROR answer = handset.Api().GetEvent(index, &record);
        if (answer == PHN_ERROR_NOT_FOUND)
            return std::nullopt;
        handset.Check(answer, fmt::format("reading event {}", index));
        return EventFromLibrary(std::string_view(text).substr(0, text.find('\0')));
    }

    void Write(const Handset& handset, std::uint32_t index, const Entry& entry) const override
    {
        std::string text = EventToLibrary(entry);
        PHN_EVENT_RECORD record{sizeof record, text.data(), static_cast<std::uint32_t>(text.size())};
        handset.Check(handset.Api().SetEvent(index, &record), fmt::format("writing event {}", index));
    }

    void Delete(const Handset& handset, std::uint32_t index) const override
    {
        handset.Check(handset.Api().DeleteEvent(index), fmt::format("deleting event {}", index));
    }

    void DeleteAll(const Handset& handset) const override
    {
        handset.Check(handset.Api().DeleteAllEvents(), "deleting all events");
    }

    std::vector<Candidate> Parse(const std::string& file, const std::string& text) const override
    {
        return EventsOfFile(file, text);
    }

    std::string Format(std::span<const StoredEntry> entries) const override { return FileOfEvents(entries); }

    std::string Title(const Entry& entry) const override
    {
        const std::string text = ValueOf(entry, kText);
        return text.empty() ? "(no text)" : text;
    }

    std::string Id(const Entry& entry) const override { return EventKey(entry); }

    Plan Meet(std::vector<Candidate> candidates, const Inventory& inventory, Filling) const override
    {
        return MeetEvents(*this, std::move(candidates), inventory);
    }

    void DeleteStale(Plan& plan, const Inventory& inventory) const override
    {
        DeleteStaleParts(*this, plan, inventory);
    }

    Entry Storable(const Entry& read) const override { return CompleteEvent(FitEvent(EventOf(read)).entry, nullptr); }

    Entry Complete(const Entry& wanted, const Entry* replaced) const override
    {
        return CompleteEvent(wanted, replaced);
    }

    bool LooksGarbled(const Entry& entry) const override
    {
        return !CodePageHoldsAll() && ValueOf(entry, kText).find("??") != std::string::npos;
    }

    std::vector<std::string> Sought(const Entry& entry) const override { return {ValueOf(entry, kText)}; }

    std::vector<std::string> Columns() const override { return {"Start", "End", "Zone", "Text", "Repeats", "Alarm"}; }

    std::vector<std::string> Row(const Entry& entry) const override
    {
        const Event event = EventOf(entry);
        const ShownSpan span =
            event.start && event.end ? SpanInWords(*event.start, *event.end, IsAllDay(event)) : ShownSpan();
        return {span.start,
                span.end,
                event.zone,
                event.text,
                RuleInWords(event.rule, event.zone),
                LeadInWords(event.alarm)};
    }

    std::string Label(const std::string& property) const override
    {
        const auto* found = std::ranges::find(kLabels, property, &PropertyLabel::property);
        return found == std::end(kLabels) ? property : found->label;
    }

    std::vector<Field> Details(const Handset&, const Entry& entry) const override
    {
        const Event event = EventOf(entry);
        std::vector<Field> details;
        const auto add = [&](const char* property, const auto& value, std::string shown) {
            Field& field = details.emplace_back(property, Label(property), value);
            field.shown = std::move(shown);
        };
        const auto addTime = [&](const char* property, const std::optional<EventTime>& time, const std::string& zone,
                                 bool isDay) {
            if (time)
                add(property, IsoText(*time, zone), isDay ? ShownDay(*time) + ", all day" : Shown(*time));
        };
        addTime(kStart, event.start, event.zone, IsAllDay(event));
        addTime(kEnd, event.end, event.zone, IsAllDay(event));
        addTime(kCreated, event.created, kUtcZone, false);
        addTime(kModified, event.modified, kUtcZone, false);
        if (event.rule.Repeats())
            add(kRule, event.rule.written, RuleInWords(event.rule, event.zone));
        if (event.alarm)
            add(kAlarm, *event.alarm, LeadInWords(event.alarm));
        return details;
    }
};

} // namespace

const EntryKind& EventKind()
{
    static const Events kind;
    return kind;
}

} // namespace phnctl
