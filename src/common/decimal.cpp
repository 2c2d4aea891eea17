#include "common/decimal.h"

#include <algorithm>
#include <limits>

// The integer, no lower than the lowest signed one of 32 bits and no higher than nMaximum.
static int64_t ReadClamped(std::string_view strValue, int64_t nMaximum)
{
    constexpr int64_t kMinimum = std::numeric_limits<int32_t>::min();
    constexpr int64_t kLimit = std::numeric_limits<uint32_t>::max();
    strValue.remove_prefix(std::min(strValue.find_first_not_of(" \t\v\f"), strValue.size()));
    const bool bNegative = strValue.starts_with('-');
    if (bNegative || strValue.starts_with('+'))
        strValue.remove_prefix(1);
    int64_t nValue = 0;
    for (size_t uDigit = 0; uDigit < strValue.size() && IsDigit(strValue[uDigit]); ++uDigit)
        nValue = std::min(nValue * 10 + (strValue[uDigit] - '0'), kLimit);
    return std::clamp(bNegative ? -nValue : nValue, kMinimum, nMaximum);
}

int32_t ReadDecimal(std::string_view strValue)
{
    return static_cast<int32_t>(ReadClamped(strValue, std::numeric_limits<int32_t>::max()));
}

uint32_t ReadUnsigned(std::string_view strValue)
{
    return static_cast<uint32_t>(ReadClamped(strValue, std::numeric_limits<uint32_t>::max()));
}
