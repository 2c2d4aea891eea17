// Commands 30 to 33: the calendar. An event's index is the slot that it lies in.
#include "simulator/commands/command.h"

#include <array>

namespace simulator {
namespace {

constexpr std::size_t kRecordSize = 368;
constexpr std::uint32_t kZones = 14;
constexpr std::uint32_t kLastRepeatType = 5;

void WriteEvent(const Event& event, FieldWriter& reply)
{
    reply.Time("start", event.start);
    reply.Time("end", event.end);
    reply.Time("created", event.created);
    reply.Time("modified", event.modified);
    reply.Time("alarmTime", event.alarmTime);
    reply.Time("until", event.until);
    reply.U32("zone", event.zone);
    reply.U32("repeatType", event.repeatType);
    reply.U32("ringer", event.ringer);
    reply.Zeros(4);
    reply.U32("repeatCount", event.repeatCount);
    reply.Zeros(4);
    reply.U16("valid", 1);
    reply.U16("alarm", event.alarm);
    reply.Text("description", event.description, 80);
    reply.Text("uid", event.uid, 40);
    reply.U32("interval", event.interval);
    for (const std::uint8_t day : event.byDay)
        reply.U8("byDay", day);
    for (const std::uint8_t day : event.byDayFromEnd)
        reply.U8("byDayFromEnd", day);
    reply.Zeros(16);
    reply.U32("byMonth", event.byMonth);
    reply.U32("byMonthFromEnd", event.byMonthFromEnd);
    reply.U32("byMonthDay", event.byMonthDay);
    reply.U32("byMonthDayFromEnd", event.byMonthDayFromEnd);
}

Event ReadEvent(FieldReader& request)
{
    Event event;
    event.start = request.Time("start");
    event.end = request.Time("end");
    event.created = request.Time("created");
    event.modified = request.Time("modified");
    event.alarmTime = request.Time("alarmTime");
    event.until = request.Time("until");
    event.zone = request.U32("zone");
    event.repeatType = request.U32("repeatType");
    event.ringer = request.U32("ringer");
    request.Skip(4);
    event.repeatCount = request.U32("repeatCount");
    request.Skip(4);
    request.U16("valid");
    event.alarm = request.U16("alarm");
    event.description = request.Text("description", 80);
    event.uid = request.Text("uid", 40);
    event.interval = request.U32("interval");
    for (std::uint8_t& day : event.byDay)
        day = request.U8("byDay");
    for (std::uint8_t& day : event.byDayFromEnd)
        day = request.U8("byDayFromEnd");
    request.Skip(16);
    event.byMonth = request.U32("byMonth");
    event.byMonthFromEnd = request.U32("byMonthFromEnd");
    event.byMonthDay = request.U32("byMonthDay");
    event.byMonthDayFromEnd = request.U32("byMonthDayFromEnd");
    return event;
}

Outcome GetEvent(Phone& phone, FieldReader& request, FieldWriter& reply)
{
    const std::uint32_t index = request.U32("index");
    if (index >= phone.limits.events)
        return kBadIndex;
    const auto event = phone.events.find(index);
    const bool isThere = event != phone.events.end();
    reply.U32("events", isThere ? 1 : 0);
    if (isThere)
        WriteEvent(event->second, reply);
    return {};
}

Outcome SetEvent(Phone& phone, FieldReader& request, FieldWriter&)
{
    const std::uint32_t index = request.U32("index");
    const Event event = ReadEvent(request);
    if (index >= phone.limits.events)
        return kBadIndex;
    if (event.zone >= kZones || event.repeatType > kLastRepeatType)
        return kDoesNotFit;
    phone.events[index] = event;
    return {};
}

Outcome DeleteEvent(Phone& phone, FieldReader& request, FieldWriter&)
{
    const std::uint32_t index = request.U32("index");
    if (index >= phone.limits.events)
        return kBadIndex;
    return phone.events.erase(index) == 0 ? Outcome(kAbsent) : Outcome();
}

Outcome DeleteAllEvents(Phone& phone, FieldReader&, FieldWriter&)
{
    phone.events.clear();
    return {};
}

constexpr std::array kCommands{
    Command{30, "read event", 10, 16, true, GetEvent},
    Command{31, "write event", 10 + kRecordSize, 12, true, SetEvent},
    Command{32, "delete event", 10, 12, true, DeleteEvent},
    Command{33, "delete all events", 6, 12, true, DeleteAllEvents},
};

} // namespace

std::span<const Command> EventCommands()
{
    return kCommands;
}

} // namespace simulator
