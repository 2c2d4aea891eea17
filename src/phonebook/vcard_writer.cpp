#include "phonebook/vcard_writer.h"

#include <array>

#include "phonebook/vcard_keys.h"

namespace {

constexpr std::string_view kLineEnd = "\r\n";

void AppendLine(std::string* pstrText, std::string_view strKey, std::string_view strValue)
{
    pstrText->append(strKey).push_back(':');
    pstrText->append(strValue).append(kLineEnd);
}

// The handset's numbers are written as signed ones.
std::string ToDecimal(uint32_t dwValue)
{
    return std::to_string(static_cast<int32_t>(dwValue));
}

void AppendFullName(std::string* pstrText, const PB_VCARD_DATA& Data)
{
    if (Data.strFirstName.empty() && Data.strLastName.empty())
        return;
    const std::string_view strBetween = Data.strFirstName.empty() || Data.strLastName.empty() ? "" : " ";
    pstrText->append(kVCardKeys[eKeyFullName]).push_back(':');
    pstrText->append(Data.strFirstName).append(strBetween).append(Data.strLastName).append(kLineEnd);
}

} // namespace

std::string MakeEntryLines(std::span<const PB_NUMBER_ENTRY> Entries)
{
    constexpr size_t kUsualLine = 40;
    std::string strLines;
    strLines.reserve(kUsualLine * Entries.size());
    for (const PB_NUMBER_ENTRY& Entry : Entries) {
        if (Entry.dwType >= kEntryTypeCount)
            continue;
        strLines.append(kVCardKeys[kEntryTypes[Entry.dwType].eKey]).push_back(':');
        Entry.wszValue.AppendText(&strLines);
        strLines.append(kLineEnd);
    }
    return strLines;
}

int FindDefaultNo(std::span<const PB_NUMBER_ENTRY> Entries)
{
    for (size_t uEntry = Entries.size(); uEntry-- > 0;)
        if (Entries[uEntry].dwDefault != 0)
            return TypeToDefaultNo(Entries[uEntry].dwType);
    return -1;
}

std::string MakeSpeedDialList(std::span<const PB_NUMBER_ENTRY> Entries)
{
    std::array<uint32_t, kNumberTypeCount> SpeedDials{};
    for (size_t uEntry = Entries.size(); uEntry-- > 0;) {
        const int nPosition = TypeToDefaultNo(Entries[uEntry].dwType);
        if (nPosition > 0)
            SpeedDials[static_cast<size_t>(nPosition) - 1] = Entries[uEntry].dwSpeedDial;
    }
    std::string strList;
    for (const uint32_t dwSpeedDial : SpeedDials) {
        if (!strList.empty())
            strList.push_back(',');
        strList.append(ToDecimal(dwSpeedDial));
    }
    return strList;
}

std::string FormatVCard(const PB_VCARD_DATA& Data)
{
    std::string strText;
    strText.reserve(512 + Data.strEntryLines.size());
    strText.append("BEGIN:VCARD\r\nVERSION:3.0\r\n");
    AppendFullName(&strText, Data);
    strText.append(Data.strEntryLines).append("REV:N/A\r\nUID:N/A\r\n");
    AppendLine(&strText, kVCardKeys[eKeyGroupID], ToDecimal(Data.dwGroupID));
    AppendLine(&strText, kVCardKeys[eKeyPictureID], ToDecimal(Data.dwPictureID));
    AppendLine(&strText, kVCardKeys[eKeyRingerID], ToDecimal(Data.dwRingerID));
    AppendLine(&strText, kVCardKeys[eKeyDefaultNo], Data.strDefaultNo);
    AppendLine(&strText, kVCardKeys[eKeySpeedDialList], Data.strSpeedDialList);
    return strText.append("END:VCARD\r\n");
}
