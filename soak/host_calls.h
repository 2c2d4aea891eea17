// One correct call of every export that asks the handset, and the poll of the callbacks: which exchanges it makes with
// a handset as shipped, how it ends when they succeed and when one fails, and how long it may take. The tests walk the
// table with handsets that misbehave; a new export is a new row.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "simulator/phone/phone.h"

struct Asked
{
    std::uint32_t command;
    std::uint32_t failure; // what the call gives when this exchange fails
};

struct HostCall
{
    std::string name;
    std::vector<Asked> exchanges;
    std::uint32_t success;
    std::function<std::uint32_t()> call;
    std::function<void()> prepare = [] {}; // calls that come before it
    std::function<void(simulator::Phone&)> arrange = [](const auto&) {
    };                                  // what the handset holds beside what is shipped
    std::chrono::milliseconds pause{0}; // that it makes before its exchanges, at most

    // The longest it may take once it is its turn (phnnrv.h, convention 10).
    std::chrono::milliseconds Bound() const;
};

// The time-out of each of the three reads of a reply to this command.
std::chrono::milliseconds ReadTimeout(std::uint32_t command);

// Finds an export's address by its name. The calls are made on the loading thread.
using FindExport = std::function<void*(const char* name)>;

std::vector<HostCall> HostCalls(const FindExport& find);
