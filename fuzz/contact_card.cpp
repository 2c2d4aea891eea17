// Any file as vCards: nothing crashes or hangs, what can be held stays within the handset's limits and the library's
// line form, and comes back unchanged from a file that the tool writes itself.
#include "phnctl/contacts/card_reader.h"
#include "phnctl/contacts/card_writer.h"
#include "phnctl/contacts/contact.h"
#include "phnctl/contacts/fitter.h"
#include "phnctl/text/text.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

void Require(bool holds)
{
    if (!holds)
        std::abort();
}

void CheckField(const phnctl::EntryField& field)
{
    Require(field.value.find_first_of("\r\n") == std::string::npos);
    Require(phnctl::IsUtf8(field.value));
    const bool isName = field.property == phnctl::contact_property::kName;
    Require(field.value.size() <= (isName ? 4 * 73u : 4 * 52u));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    for (const phnctl::Candidate& candidate : phnctl::ContactsOfFile("file", text)) {
        for (const phnctl::EntryField& field : candidate.entry.fields)
            CheckField(field);
        if (!candidate.fits)
            continue;
        const phnctl::Entry complete = phnctl::CompleteContact(candidate.entry, nullptr);
        const phnctl::StoredEntry stored{0, complete};
        const auto back = phnctl::ContactsOfFile("file", phnctl::FileOfContacts({&stored, 1}));
        Require(back.size() == 1 && back.front().fits && back.front().entry == complete);
        // As the library and the handset give it back.
        const phnctl::Entry read = phnctl::FromLibraryText(phnctl::ToLibraryText(complete));
        Require(phnctl::StorableContact(read) == complete);
    }
    return 0;
}
