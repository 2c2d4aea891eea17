// What a command answers: fields in sections, shown to people as aligned text and to programs as one JSON object.
// Every command that answers with named values builds one of these, so both forms always agree.
#pragma once

#include "phnctl/text/json.h"

#include <concepts>
#include <string>
#include <vector>

namespace phnctl {

struct Field
{
    std::string key;   // the JSON member; stable
    std::string label; // empty: for programs only
    Json value;
    std::string shown; // for people

    Field(std::string name, std::string title, const std::string& text)
        : key(std::move(name)), label(std::move(title)), value{text}, shown(text)
    {
    }
    template <std::integral Number>
    Field(std::string name, std::string title, Number number)
        : key(std::move(name)),
          label(std::move(title)),
          value{static_cast<std::int64_t>(number)},
          shown(std::to_string(number))
    {
    }
};

struct Section
{
    std::string key; // the JSON object that holds the fields; empty: the outermost one
    std::string title;
    std::vector<Field> fields;
    bool sharesLines = false; // on a terminal, the fields under their own names share lines
};

struct Report
{
    std::vector<Section> sections;
};

Json ToJson(const Report& report);

// `width` is the terminal's, 0 for no limit: longer values go on below themselves.
std::string ToText(const Report& report, unsigned width);

} // namespace phnctl
