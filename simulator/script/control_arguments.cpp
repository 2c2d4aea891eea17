#include "simulator/script/control_arguments.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <utility>

namespace simulator {
namespace {

constexpr std::string_view kSpaces = " \t";

bool IsSpace(char character)
{
    return kSpaces.find(character) != std::string_view::npos;
}

} // namespace

std::string Arguments::Word()
{
    std::string word;
    bool isQuoted = false;
    std::size_t at = 0;
    for (; at < rest_.size() && (isQuoted || !IsSpace(rest_[at])); ++at) {
        if (rest_[at] == '"')
            isQuoted = !isQuoted;
        else
            word += rest_[at];
    }
    if (isQuoted)
        throw std::invalid_argument("a quotation mark has no second one");
    rest_.remove_prefix(at);
    SkipSpaces();
    return word;
}

std::uint64_t Arguments::Number(std::uint64_t least, std::uint64_t most)
{
    const std::string word = Word();
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || end != word.data() + word.size() || value < least || value > most)
        throw std::invalid_argument("\"" + word + "\" is no number from " + std::to_string(least) + " to " +
                                    std::to_string(most));
    return value;
}

bool Arguments::NumberIsNext() const
{
    const std::string_view word = rest_.substr(0, rest_.find_first_of(kSpaces));
    return !word.empty() && std::all_of(word.begin(), word.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string Arguments::Rest()
{
    return std::string(std::exchange(rest_, {}));
}

std::string Arguments::Text()
{
    const bool isEnclosed = rest_.size() >= 2 && rest_.front() == '"' && rest_.find('"', 1) == rest_.size() - 1;
    return isEnclosed ? Word() : Rest();
}

void Arguments::SkipSpaces()
{
    rest_.remove_prefix(std::min(rest_.find_first_not_of(kSpaces), rest_.size()));
}

} // namespace simulator
