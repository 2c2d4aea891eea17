// The state as JSON, the control of a running handset, and what its fields hold.
#include "simulator/host_side.h"
#include "simulator/phone/date_time.h"
#include "simulator/phone/state_file.h"
#include "simulator/phone/utf.h"

#include <gtest/gtest.h>

#include <fstream>
#include <stdexcept>
#include <string>
#include <tuple>

namespace {

using namespace simulator;

std::string WhatIsWrong(const std::function<void()>& action)
{
    try {
        action();
    } catch (const std::exception& error) {
        return error.what();
    }
    return "nothing";
}

TEST(SimulatorState, NamesThePlaceOfWhatItCannotTake)
{
    const std::pair<const char*, const char*> cases[] = {
        {R"({"battery": {"battery2": 256}})", "battery/battery2: a whole number from 0 to 255 is wanted"},
        {R"({"batery": {}})", "batery: there is no such part"},
        {R"({"events": {"0": {"start": "tomorrow"}}})",
         "events/0/start: a date-time like \"2009-03-15T12:00:00\" is wanted, or \"-\""},
        {R"({"events": {"0": {"byDay": [1, 2]}}})", "events/0/byDay: a list of 8 numbers is wanted"},
        {R"({"setup": {"lockCode": "12345"}})", "setup/lockCode: four characters are wanted"},
    };
    for (const auto& one : cases)
        EXPECT_EQ(WhatIsWrong([&] { PhoneFromJson(one.first, Phone{}); }), one.second);
}

TEST(SimulatorState, IsLeftAloneByAFileThatCannotBeUsed)
{
    const std::filesystem::path file = std::filesystem::path(testing::TempDir()) / "phnsim_state_test.json";
    Handset handset;
    handset.Set("battery/battery2", "41");
    std::ofstream(file) << R"({"battery": {"battery2": 7}, "network": {"network4": 1000}})";
    EXPECT_EQ(WhatIsWrong([&] { handset.Load(file); }),
              file.string() + ": network/network4: a whole number from 0 to 255 is wanted");
    EXPECT_EQ(handset.Show("battery/battery2"), "41");
    handset.Save(file);
    Handset other;
    other.Load(file); // with all that the shipped handset has
    EXPECT_EQ(other.Show(), handset.Show());
    Phone phone;
    phone.identity.model = "Another";
    Handset another(phone);
    std::ofstream(file) << "{}";
    another.Load(file);
    EXPECT_EQ(another.Show("identity/model"), "\"Another\"") << "what the file does not name";
    std::filesystem::remove(file);
}

TEST(SimulatorState, TellsTheHostWhatWasChangedOnce)
{
    const std::tuple<const char*, const char*, std::uint32_t> cases[] = {
        {"battery/battery2", "40", 0x0040},    {"network/network26", "Fjord Mobile", 0x0001},
        {"connection/endReason", "7", 0x0010}, {"/setup/radio", "0", 0x0020},
        {"contacts/3/firstName", "Liv", 0},
    };
    Handset handset;
    host::Asker asker(handset);
    for (const auto& [path, value, changed] : cases) {
        handset.Set(path, value);
        EXPECT_EQ(asker.Ask(49, {}).number, changed) << path;
        EXPECT_EQ(asker.Ask(49, {}).number, 0u) << path;
    }
    EXPECT_EQ(handset.Show("contacts/3/firstName"), "\"Liv\"");
    const std::pair<const char*, const char*> wrong[] = {
        {"battery", "battery: an object is wanted"},
        {"model", "model: there is no such part; did you mean identity/model?"},
        {"battery/battery2/low", "battery/battery2/low: there is no such part; \"show\" shows what there is"},
    };
    for (const auto& one : wrong)
        EXPECT_EQ(WhatIsWrong([&] { handset.Set(one.first, "1"); }), one.second);
    const std::string far = "contacts/3/entries/4000000000";
    EXPECT_EQ(WhatIsWrong([&] { handset.Set(far, "{}"); }),
              far + ": there is no such part; \"show\" shows what there is");
    handset.Set("contacts/3/entries/-", "{}");
}

TEST(SimulatorText, KeepsWhatIsWellFormedAndReplacesTheRest)
{
    for (const char* text : {"", "Ødegård", "山田", "😀"})
        EXPECT_EQ(ToUtf8(ToUtf16(text)), text);
    for (const char* text : {"\xFF", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82"})
        EXPECT_EQ(ToUtf16(text).front(), 0xFFFD) << text;
    EXPECT_EQ(ToUtf8(std::u16string{0xD800, u'x'}), "\xEF\xBF\xBDx");
    for (const char* text : {"2009-03-15T12:00:00", "-", "65535-255-255T255:255:65535"})
        EXPECT_EQ(ToString(ParseDateTime(text).value()), text);
    for (const char* text : {"2009-03-15T12:00", "2009-03-15T12:00:00Z", "2009-256-15T12:00:00"})
        EXPECT_FALSE(ParseDateTime(text)) << text;
}

} // namespace
