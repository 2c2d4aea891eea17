#include "host.h"

#include <array>

namespace soak {
namespace {

Host* theHost = nullptr;

// Some fit, some are just beyond, some are nonsense.
std::uint32_t AnyIndex(Dice& dice)
{
    constexpr std::array<std::uint32_t, 6> kEdges{0, 199, 200, 1000, 0x10000, 0xFFFFFFFF};
    return dice() % 4 == 0 ? kEdges[dice() % kEdges.size()] : static_cast<std::uint32_t>(dice() % 64);
}

std::int32_t AnyType(Dice& dice, int last)
{
    return static_cast<std::int32_t>(dice() % static_cast<unsigned>(last + 3)) - 1;
}

} // namespace

Host::Host(const Library& library, Tally& tally, const Refusals& refusals, const simulator::Phone& phone)
    : library_(library),
      tally_(tally),
      find_([&](const char* name) { return library.Find(name); }),
      events_(Events(find_), refusals, phone),
      contacts_(Contacts(find_), refusals, phone),
      messages_(find_, refusals),
      table_(HostCalls(find_))
{
    theHost = this;
    AddPlainCalls();
    AddKeptCalls("Event", events_);
    AddKeptCalls("Contact", contacts_);
    AddMessageCalls();
    AddChosenCalls();
}

Host::~Host()
{
    Stop();
    Join();
    theHost = nullptr;
}

// Each export as it is called correctly, but those that come seldom or delete what is kept account of.
void Host::AddPlainCalls()
{
    for (const HostCall& call : table_)
        if (call.name.starts_with("PHN_") && !call.name.starts_with("PHN_DeleteAll") &&
            call.name != "PHN_DeleteMessage" && call.name != "PHN_Shutdown")
            calls_.push_back({call.name, call.name.ends_with("Count"), [&](unsigned, Dice&) { return call.call(); }});
    for (const char* name :
         {"PHN_CheckForUpgrade", "PHN_GetLocationInfo", "PHN_GetMassStorageMode", "PHN_GetNDISMode", "PHN_PlayRingerID",
          "PHN_SetCallbackExtended", "PHN_SetFieldTest", "PHN_SetLocationMode", "PHN_SetMassStorageMode",
          "PHN_SetNDISMode", "PHN_SetPower", "PHN_SetPowerState", "PHN_Upgrade"})
        calls_.push_back(
            {name, false, [call = reinterpret_cast<decltype(&PHN_Upgrade)>(library_.Find(name))](unsigned, Dice&) {
                 return call();
             }});
}

void Host::Add(const std::string& name, const std::function<std::uint32_t(unsigned thread, Dice& dice)>& call)
{
    for (int times = 0; times < 3; ++times)
        calls_.push_back({name, name.ends_with("Count"), call});
}

void Host::AddKeptCalls(const std::string& kind, Ledger& ledger)
{
    Add("PHN_Set" + kind, [&ledger](unsigned thread, Dice& dice) {
        const auto slot = static_cast<std::uint32_t>(dice() % Ledger::kPerThread);
        return ledger.Write(thread, slot, static_cast<std::uint32_t>(dice()));
    });
    Add("PHN_Delete" + kind, [&ledger](unsigned thread, Dice& dice) {
        return ledger.Delete(thread, static_cast<std::uint32_t>(dice() % Ledger::kPerThread));
    });
    Add("PHN_DeleteAll" + kind + "s", [&ledger](unsigned thread, Dice& dice) {
        if (dice() % 32 != 0) // or there would be none
            return ledger.Write(thread, 0, static_cast<std::uint32_t>(dice()));
        return ledger.DeleteAll();
    });
}

// Of the other boxes, too, or the store would be full.
void Host::AddMessageCalls()
{
    Add("PHN_SaveMessage", [this](unsigned, Dice& dice) { return messages_.Save(static_cast<std::uint32_t>(dice())); });
    Add("PHN_DeleteMessage", [this](unsigned, Dice& dice) { return messages_.Delete(AnyIndex(dice)); });
    Add("PHN_DeleteAllMessages", [this, &call = SOAK_EXPORT(library_, PHN_DeleteAllMessages)](unsigned, Dice& dice) {
        const std::int32_t box = AnyType(dice, PHN_MESSAGE_BOX_LAST);
        if (box != SavedMessages::kBox)
            return call(box);
        return dice() % 4 ? messages_.Save(static_cast<std::uint32_t>(dice())) : messages_.DeleteAll();
    });
}

std::vector<std::string> Host::Compare(const simulator::Phone& phone) const
{
    std::vector<std::string> differences = events_.Compare(phone);
    for (const auto& more : {contacts_.Compare(phone), messages_.Compare(phone)})
        differences.insert(differences.end(), more.begin(), more.end());
    return differences;
}

// Those whose arguments make a difference.
void Host::AddChosenCalls()
{
    Add("PHN_SetLock", [&call = SOAK_EXPORT(library_, PHN_SetLock)](unsigned, Dice& dice) {
        return call(dice() % 2, dice() % 2 ? kLockCode : "1234");
    });
    Add("PHN_ChangeLockCode", [&call = SOAK_EXPORT(library_, PHN_ChangeLockCode)](unsigned, Dice& dice) {
        return dice() % 2 ? call(kLockCode, "0000") : call("1234", kLockCode);
    });
    Add("PHN_GetContact", [&call = SOAK_EXPORT(library_, PHN_GetContact)](unsigned, Dice& dice) {
        std::array<char, 4096> text;
        PHN_CONTACT_RECORD record{sizeof record, text.data(), static_cast<std::uint32_t>(dice() % text.size())};
        return call(AnyIndex(dice), &record);
    });
    Add("PHN_GetFirstMessage", [&call = SOAK_EXPORT(library_, PHN_GetFirstMessage)](unsigned, Dice& dice) {
        std::array<std::uint8_t, 512> pdu;
        PHN_SMS_MESSAGE record{sizeof record, pdu.data(), static_cast<std::uint32_t>(dice() % pdu.size()), 0, 0};
        return call(AnyType(dice, PHN_MESSAGE_BOX_LAST), &record);
    });
    Add("PHN_GetCallEntryCount", [&call = SOAK_EXPORT(library_, PHN_GetCallEntryCount)](unsigned, Dice& dice) {
        return call(AnyType(dice, PHN_CALL_LIST_LAST));
    });
    Add("PHN_SetCallback", [&call = SOAK_EXPORT(library_, PHN_SetCallback)](unsigned, Dice& dice) {
        return call(AnyType(dice, PHN_CALLBACK_LAST), Tell, dice() % 3 == 0);
    });
    Add("PHN_Startup", [&startup = SOAK_EXPORT(library_, PHN_Startup),
                        &shutdown = SOAK_EXPORT(library_, PHN_Shutdown)](unsigned, Dice& dice) {
        return dice() % 64 ? startup() : shutdown(); // or nothing would be served
    });
    Add("PHN_GetNetworkErrorString", [&call = SOAK_EXPORT(library_, PHN_GetNetworkErrorString)](unsigned, Dice& dice) {
        std::array<char, 128> text;
        return call(static_cast<std::int32_t>(990 + dice() % 60), text.data(),
                    static_cast<std::int32_t>(dice() % text.size()));
    });
}

void Host::Start(std::uint32_t seed)
{
    isOver_ = false;
    for (unsigned thread = 0; thread < Ledger::kThreads; ++thread) {
        ++running_;
        threads_.emplace_back([=, this] { Run(thread, seed); });
    }
}

void Host::Run(unsigned thread, std::uint32_t seed)
{
    Dice dice(seed * 1000 + thread);
    dice.discard(10);
    const Call startup{"PHN_Startup", false,
                       [&call = SOAK_EXPORT(library_, PHN_Startup)](unsigned, Dice&) { return call(); }};
    for (unsigned unserved = 0; !isOver_;) {
        const std::uint32_t code = Make(calls_[dice() % calls_.size()], thread, dice);
        if (code == PHN_ERROR_NO_SERVICE_OBJECT && ++unserved % 4 == 0) // otherwise all threads would soon be so
            Make(startup, thread, dice);
    }
    --running_;
}

std::uint32_t Host::Make(const Call& call, unsigned thread, Dice& dice)
{
    const auto begin = std::chrono::steady_clock::now();
    const std::uint32_t code = call.call(thread, dice);
    tally_.Add(call.name, code, call.isCount, std::chrono::steady_clock::now() - begin);
    return call.isCount ? 0 : code;
}

// Asks for news, ends the service, or changes what is registered.
void PHN_CALL Host::Tell(std::uint32_t type)
{
    const std::uint64_t turn = ++theHost->told_;
    const Library& library = theHost->library_;
    PHN_BATTERY_INFO info{};
    info.uSize = sizeof info;
    SOAK_EXPORT(library, PHN_GetBatteryInfo)(&info);
    if (turn % 16 == 0)
        SOAK_EXPORT(library, PHN_Shutdown)();
    if (turn % 8 == 0)
        SOAK_EXPORT(library, PHN_SetCallback)(static_cast<std::int32_t>(type), Tell, 1);
}

std::map<std::string, std::chrono::milliseconds> Host::Bounds() const
{
    std::map<std::string, std::chrono::milliseconds> bounds;
    for (const HostCall& call : table_)
        bounds[call.name] = call.Bound();
    return bounds;
}

} // namespace soak
