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

Host::Host(const Library& library, Tally& tally)
    : library_(library),
      tally_(tally),
      ledger_(library),
      table_(HostCalls([&](const char* name) { return library.Find(name); }))
{
    theHost = this;
    AddPlainCalls();
    AddChosenCalls();
}

Host::~Host()
{
    Stop();
    Join();
    theHost = nullptr;
}

// Each export as it is called correctly, but those that come seldom.
void Host::AddPlainCalls()
{
    for (const HostCall& call : table_)
        if (call.name.starts_with("PHN_") && call.name != "PHN_DeleteAllEvents" && call.name != "PHN_Shutdown")
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

// Those whose arguments make a difference, several times: they come as often.
void Host::AddChosenCalls()
{
    const auto add = [this](const char* name, auto call) {
        for (int times = 0; times < 3; ++times)
            calls_.push_back({name, std::string(name).ends_with("Count"), call});
    };
    add("PHN_SetEvent", [this](unsigned thread, Dice& dice) {
        const auto slot = static_cast<std::uint32_t>(dice() % Ledger::kPerThread);
        return ledger_.Write(thread, slot, static_cast<std::uint32_t>(dice()));
    });
    add("PHN_DeleteEvent", [this](unsigned thread, Dice& dice) {
        return ledger_.Delete(thread, static_cast<std::uint32_t>(dice() % Ledger::kPerThread));
    });
    add("PHN_DeleteAllEvents", [this](unsigned thread, Dice& dice) {
        if (dice() % 32 != 0) // or there would be none
            return ledger_.Write(thread, 0, static_cast<std::uint32_t>(dice()));
        return ledger_.DeleteAll();
    });
    add("PHN_GetContact", [&call = SOAK_EXPORT(library_, PHN_GetContact)](unsigned, Dice& dice) {
        std::array<char, 4096> text;
        PHN_CONTACT_RECORD record{sizeof record, text.data(), static_cast<std::uint32_t>(dice() % text.size())};
        return call(AnyIndex(dice), &record);
    });
    add("PHN_GetFirstMessage", [&call = SOAK_EXPORT(library_, PHN_GetFirstMessage)](unsigned, Dice& dice) {
        std::array<std::uint8_t, 512> pdu;
        PHN_SMS_MESSAGE record{sizeof record, pdu.data(), static_cast<std::uint32_t>(dice() % pdu.size()), 0, 0};
        return call(AnyType(dice, PHN_MESSAGE_BOX_LAST), &record);
    });
    add("PHN_GetCallEntryCount", [&call = SOAK_EXPORT(library_, PHN_GetCallEntryCount)](unsigned, Dice& dice) {
        return call(AnyType(dice, PHN_CALL_LIST_LAST));
    });
    add("PHN_SetCallback", [&call = SOAK_EXPORT(library_, PHN_SetCallback)](unsigned, Dice& dice) {
        return call(AnyType(dice, PHN_CALLBACK_LAST), Tell, dice() % 3 == 0);
    });
    add("PHN_Startup", [&startup = SOAK_EXPORT(library_, PHN_Startup),
                        &shutdown = SOAK_EXPORT(library_, PHN_Shutdown)](unsigned, Dice& dice) {
        return dice() % 64 ? startup() : shutdown(); // or nothing would be served
    });
    add("PHN_GetNetworkErrorString", [&call = SOAK_EXPORT(library_, PHN_GetNetworkErrorString)](unsigned, Dice& dice) {
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
