// One call of each export as it succeeds on the simulated handset: reading first, then writing, then deleting. Records
// and buffers lie on the heap and have no byte to spare, so that AddressSanitizer sees what is written beyond them.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// Finds an export's address by its name.
using FindExport = std::function<void*(const char* name)>;

struct ExportCall
{
    std::string name;
    uint32_t success; // the code, or the count
    // What is written to the host's memory goes to `output`.
    std::function<uint32_t(const FindExport& find, std::string* output)> call;
};

// The calls between PHN_Startup and PHN_Shutdown, those two not among them.
const std::vector<ExportCall>& ExportCalls();

ExportCall Startup();
ExportCall Shutdown();
ExportCall Battery();

// How often the function that is registered for all callbacks was told: polled types, and the removal.
struct Told
{
    unsigned changes;
    unsigned removals;
};
Told TakeTold();
