#include "simulator/phone/state_file.h"

#include "simulator/phone/date_time.h"
#include "simulator/phone/phone_fields.h"
#include "simulator/phone/utf.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <concepts>
#include <limits>
#include <set>
#include <stdexcept>

namespace simulator {
namespace {

using Json = nlohmann::ordered_json;

std::string PartOf(const std::string& place, std::string_view name)
{
    return std::string(place).append("/").append(name);
}

[[noreturn]] void Fail(const std::string& place, const std::string& wrong)
{
    const std::string name = place.substr(place.starts_with('/') ? 1 : 0); // as a person writes it for "set"
    throw std::invalid_argument((name.empty() ? "the state" : name) + ": " + wrong);
}

// Writing.

template <class T>
Json ToJson(const T& part);

template <class T>
Json ToJson(const std::map<std::uint32_t, T>& store)
{
    Json node = Json::object();
    for (const auto& [id, value] : store)
        node[std::to_string(id)] = ToJson(value);
    return node;
}

template <class T>
Json ToJson(const std::vector<T>& list)
{
    Json node = Json::array();
    for (const T& value : list)
        node.push_back(ToJson(value));
    return node;
}

struct Writing
{
    Json& node;

    void operator()(const char* name, const auto& value) { node[name] = ToJson(value); }
};

template <class T>
Json ToJson(const T& part)
{
    if constexpr (std::same_as<T, DateTime>)
        return ToString(part);
    else if constexpr (std::is_class_v<T> && !std::constructible_from<Json, T>) {
        Json node = Json::object();
        Writing visit{node};
        Describe(visit, part);
        return node;
    } else
        return part;
}

// Reading.

template <class T>
void FromJson(const Json& node, const std::string& place, T& part);

template <std::integral T>
void FromJson(const Json& node, const std::string& place, T& number)
{
    if constexpr (std::same_as<T, bool>) {
        if (!node.is_boolean())
            Fail(place, "true or false is wanted");
        number = node.get<bool>();
    } else {
        constexpr auto kLeast = std::int64_t{std::numeric_limits<T>::min()};
        constexpr auto kMost = std::int64_t{std::numeric_limits<T>::max()};
        const bool isHuge = node.is_number_unsigned() &&
                            node.get<std::uint64_t>() > std::uint64_t{std::numeric_limits<std::uint32_t>::max()};
        if (!node.is_number_integer() || isHuge || node.get<std::int64_t>() < kLeast ||
            node.get<std::int64_t>() > kMost)
            Fail(place,
                 "a whole number from " + std::to_string(kLeast) + " to " + std::to_string(kMost) + " is wanted");
        number = static_cast<T>(node.get<std::int64_t>());
    }
}

void FromJson(const Json& node, const std::string& place, std::string& text)
{
    if (!node.is_string())
        Fail(place, "a text is wanted");
    text = node.get<std::string>();
}

void FromJson(const Json& node, const std::string& place, DateTime& time)
{
    const auto parsed = node.is_string() ? ParseDateTime(node.get<std::string>()) : std::nullopt;
    if (!parsed)
        Fail(place, "a date-time like \"2009-03-15T12:00:00\" is wanted, or \"-\"");
    time = *parsed;
}

void FromJson(const Json& node, const std::string& place, std::array<std::uint8_t, 8>& days)
{
    if (!node.is_array() || node.size() != days.size())
        Fail(place, "a list of 8 numbers is wanted");
    for (std::size_t i = 0; i < days.size(); ++i)
        FromJson(node[i], PartOf(place, std::to_string(i)), days[i]);
}

template <class T>
void FromJson(const Json& node, const std::string& place, std::vector<T>& list)
{
    if (!node.is_array())
        Fail(place, "a list is wanted");
    list.assign(node.size(), T{});
    for (std::size_t i = 0; i < list.size(); ++i)
        FromJson(node[i], PartOf(place, std::to_string(i)), list[i]);
}

template <class T>
void FromJson(const Json& node, const std::string& place, std::map<std::uint32_t, T>& store)
{
    if (!node.is_object())
        Fail(place, "an object is wanted, with an id for each name");
    store.clear();
    for (const auto& [name, value] : node.items()) {
        std::uint32_t id = 0;
        const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), id);
        if (error != std::errc() || end != name.data() + name.size())
            Fail(PartOf(place, name), "the name is no id");
        FromJson(value, PartOf(place, name), store[id]);
    }
}

struct Reading
{
    const Json& node;
    const std::string& place;
    std::set<std::string> known{};

    void operator()(const char* name, auto& value)
    {
        known.insert(name);
        if (const auto found = node.find(name); found != node.end())
            FromJson(*found, PartOf(place, name), value);
    }
};

template <class T>
void FromJson(const Json& node, const std::string& place, T& part)
{
    if (!node.is_object())
        Fail(place, "an object is wanted");
    Reading visit{node, place};
    Describe(visit, part);
    for (const auto& [name, value] : node.items())
        if (!visit.known.contains(name))
            Fail(PartOf(place, name), "there is no such part");
}

void CheckTexts(const Phone& phone)
{
    const std::string& number = phone.identity.number;
    if (number.size() > 14 || !std::all_of(number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; }))
        Fail("/identity/number", "at most 14 digits are wanted");
    if (ToUtf16(phone.setup.lockCode).size() != 4)
        Fail("/setup/lockCode", "four characters are wanted");
}

Phone FromJson(const Json& node, const Phone& base)
{
    Phone phone = base;
    FromJson(node, std::string(), phone);
    CheckTexts(phone);
    return phone;
}

// "[json.exception.parse_error.101] parse error at line 1, ...": the name of the library's class is nobody's business.
std::string PlainWords(const Json::exception& error)
{
    const std::string text = error.what();
    return text.substr(std::min(text.find("] ") + 2, text.size()));
}

[[noreturn]] void FailAbsent(const Json& node, std::string_view path)
{
    const std::string name = "/" + std::string(path.substr(path.rfind('/') + 1));
    std::string advice = "\"show\" shows what there is";
    const Json parts = node.flatten();
    for (const auto& [known, value] : parts.items())
        if (known.ends_with(name)) {
            advice = "did you mean " + known.substr(1) + "?";
            break;
        }
    Fail(std::string(path), "there is no such part; " + advice);
}

// A path as a person writes it: "battery/battery2".
Json::json_pointer Pointer(const Json& node, std::string_view path)
try {
    const bool isRelative = !path.empty() && path.front() != '/';
    return Json::json_pointer((isRelative ? "/" : "") + std::string(path));
} catch (const Json::exception&) {
    FailAbsent(node, path);
}

// A list grows by one at its end; a store takes any id.
bool MayGrow(const Json& above, const std::string& name)
{
    return !above.is_array() || name == "-" || name == std::to_string(above.size());
}

// The part of the state to be set. A new entry of a store is made, null.
Json& PlaceFor(Json& node, std::string_view path)
try {
    const Json::json_pointer pointer = Pointer(node, path);
    const Json::json_pointer above = pointer.parent_pointer();
    if (!node.contains(pointer) && (above.empty() || !node.contains(above) || !MayGrow(node[above], pointer.back())))
        FailAbsent(node, path);
    return node[pointer];
} catch (const Json::exception&) {
    FailAbsent(node, path);
}

} // namespace

Phone PhoneFromJson(std::string_view text, const Phone& base)
try {
    return FromJson(Json::parse(text), base);
} catch (const Json::exception& error) {
    throw std::invalid_argument("this is no JSON: " + PlainWords(error));
}

Phone WithValue(const Phone& phone, std::string_view path, std::string_view value)
{
    Json node = ToJson(phone);
    Json& place = PlaceFor(node, path);
    Json wanted = Json::parse(value, nullptr, false);
    if (wanted.is_discarded() || (place.is_string() && !wanted.is_string()))
        wanted = ToUtf8(ToUtf16(value));
    place = std::move(wanted);
    return FromJson(node, phone);
}

std::string PhoneToJson(const Phone& phone, std::string_view path)
{
    constexpr int kIndent = 2;
    const Json node = ToJson(phone);
    const Json::json_pointer pointer = Pointer(node, path);
    if (!node.contains(pointer))
        FailAbsent(node, path);
    return node[pointer].dump(kIndent, ' ', false, Json::error_handler_t::replace);
}

} // namespace simulator
