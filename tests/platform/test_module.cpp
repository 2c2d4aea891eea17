// The module that modules_test.cpp loads; it depends on another one, whose functions are not its own.
#include <cstdint>
#include <cstdlib>

extern "C" __attribute__((visibility("default"))) std::intptr_t PlatformTestAnswer()
{
    return std::strtol("42", nullptr, 10);
}
