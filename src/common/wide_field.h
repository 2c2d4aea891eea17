// A fixed-width, zero-padded UTF-16 text inside a packed handset record. It is stored as bytes, because such fields lie
// at odd offsets too, and never reads or writes past its units: a text that fills the field has no terminator.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "common/text.h"

template <size_t N>
struct WideField
{
    uint8_t m_abyUnits[2 * N];

    static constexpr size_t kUnits = N;

    // The text up to its first zero unit or the field's end.
    std::u16string GetWide() const
    {
        char16_t awUnits[N];
        return std::u16string(CopyUnits(awUnits));
    }
    std::string GetText() const
    {
        std::string strText;
        AppendText(&strText);
        return strText;
    }

    // Appends the text in the host's code page.
    void AppendText(std::string* pstrText) const
    {
        char16_t awUnits[N];
        AppendAnsi(CopyUnits(awUnits), pstrText);
    }

    // Copies as many whole characters of the ANSI text as fit, without a terminator: the host's cleared field supplies
    // it if there is room.
    void CopyText(char* pszText, size_t uSize) const
    {
        char16_t awUnits[N];
        const std::string strText = ToAnsi(CopyUnits(awUnits), uSize);
        std::memcpy(pszText, strText.data(), strText.size());
    }
    template <size_t M>
    void CopyText(char (&szText)[M]) const
    {
        CopyText(szText, M);
    }

    // Stores as many units as fit and zeroes the rest. False if the text was cut.
    bool SetWide(std::u16string_view strText)
    {
        const size_t uUnits = std::min(strText.size(), N);
        std::memset(m_abyUnits, 0, sizeof m_abyUnits);
        std::memcpy(m_abyUnits, strText.data(), uUnits * sizeof(char16_t));
        return uUnits == strText.size();
    }
    bool SetText(std::string_view strText) { return SetWide(ToWide(strText)); }

private:
    std::u16string_view CopyUnits(char16_t (&awUnits)[N]) const
    {
        std::memcpy(awUnits, m_abyUnits, sizeof m_abyUnits);
        return {awUnits, static_cast<size_t>(std::find(awUnits, awUnits + N, u'\0') - awUnits)};
    }
};
static_assert(sizeof(WideField<36>) == 72 && alignof(WideField<36>) == 1);
