#include "ledger.h"

#include <mutex>

namespace soak {

Ledger::Ledger(const Library& library)
    : setEvent_(&SOAK_EXPORT(library, PHN_SetEvent)),
      deleteEvent_(&SOAK_EXPORT(library, PHN_DeleteEvent)),
      deleteAll_(&SOAK_EXPORT(library, PHN_DeleteAllEvents))
{
    slots_.fill({""});
}

PHN_ERROR Ledger::Note(Texts& texts, const std::string& text, PHN_ERROR code)
{
    if (code == PHN_ERROR_NONE)
        texts.clear();
    texts.insert(text);
    return code;
}

PHN_ERROR Ledger::Write(unsigned thread, std::uint32_t slot, std::uint32_t value)
{
    const std::string text = "event " + std::to_string(value);
    std::string calendar = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nDESCRIPTION:" + text +
                           "\r\nDTSTART:20260704T180000\r\nDTEND:20260704T190000\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
    PHN_EVENT_RECORD record{};
    record.uSize = sizeof record;
    record.pCalendarData = calendar.data();
    record.uSizeofData = static_cast<std::uint32_t>(calendar.size());
    const std::size_t place = Place(thread, slot);
    const std::shared_lock lock(all_);
    return Note(slots_[place], text, setEvent_(kFirst + static_cast<std::uint32_t>(place), &record));
}

PHN_ERROR Ledger::Delete(unsigned thread, std::uint32_t slot)
{
    const std::size_t place = Place(thread, slot);
    const std::shared_lock lock(all_);
    const PHN_ERROR code = deleteEvent_(kFirst + static_cast<std::uint32_t>(place));
    Note(slots_[place], "", code);
    return code;
}

PHN_ERROR Ledger::DeleteAll()
{
    const std::unique_lock lock(all_);
    const PHN_ERROR code = deleteAll_();
    for (Texts& texts : slots_)
        Note(texts, "", code);
    return code;
}

std::vector<std::string> Ledger::Compare(const simulator::Phone& phone) const
{
    std::vector<std::string> differences;
    for (std::size_t place = 0; place < slots_.size(); ++place) {
        const auto index = static_cast<std::uint32_t>(kFirst + place);
        const auto event = phone.events.find(index);
        const std::string held = event == phone.events.end() ? "" : event->second.description;
        if (!slots_[place].contains(held))
            differences.push_back("the handset holds '" + held + "' as event " + std::to_string(index));
    }
    return differences;
}

} // namespace soak
