// What the host has done in this run, for script lines that wait for it, answer to it and judge it. Any thread may use
// it.
#pragma once

#include "simulator/handset/exchange.h"
#include "simulator/script/wakeup.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace simulator {

// What a host can do: a command by its number or by its name with hyphens ("battery-information"), or one of "at",
// "rejected" and "close". ParseDeed throws std::invalid_argument.
std::uint32_t ParseDeed(std::string_view word);
std::string DeedName(std::uint32_t kind);

std::string Times(std::uint64_t count); // "never", "once", "2 times"

using FieldValues = std::vector<std::pair<std::string, std::string>>;

class History
{
public:
    // `wakeup` is raised by each Add().
    explicit History(Wakeup& wakeup) : wakeup_(wakeup) {}

    void Add(const Exchange& exchange);

    std::uint64_t Count(std::uint32_t kind) const;
    // Of those, the ones whose request or reply has all these values. Throws std::runtime_error once some are
    // forgotten.
    std::uint64_t Count(std::uint32_t kind, const FieldValues& values) const;
    // The same in words, with the last of this kind, or of all, decoded: "came once; the last was startup status=0".
    std::string WhatCame(std::uint32_t kind, const FieldValues& values = {}) const;

    // Calls `action` once the host has done this so often: in Add(), or at once if it has.
    void When(std::uint32_t kind, std::uint64_t count, std::function<void()> action);

private:
    struct Reaction
    {
        std::uint32_t kind;
        std::uint64_t count;
        std::function<void()> action;
    };

    std::string Last(std::uint32_t kind) const;
    void React();

    Wakeup& wakeup_;
    mutable std::mutex mutex_;
    std::map<std::uint32_t, std::uint64_t> counts_;
    std::deque<Exchange> exchanges_; // the latest ones
    std::vector<Reaction> reactions_;
};

} // namespace simulator
