// A store of the handset whose entries a host writes by their index, as the ledger sees it: each entry is a text, of
// which the library's log must tell nothing.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "phnnrv.h"
#include "simulator/phone/phone.h"
#include "soak/host_calls.h"

namespace soak {

// With these begin all texts and numbers that a run writes; neither is found by chance.
inline constexpr const char* kText = "Quodlibet ";
inline constexpr const char* kNumber = "998172635";

// May the handset have got the request of a call that ended so?
inline bool IsSent(PHN_ERROR code)
{
    return code != PHN_ERROR_NO_DEVICE && code != PHN_ERROR_NO_SERVICE_OBJECT;
}

struct Store
{
    std::string name;
    std::string begin;                      // of each text; digits follow
    std::uint32_t write, remove, removeAll; // the commands of the calls below
    std::function<PHN_ERROR(std::uint32_t index, std::string text)> doWrite;
    std::function<PHN_ERROR(std::uint32_t index)> doRemove;
    std::function<PHN_ERROR()> doRemoveAll;
    std::function<std::uint32_t(std::size_t place)> index; // of 64 places, which are nobody else's
    std::function<std::string(const simulator::Phone& phone, std::uint32_t index)> held; // empty: no entry
};

Store Events(const FindExport& find);
Store Contacts(const FindExport& find);

// A PDU to this number, of digits from 1 to 9.
std::string MessageTo(const std::string& number);

} // namespace soak
