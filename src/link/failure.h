// How a service operation fails outside the checks of its exchange: one Error line, one error code, false.
#pragma once

#include "log/log.h"
#include "phnnrv.h"

// Logs the line, stores the code and returns false, for `return Fail(...)`.
template <typename... Args>
bool Fail(const CLogSource& Log, PHN_ERROR* pError, PHN_ERROR weError, CLogFormat<std::type_identity_t<Args>...> Format,
          const Args&... Values)
{
    Log.Error(Format, Values...);
    *pError = weError;
    return false;
}
