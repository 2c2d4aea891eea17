#include "simulator/handset/handset.h"

#include "simulator/phone/message_store.h"
#include "simulator/phone/state_file.h"

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace simulator {
namespace {

std::uint16_t VarianceOf(std::string_view path)
{
    struct Row
    {
        std::string_view section;
        Variance variance;
    };
    constexpr Row kRows[] = {{"network", kNetworkChanged},
                             {"connection", kConnectionChanged},
                             {"setup", kStateChanged},
                             {"battery", kBatteryChanged},
                             {"messages", kMessagesChanged}};
    path.remove_prefix(path.starts_with('/') ? 1 : 0);
    const std::string_view section = path.substr(0, path.find('/'));
    for (const Row& row : kRows)
        if (row.section == section)
            return row.variance;
    return 0;
}

} // namespace

Handset::Handset(Phone phone) : fresh_(std::move(phone)), phone_(fresh_) {}

Phone Handset::Snapshot() const
{
    const std::scoped_lock lock(mutex_);
    return phone_;
}

void Handset::Change(std::uint16_t changed, const std::function<void(Phone&)>& change)
{
    {
        const std::scoped_lock lock(mutex_);
        change(phone_);
        phone_.variance |= changed;
    }
    TellChange();
}

void Handset::SetBattery(const Battery& battery)
{
    Change(kBatteryChanged, [&](Phone& phone) { phone.battery = battery; });
}

void Handset::SetNetwork(const Network& network)
{
    Change(kNetworkChanged, [&](Phone& phone) { phone.network = network; });
}

void Handset::SetConnection(const Connection& connection)
{
    Change(kConnectionChanged, [&](Phone& phone) { phone.connection = connection; });
}

void Handset::SetEndReason(std::uint8_t reason)
{
    Change(kConnectionChanged, [&](Phone& phone) { phone.connection.endReason = reason; });
}

void Handset::SetModel(const std::string& model)
{
    Change(0, [&](Phone& phone) { phone.identity.model = model; });
}

std::uint32_t Handset::Deliver(const Message& message)
{
    Message delivered = message;
    delivered.box = kInbox;
    delivered.status = kUnread;
    std::uint32_t index = kNoRoom;
    Change(kMessagesChanged, [&](Phone& phone) {
        index = AddMessage(phone, delivered);
        if (index == kNoRoom)
            throw std::runtime_error("the message store is full");
    });
    return index;
}

void Handset::Set(std::string_view path, std::string_view value)
{
    Change(VarianceOf(path), [&](Phone& phone) { phone = WithValue(phone, path, value); });
}

std::string Handset::Show(std::string_view path) const
{
    return PhoneToJson(Snapshot(), path);
}

void Handset::Load(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (!stream)
        throw std::runtime_error(file.string() + " cannot be read");
    try {
        Phone loaded = PhoneFromJson(text, fresh_);
        Change(0, [&](Phone& phone) { phone = std::move(loaded); });
    } catch (const std::invalid_argument& error) {
        throw std::runtime_error(file.string() + ": " + error.what());
    }
}

void Handset::Save(const std::filesystem::path& file) const
{
    // Written beside the file first: a full disk must not cost the state that was saved before.
    std::filesystem::path fresh = file;
    fresh += ".new";
    std::ofstream stream(fresh, std::ios::binary | std::ios::trunc);
    stream << Show() << "\n";
    stream.close();
    std::error_code error;
    if (stream)
        std::filesystem::rename(fresh, file, error);
    if (!stream || error)
        throw std::runtime_error(file.string() + " cannot be written");
}

void Handset::Seed(std::uint32_t seed)
{
    const std::scoped_lock lock(mutex_);
    random_.seed(seed);
}

void Handset::AddFault(const Fault& fault)
{
    Change(0, [&](Phone&) { faults_.push_back(fault); });
}

void Handset::ClearFaults()
{
    Change(0, [&](Phone&) { faults_.clear(); });
}

void Handset::ClearFaults(const FaultKind& kind)
{
    Change(0, [&](Phone&) { std::erase_if(faults_, [&](const Fault& fault) { return fault.kind == &kind; }); });
}

std::vector<Fault> Handset::Faults() const
{
    const std::scoped_lock lock(mutex_);
    return faults_;
}

std::vector<Fault> Handset::TakeFaults(std::uint32_t command)
{
    std::unique_lock lock(mutex_);
    std::vector<Fault> struck;
    for (Fault& fault : faults_) {
        const bool matches = fault.command == command || (fault.command == kAnyCommand && command != kAtCommands);
        if (!matches || (fault.percent < 100 && random_() % 100 >= fault.percent))
            continue;
        struck.push_back(fault);
        if (fault.remaining)
            --*fault.remaining;
    }
    std::erase_if(faults_, [](const Fault& fault) { return fault.remaining == 0u; });
    lock.unlock();
    if (!struck.empty())
        TellChange();
    return struck;
}

std::uint64_t Handset::Requests(std::uint32_t command) const
{
    const std::scoped_lock lock(mutex_);
    const auto count = requests_.find(command);
    return count == requests_.end() ? 0 : count->second;
}

std::uint64_t Handset::Requests() const
{
    const std::scoped_lock lock(mutex_);
    std::uint64_t all = 0;
    for (const auto& [command, count] : requests_)
        all += count;
    return all;
}

std::uint64_t Handset::Rejected() const
{
    const std::scoped_lock lock(mutex_);
    return rejected_;
}

std::string Handset::LastRejection() const
{
    const std::scoped_lock lock(mutex_);
    return lastRejection_;
}

std::vector<std::uint8_t> Handset::LastRequest(std::uint32_t command) const
{
    const std::scoped_lock lock(mutex_);
    const auto request = lastRequest_.find(command);
    return request == lastRequest_.end() ? std::vector<std::uint8_t>() : request->second;
}

bool Handset::WaitForRequests(std::uint32_t command, std::uint64_t count, std::chrono::milliseconds timeout) const
{
    std::unique_lock lock(mutex_);
    return requestCame_.wait_for(lock, timeout, [&] {
        const auto requests = requests_.find(command);
        return (requests == requests_.end() ? 0 : requests->second) >= count;
    });
}

void Handset::CountRequest(std::uint32_t command, std::vector<std::uint8_t> record)
{
    const std::scoped_lock lock(mutex_);
    ++requests_[command];
    lastRequest_[command] = std::move(record);
    requestCame_.notify_all();
}

void Handset::CountRejection(const std::string& reason)
{
    const std::scoped_lock lock(mutex_);
    ++rejected_;
    lastRejection_ = reason;
}

void Handset::SetTrace(TraceSink sink, TraceDetail detail)
{
    const std::scoped_lock lock(mutex_);
    trace_ = std::move(sink);
    traceDetail_ = detail;
}

std::pair<Handset::TraceSink, TraceDetail> Handset::Trace() const
{
    const std::scoped_lock lock(mutex_);
    return {trace_, traceDetail_};
}

void Handset::SetWatcher(Watcher watcher)
{
    const std::scoped_lock lock(mutex_);
    watcher_ = std::move(watcher);
}

void Handset::WhenChanged(std::function<void()> told)
{
    const std::scoped_lock lock(mutex_);
    changed_ = std::move(told);
}

void Handset::TellChange() const
{
    std::unique_lock lock(mutex_);
    const std::function<void()> changed = changed_;
    lock.unlock();
    if (changed)
        changed();
}

void Handset::Tell(const Exchange& exchange) const
{
    std::unique_lock lock(mutex_);
    const Watcher watcher = watcher_;
    lock.unlock();
    if (watcher)
        watcher(exchange);
}

} // namespace simulator
