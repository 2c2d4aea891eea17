// For a target of the link alone: the lock of the log, which the library makes when it is loaded, before the first
// input.
#include "log/log_file.h"

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    CreateLogLock();
    return 0;
}
