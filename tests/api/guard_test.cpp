// The guard that every export runs before its service: codes, log lines, their order, and exactly what is cleared.
#include <algorithm>
#include <iterator>
#include <tuple>

#include "api/export_table.h"
#include "api/handset_fixture.h"

namespace {

constexpr uint8_t kGuard = 0xAA;
constexpr size_t kMargin = 16;

// What an export logs that fails.
Lines Logged(const std::string& name, const std::string& line)
{
    return {"CCalderApp Comment " + name + " is being executed.", "CCalderApp Error " + name + " - " + line};
}

// A host's memory: guard bytes, the record of a row, guard bytes, and a data buffer between guard bytes.
class HostMemory
{
public:
    explicit HostMemory(const ExportRow& row, size_t extra = 0) : row_(row)
    {
        Set(0, static_cast<uint32_t>(row.size + extra));
        if (row.data != Data::None)
            SetData(data_.data() + kMargin, kDataSize);
    }

    void SetSize(uint32_t size) { Set(0, size); }
    void SetData(uint8_t* data, uint32_t size)
    {
        std::memcpy(record_.data() + kMargin + 4, &data, sizeof data);
        Set(4 + sizeof data, size);
    }
    // The call of the row gives this code, and changes nothing but what it clears, if it comes to that.
    void ExpectCall(PHN_ERROR code, bool clears, bool isNull = false)
    {
        auto [record, data] = std::pair(record_, data_);
        if (clears)
            std::fill_n(record.begin() + kMargin + static_cast<long>(row_.clearedFrom), row_.size - row_.clearedFrom,
                        0);
        if (clears && row_.data == Data::Cleared)
            std::fill_n(data.begin() + kMargin, kDataSize, 0);
        EXPECT_EQ(row_.call(isNull ? nullptr : record_.data() + kMargin), row_.returnsCount ? 0 : code) << row_.name;
        EXPECT_EQ(record_, record) << row_.name;
        EXPECT_EQ(data_, data) << row_.name;
    }

private:
    static constexpr uint32_t kDataSize = 40;

    void Set(size_t offset, uint32_t value) { std::memcpy(record_.data() + kMargin + offset, &value, sizeof value); }

    const ExportRow& row_;
    std::vector<uint8_t> record_ = std::vector<uint8_t>(600, kGuard);
    std::vector<uint8_t> data_ = std::vector<uint8_t>(2 * kMargin + kDataSize, kGuard);
};

class GuardTest : public HandsetTest
{
protected:
    std::vector<ExportRow> Table() const
    {
        return ExportTable([this](const char* name) { return FindAddress(name); });
    }

    // A correct call whose record is `extra` bytes larger than needed ends with this code and this line.
    void ExpectEnd(const ExportRow& row, size_t extra, PHN_ERROR code, const std::string& line)
    {
        HostMemory(row, extra).ExpectCall(code, true);
        EXPECT_EQ(bench_.TakeLog(), Logged(row.name, line));
    }

    // A call that fails its argument check writes nothing but its line.
    void ExpectRejected(const ExportRow& row, HostMemory& memory, bool isNull, PHN_ERROR code, const std::string& line)
    {
        memory.ExpectCall(code, false, isNull);
        EXPECT_EQ(bench_.TakeLog(), Logged(row.name, line));
    }
};

std::string SizeLine(const ExportRow& row, uint32_t size)
{
    char line[200];
    std::snprintf(line, sizeof line, "%s->uSize (%u, 0x%X) is less than %s (%u, 0x%X).", row.argument, size, size,
                  row.recordName, static_cast<unsigned>(row.size), static_cast<unsigned>(row.size));
    return line;
}

TEST_F(GuardTest, WithoutAHandsetEveryCorrectCallClearsItsOutputAndAnswers100)
{
    Load();
    bench_.TakeLog();
    const std::vector<ExportRow> table = Table();
    ASSERT_EQ(table.size(), 51u - 13u - 2u - 1u); // PHN_GetNetworkErrorString has a test of its own
    for (const ExportRow& row : table) {
        ExpectEnd(row, 0, PHN_ERROR_NO_DEVICE, "hDevice is NULL.");
        ExpectEnd(row, 24, PHN_ERROR_NO_DEVICE, "hDevice is NULL.");
        if (!row.argument)
            continue;
        HostMemory memory(row);
        ExpectRejected(row, memory, true, PHN_ERROR_INVALID_PARAMETER, row.nullLine);
        for (const uint32_t size : {static_cast<uint32_t>(row.size) - 1, 0u}) {
            memory.SetSize(size);
            ExpectRejected(row, memory, false, PHN_ERROR_BUFFER_TOO_SMALL, SizeLine(row, size));
        }
    }
}

TEST_F(GuardTest, WithAHandsetThatIsNotStartedEveryCorrectCallAnswers107)
{
    bench_.Plug();
    Load();
    bench_.TakeLog();
    for (const ExportRow& row : Table())
        ExpectEnd(row, 0, PHN_ERROR_NO_SERVICE_OBJECT, "pInstance->" + row.member + " is NULL.");
    EXPECT_EQ(bench_.Handset().Requests(), 0u);
}

TEST_F(GuardTest, WithAServiceEveryExportSucceeds)
{
    StartService();
    std::string output;
    for (const ExportRow& row : Table()) {
        EXPECT_EQ(CallExport(row, &output), row.success) << row.name;
        EXPECT_EQ(bench_.TakeLog(), Lines{"CCalderApp Comment " + row.name + " is being executed."});
    }
}

// The lines of the two services that have no fixture of their own stand between the export's.
TEST_F(GuardTest, AServiceThatFailsIsToldWithItsCode)
{
    StartService();
    bench_.SetLoggingLevel(TestBench::kExportLines | 0x10000 | 0x40000);
    bench_.Handset().AddFault("status=12");
    for (const ExportRow& row : Table()) {
        if (row.name == "PHN_SetCallback") // asks the handset nothing
            continue;
        HostMemory(row).ExpectCall(row.failure, true);
        Lines expected = Logged(row.name, row.failureLine);
        const bool isStatus = row.member == "m_pConnectionStatusObject";
        const std::string category = isStatus ? "connectionstatus " : "setupinformation ";
        if (isStatus || row.member == "m_pSetupObject")
            expected.insert(expected.begin() + 1,
                            {category + "Comment " + row.method + " being executed.",
                             category + "Error " + row.method + " - rcRxHeader.wStatus = 12(0xC)."});
        EXPECT_EQ(bench_.TakeLog(), expected);
    }
}

// The order of the data check and the size check differs from export to export.
TEST_F(GuardTest, DataBuffersAreCheckedInEachExportsOwnOrder)
{
    Load();
    bench_.TakeLog();
    const std::tuple<std::string, std::string, bool> cases[] = {
        {"PHN_GetContact", "pRecord->pContactData", true},    {"PHN_GetEvent", "pRecord->pCalendarData", false},
        {"PHN_SetEvent", "pRecord->pCalendarData", false},    {"PHN_GetFirstMessage", "pMessage->pIS637Data", true},
        {"PHN_GetNextMessage", "pMessage->pIS637Data", true},
    };
    const std::vector<ExportRow> table = Table();
    for (const auto& [name, data, beforeSize] : cases) {
        const ExportRow& row = *std::ranges::find(table, name, &ExportRow::name);
        const std::string line = data + " is NULL or " + data.substr(0, data.find('>') + 1) + "uSizeofData is 0.";
        uint8_t byte = kGuard;
        for (const bool nullData : {true, false}) {
            HostMemory memory(row);
            memory.SetData(nullData ? nullptr : &byte, nullData ? 1 : 0);
            ExpectRejected(row, memory, false, PHN_ERROR_INVALID_PARAMETER, line);
            memory.SetSize(0);
            ExpectRejected(row, memory, false, beforeSize ? PHN_ERROR_INVALID_PARAMETER : PHN_ERROR_BUFFER_TOO_SMALL,
                           beforeSize ? line : SizeLine(row, 0));
        }
        EXPECT_EQ(byte, kGuard);
    }
}

TEST_F(GuardTest, ArgumentChecksGiveTheirCodesAndLines)
{
    Load();
    bench_.TakeLog();
    PHN_ACTIVATION_DATA manual{};
    manual.uSize = sizeof manual;
    PHN_SMS_MESSAGE message{};
    PHN_CALL_ENTRY entry{};
    const std::string noFour = "Length of pExistingLockCode is not equal to 4.";
    const std::string noCodes = "pExistingLockCode or pNewLockCode is NULL.";
    const std::string box = "pMessage is NULL or eType is out of range. eType = ";
    const std::string type = "eType is out of range. eType = ";
    const std::string callback = "pCallbackFunction is NULL or eCallbackType is out of range. eCallbackType = ";
    const std::tuple<std::string, uint32_t, uint32_t, std::string> cases[] = {
        {"PHN_Activate", CALL(PHN_Activate)(&manual), 200, "pActivationData->bAutomatic is false."},
        {"PHN_SetLock", CALL(PHN_SetLock)(1, nullptr), 1, "pExistingLockCode is NULL."},
        {"PHN_SetLock", CALL(PHN_SetLock)(1, "123"), 203, noFour},
        {"PHN_SetLock", CALL(PHN_SetLock)(1, "12345"), 203, noFour},
        {"PHN_ChangeLockCode", CALL(PHN_ChangeLockCode)(nullptr, "12"), 1, noCodes},
        {"PHN_ChangeLockCode", CALL(PHN_ChangeLockCode)("12", nullptr), 1, noCodes},
        {"PHN_ChangeLockCode", CALL(PHN_ChangeLockCode)("12", "1"), 203, noFour},
        {"PHN_ChangeLockCode", CALL(PHN_ChangeLockCode)("1234", "1"), 203, "Length of pNewLockCode is not equal to 4."},
        {"PHN_GetMessageCount", CALL(PHN_GetMessageCount)(-1), 0, type + "-1(0xFFFFFFFF)."},
        {"PHN_DeleteAllMessages", CALL(PHN_DeleteAllMessages)(5), 1, type + "5(0x5)."},
        {"PHN_GetFirstMessage", CALL(PHN_GetFirstMessage)(5, &message), 1, box + "5(0x5)."},
        {"PHN_GetCallEntryCount", CALL(PHN_GetCallEntryCount)(4), 0, type + "4(0x4)."},
        {"PHN_ClearCallEntries", CALL(PHN_ClearCallEntries)(-1), 1, type + "-1(0xFFFFFFFF)."},
        {"PHN_GetFirstCallEntry", CALL(PHN_GetFirstCallEntry)(4, &entry), 1,
         "pEntry is NULL or eType is out of range. eType = 4(0x4)."},
        {"PHN_SetCallback", CALL(PHN_SetCallback)(1, nullptr, 0), 1, callback + "1(0x1)."},
        {"PHN_SetCallback", CALL(PHN_SetCallback)(16, Ignore, 1), PHN_ERROR_NO_DEVICE, "hDevice is NULL."},
        {"PHN_SetCallback", CALL(PHN_SetCallback)(17, Ignore, 1), 1, callback + "17(0x11)."},
        {"PHN_SetCallback", CALL(PHN_SetCallback)(-1, Ignore, 0), 1, callback + "-1(0xFFFFFFFF)."},
    };
    Lines expected;
    for (const auto& [name, result, code, line] : cases) {
        EXPECT_EQ(result, code) << name << " - " << line;
        std::ranges::copy(Logged(name, line), std::back_inserter(expected));
    }
    EXPECT_EQ(bench_.TakeLog(), expected);
}

// The call list type 3 is in range but names no list: it is answered by the export itself, without a line.
TEST_F(GuardTest, TheListThatDoesNotExistIsAnsweredSilently)
{
    bench_.Plug();
    Load();
    EXPECT_EQ(CALL(PHN_ClearCallEntries)(PHN_CALL_LIST_NONE), PHN_ERROR_NO_SERVICE_OBJECT);
    bench_.TakeLog();
    EXPECT_EQ(CALL(PHN_GetCallEntryCount)(PHN_CALL_LIST_NONE), 0u);
    ASSERT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
    PHN_CALL_ENTRY entry{};
    entry.uSize = sizeof entry;
    entry.uEntry8 = 1;
    EXPECT_EQ(CALL(PHN_ClearCallEntries)(PHN_CALL_LIST_NONE), PHN_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(CALL(PHN_GetFirstCallEntry)(PHN_CALL_LIST_NONE, &entry), PHN_ERROR_NO_MORE_ENTRIES);
    EXPECT_EQ(+entry.uEntry8, 0u);
    for (const std::string& line : bench_.TakeLog())
        EXPECT_TRUE(line.ends_with(" is being executed.")) << line;
}

TEST_F(GuardTest, UnimplementedExportsAnswer103AndLogNothing)
{
    bench_.Plug();
    Load();
    bench_.TakeLog();
    using AnyArguments = PHN_ERROR PHN_CALL(uint32_t, const void*, uint32_t);
    for (const char* name : kUnimplemented)
        EXPECT_EQ(Find<AnyArguments>(name)(7, nullptr, 9), PHN_ERROR_NOT_SUPPORTED) << name;
    EXPECT_EQ(bench_.TakeLog(), Lines{});
}

} // namespace
