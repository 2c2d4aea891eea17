#include "phnctl/contacts/card_reader.h"
#include "phnctl/contacts/vcard_file.h"

#include "phnctl/contacts/contact.h"
#include "phnctl/contacts/fitter.h"
#include "phnctl/contacts/name.h"
#include "phnctl/text/content_value.h"
#include "phnctl/text/text.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>
#include <map>
#include <span>

namespace phnctl {

using namespace contact_property;

namespace {

// What a card says about itself or to the program that wrote it, and what another property says as well.
constexpr std::string_view kSilent[] = {
    "N",    "PRODID",  "REV",     "UID",          "KIND",           "SOURCE",
    "NAME", "PROFILE", "CLASS",   "CLIENTPIDMAP", "MAILER",         "BEGIN",
    "END",  "X-ABUID", "X-ABADR", "X-ABSHOWAS",   "X-MS-OL-DESIGN", "X-MS-OL-DEFAULT-POSTAL-ADDRESS"};

bool IsIn(std::string_view name, std::span<const std::string_view> names)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool IsPreferred(const ContentLine& line)
{
    return line.HasParameter("TYPE", "PREF") || line.HasParameter("PREF", "1");
}

// "tel:+1-555-0100;ext=5" (RFC 3966) as a number; what is no such address stays as it is. A number inside a country or
// an area is dialled from everywhere with the digits of its context: "tel:5550100;phone-context=+1-914".
std::string NumberOfUri(const std::string& text)
{
    if (!UpperCase(text).starts_with("TEL:"))
        return text;
    const std::vector<std::string> parts = SplitEscaped(std::string_view(text).substr(4), ';');
    std::string number = parts.front();
    for (const std::string& part : parts) {
        const std::string upper = UpperCase(part);
        if (upper.starts_with("PHONE-CONTEXT=+"))
            number.insert(0, part.substr(14));
        else if (upper.starts_with("EXT="))
            number += ';' + part;
    }
    return number;
}

// What an address book's own label says beyond the types: "_$!<HomeFAX>!$_" is HOMEFAX; empty for a person's words.
std::string TypeOfLabel(const std::string& label)
{
    const std::string upper = UpperCase(label);
    const bool isKnown = upper.starts_with("_$!<") && upper.ends_with(">!$_") && upper.size() > 8;
    const std::string word = isKnown ? upper.substr(4, upper.size() - 8) : upper;
    return isKnown || word == "IPHONE" ? word : "";
}

// The place of a telephone number by its types and its label; empty when a handset has none for such a number.
std::string NumberPlace(const ContentLine& line, const std::string& label)
{
    const auto is = [&](const char* type) { return line.HasParameter("TYPE", type) || label == type; };
    const bool isFax = std::ranges::any_of(line.parameters, [](const auto& parameter) {
        return parameter.name == "TYPE" && UpperCase(parameter.value).ends_with("FAX"); // WORKFAX, too
    });
    if (is("PAGER") || is("MODEM") || is("BBS") || is("TEXTPHONE"))
        return {};
    if (isFax || label.ends_with("FAX"))
        return kFax;
    if (line.HasParameter(kPlaceParameter, "2"))
        return kMobile2;
    if (is("CELL") || is("MOBILE") || is("IPHONE"))
        return kCell;
    if (is("HOME"))
        return kHome;
    return is("WORK") ? kWork : kAnyNumber;
}

// The beginning of a value as a person would write it, and what comes behind that in a sentence; nothing of a picture.
std::string ShownValue(const ContentLine& line)
{
    constexpr std::size_t kShownUnits = 60;
    if (line.HasParameter("ENCODING", "B") || line.HasParameter("ENCODING", "BASE64") ||
        UpperCase(line.value.substr(0, 5)) == "DATA:")
        return {};
    std::string text;
    for (const std::string& part : SplitEscaped(DecodedValue(line), ';'))
        if (const std::string shown = OneLine(part); !shown.empty())
            text += (text.empty() ? "" : ", ") + shown;
    const std::string begin = CutToUnits(text, kShownUnits);
    return fmt::format("'{}{}': ", begin, begin == text ? "" : "...");
}

class CardReader
{
public:
    explicit CardReader(const VCard& card) : m_card(card) {}

    Candidate Read(const std::string& file)
    {
        for (const ContentLine& line : m_card.properties)
            if (line.name == "X-ABLABEL")
                m_labels.emplace(line.group, TypeOfLabel(Unescaped(DecodedValue(line))));
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
    void TakeName()
    {
        const ContentLine* const formatted = FirstWithText("FN");
        const ContentLine* const structured = FirstWithText("N");
        if (!formatted && !structured)
            return TakeOtherName();
        const CardName name =
            NameOfCard(formatted ? Unescaped(DecodedValue(*formatted)) : "",
                       structured ? SplitEscaped(DecodedValue(*structured), ';') : std::vector<std::string>());
        const ContentLine* const source = structured && name.isFromParts ? structured : formatted;
        Ask(kName, name.text, *source);
        if (formatted && name.isFromParts)
            m_dropped.push_back({"name-from-parts", "FN", formatted->line,
                                 fmt::format("stored as '{}', of the parts that N names", name.text)});
        if (!name.leftOut.empty())
            m_dropped.push_back(
                {"dropped", "N", structured->line, fmt::format("'{}' is not in the name that FN gives", name.leftOut)});
    }

    // What may stand for a name.
    void TakeOtherName()
    {
        for (const char* name : {"NICKNAME", "ORG"}) {
            m_named = FirstWithText(name);
            if (m_named)
                return Ask(kName, SplitEscaped(DecodedValue(*m_named), ';').front(), *m_named);
        }
    }

    const ContentLine* FirstWithText(std::string_view name) const
    {
        const auto found =
            std::find_if(m_card.properties.begin(), m_card.properties.end(), [&](const ContentLine& line) {
                return line.name == name &&
                       OneLine(Unescaped(DecodedValue(line))).find_first_not_of("; ") != std::string::npos;
            });
        return found == m_card.properties.end() ? nullptr : &*found;
    }

    void Take(const ContentLine& line)
    {
        if (&line == m_named || line.name == kName || IsIn(line.name, kSilent))
            return;
        if (line.name == "TEL")
            TakeNumber(line);
        else if (line.name == "EMAIL")
            TakeAddress(line);
        else if (line.name == "X-ABLABEL" && !m_labels[line.group].empty())
            return; // taken with what it labels
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
        const auto label = line.group.empty() ? m_labels.end() : m_labels.find(line.group);
        const std::string place = NumberPlace(line, label == m_labels.end() ? "" : label->second);
        const std::string number = NumberOfUri(Unescaped(DecodedValue(line)));
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
        Ask(line.HasParameter(kPlaceParameter, "2") ? kEmail2 : kEmail, address, line);
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
            m_dropped.push_back({"charset-guessed", line.name, line.line, GuessedCharset(value)});
        }
        if ((property == kName || IsAddress(property)) && HasControls(Unescaped(DecodedValue(line))))
            m_dropped.push_back({"control-characters", line.name, line.line, kControlsReplaced});
        m_wishes.push_back({property, value, line.name, line.line, IsPreferred(line)});
    }

    void Drop(const ContentLine& line)
    {
        const std::string why = line.name == "TEL" ? "has no place for such a number" : kNoPlace;
        m_dropped.push_back(
            {"dropped", line.name, line.line, fmt::format("{}a handset's contact {}", ShownValue(line), why)});
    }

    const VCard& m_card;
    const ContentLine* m_named = nullptr;
    std::map<std::string, std::string> m_labels; // by group
    std::vector<Wish> m_wishes;
    std::vector<Note> m_dropped;
    bool m_hasLostText = false;
    bool m_isCharsetGuessed = false;
};

} // namespace

std::vector<Candidate> ContactsOfFile(const std::string& file, const std::string& text)
{
    std::vector<Candidate> candidates;
    for (const VCard& card : ReadVCards(text))
        candidates.push_back(CardReader(card).Read(file));
    return candidates;
}

} // namespace phnctl
