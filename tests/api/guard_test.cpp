// The guard that every export runs before its service: codes, log lines, their order, and exactly what is cleared.
#include <algorithm>
#include <array>
#include <cstring>
#include <tuple>

#include "api/export_table.h"
#include "api/handset_fixture.h"

namespace {

constexpr uint8_t kGuard = 0xAA;
constexpr size_t kMargin = 16;

std::string Comment(const std::string& text)
{
    return "CCalderApp Comment " + text;
}
std::string Error(const std::string& text)
{
    return "CCalderApp Error " + text;
}

// A host's memory: guard bytes, the record of a row, guard bytes, and a data buffer between guard bytes.
class HostMemory
{
public:
    explicit HostMemory(const ExportRow& row) : row_(row)
    {
        record_.fill(kGuard);
        data_.fill(kGuard);
        Set(0, static_cast<uint32_t>(row.size));
        if (row.data != Data::None)
            SetData(data_.data() + kMargin, kDataSize);
    }

    void* Record() { return record_.data() + kMargin; }
    void SetSize(uint32_t size) { Set(0, size); }
    void SetData(uint8_t* data, uint32_t size)
    {
        std::memcpy(record_.data() + kMargin + 4, &data, sizeof data);
        Set(4 + sizeof data, size);
    }
    // Remembers what lies there as what is expected to lie there.
    void Remember() { expected_ = {record_, data_}; }
    void ExpectCleared()
    {
        auto& [record, data] = expected_;
        std::fill(record.begin() + kMargin + static_cast<long>(row_.clearedFrom),
                  record.begin() + kMargin + static_cast<long>(row_.size), uint8_t{0});
        if (row_.data == Data::Cleared)
            std::fill_n(data.begin() + kMargin, kDataSize, uint8_t{0});
    }
    void Check() const
    {
        EXPECT_EQ(record_, expected_.first) << row_.name;
        EXPECT_EQ(data_, expected_.second) << row_.name;
    }

private:
    static constexpr uint32_t kDataSize = 40;

    void Set(size_t offset, uint32_t value) { std::memcpy(record_.data() + kMargin + offset, &value, sizeof value); }

    const ExportRow& row_;
    std::array<uint8_t, 600> record_;
    std::array<uint8_t, 2 * kMargin + kDataSize> data_;
    std::pair<decltype(record_), decltype(data_)> expected_;
};

class GuardTest : public HandsetTest
{
protected:
    std::vector<ExportRow> Table() const
    {
        return ExportTable([this](const char* name) { return reinterpret_cast<void*>(Find<void()>(name)); });
    }

    // A correct call whose record is `extra` bytes larger than needed ends with this code and this line.
    void ExpectEnd(const ExportRow& row, uint32_t extra, PHN_ERROR code, const std::string& line)
    {
        HostMemory memory(row);
        memory.SetSize(static_cast<uint32_t>(row.size) + extra);
        memory.Remember();
        memory.ExpectCleared();
        EXPECT_EQ(row.call(memory.Record()), row.returnsCount ? 0 : code) << row.name;
        memory.Check();
        const std::string name = row.name;
        EXPECT_EQ(bench_.TakeLog(), (Lines{Comment(name + " is being executed."), Error(name + " - " + line)}));
    }

    // A call that fails its argument check writes nothing but its line.
    void ExpectRejected(const ExportRow& row, HostMemory& memory, bool null, PHN_ERROR code, const std::string& line)
    {
        memory.Remember();
        EXPECT_EQ(row.call(null ? nullptr : memory.Record()), code) << row.name;
        memory.Check();
        const std::string name = row.name;
        EXPECT_EQ(bench_.TakeLog(), (Lines{Comment(name + " is being executed."), Error(name + " - " + line)}));
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
    }
}

TEST_F(GuardTest, WithAHandsetThatIsNotStartedEveryCorrectCallAnswers107)
{
    bench_.Plug();
    Load();
    bench_.TakeLog();
    for (const ExportRow& row : Table())
        ExpectEnd(row, 0, PHN_ERROR_NO_SERVICE_OBJECT, std::string("pInstance->") + row.member + " is NULL.");
    EXPECT_EQ(bench_.Handset().Requests(), 0u);
}

TEST_F(GuardTest, AServiceThatFailsIsToldWithItsCode)
{
    StartService();
    bench_.Handset().AddFault("status=12");
    for (const ExportRow& row : Table()) {
        if (std::string_view(row.name) != "PHN_SetCallback") // asks the handset nothing
            ExpectEnd(row, 0, row.failure, row.failureLine);
    }
}

TEST_F(GuardTest, NullRecordsAndSmallSizesAreRejectedUntouched)
{
    Load();
    bench_.TakeLog();
    for (const ExportRow& row : Table()) {
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

// The order of the data check and the size check differs from export to export.
TEST_F(GuardTest, DataBuffersAreCheckedInEachExportsOwnOrder)
{
    Load();
    bench_.TakeLog();
    const std::tuple<std::string, const char*, bool> cases[] = {
        {"PHN_GetContact", "pRecord->pContactData is NULL or pRecord->uSizeofData is 0.", true},
        {"PHN_GetEvent", "pRecord->pCalendarData is NULL or pRecord->uSizeofData is 0.", false},
        {"PHN_SetEvent", "pRecord->pCalendarData is NULL or pRecord->uSizeofData is 0.", false},
        {"PHN_GetFirstMessage", "pMessage->pIS637Data is NULL or pMessage->uSizeofData is 0.", true},
        {"PHN_GetNextMessage", "pMessage->pIS637Data is NULL or pMessage->uSizeofData is 0.", true},
    };
    const std::vector<ExportRow> table = Table();
    for (const auto& [name, line, beforeSize] : cases) {
        const ExportRow& row = *std::ranges::find(table, name, &ExportRow::name);
        uint8_t byte = kGuard;
        for (const bool nullData : {true, false}) {
            HostMemory memory(row);
            memory.SetData(nullData ? nullptr : &byte, nullData ? 1 : 0);
            ExpectRejected(row, memory, false, PHN_ERROR_INVALID_PARAMETER, line);
            memory.SetSize(0);
            if (beforeSize)
                ExpectRejected(row, memory, false, PHN_ERROR_INVALID_PARAMETER, line);
            else
                ExpectRejected(row, memory, false, PHN_ERROR_BUFFER_TOO_SMALL, SizeLine(row, 0));
        }
        EXPECT_EQ(byte, kGuard);
    }
}

void PHN_CALL Ignore(uint32_t) {}

TEST_F(GuardTest, ArgumentChecksGiveTheirCodesAndLines)
{
    Load();
    bench_.TakeLog();
    PHN_ACTIVATION_DATA manual{};
    manual.uSize = sizeof manual;
    PHN_SMS_MESSAGE message{};
    PHN_CALL_ENTRY entry{};
    const std::tuple<std::string, uint32_t, uint32_t, std::string> cases[] = {
        {"PHN_Activate", CALL(PHN_Activate)(&manual), 200, "pActivationData->bAutomatic is false."},
        {"PHN_SetLock", CALL(PHN_SetLock)(1, nullptr), 1, "pExistingLockCode is NULL."},
        {"PHN_SetLock", CALL(PHN_SetLock)(1, "123"), 203, "Length of pExistingLockCode is not equal to 4."},
        {"PHN_SetLock", CALL(PHN_SetLock)(1, "12345"), 203, "Length of pExistingLockCode is not equal to 4."},
        {"PHN_SetLock", CALL(PHN_SetLock)(1, ""), 203, "Length of pExistingLockCode is not equal to 4."},
        {"PHN_ChangeLockCode", CALL(PHN_ChangeLockCode)(nullptr, "12"), 1,
         "pExistingLockCode or pNewLockCode is NULL."},
        {"PHN_ChangeLockCode", CALL(PHN_ChangeLockCode)("12", nullptr), 1,
         "pExistingLockCode or pNewLockCode is NULL."},
        {"PHN_ChangeLockCode", CALL(PHN_ChangeLockCode)("12", "1"), 203,
         "Length of pExistingLockCode is not equal to 4."},
        {"PHN_ChangeLockCode", CALL(PHN_ChangeLockCode)("1234", "12345"), 203,
         "Length of pNewLockCode is not equal to 4."},
        {"PHN_GetMessageCount", CALL(PHN_GetMessageCount)(-1), 0, "eType is out of range. eType = -1(0xFFFFFFFF)."},
        {"PHN_GetMessageCount", CALL(PHN_GetMessageCount)(5), 0, "eType is out of range. eType = 5(0x5)."},
        {"PHN_DeleteAllMessages", CALL(PHN_DeleteAllMessages)(-2), 1, "eType is out of range. eType = -2(0xFFFFFFFE)."},
        {"PHN_DeleteAllMessages", CALL(PHN_DeleteAllMessages)(5), 1, "eType is out of range. eType = 5(0x5)."},
        {"PHN_GetFirstMessage", CALL(PHN_GetFirstMessage)(5, &message), 1,
         "pMessage is NULL or eType is out of range. eType = 5(0x5)."},
        {"PHN_GetFirstMessage", CALL(PHN_GetFirstMessage)(-1, &message), 1,
         "pMessage is NULL or eType is out of range. eType = -1(0xFFFFFFFF)."},
        {"PHN_GetCallEntryCount", CALL(PHN_GetCallEntryCount)(4), 0, "eType is out of range. eType = 4(0x4)."},
        {"PHN_GetCallEntryCount", CALL(PHN_GetCallEntryCount)(-1), 0, "eType is out of range. eType = -1(0xFFFFFFFF)."},
        {"PHN_GetFirstCallEntry", CALL(PHN_GetFirstCallEntry)(4, &entry), 1,
         "pEntry is NULL or eType is out of range. eType = 4(0x4)."},
        {"PHN_ClearCallEntries", CALL(PHN_ClearCallEntries)(4), 1, "eType is out of range. eType = 4(0x4)."},
        {"PHN_ClearCallEntries", CALL(PHN_ClearCallEntries)(-1), 1, "eType is out of range. eType = -1(0xFFFFFFFF)."},
        {"PHN_SetCallback", CALL(PHN_SetCallback)(1, nullptr, 0), 1,
         "pCallbackFunction is NULL or eCallbackType is out of range. eCallbackType = 1(0x1)."},
        {"PHN_SetCallback", CALL(PHN_SetCallback)(17, Ignore, 1), 1,
         "pCallbackFunction is NULL or eCallbackType is out of range. eCallbackType = 17(0x11)."},
        {"PHN_SetCallback", CALL(PHN_SetCallback)(-1, Ignore, 0), 1,
         "pCallbackFunction is NULL or eCallbackType is out of range. eCallbackType = -1(0xFFFFFFFF)."},
    };
    Lines expected;
    for (const auto& [name, result, code, line] : cases) {
        EXPECT_EQ(result, code) << name << " - " << line;
        expected.push_back(Comment(name + " is being executed."));
        expected.push_back(Error(name + " - " + line));
    }
    EXPECT_EQ(bench_.TakeLog(), expected);
}

// The call list type 3 is in range but names no list: it is answered by the export itself, without a line.
TEST_F(GuardTest, TheListThatDoesNotExistIsAnsweredSilently)
{
    bench_.Plug();
    Load();
    bench_.TakeLog();
    EXPECT_EQ(CALL(PHN_GetCallEntryCount)(PHN_CALL_LIST_NONE), 0u);
    EXPECT_EQ(bench_.TakeLog(), Lines{Comment("PHN_GetCallEntryCount is being executed.")});
    EXPECT_EQ(CALL(PHN_ClearCallEntries)(PHN_CALL_LIST_NONE), PHN_ERROR_NO_SERVICE_OBJECT);
    ASSERT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
    bench_.TakeLog();
    PHN_CALL_ENTRY entry{};
    entry.uSize = sizeof entry;
    entry.uEntry8 = 1;
    EXPECT_EQ(CALL(PHN_ClearCallEntries)(PHN_CALL_LIST_NONE), PHN_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(CALL(PHN_GetFirstCallEntry)(PHN_CALL_LIST_NONE, &entry), PHN_ERROR_NO_MORE_ENTRIES);
    EXPECT_EQ(+entry.uEntry8, 0u);
    EXPECT_EQ(bench_.TakeLog(), (Lines{Comment("PHN_ClearCallEntries is being executed."),
                                       Comment("PHN_GetFirstCallEntry is being executed.")}));
}

TEST_F(GuardTest, UnimplementedExportsAnswer103AndLogNothing)
{
    bench_.Plug();
    Load();
    bench_.TakeLog();
    using AnyArguments = PHN_ERROR PHN_CALL(uint32_t, const void*, uint32_t);
    for (const char* name :
         {"PHN_CheckForUpgrade", "PHN_GetLocationInfo", "PHN_GetMassStorageMode", "PHN_GetNDISMode", "PHN_PlayRingerID",
          "PHN_SetCallbackExtended", "PHN_SetFieldTest", "PHN_SetLocationMode", "PHN_SetMassStorageMode",
          "PHN_SetNDISMode", "PHN_SetPower", "PHN_SetPowerState", "PHN_Upgrade"})
        EXPECT_EQ(Find<AnyArguments>(name)(7, nullptr, 9), PHN_ERROR_NOT_SUPPORTED) << name;
    EXPECT_EQ(bench_.TakeLog(), Lines{});
}

} // namespace
