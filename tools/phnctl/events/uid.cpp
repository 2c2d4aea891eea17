#include "phnctl/events/uid.h"

#include "phnctl/text/fingerprint.h"

#include <algorithm>
#include <fmt/format.h>

namespace phnctl {

namespace {

constexpr std::size_t kMarkLength = 17; // "~" and 16 digits
constexpr std::size_t kPartLength = 9;  // "@" and 8 digits, or "." and a number
constexpr std::string_view kHexDigits = "0123456789abcdef";
constexpr std::string_view kDigits = "0123456789";

std::string Mark(std::string_view meaning)
{
    return '~' + Fingerprint(meaning);
}

bool IsOf(std::string_view text, std::string_view characters)
{
    return !text.empty() && text.find_first_not_of(characters) == std::string_view::npos;
}

} // namespace

std::string MarkedUid(std::string_view uid, std::string_view meaning)
{
    // Every code page has these characters, so that the id is the same under all of them.
    const auto isPlain = [](char c) { return c > ' ' && c <= '~'; };
    const std::string_view begin = uid.substr(0, kUidUnits - kMarkLength - kPartLength);
    return std::string(begin.begin(), std::ranges::find_if_not(begin, isPlain)) + Mark(meaning);
}

std::string RunUid(const std::string& uid, std::size_t number)
{
    return fmt::format("{}.{}", MarkedUid(uid, uid), number);
}

std::string MovedUid(const std::string& uid, std::int64_t when)
{
    return fmt::format("{}@{:08x}", MarkedUid(uid, uid), static_cast<std::uint32_t>(when));
}

std::optional<SeriesPart> SeriesPartOf(const std::string& uid)
{
    const std::size_t begin = std::min(uid.rfind('~'), uid.size());
    const std::string mark = uid.substr(begin, kMarkLength);
    const std::string part = uid.substr(begin + mark.size());
    const bool isMarked = mark.size() == kMarkLength && IsOf(std::string_view(mark).substr(1), kHexDigits);
    const bool isRun = part.starts_with('.') && part.size() <= kPartLength && IsOf(part.substr(1), kDigits);
    const bool isMoved = part.starts_with('@') && part.size() == kPartLength && IsOf(part.substr(1), kHexDigits);
    if (!isMarked || (!isRun && !isMoved))
        return std::nullopt;
    return SeriesPart{mark, isRun ? part.substr(1) : ""};
}

std::string SeriesMark(const std::string& uid)
{
    return Mark(uid);
}

} // namespace phnctl
