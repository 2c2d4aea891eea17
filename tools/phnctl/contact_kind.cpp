#include "phnctl/contact_kind.h"

#include "phnctl/contact_card.h"
#include "phnctl/contact_fields.h"
#include "phnctl/text.h"

#include <fmt/format.h>

namespace phnctl {

using namespace contact_property;

namespace {

constexpr std::size_t kTextSize = 4096; // holds any text that the library writes

std::string ValueOf(const Entry& entry, const char* property)
{
    const std::string* value = entry.Find(property);
    return value ? *value : std::string();
}

// The name that the handset gives to an id, behind it.
template <class Record>
Field NamedId(const Handset& handset, PHN_ERROR(PHN_CALL* call)(std::uint32_t, Record*), const char* key,
              const char* label, const std::string& id)
{
    Field field(key, label, id);
    Record record{};
    record.uSize = sizeof record;
    if (!id.empty() && call(static_cast<std::uint32_t>(std::stol(id)), &record) == PHN_ERROR_NONE)
        field.shown = fmt::format("{} ({})", FromHandset(record.szName), id);
    field.value = {JsonObject{{"id", {id}}, {"name", {FromHandset(record.szName)}}}};
    (void)handset;
    return field;
}

class Contacts : public EntryKind
{
public:
    Contacts() : EntryKind("contact", "contacts", ".vcf") {}

    std::optional<Entry> Read(const Handset& handset, std::uint32_t index) const override
    {
        std::string text(kTextSize, '\0');
        PHN_CONTACT_RECORD record{sizeof record, text.data(), static_cast<std::uint32_t>(text.size())};
        const PHN_ERROR answer = handset.Api().GetContact(index, &record);
        if (answer == PHN_ERROR_NOT_FOUND)
            return std::nullopt;
        handset.Check(answer, fmt::format("reading contact {}", index));
        return FromLibraryText(std::string_view(text).substr(0, text.find('\0')));
    }

    void Write(const Handset& handset, std::uint32_t index, const Entry& entry) const override
    {
        std::string text = ToLibraryText(entry);
        PHN_CONTACT_RECORD record{sizeof record, text.data(), static_cast<std::uint32_t>(text.size())};
        handset.Check(handset.Api().SetContact(index, &record), fmt::format("writing contact {}", index));
    }

    void Delete(const Handset& handset, std::uint32_t index) const override
    {
        handset.Check(handset.Api().DeleteContact(index), fmt::format("deleting contact {}", index));
    }

    void DeleteAll(const Handset& handset) const override
    {
        handset.Check(handset.Api().DeleteAllContacts(), "deleting all contacts");
    }

    std::vector<Candidate> Parse(const std::string& file, const std::string& text) const override
    {
        return ContactsOfFile(file, text);
    }

    std::string Format(std::span<const StoredEntry> entries) const override { return FileOfContacts(entries); }

    std::string Title(const Entry& entry) const override
    {
        const std::string name = ValueOf(entry, kName);
        return name.empty() ? "(no name)" : name;
    }

    // The name; what has none goes by its first number or address.
    std::string Key(const Entry& entry) const override
    {
        const std::string name = ValueOf(entry, kName);
        return !name.empty() ? "name " + name : entry.fields.empty() ? "" : "value " + entry.fields.front().value;
    }

    Entry Storable(const Entry& read) const override
    {
        return CompleteContact(FitContact(WishesOf(read)).entry, nullptr);
    }

    Entry Complete(const Entry& wanted, const Entry* replaced) const override
    {
        return CompleteContact(wanted, replaced);
    }

    std::vector<std::string> Columns() const override { return {"Name", "Mobile", "Home", "Work", "E-mail", "Group"}; }

    std::vector<std::string> Row(const Entry& entry) const override
    {
        const std::string mobile = ValueOf(entry, kCell);
        return {ValueOf(entry, kName),  mobile.empty() ? ValueOf(entry, kMobile2) : mobile,
                ValueOf(entry, kHome),  ValueOf(entry, kWork),
                ValueOf(entry, kEmail), ValueOf(entry, kGroup)};
    }

    Report Describe(const Handset& handset, const StoredEntry& stored) const override
    {
        constexpr std::pair<const char*, const char*> kLabels[] = {
            {kName, "Name"}, {kCell, "Mobile"}, {kMobile2, "Second mobile"}, {kHome, "Home"},
            {kWork, "Work"}, {kFax, "Fax"},     {kEmail, "E-mail"},          {kEmail2, "Second e-mail"}};
        Section section{"", "", {{"index", "Index", stored.index}}};
        for (const auto& [property, label] : kLabels)
            for (const EntryField& field : stored.entry.fields)
                if (field.property == property)
                    section.fields.emplace_back(property, label, field.value);
        const auto id = [&](const char* property) { return ValueOf(stored.entry, property); };
        const Library& api = handset.Api();
        section.fields.push_back(NamedId(handset, api.GetGroup, "group", "Group", id(kGroup)));
        section.fields.push_back(NamedId(handset, api.GetPictureID, "picture", "Picture", id(kPicture)));
        section.fields.push_back(NamedId(handset, api.GetRingerID, "ringer", "Ringer", id(kRinger)));
        section.fields.emplace_back(kDefault, "Default number", id(kDefault));
        section.fields.emplace_back(kSpeedDials, "Speed dials", id(kSpeedDials));
        return {{section}};
    }
};

} // namespace

const EntryKind& ContactKind()
{
    static const Contacts kind;
    return kind;
}

} // namespace phnctl
