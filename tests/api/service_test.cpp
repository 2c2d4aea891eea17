// The status and setup services through their exports, against a simulated handset: values, request bytes, refusals.
#include <limits>
#include <tuple>

#include "api/handset_fixture.h"
#include "wire/record_bytes.h"

namespace {

class ServiceTest : public HandsetTest
{
protected:
    ServiceTest()
    {
        bench_.SetLoggingLevel(0xFF | 0x100 | 0x10000 | 0x40000); // exports, connectionstatus, setupinformation
        StartService();
    }

    // A record of a host, filled with what must not stay.
    template <typename Record>
    static Record Filled()
    {
        Record record;
        std::memset(&record, 0xAA, sizeof record);
        record.uSize = sizeof record;
        return record;
    }

    // Such a record holds this when it was read.
    template <typename Get, typename Record>
    static void ExpectRead(Get& get, const Record& expected)
    {
        auto record = Filled<Record>();
        EXPECT_EQ(get(&record), PHN_ERROR_NONE);
        EXPECT_EQ(std::memcmp(&record, &expected, sizeof record), 0) << testing::PrintToString(record);
    }

    template <typename Get, typename Record>
    void ExpectCode(const char* fault, Get& get, Record record, PHN_ERROR code)
    {
        bench_.Handset().AddFault(fault);
        bench_.TakeLog();
        EXPECT_EQ(get(&record), code) << fault;
    }
};

TEST_F(ServiceTest, ValuesArriveConverted)
{
    bench_.Handset().SetBattery({0x81, 0xFF});
    ExpectRead(CALL(PHN_GetBatteryInfo), PHN_BATTERY_INFO{12, 0x81, 0xFF});
    constexpr int32_t kLowest = std::numeric_limits<int32_t>::min();
    simulator::Network network{0x80000001, 0x82,   0x83,   0x8004, 0x8005,      0x8006,  0x8007,    0x8008,
                               0x8009,     0x800A, 0x800B, -85,    "Simulated", kLowest, 0x8000000C};
    PHN_NETWORK_INFO expected{80,     0x80000001, 0x82,   0x83,   0x8004, 0x8005,      0x8006,  0x8007,
                              0x8008, 0x8009,     0x800A, 0x800B, 85,     "Simulated", kLowest, 0x8000000C};
    bench_.Handset().SetNetwork(network);
    ExpectRead(CALL(PHN_GetNetworkInfo), expected);
    // A text without a terminator is ended in its field; what follows it must not be copied with it.
    network.network26 = std::string(34, 'x');
    network.network60 = 0x79797979;
    bench_.Handset().SetNetwork(network);
    std::memset(expected.szNetwork26, 'x', 33);
    expected.nNetwork60 = 0x79797979;
    ExpectRead(CALL(PHN_GetNetworkInfo), expected);

    const std::tuple<uint8_t, uint32_t> reasons[] = {{0, 0}, {1, 1000}, {32, 1031}, {33, 3000}, {49, 3016}, {50, 0}};
    for (const auto& [reason, error] : reasons) {
        bench_.Handset().SetConnection({0x80000001, 0x80000002, 0x80000003, 0x80000004, 0x85, reason, 0x87});
        ExpectRead(CALL(PHN_GetConnectionInfo),
                   PHN_CONNECTION_INFO{32, 0x80000001, 0x80000002, 0x80000003, 0x80000004, 0x85, error, 0x87});
    }
}

TEST_F(ServiceTest, IdentityIsFilledIntoAClearedRecord)
{
    bench_.Handset().Change(0, [](simulator::Phone& phone) { phone.identity.model = "Sim 1"; });
    struct
    {
        PHN_DEVICE_INFO info = Filled<PHN_DEVICE_INFO>();
        uint8_t beyond[4] = {1, 2, 3, 4};
    } host;
    host.info.uSize = sizeof host;
    EXPECT_EQ(CALL(PHN_GetDeviceInfo)(&host.info), PHN_ERROR_NONE);
    EXPECT_EQ(+host.info.uSize, 548u);
    EXPECT_STREQ(host.info.szModel, "Sim 1");
    EXPECT_EQ(Bytes(host.info.abyReserved468, host.info.abyReserved468 + 64), Bytes(64));
    EXPECT_EQ(Bytes(host.beyond, host.beyond + 4), (Bytes{1, 2, 3, 4}));
}

TEST_F(ServiceTest, RequestsCarryWhatTheHandsetExpects)
{
    EXPECT_EQ(CALL(PHN_SetRadioPower)(0xFFFFFF00), PHN_ERROR_NONE);
    EXPECT_EQ(bench_.Handset().LastRequest(8), (Bytes{8, 0, 0, 0, 1, 0, 0}));
    EXPECT_EQ(CALL(PHN_SetLock)(0x101, "0000"), PHN_ERROR_NONE);
    EXPECT_EQ(bench_.Handset().LastRequest(9), (Bytes{9, 0, 0, 0, 1, 0, 1, '0', '0', '0', '0'}));
    EXPECT_EQ(CALL(PHN_ChangeLockCode)("0000", "\x7E}~ "), PHN_ERROR_NONE);
    EXPECT_EQ(bench_.Handset().LastRequest(10), (Bytes{10, 0, 0, 0, 1, 0, '0', '0', '0', '0', '~', '}', '~', ' '}));
    EXPECT_EQ(CALL(PHN_SetLock)(0, "0000"), PHN_ERROR_INVALID_LOCK_CODE);

    PHN_PARAMETERS written{0x111, 0x17E, 0x17D, 0x8001};
    EXPECT_EQ(CALL(PHN_SetParameters)(&written), PHN_ERROR_NONE);
    EXPECT_EQ(+written.uSize, 0x111u);
    EXPECT_EQ(bench_.Handset().LastRequest(13), (Bytes{13, 0, 0, 0, 1, 0, 0x7E, 0x7D, 0x01, 0x80}));
    ExpectRead(CALL(PHN_GetParameters), PHN_PARAMETERS{14, 0x7E, 0x7D, 0x8001});

    auto data = Filled<PHN_ACTIVATION_DATA>();
    data.uSize = 200;
    EXPECT_EQ(CALL(PHN_Activate)(&data), PHN_ERROR_ACTIVATION_STARTED);
    EXPECT_EQ(+data.uSize, 120u);
    EXPECT_EQ(Bytes(data.abyReserved8, data.abyReserved8 + 112), Bytes(112, 0xAA));
    Bytes request{45, 0, 0, 0, 1, 0, 0xAA, 0xAA, 0xAA, 0xAA, '*', 0, '4', 0, '8', 0, '0', 0, '1', 0, '5'};
    request.resize(218);
    EXPECT_EQ(bench_.Handset().LastRequest(45), request);
}

// A reply's length counts the 13 bytes that follow its payload.
TEST_F(ServiceTest, RepliesShorterThanTheirRecordFail)
{
    ExpectCode("payload=63@4*1", CALL(PHN_GetNetworkInfo), Filled<PHN_NETWORK_INFO>(), PHN_ERROR_NONE);
    ExpectCode("payload=62@4*1", CALL(PHN_GetNetworkInfo), Filled<PHN_NETWORK_INFO>(), PHN_ERROR_FAILED);
    EXPECT_EQ(bench_.TakeLog().at(2), "connectionstatus Error GetNetworkInfo - dwRetBufferLen(75, 0x4B) is less than "
                                      "DEV_RX_HEADER + NETWORK_INFO(76, 0x4C).");
    ExpectCode("payload=14@3*1", CALL(PHN_GetConnectionInfo), Filled<PHN_CONNECTION_INFO>(), PHN_ERROR_NONE);
    ExpectCode("payload=13@3*1", CALL(PHN_GetConnectionInfo), Filled<PHN_CONNECTION_INFO>(), PHN_ERROR_FAILED);
}

TEST_F(ServiceTest, NetworkErrorsHaveTheirTextsWhereThereIsRoom)
{
    const std::string empty = "pBufferm is NULL or nBufferSize is less than or equal to 0.";
    const std::string fade = "PHN_NETWORK_ERROR_1X_FADE, Fade";
    const std::tuple<int32_t, int32_t, PHN_ERROR, std::string, std::string> cases[] = {
        {1025, 32, PHN_ERROR_NONE, fade, ""},
        {3016, 128, PHN_ERROR_NONE, "PHN_NETWORK_ERROR_EVDO_GPS_FIX\tEVDO call, ended in favor of GPS fix", ""},
        {-1, 128, PHN_ERROR_INVALID_PARAMETER, "", ""},
        {1032, 128, PHN_ERROR_INVALID_PARAMETER, "", ""},
        {1025, 31, PHN_ERROR_BUFFER_TOO_SMALL, "",
         "nBufferSize (31, 0x1F) is less than the length of the target string [" + fade + "]."},
        {1025, 0, PHN_ERROR_INVALID_PARAMETER, "", empty},
        {1025, -1, PHN_ERROR_INVALID_PARAMETER, "", empty},
    };
    const std::string entry = "CCalderApp Comment PHN_GetNetworkErrorString is being executed.";
    const std::string error = "CCalderApp Error PHN_GetNetworkErrorString - ";
    const auto expect = [&](int32_t code, char* buffer, int32_t size, PHN_ERROR result, const std::string& line) {
        EXPECT_EQ(CALL(PHN_GetNetworkErrorString)(code, buffer, size), result) << code << ' ' << size;
        EXPECT_EQ(bench_.TakeLog(), line.empty() ? Lines{entry} : (Lines{entry, error + line}));
    };
    for (const auto& [code, size, result, text, line] : cases) {
        std::string buffer(130, 'x'), expected = text;
        expected.resize(static_cast<size_t>(std::max(size, 0)));
        expected.resize(130, 'x');
        expect(code, buffer.data(), size, result, line);
        EXPECT_EQ(buffer, expected) << code << ' ' << size;
    }
    expect(1025, nullptr, 31, PHN_ERROR_INVALID_PARAMETER, empty);
    EXPECT_EQ(CALL(PHN_Shutdown)(), PHN_ERROR_NONE);
    bench_.TakeLog();
    char buffer[4] = "xxx";
    expect(1025, buffer, sizeof buffer, PHN_ERROR_NO_SERVICE_OBJECT, "pInstance->m_pSetupObject is NULL.");
    EXPECT_EQ(std::string(buffer, sizeof buffer), std::string(4, '\0'));
}

} // namespace
