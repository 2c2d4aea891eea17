#include "link/reply_codes.h"

#include "common/lookup.h"

namespace {

struct SStatusCode
{
    DWORD dwStatus;
    PHN_ERROR eError;
};

constexpr SStatusCode kStatusCodes[] = {
    {4, PHN_ERROR_NO_SERVICE_OBJECT},  {5, PHN_ERROR_NOT_AUTOMATIC}, {6, PHN_ERROR_STATUS_6},
    {7, PHN_ERROR_STATUS_7},           {8, PHN_ERROR_STATUS_8},      {9, PHN_ERROR_ACTIVATION_STARTED},
    {10, PHN_ERROR_INVALID_LOCK_CODE}, {11, PHN_ERROR_STATUS_11},    {12, PHN_ERROR_STATUS_12},
};
static_assert(IsSorted(kStatusCodes, &SStatusCode::dwStatus));

// Codes dwFirst to dwLast are the errors from eFirst upward.
struct SCodeRange
{
    DWORD dwFirst;
    DWORD dwLast;
    PHN_ERROR eFirst;
};

constexpr SCodeRange kDeviceResults[] = {
    {0, 0, PHN_ERROR_NONE},
    {1, 1, PHN_ERROR_NOT_FOUND},
    {2, 2, PHN_ERROR_RESULT_2},
    {3, 3, PHN_ERROR_COMMUNICATION},
    {4, 4, PHN_ERROR_RESULT_4},
    {5, 5, PHN_ERROR_NO_MORE_ENTRIES},
    {8, 8, PHN_ERROR_INVALID_PARAMETER},
    {100, 100, PHN_ERROR_NO_MORE_MESSAGES},
    {101, 107, 1000},
    {108, 117, 1031},
    {118, 119, 1047},
    {120, 124, 1063},
    {125, 138, 1095},
    {139, 139, 1255},
    {140, 146, 1769},
    {147, 148, 1777},
};
static_assert(IsSorted(kDeviceResults, &SCodeRange::dwFirst) && IsSorted(kDeviceResults, &SCodeRange::dwLast));

constexpr SCodeRange kEndReasons[] = {{1, 32, 1000}, {33, 49, 3000}};
static_assert(IsSorted(kEndReasons, &SCodeRange::dwFirst) && IsSorted(kEndReasons, &SCodeRange::dwLast));

// The error of a code; eOther for a code in no range.
template <size_t N>
PHN_ERROR FindInRanges(const SCodeRange (&Ranges)[N], DWORD dwCode, PHN_ERROR eOther)
{
    // The first range that does not end before the code is the only one that can hold it.
    const SCodeRange* pRange = std::ranges::lower_bound(Ranges, dwCode, {}, &SCodeRange::dwLast);
    return pRange != Ranges + N && dwCode >= pRange->dwFirst ? pRange->eFirst + (dwCode - pRange->dwFirst) : eOther;
}

} // namespace

PHN_ERROR MapReplyStatus(DWORD dwStatus)
{
    const SStatusCode* pCode = FindSorted(kStatusCodes, &SStatusCode::dwStatus, dwStatus);
    return pCode ? pCode->eError : static_cast<PHN_ERROR>(PHN_ERROR_FAILED);
}

PHN_ERROR MapDeviceResult(DWORD dwResult)
{
    return FindInRanges(kDeviceResults, dwResult, PHN_ERROR_FAILED);
}

PHN_ERROR MapCallEndReason(DWORD dwReason)
{
    return FindInRanges(kEndReasons, dwReason, PHN_ERROR_NONE);
}
