// The fixed texts of the network error codes, which PHN_GetNetworkErrorString hands to the host: the enumerator's name
// and a short description. Pure data; the texts are shown to users as they stand, so they are not to be polished.
#pragma once

#include <cstdint>
#include <string_view>

// The text of a code; empty for a code that has none. What it designates is zero-terminated.
std::string_view FindNetworkErrorText(int32_t eError);
