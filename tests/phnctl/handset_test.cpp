// phnctl with a handset: what each command answers, what the handset then holds, and what a refusal looks like.
#include "phnctl/handset_run.h"

#include <map>
#include <regex>

namespace phnctl_test {
namespace {

using WithHandset = HandsetRun;

TEST_F(WithHandset, InfoShowsTheIdentity)
{
    EXPECT_EQ(Run("info").out, "Model          Fjord 40\n"
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
    Expect(0, "status",
           {"  Power            discharging (0)\n", "  Charge           [####......] 44 %\n",
            "  1x signal        [########..] -85 dBm\n", "  uNetwork20       384\n",
            "  Last call ended  1025 PHN_NETWORK_ERROR_1X_FADE, Fade\n"});
    Expect(0, "status --json",
           {"\"battery\":{\"uBattery1\":0,\"uBattery2\":44}", "\"nNetwork22\":85,\"szNetwork26\":\"Norvik Mobile\"",
            "\"uNetworkError\":1025,\"networkErrorText\":\"PHN_NETWORK_ERROR_1X_FADE, Fade\""});
}

TEST_F(WithHandset, NothingOfTheHandsetReachesTheTerminalRaw)
{
    Handset().Change(0, [](simulator::Phone& phone) {
        phone.identity.model = "M\x1B]0;owned\x07\xC2\x9B";
        phone.network.network26 = "\x1B[2J\n\r";
    });
    for (const char* words : {"info", "status", "status --json", "doctor"}) {
        const Outcome outcome = Expect(0, words);
        for (const char* raw : {"\x1B", "\x07", "\r", "\xC2\x9B"})
            EXPECT_FALSE(Has(outcome.out + outcome.err, raw)) << words << "\n" << outcome.out << outcome.err;
    }
}

TEST_F(WithHandset, CommandsReachTheHandset)
{
    const auto setup = [&] {
        const simulator::Setup now = Held().setup;
        return std::vector<int>{now.radio, now.lock, now.parameter1, now.parameter2, now.parameter3};
    };
    const struct
    {
        const char *words, *input, *out;
        std::vector<int> setup;
    } cases[] = {
        {"radio off", "", "The radio is off.\n", {0, 0, 1, 2, 300}},
        {"radio on --json", "", "{\"radio\":\"on\"}\n", {1, 0, 1, 2, 300}},
        {"lock on 0000", "", "The handset is locked.\n", {1, 1, 1, 2, 300}},
        {"lock off", "0000\n", "The handset is unlocked.\n", {1, 0, 1, 2, 300}},
        {"lock-code 0000", "4711\n", "The lock code is changed.\n", {1, 0, 1, 2, 300}},
        {"parameters set uParameter2=255 wParameter3=0x1234",
         "",
         "uParameter1  1\nuParameter2  255\nwParameter3  4660\n",
         {1, 0, 1, 255, 0x1234}},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(Run(test.words, test.input).out, test.out);
        EXPECT_EQ(setup(), test.setup) << test.words;
    }
    EXPECT_EQ(Held().setup.lockCode, "4711");
    EXPECT_EQ(Run("parameters get --json").out, "{\"uParameter1\":1,\"uParameter2\":255,\"wParameter3\":4660}\n");
    Expect(0, "activate", {"Activation has started"});
    EXPECT_EQ(Held().setup.activationDialled, "*48015");
}

TEST_F(WithHandset, RefusalsGiveCodeNameAndMeaning)
{
    const Outcome refused =
        Expect(1, "lock off 9999", {"203 PHN_ERROR_INVALID_LOCK_CODE: the lock code is wrong (while unlocking"});
    EXPECT_EQ(refused.out, "");
    Handset().SetModel("T5w");
    Expect(1, "info", {"103 PHN_ERROR_NOT_SUPPORTED"});
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
        std::vector<std::string> shown;
        for (const auto& [name, values] : documented) {
            Handset().Set(name.substr(0, name.find_first_of("0123456789")) + "/" + name, number);
            if (values.contains(number))
                shown.push_back(values.at(number) + " (" + number + ")\n");
        }
        Expect(0, "status", shown);
    }
}

TEST_F(WithHandset, LabelFilesNameValuesAndBrokenOnesCostNothingElse)
{
    File("a.json", "{ broken");
    File("b.json", R"({"model": "another", "fields": {"uBattery2": {"label": "wrong"}}})");
    File("c.json", R"({"model": "fjord 40", "fields": {"uBattery1": {"label": 7}, "uBattery2": {"label": "Level",)"
                   R"( "values": {"80": "good"}, "unit": "\u001b[2J", "bar": {"from": 80, "to": 80}}}})");
    Expect(0, "status --labels " + m_folder.Path().string(),
           {"a.json is ignored", "  uBattery1        1\n", "  Level            good (80) \\x1B[2J\n"});
}

} // namespace
} // namespace phnctl_test
