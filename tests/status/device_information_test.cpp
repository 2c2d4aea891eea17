// The handset's identity as the host gets it, whatever the handset stores; and the texts of network errors.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <tuple>

#include "status/device_information.h"
#include "status/network_errors.h"

namespace {

PHN_DEVICE_INFO Convert(const DEVICE_INFO& device)
{
    PHN_DEVICE_INFO host{};
    ConvertDeviceInfo(device, &host);
    EXPECT_EQ(+host.uSize, 548u);
    return host;
}

// A host field as text: up to its terminator, or whole.
template <size_t N>
std::string Text(const char (&field)[N])
{
    return std::string(field, strnlen(field, N));
}

TEST(DeviceInformation, DigitsAreBoundedByTheHandsetsField)
{
    // The digits are DTMF codes.
    const std::tuple<int8_t, const char*, const char*> cases[] = {
        {10, "\x05\x05\x05\x01\x02\x03\x04\x05\x06\x0A", "5551234560"},
        {0, "\x05", ""},
        {-128, "\x05", ""},
        {15, "\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0A\x01\x02\x03\x04", "12345678901234"},
        {127, "\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0A\x01\x02\x03\x0B", "1234567890123;"},
    };
    for (const auto& [count, digits, expected] : cases) {
        DEVICE_INFO device{};
        device.cDigits = count;
        std::memcpy(device.abyDigits, digits, strnlen(digits, sizeof device.abyDigits));
        device.dwESN = 0xFFFFFFFF; // what follows the digits must not become one
        EXPECT_EQ(Text(Convert(device).szNumber), expected) << int{count};
    }
}

TEST(DeviceInformation, NumbersArePrintedInTheirFixedForms)
{
    DEVICE_INFO device{};
    device.dwESN = 0x9F123456;
    device.dwInfo212 = 0xBEEF;
    EXPECT_STREQ(Convert(device).szESN, "15901193046");
    EXPECT_STREQ(Convert(device).szInfo212, "BEEF");

    device.dwESN = 0xFFFFFFFF;
    device.dwInfo212 = 0;
    EXPECT_STREQ(Convert(device).szESN, "25516777215");
    EXPECT_STREQ(Convert(device).szInfo212, "0");
}

TEST(DeviceInformation, TextsArriveUnderTheirNamesAndEndWithTheirField)
{
    DEVICE_INFO device{};
    device.wszInfo20.SetWide(std::u16string(32, u'a'));
    device.wszModel.SetWide(std::u16string(32, u'\u00e9'));
    device.wszInfo148.SetWide(u"c");
    device.wszInfo216.SetWide(std::u16string(11, u'd'));
    device.wszInfo253.SetWide(std::u16string(15, u'\u4e2d')); // not in the code page

    const PHN_DEVICE_INFO host = Convert(device);
    EXPECT_EQ(Text(host.szInfo20), std::string(32, 'a'));
    EXPECT_EQ(Text(host.szModel), std::string(32, '\xE9'));
    EXPECT_EQ(Text(host.szInfo148), "c");
    EXPECT_EQ(Text(host.szInfo216), std::string(11, 'd'));
    EXPECT_EQ(Text(host.szInfo253), std::string(15, '?'));
    EXPECT_EQ(Text(reinterpret_cast<const char(&)[64]>(host.abyReserved468)), "");
}

// All the texts at once, as a hash (FNV-1a), so that none of them changes unseen.
TEST(NetworkErrors, HaveTheTextsThatHostsShow)
{
    uint32_t hash = 0x811C9DC5;
    int count = 0;
    for (int32_t code = 0; code < 4000; ++code) {
        const std::string_view text = FindNetworkErrorText(code);
        count += !text.empty();
        for (size_t at = 0; !text.empty() && at <= text.size(); ++at) // with the terminator
            hash = (hash ^ static_cast<uint8_t>(text.data()[at])) * 0x01000193;
    }
    EXPECT_EQ(count, 55);
    EXPECT_EQ(hash, 0xF0EF3144U);
}

} // namespace
