#include "status/network_errors.h"

#include "common/lookup.h"
#include "texts/network_errors.h"

namespace {

struct SNetworkError
{
    int32_t nCode;
    std::string_view strText;
};

#define PHN_NETWORK_TEXT(name, joint, text) {name, #name joint text},

constexpr SNetworkError kNetworkErrors[] = {PHN_NETWORK_ERROR_TEXTS(PHN_NETWORK_TEXT)};

#undef PHN_NETWORK_TEXT

static_assert(IsSorted(kNetworkErrors, &SNetworkError::nCode));

} // namespace

std::string_view FindNetworkErrorText(int32_t eError)
{
    const SNetworkError* pError = FindSorted(kNetworkErrors, &SNetworkError::nCode, eError);
    return pError ? pError->strText : std::string_view();
}
