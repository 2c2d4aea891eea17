// A small ordered JSON value, so that the JSON library is compiled in one place only. Used for --json output and for
// the label files. Members keep the order in which they were added: people read this output, too.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace phnctl {

struct Json;
struct JsonMember;
using JsonList = std::vector<Json>;
using JsonObject = std::vector<JsonMember>;

struct Json
{
    std::variant<std::nullptr_t, bool, std::int64_t, double, std::string, JsonList, JsonObject> value;

    // The member of that name, or null when there is none or this is no object.
    const Json* Find(const std::string& name) const;
    const std::string* Text() const { return std::get_if<std::string>(&value); }
    const JsonObject* Object() const { return std::get_if<JsonObject>(&value); }
};

struct JsonMember
{
    JsonMember(std::string memberName, Json memberValue) : name(std::move(memberName)), value(std::move(memberValue)) {}

    std::string name;
    Json value;
};

// One line without a line end, fit for a terminal. The text must be UTF-8; what is not becomes U+FFFD.
std::string WriteJson(const Json& json);

// Throws std::runtime_error with place and reason when the text is not JSON.
Json ParseJson(const std::string& text);

} // namespace phnctl
