#include "phnctl/contact_card.h"

#include "phnctl/contact_fields.h"
#include "phnctl/contact_fitter.h"
#include "phnctl/content_value.h"
#include "phnctl/text.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>
#include <windows.h>

namespace phnctl {

using namespace contact_property;

namespace {

// What a card says about itself, and what another property says as well.
constexpr std::string_view kSilent[] = {"N",         "PRODID",       "REV",     "UID",   "KIND",
                                        "SOURCE",    "NAME",         "PROFILE", "CLASS", "SORT-STRING",
                                        "X-ABLABEL", "CLIENTPIDMAP", "MAILER",  "BEGIN", "END"};

bool IsIn(std::string_view name, std::span<const std::string_view> names)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool IsPreferred(const ContentLine& line)
{
    return line.HasParameter("TYPE", "PREF") || line.HasParameter("PREF", "1");
}

// "tel:+1-555-0100;ext=5" (RFC 3966) as a number; what is no such address stays as it is.
std::string NumberOf(std::string text)
{
    if (!UpperCase(text).starts_with("TEL:"))
        return text;
    const std::string upper = UpperCase(text);
    const std::size_t extension = upper.find(";EXT=");
    std::string number = text.substr(4, text.find(';') - 4);
    if (extension != std::string::npos)
        number += 'p' + text.substr(extension + 5, text.find(';', extension + 1) - extension - 5);
    return number;
}

// The place of a telephone number by its types; empty when a handset has none for such a number.
std::string NumberPlace(const ContentLine& line)
{
    const auto is = [&](const char* type) { return line.HasParameter("TYPE", type); };
    if (is("PAGER") || is("MODEM") || is("BBS") || is("TEXTPHONE"))
        return {};
    if (is("FAX"))
        return kFax;
    if (is("CELL"))
        return kCell;
    if (is("HOME"))
        return kHome;
    return is("WORK") ? kWork : kAnyNumber;
}

// "Dr. Anna Maria Berg" from "Berg;Anna;Maria;Dr.;".
std::string NameFromParts(const std::string& value)
{
    const std::vector<std::string> parts = SplitEscaped(value, ';');
    std::string name;
    for (const std::size_t part : {3u, 1u, 2u, 0u, 4u})
        if (part < parts.size() && !parts[part].empty())
            name += (name.empty() ? "" : " ") + parts[part];
    return name;
}

class CardReader
{
public:
    explicit CardReader(const VCard& card) : m_card(card) {}

    Candidate Read(const std::string& file)
    {
        TakeName();
        for (const ContentLine& line : m_card.properties)
            Take(line);
        Candidate candidate = FitContact(m_wishes);
        candidate.hasLostText = m_hasLostText;
        m_dropped.insert(m_dropped.end(), candidate.notes.begin(), candidate.notes.end());
        candidate.notes = std::move(m_dropped);
        candidate.file = file;
        candidate.line = m_card.line;
        if (!m_card.problem.empty()) {
            candidate.fits = false;
            candidate.notes = {{"not-a-card", "", m_card.problemLine, m_card.problem}};
        }
        return candidate;
    }

private:
    // FN, or what stands for it where it is missing or empty.
    void TakeName()
    {
        for (const char* name : {"FN", "N", "NICKNAME", "ORG"}) {
            for (const ContentLine& line : m_card.properties) {
                if (line.name != name)
                    continue;
                const std::string value = DecodedValue(line);
                const std::string text = line.name == "N"     ? NameFromParts(value)
                                         : line.name == "ORG" ? SplitEscaped(value, ';').front()
                                                              : Unescaped(value);
                if (text.find_first_not_of(" \t\r\n") == std::string::npos)
                    continue;
                m_named = &line;
                return Ask(kName, text, line);
            }
        }
    }

    void Take(const ContentLine& line)
    {
        if (&line == m_named || line.name == kName || IsIn(line.name, kSilent))
            return;
        if (line.name == "TEL")
            TakeNumber(line);
        else if (line.name == "EMAIL")
            TakeAddress(line);
        else if (line.name == kLostText)
            m_hasLostText = true;
        else if (const char* own = OwnProperty(line.name))
            Ask(own, Unescaped(DecodedValue(line)), line);
        else if (line.name.empty())
            DropBroken(line);
        else if (line.value.find_first_not_of("; \t") != std::string::npos)
            Drop(line);
    }

    // Lines of a picture that was folded wrongly come in hundreds: those that follow each other count once.
    void DropBroken(const ContentLine& line)
    {
        if (&line == m_card.properties.data() || !(&line)[-1].name.empty())
            m_dropped.push_back({"not-a-property", "", line.line, "the line has no colon"});
    }

    void TakeNumber(const ContentLine& line)
    {
        const std::string place = NumberPlace(line);
        const std::string number = NumberOf(Unescaped(DecodedValue(line)));
        if (place.empty())
            Drop(line);
        else
            Ask(place, number, line);
    }

    void TakeAddress(const ContentLine& line)
    {
        std::string address = Unescaped(DecodedValue(line));
        if (UpperCase(address).starts_with("MAILTO:"))
            address.erase(0, 7);
        Ask(kEmail, address, line);
    }

    // The properties that are the library's own.
    static const char* OwnProperty(std::string_view name)
    {
        constexpr const char* kOwn[] = {kMobile2, kEmail2, kGroup, kPicture, kRinger, kDefault, kSpeedDials};
        const auto* found = std::find(std::begin(kOwn), std::end(kOwn), name);
        return found == std::end(kOwn) ? nullptr : *found;
    }

    void Ask(const std::string& property, const std::string& value, const ContentLine& line)
    {
        if (!m_isCharsetGuessed && IsCharsetGuessed(line)) {
            m_isCharsetGuessed = true;
            m_dropped.push_back({"charset-guessed", line.name, line.line,
                                 fmt::format("the file names no character set and is not UTF-8; read as '{}'", value)});
        }
        m_wishes.push_back({property, value, line.name, line.line, IsPreferred(line)});
    }

    void Drop(const ContentLine& line)
    {
        m_dropped.push_back({"dropped", line.name, line.line, "a handset's contact has no place for it"});
    }

    const VCard& m_card;
    const ContentLine* m_named = nullptr;
    std::vector<Wish> m_wishes;
    std::vector<Note> m_dropped;
    bool m_hasLostText = false;
    bool m_isCharsetGuessed = false;
};

void AppendCard(std::string& text, const Entry& contact)
{
    const std::string* name = contact.Find(kName);
    const std::string shown = Escaped(name ? WithoutControls(*name) : "");
    const std::size_t space = shown.find(' ');
    text += "BEGIN:VCARD\r\nVERSION:3.0\r\n";
    AppendFolded(text, space == std::string::npos
                           ? fmt::format("N:;{};;;", shown)
                           : fmt::format("N:{};{};;;", shown.substr(space + 1), shown.substr(0, space)));
    if (!name)
        text += "FN:\r\n";
    for (const EntryField& field : contact.fields) {
        const std::string value = WithoutControls(field.value);
        AppendFolded(text,
                     fmt::format("{}:{}", field.property, field.property == kSpeedDials ? value : Escaped(value)));
    }
    if (MayHaveLostText(contact))
        text += fmt::format("{}:{}\r\n", kLostText, GetACP());
    text += "END:VCARD\r\n";
}

} // namespace

std::vector<Candidate> ContactsOfFile(const std::string& file, const std::string& text)
{
    std::vector<Candidate> candidates;
    for (const VCard& card : ReadVCards(text))
        candidates.push_back(CardReader(card).Read(file));
    return candidates;
}

std::string FileOfContacts(std::span<const StoredEntry> contacts)
{
    std::string text;
    for (const StoredEntry& contact : contacts)
        AppendCard(text, contact.entry);
    return text;
}

} // namespace phnctl
