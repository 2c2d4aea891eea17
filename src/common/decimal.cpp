#include "common/decimal.h"

#include <algorithm>
#include <limits>

int32_t ReadDecimal(std::string_view strValue)
{
    constexpr int64_t kLimit = int64_t{std::numeric_limits<int32_t>::max()} + 1;
    strValue.remove_prefix(std::min(strValue.find_first_not_of(" \t\v\f"), strValue.size()));
    const bool bNegative = strValue.starts_with('-');
    if (bNegative || strValue.starts_with('+'))
        strValue.remove_prefix(1);
    int64_t nValue = 0;
    for (size_t uDigit = 0; uDigit < strValue.size() && IsDigit(strValue[uDigit]); ++uDigit)
        nValue = std::min(nValue * 10 + (strValue[uDigit] - '0'), kLimit);
    return static_cast<int32_t>(bNegative ? -nValue : std::min(nValue, kLimit - 1));
}
