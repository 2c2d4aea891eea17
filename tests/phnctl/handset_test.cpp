// phnctl with a handset: what each command answers, what the handset then holds, and what a refusal looks like.
#include "phnctl/handset_run.h"

#include <array>
#include <sstream>

using WithHandset = HandsetRun;

TEST_F(WithHandset, InfoShowsTheIdentity)
{
    Expect(0, "info",
           {"Model          Fjord 40\nNumber         5550142730\nSerial number  15901193046\n\nuInfo19        3\n"
            "Manufacturer   Norvik\nFirmware       FJ40-1.04.22\n"});
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
    for (const char* words : {"info", "status --json", "doctor"}) {
        const Outcome outcome = Expect(0, words);
        for (const char* raw : {"\x1B", "\x07", "\r", "\xC2\x9B"})
            EXPECT_FALSE(Has(outcome.out + outcome.err, raw)) << words << "\n" << outcome.out << outcome.err;
    }
}

TEST_F(WithHandset, CommandsReachTheHandset)
{
    // Words, input, output; and radio, lock, lock code and the parameters behind it.
    const std::array<const char*, 4> cases[] = {
        {"radio off", "", "The radio is off.\n", "0 0 0000 1 2 300"},
        {"radio on --json", "", "{\"radio\":\"on\"}\n", "1 0 0000 1 2 300"},
        {"lock on 0000", "", "The handset is locked.\n", "1 1 0000 1 2 300"},
        {"lock off", "0000\n", "The handset is unlocked.\n", "1 0 0000 1 2 300"},
        {"lock-code 0000", "4711\n", "The lock code is changed.\n", "1 0 4711 1 2 300"},
        {"parameters set uParameter2=255 wParameter3=0x1234", "",
         "uParameter1  1\nuParameter2  255\nwParameter3  4660\n", "1 0 4711 1 255 4660"},
    };
    for (const auto& [words, input, out, setup] : cases) {
        EXPECT_EQ(Run(words, input).out, out);
        const simulator::Setup now = Held().setup;
        std::ostringstream held;
        held << +now.radio << ' ' << +now.lock << ' ' << now.lockCode << ' ' << +now.parameter1 << ' '
             << +now.parameter2 << ' ' << now.parameter3;
        EXPECT_EQ(held.str(), setup) << words;
    }
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

TEST_F(WithHandset, LabelFilesNameValuesAndBrokenOnesCostNothingElse)
{
    File("a.json", "{ broken");
    File("b.json", R"({"model": "another", "fields": {"uBattery2": {"label": "wrong"}}})");
    File("c.json", R"({"model": "fjord 40", "fields": {"uBattery2": {"label": "Level", "values": {"80": "good"}}}})");
    Expect(0, "status --labels " + m_folder.Path().string(), {"a.json is ignored", "  Level            good (80)\n"});
}
