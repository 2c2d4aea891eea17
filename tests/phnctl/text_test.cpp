// What reaches a terminal: no control character of a handset, no line wider than the terminal.
#include "phnctl/cli/report.h"
#include "phnctl/text/table.h"
#include "phnctl/text/text.h"
#include "phnctl/text/wrapping.h"

#include <gtest/gtest.h>

using namespace phnctl;

TEST(Printable, ShowsOnlyWhatATerminalMayGet)
{
    const std::pair<std::string, std::string> cases[] = {
        {"gr\xC3\xBC\xC3\x9F \xE6\x97\xA5 \xF0\x9F\x93\xB1", "gr\xC3\xBC\xC3\x9F \xE6\x97\xA5 \xF0\x9F\x93\xB1"},
        {"\x1B[2J\x07\n\x7F", "\\x1B[2J\\x07\\x0A\\x7F"},
        {"\xC2\x9B", "\\x9B"},                        // the 8-bit form of ESC [
        {"\xE2\x80\xAEx", "\\u{202E}x"},              // text from right to left
        {"\xC0\xAF", "\\xC0\\xAF"},                   // an overlong '/'
        {"\xED\xA0\x80", "\\xED\\xA0\\x80"},          // half of a surrogate pair
        {"\xF4\x90\x80\x80", "\\xF4\\x90\\x80\\x80"}, // beyond U+10FFFF
        {"\xE6\x97", "\\xE6\\x97"},                   // cut
        {"\xC2\xAD\xD8\x9C", "\\xAD\\u{061C}"},       // a soft hyphen, an Arabic letter mark
    };
    for (const auto& [text, shown] : cases)
        EXPECT_EQ(Printable(text), shown);
    EXPECT_EQ(WriteJson({std::string("\x1B\x7F\xC2\x9B \xE2\x80\xAE\xF3\xA0\x80\xA0 \xC3\xA6\xFF")}),
              "\"\\u001b\\u007f\\u009b \\u202e\\udb40\\udc20 \xC3\xA6\xEF\xBF\xBD\"");
}

TEST(Report, AlignsAndWrapsToTheTerminal)
{
    const Report report{{{"",
                          "",
                          {{"model", "Model", "Fjord 40"},
                           {"text", "Text", "one two three four five six"},
                           {"word", "Word", "äöüäöüäöüäöü"},
                           {"none", "None", ""},
                           {"hidden", "", "for programs"}}},
                         {"battery", "Battery", {{"uBattery2", "Charge", 80}}}}};
    EXPECT_EQ(ToText(report, 18), "Model   Fjord 40\nText    one two\n        three four\n        five six\n"
                                  "Word    äöüäöüäöüä\n        öü\nNone    -\n\nBattery\n  Charge  80\n");
    EXPECT_EQ(
        WriteJson(ToJson(report)),
        "{\"model\":\"Fjord 40\",\"text\":\"one two three four five six\",\"word\":\"äöüäöüäöüäöü\",\"none\":\"\","
        "\"hidden\":\"for programs\",\"battery\":{\"uBattery2\":80}}");
}

// A terminal's table is cut to its width; otherwise nothing is, and one long cell does not widen all rows.
TEST(Table, CutsWordsBeforeNumbersAndTimes)
{
    const std::vector<std::vector<std::string>> rows{{"Anna", "Wed 2026-11-25 19:00", "+475552000"},
                                                     {"太郎太郎太郎太郎", "", "5551000000"}};
    EXPECT_EQ(TableText({"Name", "Start", "Mobile"}, rows, 44),
              "Name        Start                 Mobile\nAnna        Wed 2026-11-25 19:00  +475552000\n"
              "太郎太郎…                         5551000000\n");
    // Days and short words are no texts to be cut, and the name has more room than others.
    EXPECT_EQ(
        TableText({"Name", "End", "Note"},
                  {{"Ann Lee from next door", "2026-11-25", "likes fish and chips"}, {"Bo", "all day", ""}}, 40),
        "Name               End         Note\nAnn Lee from nex…  2026-11-25  likes fi…\nBo                 all day\n");
    EXPECT_EQ(TableText({"Name"}, {{std::string(30, 'x')}}, 0), "Name\n" + std::string(30, 'x') + "\n");
}

TEST(Wrapping, KeepsWordsWholeAndGoesOnBelowTheirColumn)
{
    EXPECT_EQ(Wrapped("    kept: one two three  four five\nshort\n", 30, 2),
              "    kept: one two three  four\n      five\nshort\n");
    EXPECT_EQ(Wrapped("  --range A-B   Only the indexes\n", 30, 0),
              "  --range A-B   Only the\n                indexes\n");
    EXPECT_EQ(Flowing("One\ntwo.\n\nExample:\n  a b\n  c\n"), "One two.\n\nExample:\n  a b\n  c\n");
}

TEST(Json, RefusesWhatIsNone)
{
    const std::string deep(100000, '[');
    for (const std::string& text : {std::string(), std::string("{\"a\":"), std::string("{} x"), deep})
        EXPECT_THROW(ParseJson(text), std::runtime_error);
}
