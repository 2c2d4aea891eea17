#include "phnctl/contacts/name.h"

#include "phnctl/text/text.h"

#include <algorithm>
#include <array>

namespace phnctl {

namespace {

enum Part
{
    kFamily,
    kGiven,
    kAdditional,
    kPrefix,
    kSuffix,
    kPartCount,
};

using Parts = std::array<std::string, kPartCount>;

std::string Joined(const Parts& parts, bool isFamilyFirst)
{
    const std::array<Part, kPartCount> order = isFamilyFirst
                                                   ? std::array{kPrefix, kFamily, kGiven, kAdditional, kSuffix}
                                                   : std::array{kPrefix, kGiven, kAdditional, kFamily, kSuffix};
    std::string name;
    for (const Part part : order)
        if (!parts[part].empty())
            name += (name.empty() ? "" : " ") + parts[part];
    return name;
}

// Kana, Han and Hangul: names in these begin with the family.
bool BeginsWithFamily(const std::string& name)
{
    constexpr unsigned char kFrom3000 = 0xE3;
    constexpr unsigned char kToDFFF = 0xED;
    const auto lead = static_cast<unsigned char>(name.empty() ? 0 : name.front());
    return lead >= kFrom3000 && lead <= kToDFFF;
}

std::vector<std::string> WordsOf(const std::string& text)
{
    std::vector<std::string> words(1);
    for (const char c : text) {
        if (c != ' ' && c != ',')
            words.back() += c;
        else if (!words.back().empty())
            words.emplace_back();
    }
    if (words.back().empty())
        words.pop_back();
    return words;
}

bool HoldsAllWordsOf(const std::string& text, const std::string& other)
{
    const std::vector<std::string> words = WordsOf(text);
    const std::vector<std::string> others = WordsOf(other);
    return std::all_of(others.begin(), others.end(), [&](const std::string& word) {
        return std::find(words.begin(), words.end(), word) != words.end();
    });
}

} // namespace

CardName NameOfCard(const std::string& formatted, const std::vector<std::string>& parts)
{
    const std::string whole = OneLine(formatted);
    Parts known;
    for (std::size_t i = 0; i < std::min(parts.size(), known.size()); ++i)
        known[i] = OneLine(parts[i]);
    const std::string& family = known[kFamily];
    const std::string& given = known[kGiven];
    if (whole.empty())
        return {Joined(known, BeginsWithFamily(family) && BeginsWithFamily(given)), true, ""};
    CardName name{whole, false, ""};
    for (const std::string& part : known)
        if (whole.find(part) == std::string::npos)
            name.leftOut += (name.leftOut.empty() ? "" : " ") + part;
    const bool isReversed = !family.empty() && whole.starts_with(family + ",");
    if (!isReversed && name.leftOut.empty())
        return name;
    const std::size_t familyAt = family.empty() ? std::string::npos : whole.find(family);
    const std::size_t givenAt = given.empty() ? std::string::npos : whole.find(given);
    const std::string joined = Joined(known, !isReversed && familyAt < givenAt && givenAt != std::string::npos);
    return HoldsAllWordsOf(joined, whole) ? CardName{joined, true, ""} : name;
}

} // namespace phnctl
