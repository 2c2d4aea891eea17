#include "simulator/script/script_lines.h"

#include "simulator/commands/command.h"
#include "simulator/recording/layout.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace simulator {
namespace {

constexpr std::uint64_t kLongestWait = 86'400'000; // a day
constexpr std::uint64_t kMostTimes = 1'000'000'000;

struct Expectation
{
    std::uint32_t deed = 0;
    std::optional<std::uint64_t> count{}; // none: at least once
    FieldValues values{};
};

std::string ToString(const Expectation& expectation)
{
    std::string text = DeedName(expectation.deed);
    for (const auto& [name, value] : expectation.values)
        text.append(" ").append(name).append("=").append(value);
    return text;
}

// Those of requests that were turned away are any.
void CheckIsField(const std::string& name, std::uint32_t deed)
{
    const Command* const command = FindCommand(deed);
    if (!command)
        return;
    std::vector<std::string_view> names = FieldNames(deed);
    names.insert(names.begin(), {"status", "result"});
    if (!command->hasResult)
        names.erase(names.begin() + 1);
    if (std::find(names.begin(), names.end(), name) != names.end())
        return;
    std::string known;
    for (const std::string_view one : names)
        known.append(" ").append(one);
    throw std::invalid_argument("\"" + name + "\" is no field of " + DeedName(deed) + ", which has" + known);
}

FieldValues ReadFieldValues(Arguments& arguments, std::uint32_t deed)
{
    FieldValues values;
    while (!arguments.AtEnd()) {
        const std::string word = arguments.Word();
        const std::size_t equals = word.find('=');
        if (equals == std::string::npos || equals == 0)
            throw std::invalid_argument("\"" + word + "\" is no FIELD=VALUE");
        CheckIsField(word.substr(0, equals), deed);
        values.emplace_back(word.substr(0, equals), word.substr(equals + 1));
    }
    return values;
}

// Reports what came instead. It throws nothing, because a library that is being unloaded waits for its script, and not
// every Windows can throw then.
void Judge(Control& control, const Expectation& expectation, const Place& place)
{
    const History& history = control.history;
    const std::uint64_t count = history.Count(expectation.deed, expectation.values);
    if (expectation.count ? count == *expectation.count : count != 0)
        return;
    control.Report(place, ToString(expectation) + " was expected " +
                              (expectation.count ? Times(*expectation.count) : "at least once") + ", but " +
                              history.WhatCame(expectation.deed, expectation.values));
}

ControlLine Expecting(Expectation expectation, const Place& place)
{
    return {[expectation = std::move(expectation), place](Control& control) { Judge(control, expectation, place); }};
}

// The line that another one carries out, later and perhaps often.
ControlLine ReadInner(Arguments& arguments)
{
    const Place& place = arguments.Where();
    if (arguments.AtEnd())
        throw std::invalid_argument("the line to carry out is missing");
    ControlLine inner = ParseControlLine(arguments.Rest(), place);
    if (!inner.isRepeatable)
        throw std::invalid_argument("wait, wait-for, after and every stand on lines of their own");
    return inner;
}

} // namespace

ControlLine Wait(Arguments& arguments)
{
    ControlLine line;
    line.isRepeatable = false;
    line.pause = std::chrono::milliseconds(arguments.Number(0, kLongestWait));
    return line;
}

ControlLine WaitFor(Arguments& arguments)
{
    ControlLine line;
    line.isRepeatable = false;
    line.deed = ParseDeed(arguments.Word());
    line.count = arguments.AtEnd() ? 1 : arguments.Number(1, kMostTimes);
    return line;
}

ControlLine After(Arguments& arguments)
{
    const std::uint64_t count = arguments.Number(1, kMostTimes);
    const std::uint32_t deed = ParseDeed(arguments.Word());
    if (arguments.Word() != "do")
        throw std::invalid_argument("it is written after N COMMAND do LINE");
    const Place place = arguments.Where();
    ControlLine line([=, inner = ReadInner(arguments)](Control& control) {
        control.history.When(deed, count, [&control, inner, place] { RunControlLine(control, inner, place); });
    });
    line.isRepeatable = false;
    return line;
}

ControlLine Every(Arguments& arguments)
{
    const std::chrono::milliseconds period(arguments.Number(1, kLongestWait));
    const Place place = arguments.Where();
    ControlLine line([=, inner = ReadInner(arguments)](Control& control) {
        control.timers.push_back({place, inner, period, std::chrono::steady_clock::now() + period});
    });
    line.isRepeatable = false;
    return line;
}

ControlLine Expect(Arguments& arguments)
{
    Expectation expectation{.deed = ParseDeed(arguments.Word())};
    if (arguments.NumberIsNext())
        expectation.count = arguments.Number(0, kMostTimes);
    expectation.values = ReadFieldValues(arguments, expectation.deed);
    return Expecting(std::move(expectation), arguments.Where());
}

ControlLine ExpectNone(Arguments& arguments)
{
    Expectation expectation{.deed = ParseDeed(arguments.Word()), .count = 0};
    expectation.values = ReadFieldValues(arguments, expectation.deed);
    return Expecting(std::move(expectation), arguments.Where());
}

} // namespace simulator
