#include "simulator/script/history.h"

#include "simulator/commands/command.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <numeric>
#include <stdexcept>

namespace simulator {
namespace {

constexpr std::size_t kKept = 65536; // a run may last for weeks

constexpr std::pair<std::string_view, std::uint32_t> kDeeds[] = {
    {"at", kAtCommands}, {"rejected", kRejected}, {"close", kPortClosed}};

std::string Hyphenated(std::string_view name)
{
    std::string hyphenated(name);
    std::replace(hyphenated.begin(), hyphenated.end(), ' ', '-');
    return hyphenated;
}

bool Has(const Fields& fields, const std::pair<std::string, std::string>& wanted)
{
    return std::any_of(fields.begin(), fields.end(),
                       [&](const Field& field) { return field.name == wanted.first && field.value == wanted.second; });
}

bool Has(const Exchange& exchange, const FieldValues& values)
{
    return std::all_of(values.begin(), values.end(), [&](const auto& wanted) {
        return Has(exchange.request, wanted) || Has(exchange.reply, wanted);
    });
}

std::string Describe(const Exchange& exchange)
{
    std::string line = Hyphenated(exchange.name);
    if (!exchange.rejection.empty())
        line += " (" + exchange.rejection + ")";
    for (const Fields& fields : {exchange.request, exchange.reply})
        if (!fields.empty())
            line += " " + ToString(fields);
    return line;
}

} // namespace

std::uint32_t ParseDeed(std::string_view word)
{
    for (const auto& [name, kind] : kDeeds)
        if (name == word)
            return kind;
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    const bool isNumber = error == std::errc() && end == word.data() + word.size();
    for (const Command& command : AllCommands())
        if (isNumber ? command.number == number : Hyphenated(command.name) == Hyphenated(word))
            return command.number;
    throw std::invalid_argument("\"" + std::string(word) +
                                "\" is no command: phnsim --list-commands lists them, written with hyphens here; "
                                "at, rejected and close are the others");
}

std::string DeedName(std::uint32_t kind)
{
    for (const auto& [name, known] : kDeeds)
        if (known == kind)
            return std::string(name);
    return Hyphenated(FindCommand(kind)->name);
}

std::string Times(std::uint64_t count)
{
    return count == 0 ? "never" : count == 1 ? "once" : std::to_string(count) + " times";
}

void History::Add(const Exchange& exchange)
{
    {
        const std::scoped_lock lock(mutex_);
        ++counts_[exchange.Kind()];
        exchanges_.push_back(exchange);
        exchanges_.back().received = exchanges_.back().sent = {}; // nobody asks for them again
        if (exchanges_.size() > kKept)
            exchanges_.pop_front();
    }
    React();
    wakeup_.Raise();
}

std::uint64_t History::Count(std::uint32_t kind) const
{
    const std::scoped_lock lock(mutex_);
    const auto count = counts_.find(kind);
    return count == counts_.end() ? 0 : count->second;
}

std::uint64_t History::Count(std::uint32_t kind, const FieldValues& values) const
{
    if (values.empty())
        return Count(kind);
    const std::scoped_lock lock(mutex_);
    const auto all = std::accumulate(counts_.begin(), counts_.end(), std::uint64_t{0},
                                     [](std::uint64_t sum, const auto& count) { return sum + count.second; });
    if (all > exchanges_.size())
        throw std::runtime_error("fields are kept of the last " + std::to_string(kKept) + " exchanges only");
    return static_cast<std::uint64_t>(
        std::count_if(exchanges_.begin(), exchanges_.end(),
                      [&](const Exchange& exchange) { return exchange.Kind() == kind && Has(exchange, values); }));
}

std::string History::WhatCame(std::uint32_t kind, const FieldValues& values) const
{
    const std::uint64_t count = Count(kind, values);
    const std::string last = Last(kind);
    return (count == 0 ? "never came" : "came " + Times(count)) +
           (last.empty() ? ", and nothing else did" : "; the last was " + last);
}

// Of this kind, or of all that was sent when there is none; empty when there is none at all.
std::string History::Last(std::uint32_t kind) const
{
    const std::scoped_lock lock(mutex_);
    const auto find = [&](const auto& isMeant) {
        return std::find_if(exchanges_.rbegin(), exchanges_.rend(), isMeant);
    };
    auto last = find([&](const Exchange& exchange) { return exchange.Kind() == kind; });
    if (last == exchanges_.rend())
        last = find([](const Exchange& exchange) { return exchange.Kind() != kPortClosed; });
    return last == exchanges_.rend() ? "" : Describe(*last);
}

void History::When(std::uint32_t kind, std::uint64_t count, std::function<void()> action)
{
    {
        const std::scoped_lock lock(mutex_);
        reactions_.push_back({kind, count, std::move(action)});
    }
    React();
}

// The actions are called without the lock: they may ask and add.
void History::React()
{
    std::vector<Reaction> due;
    {
        const std::scoped_lock lock(mutex_);
        const auto rest = std::stable_partition(reactions_.begin(), reactions_.end(), [&](const Reaction& reaction) {
            const auto count = counts_.find(reaction.kind);
            return count == counts_.end() || count->second < reaction.count;
        });
        due.assign(std::make_move_iterator(rest), std::make_move_iterator(reactions_.end()));
        reactions_.erase(rest, reactions_.end());
    }
    for (const Reaction& reaction : due)
        reaction.action();
}

} // namespace simulator
