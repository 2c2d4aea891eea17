// What the host does in a seed of the session target: the bytes that the session reads, spelt out call by call. Used by
// the program that writes the seeds.
#pragma once

#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

#include "fuzz/input.h"

namespace fuzz {

struct Arguments
{
    Bytes bytes{};
    Arguments Byte(unsigned value) const { return With({static_cast<std::uint8_t>(value)}); }
    Arguments Word(unsigned value) const { return Byte(value & 0xFF).Byte(value >> 8); }
    Arguments Text(std::string_view text) const { return With({text.begin(), text.end()}); }
    Arguments Field(std::string_view text) const { return Word(static_cast<unsigned>(text.size())).Text(text); }
    Arguments Field(const Bytes& more) const { return Word(static_cast<unsigned>(more.size())).With(more); }
    Arguments With(const Bytes& more) const
    {
        Arguments result = *this;
        result.bytes.insert(result.bytes.end(), more.begin(), more.end());
        return result;
    }
};

struct OddCall
{
    std::string_view name;
    Arguments arguments;
};

// What a host may get wrong beside its records.
const std::vector<OddCall>& OddCalls();

// A call and what it takes.
Arguments Call(std::string_view name, const Arguments& arguments);

// Correct calls on a port of such bits, or with this mistake in their records (HostRecord).
Arguments Script(unsigned port, std::initializer_list<std::string_view> calls, unsigned mistake = 0);

} // namespace fuzz
