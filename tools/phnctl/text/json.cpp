#include "phnctl/text/json.h"

#include "phnctl/text/text.h"

#include <algorithm>
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

std::string WriteJson(const Json& json)
{
    return PrintableJson(std::visit(ToLibrary(), json.value).dump(-1, ' ', false, Library::error_handler_t::replace));
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
