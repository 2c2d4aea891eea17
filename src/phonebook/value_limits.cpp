#include "phonebook/value_limits.h"

#include "common/decimal.h"
#include "log/log.h"

namespace {

constexpr CLogSource Log{LOG_CPHONEBOOK};

} // namespace

bool FitsLimit(EVCardKey eKey, std::string_view strValue)
{
    if (strValue.size() <= kMaxPropertyValue)
        return true;
    Log.Error("VCardToNorvik - Value of %s has %d characters, more than %d.", kVCardKeys[eKey].data(), strValue.size(),
              kMaxPropertyValue);
    return false;
}

bool ReadNumber(const CVCardText& Text, EVCardKey eKey, uint32_t* pdwNumber)
{
    std::string_view strValue;
    if (!Text.GetVCardProperty(eKey, &strValue))
        return true;
    *pdwNumber = ReadUnsigned(strValue);
    return FitsLimit(eKey, strValue);
}
