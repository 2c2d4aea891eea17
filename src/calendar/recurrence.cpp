#include "calendar/recurrence.h"

#include <algorithm>
#include <chrono>

#include "common/decimal.h"
#include "common/lookup.h"

namespace {

constexpr std::string_view kWeekdays[] = {"MO", "TU", "WE", "TH", "FR", "SA", "SU"};
constexpr unsigned kWeekdayCount = 7;
constexpr unsigned kFirstOfWeekend = 5;
constexpr unsigned kMonths = 12;
constexpr unsigned kLongestMonth = 31;
constexpr unsigned kBits = 32;

struct SFrequency
{
    uint32_t dwRepeatType;
    std::string_view strName;
};

// As they are written. The third is none that is read: the value of FREQ ends at the semicolon.
constexpr SFrequency kFrequencies[] = {{eRepeatDaily, "DAILY"},
                                       {eRepeatWeekly, "WEEKLY"},
                                       {eRepeatWeekdays, "WEEKLY; BYDAY=MO,TU,WE,TH,FR"},
                                       {eRepeatMonthly, "MONTHLY"},
                                       {eRepeatYearly, "YEARLY"}};

template <typename TTake>
void ForEachItem(std::string_view strList, const TTake& Take)
{
    for (size_t uBegin = 0; uBegin <= strList.size();) {
        const size_t uEnd = std::min(strList.find(',', uBegin), strList.size());
        Take(strList.substr(uBegin, uEnd - uBegin));
        uBegin = uEnd + 1;
    }
}

// The handset's lists hold signed bytes.
int ReadByte(std::string_view strItem)
{
    return static_cast<int8_t>(ReadDecimal(strItem));
}

struct SNumbers
{
    uint32_t dwPositive = 0; // bit n - 1 for each n of a list
    uint32_t dwNegative = 0; // bit n - 1 for each -n
};

SNumbers ReadNumbers(std::string_view strList)
{
    SNumbers Numbers;
    ForEachItem(strList, [&](std::string_view strItem) {
        const int nNumber = ReadByte(strItem);
        const unsigned uBit = static_cast<unsigned>(nNumber < 0 ? -nNumber : nNumber) - 1; // of 0: out of range
        if (uBit < kBits)
            (nNumber < 0 ? Numbers.dwNegative : Numbers.dwPositive) |= uint32_t{1} << uBit;
    });
    return Numbers;
}

bool HasBit(uint32_t dwBits, unsigned uBit)
{
    return (dwBits >> uBit & 1) != 0;
}

struct SStart
{
    unsigned uMonth;
    unsigned uDay;
    unsigned uWeekday; // from 0, Monday
    unsigned uDaysInMonth;
};

SStart GetStart(const CAL_EVENT_INFO& EventInfo)
{
    using namespace std::chrono;
    const year_month Month = year{EventInfo.tmStart.wYear} / month{EventInfo.tmStart.byMonth};
    const sys_days Day = Month / day{EventInfo.tmStart.byDay};
    return {.uMonth = EventInfo.tmStart.byMonth,
            .uDay = EventInfo.tmStart.byDay,
            .uWeekday = weekday(Day).iso_encoding() - 1,
            .uDaysInMonth = static_cast<unsigned>((Month / last).day())};
}

bool FitsWeek(uint8_t byEntry, unsigned uWeek)
{
    return byEntry == kEveryDay || byEntry == uWeek;
}

void AppendItem(std::string* pstrList, std::string_view strItem)
{
    pstrList->append(pstrList->empty() ? "" : ",").append(strItem);
}

void AppendWeekday(std::string* pstrList, uint8_t byEntry, std::string_view strSign, std::string_view strName)
{
    if (byEntry == kEveryDay)
        AppendItem(pstrList, strName);
    else if (byEntry != 0)
        AppendItem(pstrList, std::string(strSign).append(std::to_string(byEntry)).append(strName));
}

void AppendNumbers(std::string* pstrList, uint32_t dwNumbers, unsigned uCount, std::string_view strSign)
{
    for (unsigned uBit = 0; uBit < uCount; ++uBit)
        if (HasBit(dwNumbers, uBit))
            AppendItem(pstrList, std::string(strSign).append(std::to_string(uBit + 1)));
}

} // namespace

uint32_t GetRepeatType(std::string_view strFrequency)
{
    const SFrequency* const pFrequency = FindFirst(kFrequencies, &SFrequency::strName, strFrequency);
    return pFrequency ? pFrequency->dwRepeatType : eRepeatNone;
}

std::string_view GetFrequency(uint32_t dwRepeatType)
{
    const SFrequency* const pFrequency = FindFirst(kFrequencies, &SFrequency::dwRepeatType, dwRepeatType);
    return pFrequency ? pFrequency->strName : "N/A";
}

bool NamesWeekdays(std::string_view strByDay)
{
    for (unsigned uDay = 0; uDay < kWeekdayCount; ++uDay)
        if ((strByDay.find(kWeekdays[uDay]) != std::string_view::npos) != (uDay < kFirstOfWeekend))
            return false;
    return true;
}

void SetByMonth(std::string_view strByMonth, CAL_EVENT_INFO* pEventInfo)
{
    const SNumbers Months = ReadNumbers(strByMonth);
    pEventInfo->dwByMonth = Months.dwPositive;
    pEventInfo->dwByMonthFromEnd = Months.dwNegative;
}

void SetByDay(std::string_view strByDay, CAL_EVENT_INFO* pEventInfo)
{
    ForEachItem(strByDay, [&](std::string_view strItem) {
        const auto* const pWeekday = std::ranges::find_if(
            kWeekdays, [strItem](std::string_view strName) { return strItem.find(strName) != std::string_view::npos; });
        const auto uDay = static_cast<size_t>(pWeekday - kWeekdays);
        if (uDay == kWeekdayCount)
            return;
        const int nWeek = ReadByte(strItem);
        if (nWeek < 0)
            pEventInfo->byDayFromEnd[uDay] = static_cast<uint8_t>(-nWeek);
        else
            pEventInfo->byDay[uDay] = nWeek > 0 ? static_cast<uint8_t>(nWeek) : kEveryDay;
    });
}

void SetByMonthDay(std::string_view strByMonthDay, CAL_EVENT_INFO* pEventInfo)
{
    const SNumbers Days = ReadNumbers(strByMonthDay);
    pEventInfo->dwByMonthDay = Days.dwPositive;
    pEventInfo->dwByMonthDayFromEnd = Days.dwNegative;
}

bool IsStartInByMonth(const CAL_EVENT_INFO& EventInfo)
{
    const SStart Start = GetStart(EventInfo);
    return HasBit(EventInfo.dwByMonth, Start.uMonth - 1) || HasBit(EventInfo.dwByMonthFromEnd, kMonths - Start.uMonth);
}

bool IsStartInByDay(const CAL_EVENT_INFO& EventInfo)
{
    const SStart Start = GetStart(EventInfo);
    return FitsWeek(EventInfo.byDay[Start.uWeekday], (Start.uDay + 6) / 7) ||
           FitsWeek(EventInfo.byDayFromEnd[Start.uWeekday], (Start.uDaysInMonth - Start.uDay + 7) / 7);
}

bool IsStartInByMonthDay(const CAL_EVENT_INFO& EventInfo)
{
    const SStart Start = GetStart(EventInfo);
    return HasBit(EventInfo.dwByMonthDay, Start.uDay - 1) ||
           HasBit(EventInfo.dwByMonthDayFromEnd, Start.uDaysInMonth - Start.uDay);
}

std::string MakeByDay(const CAL_EVENT_INFO& EventInfo)
{
    std::string strList;
    for (unsigned uDay = 0; uDay < kWeekdayCount; ++uDay) {
        AppendWeekday(&strList, EventInfo.byDay[uDay], "", kWeekdays[uDay]);
        AppendWeekday(&strList, EventInfo.byDayFromEnd[uDay], "-", kWeekdays[uDay]);
    }
    return strList;
}

std::string MakeByMonth(const CAL_EVENT_INFO& EventInfo)
{
    std::string strList;
    AppendNumbers(&strList, EventInfo.dwByMonth, kMonths, "");
    return strList;
}

std::string MakeByMonthDay(const CAL_EVENT_INFO& EventInfo)
{
    std::string strList;
    AppendNumbers(&strList, EventInfo.dwByMonthDay, kLongestMonth, "");
    AppendNumbers(&strList, EventInfo.dwByMonthDayFromEnd, kLongestMonth, "-");
    return strList;
}
