#include "saved_messages.h"

namespace soak {
namespace {

constexpr std::uint32_t kSave = 19, kDeleteAll = 21;

// Seven digits from 1 to 9.
std::string NumberOf(std::uint32_t value)
{
    std::string number = kNumber;
    for (int digits = 0; digits < 7; ++digits, value /= 9)
        number += static_cast<char>('1' + value % 9);
    return number;
}

} // namespace

#define EXPORT(name) reinterpret_cast<decltype(&name)>(find(#name))

SavedMessages::SavedMessages(const FindExport& find, const Refusals& refusals)
    : save_(EXPORT(PHN_SaveMessage)),
      delete_(EXPORT(PHN_DeleteMessage)),
      deleteAll_(EXPORT(PHN_DeleteAllMessages)),
      refusals_(refusals)
{
}

PHN_ERROR SavedMessages::Save(std::uint32_t value)
{
    const std::string number = NumberOf(value);
    std::string pdu = MessageTo(number);
    PHN_SMS_MESSAGE record{sizeof record, reinterpret_cast<std::uint8_t*>(pdu.data()),
                           static_cast<std::uint32_t>(pdu.size()), 0, 0};
    const std::shared_lock lock(all_);
    const unsigned refused = refusals_.Of(kSave);
    const PHN_ERROR code = save_(&record);
    const std::scoped_lock own(mutex_);
    gone_.erase(number);
    if (code == PHN_ERROR_NONE && refusals_.Of(kSave) == refused && std::chrono::steady_clock::now() > doubtful_)
        saved_.insert(number);
    return code;
}

PHN_ERROR SavedMessages::Delete(std::uint32_t index)
{
    const std::shared_lock lock(all_);
    const PHN_ERROR code = delete_(index);
    const std::scoped_lock own(mutex_);
    mayBeGone_ += IsSent(code) && code != PHN_ERROR_MESSAGE_NOT_FOUND;
    return code;
}

PHN_ERROR SavedMessages::DeleteAll()
{
    const std::unique_lock lock(all_);
    const unsigned refused = refusals_.Of(kDeleteAll);
    const PHN_ERROR code = deleteAll_(kBox);
    if (!IsSent(code))
        return code;
    if (code != PHN_ERROR_NONE)
        doubtful_ = std::chrono::steady_clock::now() + kLate;
    else if (refusals_.Of(kDeleteAll) == refused)
        gone_ = saved_;
    saved_.clear();
    mayBeGone_ = 0;
    return code;
}

std::vector<std::string> SavedMessages::Compare(const simulator::Phone& phone) const
{
    std::set<std::string> missing = saved_;
    std::vector<std::string> differences;
    for (const auto& [index, message] : phone.messages) {
        missing.erase(message.address);
        if (gone_.contains(message.address))
            differences.push_back("the handset still holds the message to " + message.address);
    }
    if (missing.size() > mayBeGone_)
        differences.push_back(std::to_string(missing.size()) + " messages are missing, and at most " +
                              std::to_string(mayBeGone_) + " have been deleted");
    return differences;
}

} // namespace soak
