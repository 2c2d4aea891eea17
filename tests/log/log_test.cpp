#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <sstream>
#include <thread>
#include <tuple>
#include <utility>

#include "log/log.h"
#include "log/log_capture.h"
#include "log/log_file.h"
#include <phn_platform_test.h>

namespace {

constexpr CLogSource kPort{LOG_CPORT};

// What a process logs when its log is opened, one line of each kind written, and the log closed.
Lines WriteOneOfEach(std::optional<DWORD> level)
{
    LogCapture capture(level);
    CLogFile::Open();
    constexpr CLogSource kDevice{LOG_CDEVICE};
    kDevice.Error("e");
    kDevice.Comment("c");
    kPort.Error("e");
    kPort.Comment("c");
    LogMessage("d", LOG_CSMS, LOG_DEBUG);
    LogMessage("u", 3 << 8, 4); // two categories at once are none of the table
    LogMessage("r", LOG_CSMS, 16);
    Lines lines = capture.TakeLines();
    if (lines.empty() && !capture.Files().empty())
        lines.push_back("an empty file");
    return lines;
}

// How often a line opens the registry's key and reads the value.
using Cost = std::pair<unsigned, unsigned>;

Cost CostOfALine()
{
    constexpr unsigned kMany = 1000;
    platform_test::FailCall("RegOpenKeyExA", ERROR_SUCCESS, 0, kMany);
    platform_test::FailCall("RegQueryValueExA", ERROR_SUCCESS, 0, kMany);
    kPort.Error("line %d", 1);
    const Cost cost(kMany - platform_test::PendingFailures("RegOpenKeyExA"),
                    kMany - platform_test::PendingFailures("RegQueryValueExA"));
    platform_test::ClearFailures();
    return cost;
}

// The text with every digit made a 9.
std::string Digitless(std::string text)
{
    for (char& letter : text)
        letter = letter >= '0' && letter <= '9' ? '9' : letter;
    return text;
}

// Lines of a hundred equal letters.
size_t CountWholeLines(const std::string& text)
{
    std::istringstream lines(text);
    size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        const std::string letters(100, line.size() > 2 ? line[line.size() - 2] : '?');
        EXPECT_EQ(Digitless(line), "99/99/99 99:99:99\tCPort\tError\t" + letters + "\r");
    }
    return count;
}

} // namespace

TEST(Log, MasksDecideWhatIsWritten)
{
    const std::tuple<std::optional<DWORD>, Lines> cases[] = {
        {std::nullopt, {}},
        {0, {}},
        {0x000FFF02, {"CDevice Comment c", "CPort Comment c"}},
        {0x00000704, {"CDevice Error e", "Unknown Error u"}},
        {0xFFF80011, {"CSMS Debug d", "CSMS Reserved r"}},
        {0xFFF00000, {"an empty file"}}, // not off, but nothing passes
        {0x000FFFFF,
         {"CDevice Error e", "CDevice Comment c", "CPort Error e", "CPort Comment c", "CSMS Debug d", "Unknown Error u",
          "CSMS Reserved r"}},
    };
    for (const auto& [level, lines] : cases)
        EXPECT_EQ(WriteOneOfEach(level), lines) << level.value_or(0);
}

TEST(Log, ALineIsTimeCategoryLevelAndTextUnchanged)
{
    LogCapture capture(0xFFFFF);
    LogMessage("ends itself\n", LOG_CCALDERAPP, LOG_ERROR);
    const std::string text(3000, 'x');
    const char* const none = nullptr;
    kPort.Comment("%s|%d|0x%X|%03d%08d|%c|%d|%s", text, -1, -1, 159, 1193046, 'c', uint64_t{0x100000002}, none);
    const std::string lines = capture.Text();
    const std::string time = "99/99/99 99:99:99\t";
    const size_t second = lines.find("ends itself") + 14;
    ASSERT_LT(second, lines.size());
    EXPECT_EQ(Digitless(lines.substr(0, second)), time + "CCalderApp\tError\tends itself\n\r\n");
    EXPECT_EQ(Digitless(lines.substr(second, 18)), time);
    EXPECT_EQ(lines.substr(second + 18), "CPort\tComment\t" + text + "|-1|0xFFFFFFFF|15901193046|c|2|(null)\r\n");

    ASSERT_EQ(capture.Files().size(), 1u);
    EXPECT_EQ(Digitless(capture.Files().front()), "9999_99_99_99_99_.log");
    const SYSTEMTIME opened{2009, 7, 5, 3, 14, 5, 59, 0};
    EXPECT_EQ(MakeLogFileName(opened), "2009_07_03_14_05_.log");
}

TEST(Log, TextOfOthersForgesNoLineAndSteersNoTerminal)
{
    const std::tuple<const char*, std::string, const char*> cases[] = {
        {"1252", "\t\r\n\x1B\x7F|\xC9\xA0|\xC2\x9B\x80\n", "\\x09\\x0D\\x0A\\x1B\\x7F|\xC9\xA0|\xC2\\x9B\\x80\\x0A"},
        {"65001", "\xC3\x89\xE2\x82\xAC\xF0\x9F\x98\x80|\xC2\x9B\xE2\x80\xAE\xEF\xBB\xBF|\x9B\xC3\n",
         "\xC3\x89\xE2\x82\xAC\xF0\x9F\x98\x80|\\xC2\\x9B\\xE2\\x80\\xAE\\xEF\\xBB\\xBF|\\x9B\\xC3\\x0A"},
        {"932", "\x83\x41\n", "\x83\x41\\x0A"},
    };
    for (const auto& [codePage, text, shown] : cases) {
        LogCapture capture(0xFFFFF);
        platform_test::NameAnsiCodePage(codePage);
        CLogSource{LOG_CPORT}.Comment("%s", text);
        EXPECT_EQ(capture.TakeLines(), Lines{std::string("CPort Comment ") + shown});
    }
    platform_test::NameAnsiCodePage("1252");
}

TEST(Log, AChangeOfTheRegistryTakesEffectAtTheNextLine)
{
    LogCapture capture(0);
    kPort.Error("off");
    EXPECT_TRUE(capture.Files().empty());
    capture.SetLevel(0x00000404); // the line does not pass, but its message opens the file
    kPort.Error("filtered");
    EXPECT_EQ(capture.Files().size(), 1u);
    capture.SetLevel(0x00000804);
    kPort.Error("on");
    capture.SetLevel(0);
    kPort.Error("off again");
    capture.SetLevel(0x00000806);
    kPort.Comment("on again");
    EXPECT_EQ(capture.TakeLines(), (Lines{"CPort Error on", "CPort Comment on again"}));
    EXPECT_EQ(capture.Files().size(), 1u);
}

TEST(Log, ALineCostsOneRegistryCallWhateverBecomesOfTheKey)
{
    LogCapture capture(0);
    EXPECT_EQ(CostOfALine(), Cost(1, 1));
    EXPECT_EQ(CostOfALine(), Cost(0, 1));
    capture.SetLevel(std::nullopt);
    EXPECT_EQ(CostOfALine(), Cost(0, 1));
    capture.RemoveKey();
    EXPECT_EQ(CostOfALine(), Cost(1, 1)); // finds the key deleted, and no other
    EXPECT_EQ(CostOfALine(), Cost(1, 0));
    EXPECT_TRUE(capture.Files().empty());
    capture.SetLevel(0xFFFFF);
    EXPECT_EQ(CostOfALine(), Cost(1, 1));
    EXPECT_EQ(CostOfALine(), Cost(0, 1));
    EXPECT_EQ(capture.TakeLines().size(), 2u);
    platform_test::FailCall("RegCloseKey", ERROR_SUCCESS, 0, 2); // the deleted key's, and the new one's
    CloseLog();
    EXPECT_EQ(platform_test::PendingFailures("RegCloseKey"), 0u);
}

TEST(Log, AFileThatCannotBeOpenedIsTriedAgainAtEachMessage)
{
    LogCapture capture(0xFFFFF);
    const std::filesystem::path away = capture.Folder() / "away";
    std::filesystem::create_directory(away);
    std::filesystem::current_path(away);
    std::filesystem::remove(away); // no file can be made in a folder that is gone
    kPort.Error("lost");
    std::filesystem::current_path(capture.Folder());
    kPort.Error("kept");
    EXPECT_EQ(capture.TakeLines(), (Lines{"CPort Error kept"}));
}

TEST(Log, TwoProcessesShareTheFileOfTheirMinute)
{
    constexpr int kLines = 300;
    LogCapture capture(0xFFFFF);
    const std::string first(100, 'a');
    const std::string second(100, 'b');
    const pid_t child = fork();
    for (int line = 0; line < kLines; ++line)
        kPort.Error("%s", child == 0 ? second : first);
    if (child == 0)
        _exit(0);
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(CountWholeLines(capture.Text()), 2u * kLines);
}

TEST(Log, LinesOfThreadsStayWholeWhileMasksChangeAndTheKeyIsMadeAnew)
{
    LogCapture capture(0xFFFFF);
    constexpr int kLines = 200;
    std::atomic<bool> over = false;
    std::thread changer([&] {
        while (!over) {
            capture.SetLevel(0x00000804);
            capture.SetLevel(0x00000806);
            platform_test::FailCall("RegQueryValueExA", ERROR_KEY_DELETED);
        }
    });
    std::vector<std::thread> writers;
    for (const char letter : {'a', 'b', 'c'}) {
        writers.emplace_back([=] {
            const std::string text(100, letter);
            for (int line = 0; line < kLines; ++line)
                kPort.Error("%s", text);
        });
    }
    for (std::thread& writer : writers)
        writer.join();
    over = true;
    changer.join();
    platform_test::ClearFailures();
    EXPECT_EQ(CountWholeLines(capture.Text()), 3u * kLines);
}
