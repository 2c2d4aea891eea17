// Every export that is implemented and needs a service, as one row: what a correct call looks like, what it clears and
// which service object it needs. The guard tests walk the table; a new export is a new row.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

enum class Data
{
    None,    // the record has no data buffer
    Kept,    // it has one, which the export leaves alone
    Cleared, // it has one, which the export clears whole
};

struct ExportRow
{
    std::string name;
    std::string member;     // the service object as log lines name it
    const char* argument;   // the record argument as log lines name it; null when there is none
    const char* recordName; // the record as log lines name it
    size_t size;            // of the record
    size_t clearedFrom;     // the first byte that is cleared; size: none is
    Data data;
    std::function<uint32_t(void* record)> call;
    bool returnsCount = false;
    std::string method{};      // of the service object
    std::string nullLine{};    // the text after the name when there is no record
    uint32_t failure = 0;      // how it ends when the handset answers every request with status 12
    std::string failureLine{}; // the text after the name then
};

// Finds an export's address by its name.
using FindExport = std::function<void*(const char* name)>;

std::vector<ExportRow> ExportTable(const FindExport& find);
