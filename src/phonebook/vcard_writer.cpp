#include "phonebook/vcard_writer.h"

#include <array>

#include "phonebook/vcard_keys.h"

namespace {

void AppendLine(std::string* pstrText, std::string_view strKey, std::string_view strValue)
{
    pstrText->append(strKey).append(":").append(strValue).append("\r\n");
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
    const char* const pszBetween = Data.strFirstName.empty() || Data.strLastName.empty() ? "" : " ";
    pstrText->append(kVCardKeys[eKeyFullName]).append(":").append(Data.strFirstName);
    pstrText->append(pszBetween).append(Data.strLastName).append("\r\n");
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
        strLines.append(kVCardKeys[kEntryTypes[Entry.dwType].eKey]).append(":");
        Entry.wszValue.AppendText(&strLines);
        strLines.append("\r\n");
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
    for (const uint32_t dwSpeedDial : SpeedDials)
        strList.append(strList.empty() ? "" : ",").append(ToDecimal(dwSpeedDial));
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
