#include "phnctl/contacts/kind.h"

#include "phnctl/contacts/card_reader.h"
#include "phnctl/contacts/card_writer.h"
#include "phnctl/contacts/contact.h"
#include "phnctl/contacts/fitter.h"
#include "phnctl/contacts/meeting.h"
#include "phnctl/handset/labels.h"
#include "phnctl/text/number.h"
#include "phnctl/text/text.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <iterator>

namespace phnctl {

using namespace contact_property;

namespace {

constexpr std::size_t kTextSize = 4096; // holds any text that the library writes

std::string ValueOf(const Entry& entry, const char* property)
{
    const std::string* value = entry.Find(property);
    return value ? *value : std::string();
}

struct PropertyLabel
{
    const char* property;
    const char* label;
};

constexpr PropertyLabel kLabels[] = {{kName, "Name"},
                                     {kCell, "Mobile"},
                                     {kMobile2, "Second mobile"},
                                     {kHome, "Home"},
                                     {kWork, "Work"},
                                     {kFax, "Fax"},
                                     {kEmail, "E-mail"},
                                     {kEmail2, "Second e-mail"},
                                     {kGroup, "Group"},
                                     {kPicture, "Picture"},
                                     {kRinger, "Ringer"},
                                     {kDefault, "Default number"},
                                     {kSpeedDials, "Speed dials"}};

std::string LabelOf(const std::string& property)
{
    const auto* found = std::find_if(std::begin(kLabels), std::end(kLabels),
                                     [&](const PropertyLabel& item) { return property == item.property; });
    return found == std::end(kLabels) ? property : found->label;
}

// A value, and in front of it what it stands for.
Field WithMeaning(const char* property, const std::string& value, const std::string& meaning)
{
    Field field(property, LabelOf(property), value);
    field.value = {JsonObject{{"value", {value}}, {"name", {meaning}}}};
    if (!meaning.empty())
        field.shown = fmt::format("{} ({})", meaning, value);
    return field;
}

// The handset's display name of an id; empty when it has none.
template <class Record>
std::string DisplayName(PHN_ERROR(PHN_CALL* call)(std::uint32_t, Record*), const std::string& id)
{
    Record record{};
    record.uSize = sizeof record;
    const auto number = ParseNumber(id, 0x7FFFFFFF);
    return number && call(static_cast<std::uint32_t>(*number), &record) == PHN_ERROR_NONE ? FromHandset(record.szName)
                                                                                          : std::string();
}

class Contacts : public EntryKind
{
public:
    Contacts() : EntryKind("contact", "contacts", {".vcf"}) {}

    std::optional<Entry> Read(const Handset& handset, std::uint32_t index) const override
    {
        std::array<char, kTextSize> text; // PHN_GetContact clears it
        PHN_CONTACT_RECORD record{sizeof record, text.data(), static_cast<std::uint32_t>(text.size())};
        const PHN_ERROR answer = handset.Api().GetContact(index, &record);
        if (answer == PHN_ERROR_NOT_FOUND)
            return std::nullopt;
        if (answer != PHN_ERROR_NONE)
            handset.Check(answer, fmt::format("reading contact {}", index));
        const std::string_view whole(text.data(), text.size());
        return FromLibraryText(whole.substr(0, whole.find('\0')));
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

    // A handset that does not tell its sizes has its contacts listed all the same.
    std::optional<std::uint32_t> Counted(const Handset& handset, const Options& options) const override
    {
        PHN_FIELD_SIZES sizes{};
        sizes.uSize = sizeof sizes;
        if (handset.Api().GetFieldSizes(&sizes) != PHN_ERROR_NONE)
            return std::nullopt;
        const Labels labels = LabelsOf(options, handset);
        for (const auto& [name, value] : {std::pair<const char*, std::uint32_t>{"dwFieldSize8", sizes.dwFieldSize8},
                                          {"dwFieldSize9", sizes.dwFieldSize9},
                                          {"dwFieldSize10", sizes.dwFieldSize10},
                                          {"dwFieldSize11", sizes.dwFieldSize11}})
            if (labels.Counts(name, Many()))
                return value;
        return std::nullopt;
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

    Entry Storable(const Entry& read) const override { return StorableContact(read); }

    Entry Complete(const Entry& wanted, const Entry* replaced) const override
    {
        return CompleteContact(wanted, replaced);
    }

    bool CanMerge() const override { return true; }

    Plan Meet(std::vector<Candidate> candidates, const Inventory& inventory, Filling filling) const override
    {
        return MeetContacts(*this, std::move(candidates), inventory, filling);
    }

    bool LooksGarbled(const Entry& entry) const override { return MayHaveLostText(entry); }

    std::vector<std::string> Sought(const Entry& entry) const override
    {
        std::vector<std::string> texts{ValueOf(entry, kName)};
        for (const EntryField& field : ValuesOf(entry))
            texts.push_back(field.value);
        return texts;
    }

    std::vector<std::string> SheetProperties() const override
    {
        return {kName, kCell, kMobile2, kHome, kWork, kFax, kEmail, kEmail2, kGroup};
    }

    std::vector<std::string> Columns() const override
    {
        return {"Name", "Mobile", "Home", "Work", "E-mail", "Group", "More"};
    }

    std::vector<std::string> Row(const Entry& entry) const override
    {
        const auto first = [&](const char* property, const char* otherwise) {
            const std::string value = ValueOf(entry, property);
            return value.empty() ? ValueOf(entry, otherwise) : value;
        };
        std::vector<std::string> cells{ValueOf(entry, kName), first(kCell, kMobile2), ValueOf(entry, kHome),
                                       ValueOf(entry, kWork), first(kEmail, kEmail2)};
        const auto shown =
            std::count_if(cells.begin() + 1, cells.end(), [](const auto& cell) { return !cell.empty(); });
        const auto more = ValuesOf(entry).size() - static_cast<std::size_t>(shown);
        cells.push_back(ValueOf(entry, kGroup));
        cells.push_back(more == 0 ? "" : fmt::format("+{}", more));
        return cells;
    }

    std::string Values(const Entry& entry) const override
    {
        std::string values;
        for (const EntryField& field : ValuesOf(entry))
            AppendToList(values, LabelOf(field.property) + ' ' + field.value);
        if (const std::string group = ValueOf(entry, kGroup); !group.empty() && group != "0")
            AppendToList(values, LabelOf(kGroup) + ' ' + group);
        return values;
    }

    std::string Label(const std::string& property) const override { return LabelOf(property); }

    std::vector<Field> Details(const Handset& handset, const Entry& entry) const override
    {
        const Library& api = handset.Api();
        std::vector<Field> details;
        const auto add = [&](const char* property, const auto& meaningOf) {
            if (const std::string* value = entry.Find(property))
                details.push_back(WithMeaning(property, *value, meaningOf(*value)));
        };
        add(kGroup, [&](const std::string& id) { return DisplayName(api.GetGroup, id); });
        add(kPicture, [&](const std::string& id) { return DisplayName(api.GetPictureID, id); });
        add(kRinger, [&](const std::string& id) { return DisplayName(api.GetRingerID, id); });
        add(kDefault, [&](const std::string& position) {
            const auto number = ParseNumber(position, std::size(kNumberProperties));
            return number && *number ? LabelOf(kNumberProperties[*number - 1]) : std::string();
        });
        return details;
    }
};

} // namespace

const EntryKind& ContactKind()
{
    static const Contacts kind;
    return kind;
}

} // namespace phnctl
