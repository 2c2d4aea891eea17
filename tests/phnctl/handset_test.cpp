// phnctl with a handset: what each command answers, what the handset then holds, and what a refusal looks like.
#include "phnctl/handset_run.h"

#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <regex>

namespace phnctl_test {
namespace {

class WithHandset : public HandsetRun
{
protected:
    simulator::Setup Stored() { return Handset().Snapshot().setup; }
};

TEST_F(WithHandset, InfoShowsTheIdentity)
{
    const Outcome text = Run("info");
    EXPECT_EQ(text.status, 0) << text.err;
    EXPECT_EQ(text.out, "Model          Fjord 40\n"
                        "Number         5550142730\n"
                        "Serial number  15901193046\n"
                        "\n"
                        "uInfo19        3\n"
                        "Manufacturer   Norvik\n"
                        "Firmware       FJ40-1.04.22\n"
                        "szInfo212      1A2B3\n"
                        "szInfo216      3105550142\n"
                        "uInfo238       1\n"
                        "uInfo242       4660\n"
                        "uInfo246       22136\n"
                        "uInfo250       6\n"
                        "uInfo251       7\n"
                        "szInfo253      555014273000000\n");
    EXPECT_EQ(text.err, "");
    EXPECT_EQ(Run("info --json").out,
              "{\"model\":\"Fjord 40\",\"number\":\"5550142730\",\"esn\":\"15901193046\",\"uInfo19\":3,"
              "\"szInfo20\":\"Norvik\",\"szInfo148\":\"FJ40-1.04.22\",\"szInfo212\":\"1A2B3\","
              "\"szInfo216\":\"3105550142\",\"uInfo238\":1,\"uInfo242\":4660,\"uInfo246\":22136,\"uInfo250\":6,"
              "\"uInfo251\":7,\"szInfo253\":\"555014273000000\"}\n");
}

TEST_F(WithHandset, StatusShowsValuesBarsAndWhyTheLastCallEnded)
{
    Handset().SetBattery({0, 44});
    Handset().SetEndReason(26);
    const Outcome text = Run("status");
    EXPECT_EQ(text.status, 0) << text.err;
    for (const char* line : {"  Power            discharging (0)\n", "  Charge           [####......] 44 %\n",
                             "  1x signal        [########..] -85 dBm\n", "  uNetwork20       384\n",
                             "  Last call ended  1025 PHN_NETWORK_ERROR_1X_FADE, Fade\n"})
        EXPECT_NE(text.out.find(line), std::string::npos) << line << "\n" << text.out;
    const std::string json = Run("status --json").out;
    for (const char* part :
         {"\"battery\":{\"uBattery1\":0,\"uBattery2\":44}", "\"nNetwork22\":85,\"szNetwork26\":\"Norvik Mobile\"",
          "\"uNetworkError\":1025,\"networkErrorText\":\"PHN_NETWORK_ERROR_1X_FADE, Fade\""})
        EXPECT_NE(json.find(part), std::string::npos) << part << "\n" << json;
}

TEST_F(WithHandset, NothingOfTheHandsetReachesTheTerminalRaw)
{
    Handset().Change(0, [](simulator::Phone& phone) {
        phone.identity.model = "M\x1B]0;owned\x07\xC2\x9B";
        phone.network.network26 = "\x1B[2J\n\r";
    });
    for (const char* words : {"info", "status", "info --json", "status --json", "doctor"}) {
        const Outcome outcome = Run(words);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        for (const std::string& stream : {outcome.out, outcome.err})
            for (const char* raw : {"\x1B", "\x07", "\r", "\xC2\x9B"})
                EXPECT_EQ(stream.find(raw), std::string::npos) << words << "\n" << stream;
    }
}

TEST_F(WithHandset, CommandsReachTheHandset)
{
    const auto parameters = [&] {
        const simulator::Setup now = Stored();
        return std::vector<int>{now.parameter1, now.parameter2, now.parameter3};
    };
    EXPECT_EQ(Run("radio off").out, "The radio is off.\n");
    EXPECT_EQ(Stored().radio, 0);
    EXPECT_EQ(Run("radio on --json").out, "{\"radio\":\"on\"}\n");
    EXPECT_EQ(Stored().radio, 1);
    EXPECT_EQ(Run("lock on 0000").out, "The handset is locked.\n");
    EXPECT_EQ(Stored().lock, 1);
    EXPECT_EQ(Run("lock off", "0000\n").out, "The handset is unlocked.\n");
    EXPECT_EQ(Stored().lock, 0);
    EXPECT_EQ(Run("lock-code 0000", "4711\n").out, "The lock code is changed.\n");
    EXPECT_EQ(Stored().lockCode, "4711");
    EXPECT_EQ(Run("parameters set uParameter2=255 wParameter3=0x1234").out,
              "uParameter1  1\nuParameter2  255\nwParameter3  4660\n");
    EXPECT_EQ(parameters(), (std::vector<int>{1, 255, 0x1234}));
    EXPECT_EQ(Run("parameters get --json").out, "{\"uParameter1\":1,\"uParameter2\":255,\"wParameter3\":4660}\n");
    const Outcome activation = Run("activate");
    EXPECT_EQ(activation.status, 0) << activation.err;
    EXPECT_NE(activation.out.find("Activation has started"), std::string::npos);
    EXPECT_EQ(Stored().activationDialled, "*48015");
}

TEST_F(WithHandset, RefusalsGiveCodeNameAndMeaning)
{
    const Outcome wrongCode = Run("lock off 9999");
    EXPECT_EQ(wrongCode.status, 1);
    EXPECT_EQ(wrongCode.out, "");
    EXPECT_NE(wrongCode.err.find("203 PHN_ERROR_INVALID_LOCK_CODE: the lock code is wrong (while unlocking"),
              std::string::npos)
        << wrongCode.err;
    Handset().SetModel("T5w");
    const Outcome excluded = Run("info");
    EXPECT_EQ(excluded.status, 1);
    EXPECT_NE(excluded.err.find("103 PHN_ERROR_NOT_SUPPORTED"), std::string::npos) << excluded.err;
}

// Rows such as "| `battery1` | 0 discharging, 1 charging, 2 full |".
std::map<std::string, std::map<std::string, std::string>> DocumentedValues()
{
    const std::regex row("\\| `(\\w+)` \\| (0 .*) \\|");
    const std::regex value("(\\d+) ([a-z ]+)");
    std::map<std::string, std::map<std::string, std::string>> values;
    std::ifstream page(PROTOCOL_PAGE);
    std::smatch found;
    for (std::string line; std::getline(page, line);)
        if (std::regex_match(line, found, row)) {
            const std::string list = found[2];
            for (std::sregex_iterator at(list.begin(), list.end(), value), end; at != end; ++at)
                values[found[1]][(*at)[1]] = (*at)[2];
        }
    return values;
}

TEST_F(WithHandset, LabelsNameValuesAsTheProtocolPageDoes)
{
    const auto documented = DocumentedValues();
    ASSERT_GE(documented.size(), 4u);
    for (const char* number : {"0", "1", "2"}) {
        for (const auto& [name, values] : documented)
            Handset().Set(name.substr(0, name.find_first_of("0123456789")) + "/" + name, number);
        const Outcome outcome = Run("status");
        for (const auto& [name, values] : documented) {
            const auto meaning = values.find(number);
            const std::string shown = meaning == values.end() ? "" : meaning->second + " (" + number + ")\n";
            EXPECT_NE(outcome.out.find(shown), std::string::npos) << name << "\n" << outcome.out;
        }
    }
}

TEST_F(WithHandset, LabelFilesNameValuesAndBrokenOnesCostNothingElse)
{
    const simulator::DeviceDirectory labels;
    std::ofstream(labels.Path() / "a.json") << "{ broken";
    std::ofstream(labels.Path() / "b.json") << R"({"model": "another", "fields": {"uBattery2": {"label": "wrong"}}})";
    std::ofstream(labels.Path() / "c.json")
        << R"({"model": "fjord 40", "fields": {"uBattery1": {"label": 7}, "uBattery2": {"label": "Level",)"
        << R"( "values": {"80": "good"}, "unit": "\u001b[2J", "bar": {"from": 80, "to": 80}}}})";
    const Outcome outcome = Run("status --labels " + labels.Path().string());
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.err.find("a.json is ignored"), std::string::npos) << outcome.err;
    EXPECT_NE(outcome.out.find("  uBattery1        1\n"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find("  Level            good (80) \\x1B[2J\n"), std::string::npos) << outcome.out;
}

} // namespace
} // namespace phnctl_test
