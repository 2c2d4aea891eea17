// The module that modules_test.cpp loads.
#include <cstdint>

extern "C" __attribute__((visibility("default"))) std::intptr_t PlatformTestAnswer()
{
    return 42;
}
