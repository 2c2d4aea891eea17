#include "simulator/recording/layout.h"

#include "simulator/commands/fields.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace simulator {
namespace {

using enum Privacy;

constexpr FieldLayout U8(std::string_view name, Privacy privacy = Public)
{
    return {name, Form::Unsigned, 1, privacy};
}

constexpr FieldLayout U16(std::string_view name, Privacy privacy = Public)
{
    return {name, Form::Unsigned, 2, privacy};
}

constexpr FieldLayout U32(std::string_view name, Privacy privacy = Public)
{
    return {name, Form::Unsigned, 4, privacy};
}

constexpr FieldLayout I32(std::string_view name)
{
    return {name, Form::Signed, 4};
}

constexpr FieldLayout Text(std::string_view name, std::size_t units, Privacy privacy = Private)
{
    return {name, Form::Text, 2 * units, privacy};
}

constexpr FieldLayout Time(std::string_view name)
{
    return {name, Form::Time, 8};
}

constexpr FieldLayout Behind(std::size_t gap, FieldLayout field)
{
    field.gap = gap;
    return field;
}

// Status.

constexpr std::array kConnection{U32("connection0"), U32("connection4"), U32("connection8"), U32("connection12"),
                                 U8("connection16"), U8("endReason"),    U8("connection18")};

// Country, network, cell and channel tell where the handset is.
constexpr std::array kNetwork{U32("network0"),
                              U8("network4"),
                              U8("network5"),
                              U16("network6", Private),
                              U16("network8", Private),
                              U16("network10", Private),
                              U16("network12", Private),
                              U16("network14", Private),
                              U16("network16", Private),
                              U16("network18", Private),
                              U16("network20", Private),
                              I32("network22"),
                              FieldLayout{"network26", Form::Characters, 34, Private},
                              I32("network60"),
                              U32("network64")};

constexpr std::array kBattery{U8("battery1"), U8("battery2")};
constexpr std::array kVariance{U16("flags")};

// Setup. What only the handset knows the meaning of may be a serial number.

constexpr std::array kIdentity{U8("digits"),
                               FieldLayout{"digit", Form::Digits, 14, Private},
                               U32("esn", Private),
                               U8("info19", Private),
                               Text("info20", 32),
                               Text("model", 32, Public),
                               Text("info148", 32),
                               U32("info212", Private),
                               Text("info216", 11),
                               U32("info238", Private),
                               U32("info242", Private),
                               U32("info246", Private),
                               U8("info250", Private),
                               U8("info251", Private),
                               Behind(1, Text("info253", 15))};

constexpr std::array kRadio{U8("radio")};
constexpr std::array kLock{U8("lock"), FieldLayout{"code", Form::Characters, 4, LockCode}};
constexpr std::array kChangeCode{FieldLayout{"code", Form::Characters, 4, LockCode},
                                 FieldLayout{"newCode", Form::Characters, 4, LockCode}};
constexpr std::array kParameters{U8("parameter1"), U8("parameter2"), U16("parameter3")};
constexpr std::array kActivation{U32("automatic"), Text("dial", 104)};

// Stores.

constexpr std::array kId{U32("id")};
constexpr std::array kIndex{U32("index")};
constexpr std::array kBox{U32("box")};
constexpr std::array kBoxAndPrevious{U32("box"), U32("previous")};
constexpr std::array kList{U32("list")};
constexpr std::array kListAndPrevious{U32("list"), U32("previous")};
constexpr std::array kIndexAndStatus{U32("index"), U32("status")};
constexpr std::array kMessages{U32("messages")};
constexpr std::array kEntries{U32("entries")};
constexpr std::array kEvents{U32("events")};
constexpr std::array kRecords{Behind(4, U32("records"))};
constexpr std::array kName{Text("name", 36)};

constexpr std::array kWrittenMessage{U32("index"),         Behind(4, U32("replyOption")),
                                     Time("time"),         Text("address", 36),
                                     Text("callback", 36), U32("priority"),
                                     U32("bodySize"),      Text("body", 0)};
constexpr std::array kReadMessage{U32("index"),    U32("status"),       U32("replyOption"),
                                  Time("time"),    Text("address", 36), Text("callback", 36),
                                  U32("priority"), U32("bodySize"),     Text("body", 0)};
constexpr std::array kCall{U32("id"), U32("entry4"), U32("duration"), Time("time"), Behind(80, Text("text", 52))};

constexpr std::size_t kEventFields = 35;

template <std::size_t N>
consteval std::array<FieldLayout, N + kEventFields> WithEvent(const std::array<FieldLayout, N>& before)
{
    std::array<FieldLayout, N + kEventFields> fields{};
    auto next = std::copy(before.begin(), before.end(), fields.begin());
    for (const auto& name : {"start", "end", "created", "modified", "alarmTime", "until"})
        *next++ = Time(name);
    for (const auto& name : {"zone", "repeatType", "ringer"})
        *next++ = U32(name);
    *next++ = Behind(4, U32("repeatCount"));
    *next++ = Behind(4, U16("valid"));
    *next++ = U16("alarm");
    *next++ = Text("description", 80);
    *next++ = Text("uid", 40);
    *next++ = U32("interval");
    next = std::fill_n(next, 8, U8("byDay"));
    next = std::fill_n(next, 8, U8("byDayFromEnd"));
    *next++ = Behind(16, U32("byMonth"));
    for (const auto& name : {"byMonthFromEnd", "byMonthDay", "byMonthDayFromEnd"})
        *next++ = U32(name);
    return fields;
}

constexpr std::array kEvent = WithEvent(std::array<FieldLayout, 0>{});
constexpr std::array kWrittenEvent = WithEvent(kIndex);

constexpr std::array kFieldSizes{U32("size1"), U32("size2"), U32("size3"), U32("size4"),  U32("size5"), U32("size6"),
                                 U32("size7"), U32("size8"), U32("size9"), U32("size10"), U32("size11")};
constexpr std::array kWrittenContact{
    U32("id"),        U32("group"),          U32("picture"),       Behind(4, U32("ringer")),
    Text("text", 40), Text("firstName", 36), Text("lastName", 36), Behind(216, U32("entries"))};
constexpr std::array kReadContact{
    U32("id"),        U32("group"),          Behind(4, U32("picture")), U32("ringer"),
    Text("text", 40), Text("firstName", 36), Text("lastName", 36),      Behind(216, U32("entries"))};
constexpr std::array kContactEntry{U32("default"), U32("type"), Text("value", 52), U32("speedDial")};

constexpr Layout kMessageItem{kReadMessage};
constexpr Layout kCallItem{kCall};
constexpr Layout kEventItem{kEvent};
constexpr Layout kEntryItem{kContactEntry};
constexpr Layout kContactItem{kReadContact, &kEntryItem};

constexpr Layout kNothing{};
constexpr Layout kMessageList{kMessages, &kMessageItem};
constexpr Layout kCallList{kEntries, &kCallItem};

struct Row
{
    std::uint32_t command;
    Layout request;
    Layout reply;
};

constexpr Row kRows[] = {
    {3, kNothing, {kConnection}},
    {4, kNothing, {kNetwork}},
    {5, kNothing, {kBattery}},
    {6, kNothing, {kIdentity}},
    {8, {kRadio}, kNothing},
    {9, {kLock}, kNothing},
    {10, {kChangeCode}, kNothing},
    {12, kNothing, {kParameters}},
    {13, {kParameters}, kNothing},
    {15, {kBox}, {kMessages}},
    {16, {kWrittenMessage}, {kIndex}},
    {17, {kBox}, kMessageList},
    {18, {kBoxAndPrevious}, kMessageList},
    {19, {kWrittenMessage}, {kIndex}},
    {20, {kIndex}, {kIndex}},
    {21, {kBox}, kNothing},
    {22, {kIndexAndStatus}, {kIndex}},
    {25, {kList}, {kEntries}},
    {26, {kList}, kCallList},
    {27, {kListAndPrevious}, kCallList},
    {28, {kList}, kNothing},
    {30, {kIndex}, {kEvents, &kEventItem}},
    {31, {kWrittenEvent}, kNothing},
    {32, {kIndex}, kNothing},
    {34, kNothing, {kFieldSizes}},
    {35, {kId}, {kRecords, &kContactItem}},
    {36, {kWrittenContact, &kEntryItem}, {kId}},
    {37, {kId}, {kId}},
    {39, {kId}, {kName}},
    {40, {kId}, {kName}},
    {41, {kId}, {kName}},
    {45, {kActivation}, kNothing},
    {49, kNothing, {kVariance}},
};

const Row* FindRow(std::uint32_t command)
{
    const auto* const row =
        std::find_if(std::begin(kRows), std::end(kRows), [&](const Row& one) { return one.command == command; });
    return row == std::end(kRows) ? nullptr : row;
}

// Lays one record after the other, until one does not fit.
class Placing
{
public:
    Placing(std::span<const std::uint8_t> bytes, std::size_t offset) : bytes_(bytes), offset_(offset) {}

    bool Place(const Layout& layout)
    {
        std::uint32_t number = 0;
        for (const FieldLayout& field : layout.fields) {
            const std::size_t size = field.size == 0 ? number : field.size;
            if (bytes_.size() < offset_ || bytes_.size() - offset_ < field.gap + size)
                return false;
            offset_ += field.gap;
            if (size > 0)
                placed.push_back({&field, offset_, size});
            if (field.form == Form::Unsigned && size == 4)
                number = FieldReader(bytes_.subspan(offset_)).U32(field.name);
            offset_ += size;
        }
        for (std::uint32_t item = 0; layout.items && item < number; ++item)
            if (!Place(*layout.items))
                return false;
        return true;
    }

    std::vector<PlacedField> placed{};

private:
    const std::span<const std::uint8_t> bytes_;
    std::size_t offset_;
};

} // namespace

Layout RequestLayout(std::uint32_t command)
{
    const Row* const row = FindRow(command);
    return row ? row->request : kNothing;
}

Layout ReplyLayout(std::uint32_t command)
{
    const Row* const row = FindRow(command);
    return row ? row->reply : kNothing;
}

std::vector<std::string_view> FieldNames(std::uint32_t command)
{
    std::vector<std::string_view> names;
    const Layout both[]{RequestLayout(command), ReplyLayout(command)};
    for (const Layout& whole : both)
        for (const Layout* layout = &whole; layout; layout = layout->items)
            std::transform(layout->fields.begin(), layout->fields.end(), std::back_inserter(names),
                           [](const FieldLayout& field) { return field.name; });
    return names;
}

std::vector<PlacedField> PlaceFields(const Layout& layout, std::span<const std::uint8_t> bytes, std::size_t offset)
{
    Placing placing(bytes, offset);
    placing.Place(layout);
    return placing.placed;
}

} // namespace simulator
