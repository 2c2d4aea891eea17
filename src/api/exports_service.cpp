// The beginning and the end of the service: only the entry line and the boundary are the frame's.
#include "api/export_frame.h"
#include "api/startup.h"

PHN_ERROR PHN_Startup() noexcept
{
    return Export("PHN_Startup", [](CExportFrame&) { return Startup(); });
}

PHN_ERROR PHN_Shutdown() noexcept
{
    return Export("PHN_Shutdown", [](CExportFrame&) { return Shutdown(); });
}
