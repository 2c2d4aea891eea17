// Every export that is implemented and needs a service, as one row: what a correct call looks like, what it clears and
// which service object it needs. In their order, with a handset as shipped, all succeed. The guard tests walk the
// table, and sessions that fail or are looked at; a new export is a new row.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "phnnrv.h"

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
    uint32_t success = 0;      // the code, or the count
    std::string content{};     // of the data buffer, for a call that succeeds; empty: it is read into
    std::string method{};      // of the service object
    std::string nullLine{};    // the text after the name when there is no record
    uint32_t failure = 0;      // how it ends when the handset answers every request with status 12
    std::string failureLine{}; // the text after the name then
};

using FindExport = std::function<void*(const char* name)>;

inline constexpr const char* kUnimplemented[] = {
    "PHN_CheckForUpgrade", "PHN_GetLocationInfo", "PHN_GetMassStorageMode",
    "PHN_GetNDISMode",     "PHN_PlayRingerID",    "PHN_SetCallbackExtended",
    "PHN_SetFieldTest",    "PHN_SetLocationMode", "PHN_SetMassStorageMode",
    "PHN_SetNDISMode",     "PHN_SetPower",        "PHN_SetPowerState",
    "PHN_Upgrade"};

void PHN_CALL Ignore(uint32_t);

// The function is the one that is registered for all callbacks.
std::vector<ExportRow> ExportTable(const FindExport& find, PHN_CALLBACK_FUNCTION function = Ignore);

// Makes the row's call so that it succeeds, with a record and a buffer that have no byte to spare. What it writes goes
// to `output`.
uint32_t CallExport(const ExportRow& row, std::string* output);
