// Commands 6, 8 to 10, 12, 13 and 45: identity and configuration.
#include "simulator/commands/command.h"

#include <algorithm>
#include <array>

namespace simulator {
namespace {

constexpr std::size_t kMaxDigits = 14;
constexpr std::size_t kLockCodeLength = 4;

Outcome ReadIdentity(Phone& phone, FieldReader&, FieldWriter& reply)
{
    const Identity& identity = phone.identity;
    const std::size_t digits = std::min(identity.number.size(), kMaxDigits);
    reply.U8("digits", static_cast<std::uint8_t>(digits));
    for (std::size_t i = 0; i < digits; ++i) {
        const char digit = identity.number[i];
        reply.U8("digit", static_cast<std::uint8_t>(digit == '0' ? 10 : digit - '0'));
    }
    reply.Zeros(kMaxDigits - digits);
    reply.U32("esn", identity.esn);
    reply.U8("info19", identity.info19);
    reply.Text("info20", identity.info20, 32);
    reply.Text("model", identity.model, 32);
    reply.Text("info148", identity.info148, 32);
    reply.U32("info212", identity.info212);
    reply.Text("info216", identity.info216, 11);
    reply.U32("info238", identity.info238);
    reply.U32("info242", identity.info242);
    reply.U32("info246", identity.info246);
    reply.U8("info250", identity.info250);
    reply.U8("info251", identity.info251);
    reply.Zeros(1);
    reply.Text("info253", identity.info253, 15);
    return {};
}

Outcome SetRadio(Phone& phone, FieldReader& request, FieldWriter&)
{
    phone.setup.radio = request.U8("radio");
    phone.variance |= kStateChanged;
    return {};
}

Outcome SetLock(Phone& phone, FieldReader& request, FieldWriter&)
{
    const std::uint8_t lock = request.U8("lock");
    if (request.Characters("code", kLockCodeLength) != phone.setup.lockCode)
        return kWrongLockCode;
    phone.setup.lock = lock;
    phone.variance |= kStateChanged;
    return {};
}

Outcome ChangeLockCode(Phone& phone, FieldReader& request, FieldWriter&)
{
    if (request.Characters("code", kLockCodeLength) != phone.setup.lockCode)
        return kWrongLockCode;
    phone.setup.lockCode = request.Characters("newCode", kLockCodeLength);
    return {};
}

Outcome ReadParameters(Phone& phone, FieldReader&, FieldWriter& reply)
{
    reply.U8("parameter1", phone.setup.parameter1);
    reply.U8("parameter2", phone.setup.parameter2);
    reply.U16("parameter3", phone.setup.parameter3);
    return {};
}

Outcome WriteParameters(Phone& phone, FieldReader& request, FieldWriter&)
{
    phone.setup.parameter1 = request.U8("parameter1");
    phone.setup.parameter2 = request.U8("parameter2");
    phone.setup.parameter3 = request.U16("parameter3");
    return {};
}

Outcome Activate(Phone& phone, FieldReader& request, FieldWriter&)
{
    const bool isAutomatic = request.U32("automatic") != 0;
    const std::string number = request.Text("dial", 104);
    if (!isAutomatic)
        return kNotAutomatic;
    if (number.empty())
        return kMalformedRequest;
    phone.setup.activationDialled = number;
    phone.variance |= kActivationChanged;
    return {};
}

constexpr std::array kCommands{
    Command{6, "device information", 6, 291, false, ReadIdentity},
    Command{8, "radio power", 7, 8, false, SetRadio},
    Command{9, "phone lock", 11, 8, false, SetLock},
    Command{10, "change lock code", 14, 8, false, ChangeLockCode},
    Command{12, "read parameters", 6, 12, false, ReadParameters},
    Command{13, "write parameters", 10, 8, false, WriteParameters},
    Command{45, "activation", 218, 8, false, Activate},
};

} // namespace

std::span<const Command> SetupCommands()
{
    return kCommands;
}

} // namespace simulator
