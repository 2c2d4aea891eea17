#include "phnctl/messages/form.h"

#include "phnctl/plan/meeting.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/json.h"
#include "phnctl/text/number.h"

#include <stdexcept>

namespace phnctl {

namespace {

constexpr const char* kParty = "number";
constexpr const char* kTime = "time";
constexpr const char* kPriority = "priority";
constexpr const char* kReport = "report";
constexpr const char* kCallback = "callback";
constexpr const char* kText = "text";

std::string ValueOf(const Entry& entry, const char* property)
{
    const std::string* value = entry.Find(property);
    return value ? *value : std::string();
}

class Form : public EntryForm
{
public:
    Form() : EntryForm("message", "messages") {}

    std::string Title(const Entry& entry) const override
    {
        const std::string* party = entry.Find(kParty);
        const std::string* text = entry.Find(kText);
        return (party ? *party : "(no number)") + (text ? ": " + *text : "");
    }
    std::string Label(const std::string& property) const override { return property; }
    std::vector<std::string> Columns() const override { return {"Number", "Time", "Priority", "Text"}; }
    std::vector<std::string> Row(const Entry& entry) const override
    {
        return {ValueOf(entry, kParty), ValueOf(entry, kTime), ValueOf(entry, kPriority), ValueOf(entry, kText)};
    }
    // A message that was restored has lost its time, and is the same all the same.
    Entry Complete(const Entry& wanted, const Entry* replaced) const override
    {
        Entry entry = wanted;
        if (!replaced || !replaced->Find(kTime))
            std::erase_if(entry.fields, [](const EntryField& field) { return field.property == kTime; });
        return entry;
    }

    // The handset takes new messages only: what is not there is added.
    Plan Meet(std::vector<Candidate> candidates, const Inventory& inventory, Filling) const override
    {
        const auto key = [&](const Entry& entry) { return Title(entry); };
        const auto outcome = [](const Candidate&, const Entry&) { return std::optional<Outcome>(); };
        return phnctl::Meet(*this, {key, outcome}, std::move(candidates), inventory.entries);
    }
};

Candidate CandidateOf(const PduContent& content)
{
    Candidate candidate;
    candidate.entry = MessageEntry(content);
    if (auto why = WhyNotWritable(candidate.entry)) {
        candidate.fits = false;
        candidate.notes.push_back(*std::move(why));
    }
    return candidate;
}

Candidate CandidateOf(const Json& item)
{
    const Json* pdu = item.Find("pdu");
    if (!pdu || !pdu->Text())
        throw std::runtime_error("a message has no \"pdu\" text");
    return CandidateOf(ReadPdu(FromHex(*pdu->Text())).content);
}

} // namespace

const EntryForm& MessageForm()
{
    static const Form form;
    return form;
}

Entry MessageEntry(const PduContent& content)
{
    Entry entry;
    const auto add = [&](const char* property, const std::optional<std::string>& value) {
        if (value && !value->empty())
            entry.fields.push_back({property, *value});
    };
    add(kParty, content.from ? content.from : content.to);
    if (content.time)
        add(kTime, ShowTime(*content.time));
    add(kPriority, std::to_string(content.priority.value_or(0)));
    add(kReport, content.report.value_or(false) ? "wanted" : "");
    add(kCallback, content.callback);
    add(kText, content.text);
    return entry;
}

PduBytes SavingPdu(const Entry& message)
{
    PduContent content;
    content.to = ValueOf(message, kParty);
    content.text = ValueOf(message, kText);
    content.report = !ValueOf(message, kReport).empty();
    content.priority = static_cast<unsigned>(ParseNumber(ValueOf(message, kPriority), 3).value_or(0));
    if (const std::string* callback = message.Find(kCallback))
        content.callback = *callback;
    return WriteOutgoing(content);
}

std::optional<Note> WhyNotWritable(const Entry& message)
{
    try {
        SavingPdu(message);
        return std::nullopt;
    } catch (const Failure& failure) {
        return Note{"not-writable", "", 0, failure.what()};
    }
}

std::vector<Candidate> MessagesOfFile(const std::string& file, const std::string& text)
{
    const Json whole = ParseJson(text);
    const Json* messages = whole.Find("messages");
    const auto* list = messages ? std::get_if<JsonList>(&messages->value) : nullptr;
    if (!list)
        throw std::runtime_error("has no \"messages\" list");
    std::vector<Candidate> candidates;
    for (const Json& item : *list)
        candidates.emplace_back(CandidateOf(item)).file = file;
    return candidates;
}

Losses LossesOf(const std::vector<StoredMessage>& messages)
{
    std::vector<Candidate> candidates;
    for (const StoredMessage& message : messages)
        candidates.push_back(CandidateOf(message.pdu.content));
    Losses losses;
    std::size_t saved = 0;
    std::size_t timed = 0;
    const auto plan = MessageForm().Meet(std::move(candidates), {}, Filling::Replace);
    for (const PlannedEntry& planned : plan.entries) {
        if (planned.action != Action::Add) {
            AddLoss(losses, kNotRestored, planned.from.notes.back().text, MessageForm().Title(planned.from.entry));
            continue;
        }
        ++saved;
        timed += planned.from.entry.Find(kTime) != nullptr;
    }
    if (timed != 0)
        losses.push_back({kPart, "without the time", timed, {}});
    if (saved != 0)
        losses.push_back({kPart, "newly saved, without box and read mark", saved, {}});
    return losses;
}

} // namespace phnctl
