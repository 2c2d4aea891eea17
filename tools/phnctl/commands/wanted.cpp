#include "phnctl/commands/wanted.h"

#include "phnctl/text/contains.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <sstream>

namespace phnctl {

namespace {

constexpr std::size_t kFewestDigits = 3;    // that are looked for as a number
constexpr std::size_t kDigitsOfANumber = 7; // by which a number is known, whatever prefix is before them
constexpr const char* kBetweenDigits = " +-()./\t";

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// The digits of each number in a text, whatever is written between them.
std::vector<std::string> NumbersIn(const std::string& text)
{
    std::vector<std::string> numbers(1);
    for (const char c : text) {
        if (IsDigit(c))
            numbers.back() += c;
        else if (!numbers.back().empty() && std::string_view(kBetweenDigits).find(c) == std::string_view::npos)
            numbers.emplace_back();
    }
    std::erase(numbers, "");
    return numbers;
}

// The digits, if the whole text is one number.
std::string NumberIn(const std::string& text)
{
    const bool isNumber = std::ranges::all_of(
        text, [](char c) { return IsDigit(c) || std::string_view(kBetweenDigits).find(c) != std::string_view::npos; });
    const std::vector<std::string> numbers = isNumber ? NumbersIn(text) : std::vector<std::string>();
    return numbers.size() == 1 && numbers.front().size() >= kFewestDigits ? numbers.front() : "";
}

// Without what is dialled before it at home: "0", "00".
std::string_view WithoutZeros(std::string_view digits)
{
    return digits.substr(std::min(digits.find_first_not_of('0'), digits.size()));
}

bool MeanTheSame(const std::string& one, const std::string& other)
{
    const std::string_view first = WithoutZeros(one);
    const std::string_view second = WithoutZeros(other);
    return std::min(first.size(), second.size()) >= kDigitsOfANumber &&
           (first.ends_with(second) || second.ends_with(first));
}

} // namespace

Argument WantedArgument()
{
    return {"TEXT", "Words or parts of them, or a number", Count::Many, {}};
}

Wanted::Wanted(const Invocation& invocation)
    : m_text(OneLine(fmt::format("{}", fmt::join(invocation.values.at("TEXT"), " ")))), m_digits(NumberIn(m_text))
{
    std::istringstream words(m_text);
    for (std::string word; words >> word;)
        m_words.push_back(word);
    if (m_words.empty())
        throw Failure(kUsage, "there is nothing to look for; allowed: words, or a number");
    if (!m_digits.empty())
        m_words = {m_text};
}

bool Wanted::IsIn(const std::vector<std::string>& texts) const
{
    const auto hasNumber = [&](const std::string& text) {
        return std::ranges::any_of(NumbersIn(text), [&](const std::string& number) {
            return number.find(m_digits) != std::string::npos || MeanTheSame(number, m_digits);
        });
    };
    const auto isSomewhere = [&](const std::string& word) {
        return std::ranges::any_of(texts, [&](const std::string& text) { return Contains(text, word); });
    };
    return (!m_digits.empty() && std::ranges::any_of(texts, hasNumber)) || std::ranges::all_of(m_words, isSomewhere);
}

std::string Wanted::Shown() const
{
    return Printable(m_text);
}

} // namespace phnctl
