// A host's vCard text becomes a record. Whatever is accepted can be written, and that text is taken again as the same
// contact, if it has a name and every entry a value: what is empty has no line, or another place in the list.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

#include "fuzz/fuzz_world.h"
#include "phonebook/speed_dial_phonebook.h"

namespace {

struct Contact
{
    CSpeedDialPhonebook phonebook;
    PB_CONTACT record{};
    bool accepted;

    Contact(char* text, size_t size)
    {
        const PHN_CONTACT_RECORD host{sizeof host, text, static_cast<uint32_t>(size)};
        accepted = phonebook.VCardToNorvik(&record, &host);
    }
    ~Contact() { phonebook.FreeEntries(&record, 1); }
    Contact(const Contact&) = delete;
    Contact& operator=(const Contact&) = delete;

    std::span<const PB_NUMBER_ENTRY> Entries() const { return {record.pEntries, record.rcRecord.dwNumOfEntries}; }
};

// What the text does not give back: it has no line for an empty value, and a sign, which no list of speed dials may
// have, before a number of more than 31 bits.
bool IsLost(const PB_NUMBER_ENTRY& entry)
{
    return entry.wszValue.GetWide().empty() || entry.dwSpeedDial > INT32_MAX;
}

// Values as texts: a control code is a glyph in the record, for which the text has no character.
bool IsSame(const PB_NUMBER_ENTRY& one, const PB_NUMBER_ENTRY& other)
{
    return one.dwType == other.dwType && one.dwDefault == other.dwDefault && one.dwSpeedDial == other.dwSpeedDial &&
           one.wszValue.GetText() == other.wszValue.GetText();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    fuzz::World::Get();
    const std::unique_ptr<char[]> exact(new char[size]); // reading beyond it is found out
    std::copy_n(data, size, exact.get());
    Contact first(exact.get(), size);
    if (!first.accepted)
        return 0;
    std::vector<char> text(4096);
    PHN_CONTACT_RECORD host{sizeof host, text.data(), static_cast<uint32_t>(text.size())};
    if (!first.phonebook.NorvikToVCard(&host, &first.record))
        std::abort(); // seven entries always fit
    if (std::ranges::any_of(first.Entries(), IsLost) || first.record.rcRecord.wszFirstName.GetWide().empty())
        return 0;
    const Contact again(text.data(), std::strlen(text.data()));
    const PB_RECORD& one = first.record.rcRecord;
    const PB_RECORD& other = again.record.rcRecord;
    if (!again.accepted || one.dwGroupID != other.dwGroupID || one.dwRingerID != other.dwRingerID ||
        !std::ranges::equal(first.Entries(), again.Entries(), IsSame))
        std::abort();
    return 0;
}
