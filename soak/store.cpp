#include "soak/store.h"

namespace soak {

#define EXPORT(name) (*reinterpret_cast<decltype(&name)>(find(#name)))

Store Events(const FindExport& find)
{
    const auto write = [&call = EXPORT(PHN_SetEvent)](std::uint32_t index, const std::string& text) {
        std::string calendar =
            "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nDESCRIPTION:" + text +
            "\r\nDTSTART:20260704T180000\r\nDTEND:20260704T190000\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
        PHN_EVENT_RECORD record{sizeof record, calendar.data(), static_cast<std::uint32_t>(calendar.size())};
        return call(index, &record);
    };
    const auto held = [](const simulator::Phone& phone, std::uint32_t index) {
        const auto event = phone.events.find(index);
        return event == phone.events.end() ? "" : event->second.description;
    };
    const auto index = [](std::size_t place) { return static_cast<std::uint32_t>(30 + place); };
    return {"event", kText, 31, 32, 33, write, EXPORT(PHN_DeleteEvent), EXPORT(PHN_DeleteAllEvents), index, held};
}

Store Contacts(const FindExport& find)
{
    const auto write = [&call = EXPORT(PHN_SetContact)](std::uint32_t index, const std::string& text) {
        std::string card = std::string("BEGIN:VCARD\r\nVERSION:3.0\r\nFN:") + kText + "\r\nTEL;TYPE=CELL:" + text +
                           "\r\nEND:VCARD\r\n";
        PHN_CONTACT_RECORD record{sizeof record, card.data(), static_cast<std::uint32_t>(card.size())};
        return call(index, &record);
    };
    const auto held = [](const simulator::Phone& phone, std::uint32_t id) {
        const auto contact = phone.contacts.find(id);
        const bool isThere = contact != phone.contacts.end() && !contact->second.entries.empty();
        return isThere ? contact->second.entries.front().value : "";
    };
    // Those that the handset keeps under their index, as it does without a 7 at the end.
    const auto index = [](std::size_t place) { return static_cast<std::uint32_t>(100 + place / 7 * 10 + place % 7); };
    return {"contact", kNumber, 36, 37, 38, write, EXPORT(PHN_DeleteContact), EXPORT(PHN_DeleteAllContacts),
            index,     held};
}

std::string MessageTo(const std::string& number)
{
    std::string bits(2, '0'); // four bits for a digit, no plan
    const auto add = [&](unsigned value, unsigned count) {
        while (count-- > 0)
            bits += value >> count & 1 ? '1' : '0';
    };
    add(static_cast<unsigned>(number.size()), 8);
    for (const char digit : number)
        add(static_cast<unsigned>(digit - '0'), 4);
    bits.resize((bits.size() + 7) / 8 * 8, '0');
    std::string pdu("\0\0\2\x10\2\4", 6);
    pdu += static_cast<char>(bits.size() / 8);
    for (std::size_t at = 0; at < bits.size(); at += 8)
        pdu += static_cast<char>(std::stoi(bits.substr(at, 8), nullptr, 2));
    return pdu.append("\x08\x11\0\3\x20\0\x10\x08\1\0\xA\1\0\1\4\x10\x14\x8D\x20", 19);
}

} // namespace soak
