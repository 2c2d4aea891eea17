#include "ledger.h"

#include <mutex>
#include <utility>

namespace soak {

Ledger::Ledger(Store store, const Refusals& refusals, const simulator::Phone& phone)
    : store_(std::move(store)), refusals_(refusals)
{
    for (std::size_t place = 0; place < slots_.size(); ++place)
        slots_[place].text = store_.held(phone, store_.index(place));
}

PHN_ERROR Ledger::Make(std::span<Slot> slots, const std::string& text, std::uint32_t command,
                       const std::function<PHN_ERROR()>& call) const
{
    const unsigned refused = refusals_.Of(command);
    const PHN_ERROR code = call();
    if (!IsSent(code))
        return code;
    const auto now = Clock::now();
    for (Slot& slot : slots) {
        if (code != PHN_ERROR_NONE) {
            slot.doubtful[text] = now;
            continue;
        }
        const std::string before = std::exchange(slot.text, text);
        if (refusals_.Of(command) != refused)
            slot.doubtful[before] = now;
        else
            std::erase_if(slot.doubtful, [&](const auto& one) { return one.second < now - kLate; });
    }
    return code;
}

PHN_ERROR Ledger::Write(unsigned thread, std::uint32_t slot, std::uint32_t value)
{
    const std::string text = store_.begin + std::to_string(value);
    const std::size_t place = Place(thread, slot);
    const std::shared_lock lock(all_);
    return Make({&slots_[place], 1}, text, store_.write, [&] { return store_.doWrite(store_.index(place), text); });
}

PHN_ERROR Ledger::Delete(unsigned thread, std::uint32_t slot)
{
    const std::size_t place = Place(thread, slot);
    const std::shared_lock lock(all_);
    return Make({&slots_[place], 1}, "", store_.remove, [&] { return store_.doRemove(store_.index(place)); });
}

PHN_ERROR Ledger::DeleteAll()
{
    const std::unique_lock lock(all_);
    return Make(slots_, "", store_.removeAll, store_.doRemoveAll);
}

std::vector<std::string> Ledger::Compare(const simulator::Phone& phone) const
{
    std::vector<std::string> differences;
    for (std::size_t place = 0; place < slots_.size(); ++place) {
        const auto& [text, doubtful] = slots_[place];
        const std::string held = store_.held(phone, store_.index(place));
        if (held != text && !doubtful.contains(held))
            differences.push_back("the handset holds '" + held + "' as " + store_.name + " " +
                                  std::to_string(store_.index(place)) + ", and not '" + text + "'");
    }
    return differences;
}

} // namespace soak
