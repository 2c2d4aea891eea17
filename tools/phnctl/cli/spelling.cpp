#include "phnctl/cli/spelling.h"

#include <algorithm>
#include <fmt/format.h>
#include <numeric>
#include <utility>

namespace phnctl {

namespace {

// How many letters must be changed, added or taken away to make one word of the other.
std::size_t Distance(const std::string& from, const std::string& to)
{
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t changed = diagonal + (from[i] != to[j]);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

} // namespace

std::string DidYouMean(const std::string& word, const std::vector<std::string>& names)
{
    const auto nearest = std::min_element(names.begin(), names.end(), [&](const std::string& a, const std::string& b) {
        return Distance(word, a) < Distance(word, b);
    });
    const std::size_t distance = Distance(word, *nearest);
    return distance <= 2 && distance * 2 <= word.size() ? fmt::format("Did you mean '{}'? ", *nearest) : "";
}

} // namespace phnctl
