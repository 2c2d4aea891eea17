#include "phnctl/text/json.h"

#include <algorithm>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace phnctl {

namespace {

using Library = nlohmann::ordered_json;

struct ToLibrary
{
    Library operator()(const JsonList& list) const
    {
        Library result = Library::array();
        for (const Json& item : list)
            result.push_back(std::visit(*this, item.value));
        return result;
    }
    Library operator()(const JsonObject& object) const
    {
        Library result = Library::object();
        for (const JsonMember& member : object)
            result[member.name] = std::visit(*this, member.value.value);
        return result;
    }
    template <class Value>
    Library operator()(const Value& value) const
    {
        return Library(value);
    }
};

Json FromLibrary(const Library& from)
{
    if (from.is_object()) {
        JsonObject object;
        for (const auto& item : from.items())
            object.emplace_back(item.key(), FromLibrary(item.value()));
        return {std::move(object)};
    }
    if (from.is_array()) {
        JsonList list;
        for (const Library& item : from)
            list.push_back(FromLibrary(item));
        return {std::move(list)};
    }
    if (from.is_string())
        return {from.get<std::string>()};
    if (from.is_boolean())
        return {from.get<bool>()};
    if (from.is_number_integer())
        return {from.get<std::int64_t>()};
    if (from.is_number())
        return {from.get<double>()};
    return {nullptr};
}

} // namespace

const Json* Json::Find(const std::string& name) const
{
    const JsonObject* object = Object();
    if (!object)
        return nullptr;
    const auto member =
        std::find_if(object->begin(), object->end(), [&](const JsonMember& m) { return m.name == name; });
    return member == object->end() ? nullptr : &member->value;
}

// The library escapes the control characters of ASCII; U+0080 to U+009F, some of which a terminal obeys too, are not
// among them.
std::string WriteJson(const Json& json)
{
    const std::string text =
        std::visit(ToLibrary(), json.value).dump(-1, ' ', false, Library::error_handler_t::replace);
    std::string escaped;
    escaped.reserve(text.size());
    for (size_t at = 0; at < text.size(); at++) {
        const bool isControl =
            text[at] == '\xC2' && at + 1 < text.size() && static_cast<unsigned char>(text[at + 1]) < 0xA0;
        if (isControl)
            escaped += fmt::format("\\u{:04x}", static_cast<unsigned char>(text[++at]));
        else
            escaped += text[at];
    }
    return escaped;
}

Json ParseJson(const std::string& text)
{
    // The parser calls itself for every level: what nests deeper than any label file does is refused before that.
    const auto tooDeep = [](int depth, Library::parse_event_t, Library&) {
        if (depth > 32)
            throw std::runtime_error("nests more than 32 levels deep");
        return true;
    };
    try {
        return FromLibrary(Library::parse(text, tooDeep));
    } catch (const Library::exception& error) {
        throw std::runtime_error(error.what());
    }
}

} // namespace phnctl
