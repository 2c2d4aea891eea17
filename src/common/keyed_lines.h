// Finds the first line that begins with each of a fixed set of keys, all in one pass over a host's text: what the vCard
// and the iCalendar reader share. Blanks and tabs before a key are passed over, letter case is ignored, and a key is
// found wherever a line begins with it, whatever follows. The work is linear in the text, whatever its bytes.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "common/ascii_case.h"

constexpr bool IsLineEnd(char ch)
{
    return ch == '\r' || ch == '\n';
}

// The text up to its first line end; all of it if it has none.
constexpr std::string_view GetFirstLine(std::string_view strText)
{
    return {strText.begin(), std::ranges::find_if(strText, IsLineEnd)};
}

// The keys, in upper case; those that begin with the same letter stand together.
template <size_t N>
class CLineKeys
{
public:
    explicit consteval CLineKeys(const std::string_view (&Keys)[N]) : m_Keys(std::to_array(Keys))
    {
        for (size_t uKey = 0; uKey < N; ++uKey) {
            SGroup& Group = m_Groups[static_cast<uint8_t>(Keys[uKey].front())];
            if (Group.uEnd == 0)
                Group = {.uFirst = uKey, .uEnd = 0, .strCommon = Keys[uKey]};
            Group.uEnd = uKey + 1;
            Group.strCommon = GetCommon(Group.strCommon, Keys[uKey]);
        }
        for (char ch = 'a'; ch <= 'z'; ++ch)
            m_Groups[static_cast<uint8_t>(ch)] = m_Groups[static_cast<uint8_t>(ToUpper(ch))];
    }

    std::string_view operator[](size_t uKey) const { return m_Keys[uKey]; }

    // Enters the position for each key that the rest of the text begins with and that has none yet; returns how many.
    size_t Note(std::string_view strRest, size_t uPosition, std::array<size_t, N>* pauPositions) const
    {
        const SGroup& Group = m_Groups[static_cast<uint8_t>(strRest.front())];
        if (Group.uEnd == 0 || !BeginsIgnoringCase(strRest, Group.strCommon))
            return 0;
        size_t uNoted = 0;
        for (size_t uKey = Group.uFirst; uKey < Group.uEnd; ++uKey)
            if ((*pauPositions)[uKey] == std::string_view::npos && BeginsIgnoringCase(strRest, m_Keys[uKey])) {
                (*pauPositions)[uKey] = uPosition;
                ++uNoted;
            }
        return uNoted;
    }

private:
    // Keys uFirst up to, not including, uEnd, and what they have in common. Looking for that first keeps a text full
    // of such letters cheap.
    struct SGroup
    {
        size_t uFirst = 0;
        size_t uEnd = 0;
        std::string_view strCommon;
    };

    static constexpr std::string_view GetCommon(std::string_view strOne, std::string_view strOther)
    {
        return {strOne.begin(), std::ranges::mismatch(strOne, strOther).in1};
    }

    std::array<std::string_view, N> m_Keys;
    std::array<SGroup, 256> m_Groups{}; // for each byte that a line may begin with
};

// For each key the position of its first line, npos for none. From uFreeFrom on, a key counts at any position that is
// not blank, not only where a line begins.
template <size_t N>
std::array<size_t, N> FindKeyedLines(const CLineKeys<N>& Keys, std::string_view strText,
                                     size_t uFreeFrom = std::string_view::npos)
{
    std::array<size_t, N> auPositions;
    auPositions.fill(std::string_view::npos);
    const size_t uLineEnd = std::min(uFreeFrom, strText.size());
    size_t uMissing = N;
    for (size_t uPosition = 0; uPosition < strText.size() && uMissing > 0; ++uPosition) {
        const char ch = strText[uPosition];
        if (ch == ' ' || ch == '\t')
            continue;
        uMissing -= Keys.Note(strText.substr(uPosition), uPosition, &auPositions);
        while (uPosition < uLineEnd && !IsLineEnd(strText[uPosition]))
            ++uPosition;
    }
    return auPositions;
}
