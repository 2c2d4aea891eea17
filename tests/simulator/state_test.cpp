// The state as JSON, the control of a running handset, and what its fields hold.
#include "simulator/date_time.h"
#include "simulator/host_side.h"
#include "simulator/state_file.h"
#include "simulator/utf.h"

#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <set>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

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
        {R"({"battery": {"battery2": -1}})", "battery/battery2: a whole number from 0 to 255 is wanted"},
        {R"({"network": {"network22": 2147483648}})",
         "network/network22: a whole number from -2147483648 to 2147483647 is wanted"},
        {R"({"batery": {}})", "batery: there is no such part"},
        {R"({"contacts": {"x": {}}})", "contacts/x: the name is no id"},
        {R"({"contacts": []})", "contacts: an object is wanted, with an id for each name"},
        {R"({"contacts": {"3": {"entries": [{"type": "fax"}]}}})",
         "contacts/3/entries/0/type: a whole number from 0 to 4294967295 is wanted"},
        {R"({"events": {"0": {"start": "tomorrow"}}})",
         "events/0/start: a date-time like \"2009-03-15T12:00:00\" is wanted, or \"-\""},
        {R"({"events": {"0": {"byDay": [1, 2]}}})", "events/0/byDay: a list of 8 numbers is wanted"},
        {R"({"messages": {"0": {"hasBody": 1}}})", "messages/0/hasBody: true or false is wanted"},
        {R"({"identity": {"number": "555-0142"}})", "identity/number: at most 14 digits are wanted"},
        {R"({"setup": {"lockCode": "12345"}})", "setup/lockCode: four characters are wanted"},
        {"[]", "the state: an object is wanted"},
    };
    for (const auto& one : cases)
        EXPECT_EQ(WhatIsWrong([&] { PhoneFromJson(one.first, Phone{}); }), one.second);
    EXPECT_NE(WhatIsWrong([] { PhoneFromJson("{", Phone{}); }), "nothing");
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
    std::filesystem::remove(file);
    EXPECT_EQ(WhatIsWrong([&] { other.Load(file); }), file.string() + " cannot be read");
}

TEST(SimulatorState, TellsTheHostWhatWasChangedOnce)
{
    const std::tuple<const char*, const char*, std::uint16_t> cases[] = {
        {"battery/battery2", "40", 0x0040},     {"network/network26", "Fjord Mobile", 0x0001},
        {"connection/endReason", "7", 0x0010},  {"/setup/radio", "0", 0x0020},
        {"setup/lockCode", "1234", 0x0020},     {"identity/model", "Skerry 2", 0},
        {"contacts/3/firstName", "\"Liv\"", 0},
    };
    Handset handset;
    Session session(handset, PortKind::Diagnostic);
    const auto flags = [&] {
        const Bytes reply = host::Sent(session.Receive(host::Frame(1, host::Record(49, {}))));
        return static_cast<std::uint16_t>(reply[21] | reply[22] << 8);
    };
    for (const auto& [path, value, changed] : cases) {
        handset.Set(path, value);
        EXPECT_EQ(flags(), changed) << path;
        EXPECT_EQ(flags(), 0) << path;
    }
    EXPECT_EQ(handset.Show("contacts/3/firstName"), "\"Liv\"");
    constexpr const char* kAbsent = "there is no such part; \"show\" shows what there is";
    const std::vector<std::array<std::string, 3>> wrong = {
        {"battery", "1", "battery: an object is wanted"},
        {"nowhere/else", "1", std::string("nowhere/else: ") + kAbsent},
        {"model", "Skerry", "model: there is no such part; did you mean identity/model?"},
        {"battery/battery2/low", "1", std::string("battery/battery2/low: ") + kAbsent},
        {"battery/battery2", "full", "battery/battery2: a whole number from 0 to 255 is wanted"}};
    for (const auto& [path, value, text] : wrong)
        EXPECT_EQ(WhatIsWrong([&, &path = path, &value = value] { handset.Set(path, value); }), text);
    for (const char* path : {"battery/charge", "contacts/900", "charge", "~"})
        EXPECT_EQ(WhatIsWrong([&] { handset.Show(path); }), path + std::string(": ") + kAbsent);
}

TEST(SimulatorState, ShipsWhatTheServicesNeedToBeTriedOut)
{
    const Phone& phone = DefaultPhone();
    for (const char* listed : {"R3p", "T5w", "Wq", "N8r", "B4s", "G2hq", "H2k"})
        EXPECT_NE(phone.identity.model, listed);
    EXPECT_GE(phone.contacts.size(), 40u);
    EXPECT_GE(phone.events.size(), 30u);
    EXPECT_GE(phone.messages.size(), 25u);
    EXPECT_EQ(phone.calls.size(), 20u);
    const auto distinct = [](const auto& records, auto field) {
        std::set<std::size_t> values;
        for (const auto& [id, record] : records)
            values.insert(std::invoke(field, record));
        return values;
    };
    EXPECT_EQ(distinct(phone.events, &Event::zone).size(), 14u);
    EXPECT_EQ(distinct(phone.events, &Event::repeatType).size(), 6u);
    EXPECT_EQ(distinct(phone.messages, &Message::box).size(), 5u);
    EXPECT_EQ(distinct(phone.calls, &Call::list), (std::set<std::size_t>{1, 2, 3}));
}

TEST(SimulatorText, KeepsWhatIsWellFormedAndReplacesTheRest)
{
    for (const char* text : {"", "plain", "Ødegård", "Παπαδόπουλος", "山田", "😀"})
        EXPECT_EQ(ToUtf8(ToUtf16(text)), text);
    EXPECT_EQ(ToUtf16("😀").size(), 2u);
    for (const char* text :
         {"\xFF", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82", "\x80"})
        EXPECT_EQ(ToUtf16(text).front(), 0xFFFD) << text;
    EXPECT_EQ(ToUtf8(std::u16string{0xD800, u'x'}), "\xEF\xBF\xBDx");
    for (const char* text : {"2009-03-15T12:00:00", "-", "65535-255-255T255:255:65535"})
        EXPECT_EQ(ToString(ParseDateTime(text).value()), text);
    for (const char* text : {"", "2009-03-15T12:00", "2009-03-15T12:00:00Z", "2009-256-15T12:00:00"})
        EXPECT_FALSE(ParseDateTime(text)) << text;
}

} // namespace
