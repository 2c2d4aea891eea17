// The status and setup services through their exports, against a simulated handset: values, request bytes, refusals.
#include <cstring>
#include <limits>
#include <tuple>

#include "api/handset_fixture.h"
#include "wire/record_bytes.h"

namespace {

constexpr uint32_t kServiceLines = 0xFF | 0x100 | 0x10000 | 0x40000; // exports, connectionstatus, setupinformation

class ServiceTest : public HandsetTest
{
protected:
    ServiceTest() { bench_.SetLoggingLevel(kServiceLines); }

    // A record of a host, filled with what must not stay.
    template <typename Record>
    static Record Filled()
    {
        Record record;
        std::memset(&record, 0xAA, sizeof record);
        record.uSize = sizeof record;
        return record;
    }

    PHN_NETWORK_INFO ReadNetwork()
    {
        auto info = Filled<PHN_NETWORK_INFO>();
        EXPECT_EQ(CALL(PHN_GetNetworkInfo)(&info), PHN_ERROR_NONE);
        return info;
    }
};

TEST_F(ServiceTest, BatteryAndNetworkValuesArriveConverted)
{
    StartService();
    bench_.Handset().SetBattery({0x81, 0xFF});
    auto battery = Filled<PHN_BATTERY_INFO>();
    EXPECT_EQ(CALL(PHN_GetBatteryInfo)(&battery), PHN_ERROR_NONE);
    const PHN_BATTERY_INFO expectedBattery{12, 0x81, 0xFF};
    EXPECT_EQ(std::memcmp(&battery, &expectedBattery, sizeof battery), 0);

    bench_.Handset().SetNetwork({0x80000001, 0x82, 0x83, 0x8004, 0x8005, 0x8006, 0x8007, 0x8008, 0x8009, 0x800A, 0x800B,
                                 -85, "Simulated", std::numeric_limits<int32_t>::min(), 0x8000000C});
    const PHN_NETWORK_INFO network = ReadNetwork();
    const PHN_NETWORK_INFO expected{80,        0x80000001, 0x82,   0x83,        0x8004,
                                    0x8005,    0x8006,     0x8007, 0x8008,      0x8009,
                                    0x800A,    0x800B,     85,     "Simulated", std::numeric_limits<int32_t>::min(),
                                    0x8000000C};
    EXPECT_EQ(std::memcmp(&network, &expected, sizeof network), 0);
}

TEST_F(ServiceTest, NetworkTextWithoutTerminatorIsEndedInItsField)
{
    StartService();
    simulator::Network network{};
    network.network26 = std::string(34, 'x');
    network.network60 = 0x79797979; // what follows the text must not be copied with it
    bench_.Handset().SetNetwork(network);
    const PHN_NETWORK_INFO info = ReadNetwork();
    EXPECT_EQ(std::string(info.szNetwork26, sizeof info.szNetwork26), std::string(33, 'x') + '\0');
    EXPECT_EQ(+info.nNetwork60, 0x79797979);
}

TEST_F(ServiceTest, EndReasonsBecomeNetworkErrors)
{
    StartService();
    const std::tuple<uint8_t, uint32_t> cases[] = {{0, 0},     {1, 1000},  {2, 1001}, {32, 1031}, {33, 3000},
                                                   {34, 3001}, {49, 3016}, {50, 0},   {255, 0}};
    for (const auto& [reason, error] : cases) {
        bench_.Handset().SetConnection({0x80000001, 0x80000002, 0x80000003, 0x80000004, 0x85, reason, 0x87});
        auto info = Filled<PHN_CONNECTION_INFO>();
        EXPECT_EQ(CALL(PHN_GetConnectionInfo)(&info), PHN_ERROR_NONE);
        const PHN_CONNECTION_INFO expected{32, 0x80000001, 0x80000002, 0x80000003, 0x80000004, 0x85, error, 0x87};
        EXPECT_EQ(std::memcmp(&info, &expected, sizeof info), 0) << int{reason};
    }
}

TEST_F(ServiceTest, IdentityIsFilledIntoAClearedRecord)
{
    StartService();
    bench_.Handset().Change(0, [](simulator::Phone& phone) {
        phone.identity.number = "5551234560";
        phone.identity.esn = 0x9F123456;
        phone.identity.model = "Sim 1";
        phone.identity.info212 = 0xC0FFEE;
        phone.identity.info251 = 0xFB;
    });
    struct
    {
        PHN_DEVICE_INFO info = Filled<PHN_DEVICE_INFO>();
        uint8_t beyond[4] = {1, 2, 3, 4};
    } host;
    host.info.uSize = sizeof host;
    EXPECT_EQ(CALL(PHN_GetDeviceInfo)(&host.info), PHN_ERROR_NONE);
    EXPECT_EQ(+host.info.uSize, 548u);
    EXPECT_STREQ(host.info.szNumber, "5551234560");
    EXPECT_STREQ(host.info.szESN, "15901193046");
    EXPECT_STREQ(host.info.szModel, "Sim 1");
    EXPECT_STREQ(host.info.szInfo212, "C0FFEE");
    EXPECT_EQ(+host.info.uInfo251, 0xFBu);
    EXPECT_EQ(Bytes(host.info.abyReserved468, host.info.abyReserved468 + 64), Bytes(64));
    EXPECT_EQ(Bytes(host.beyond, host.beyond + 4), (Bytes{1, 2, 3, 4}));
}

TEST_F(ServiceTest, RequestsCarryWhatTheHandsetExpects)
{
    StartService();
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
    auto read = Filled<PHN_PARAMETERS>();
    EXPECT_EQ(CALL(PHN_GetParameters)(&read), PHN_ERROR_NONE);
    const PHN_PARAMETERS expected{14, 0x7E, 0x7D, 0x8001};
    EXPECT_EQ(std::memcmp(&read, &expected, sizeof read), 0);
}

TEST_F(ServiceTest, ActivationStartsAndSaysSo)
{
    StartService();
    auto data = Filled<PHN_ACTIVATION_DATA>();
    data.uSize = 200;
    EXPECT_EQ(CALL(PHN_Activate)(&data), PHN_ERROR_ACTIVATION_STARTED);
    EXPECT_EQ(+data.uSize, 120u);
    EXPECT_EQ(Bytes(data.abyReserved8, data.abyReserved8 + 112), Bytes(112, 0xAA));
    Bytes request{45, 0, 0, 0, 1, 0, 0xAA, 0xAA, 0xAA, 0xAA, '*', 0, '4', 0, '8', 0, '0', 0, '1', 0, '5'};
    request.resize(218);
    EXPECT_EQ(bench_.Handset().LastRequest(45), request);
}

// One line of the service for each operation that is refused; the export's is the guard test's concern.
TEST_F(ServiceTest, RefusalsHaveTheirLines)
{
    StartService();
    bench_.SetLoggingLevel(kServiceLines & ~0x100u);
    auto connection = Filled<PHN_CONNECTION_INFO>();
    auto network = Filled<PHN_NETWORK_INFO>();
    auto battery = Filled<PHN_BATTERY_INFO>();
    auto device = Filled<PHN_DEVICE_INFO>();
    auto activation = Filled<PHN_ACTIVATION_DATA>();
    auto parameters = Filled<PHN_PARAMETERS>();
    bench_.Handset().AddFault("status=12");
    const std::pair<std::string, PHN_ERROR> cases[] = {
        {"connectionstatus GetConnectionInfo", CALL(PHN_GetConnectionInfo)(&connection)},
        {"connectionstatus GetNetworkInfo", CALL(PHN_GetNetworkInfo)(&network)},
        {"connectionstatus GetBatteryInfo", CALL(PHN_GetBatteryInfo)(&battery)},
        {"setupinformation GetDeviceInfo", CALL(PHN_GetDeviceInfo)(&device)},
        {"setupinformation SetRadio", CALL(PHN_SetRadioPower)(1)},
        {"setupinformation SetLock", CALL(PHN_SetLock)(1, "0000")},
        {"setupinformation ChangeLockCode", CALL(PHN_ChangeLockCode)("0000", "0000")},
        {"setupinformation GetParameters", CALL(PHN_GetParameters)(&parameters)},
        {"setupinformation SetParameters", CALL(PHN_SetParameters)(&parameters)},
        {"setupinformation Activate", CALL(PHN_Activate)(&activation)},
    };
    Lines expected;
    for (const auto& [name, error] : cases) {
        EXPECT_EQ(error, PHN_ERROR_STATUS_12) << name;
        const std::string category = name.substr(0, name.find(' '));
        const std::string method = name.substr(name.find(' ') + 1);
        expected.push_back(category + " Comment " + method + " being executed.");
        expected.push_back(category + " Error " + method + " - rcRxHeader.wStatus = 12(0xC).");
    }
    EXPECT_EQ(bench_.TakeLog(), expected);
}

// A reply's length counts the 13 bytes that follow its payload.
TEST_F(ServiceTest, RepliesShorterThanTheirRecordFail)
{
    StartService();
    const auto expectNetwork = [&](const char* fault, PHN_ERROR code) {
        bench_.Handset().AddFault(fault);
        auto info = Filled<PHN_NETWORK_INFO>();
        bench_.TakeLog();
        EXPECT_EQ(CALL(PHN_GetNetworkInfo)(&info), code) << fault;
    };
    expectNetwork("payload=63@4*1", PHN_ERROR_NONE);
    expectNetwork("payload=62@4*1", PHN_ERROR_FAILED);
    EXPECT_EQ(bench_.TakeLog().at(2), "connectionstatus Error GetNetworkInfo - dwRetBufferLen(75, 0x4B) is less than "
                                      "DEV_RX_HEADER + NETWORK_INFO(76, 0x4C).");

    auto info = Filled<PHN_CONNECTION_INFO>();
    bench_.Handset().AddFault("payload=14@3*1");
    EXPECT_EQ(CALL(PHN_GetConnectionInfo)(&info), PHN_ERROR_NONE);
    bench_.Handset().AddFault("payload=13@3*1");
    EXPECT_EQ(CALL(PHN_GetConnectionInfo)(&info), PHN_ERROR_FAILED);
}

TEST_F(ServiceTest, OneFailedExchangeLeavesOneLinePerLayerInOrder)
{
    constexpr uint32_t kDeviceLines = 0x400; // other threads write those
    bench_.SetLoggingLevel(TestBench::kAllLines & ~kDeviceLines);
    StartService();
    bench_.Handset().AddFault("command=76@5*1");
    auto battery = Filled<PHN_BATTERY_INFO>();
    EXPECT_EQ(CALL(PHN_GetBatteryInfo)(&battery), PHN_ERROR_FAILED);
    EXPECT_EQ(bench_.TakeLog(),
              (Lines{"CCalderApp Comment PHN_GetBatteryInfo is being executed.",
                     "connectionstatus Comment GetBatteryInfo being executed.",
                     "CPort Error DP::DecomposeData - Sent command(75) is not equal to returned command(76)",
                     "readwrite Error ReadDevice - pInstance->m_pDeviceObject->GetPort()->Read returned false.",
                     "readwrite Error ExecCmd - Reading from the device failed",
                     "connectionstatus Error GetBatteryInfo - ExecCmd failed with dwErrSts = 0(0x0).",
                     "CCalderApp Error PHN_GetBatteryInfo - pInstance->m_pConnectionStatusObject->GetBatteryInfo "
                     "returned false with weError = 104(0x68)."}));
}

TEST_F(ServiceTest, NetworkErrorsHaveTheirTexts)
{
    StartService();
    const std::tuple<int32_t, PHN_ERROR, const char*> cases[] = {
        {1025, 0, "PHN_NETWORK_ERROR_1X_FADE, Fade"},
        {3016, 0, "PHN_NETWORK_ERROR_EVDO_GPS_FIX\tEVDO call, ended in favor of GPS fix"},
        {-1, 1, ""},
        {0, 1, ""},
        {1032, 1, ""},
    };
    char buffer[128];
    Lines lines;
    for (const auto& [code, result, text] : cases) {
        std::memset(buffer, 'x', sizeof buffer);
        EXPECT_EQ(CALL(PHN_GetNetworkErrorString)(code, buffer, sizeof buffer), result) << code;
        EXPECT_STREQ(buffer, text);
        EXPECT_EQ(std::string(buffer, sizeof buffer).find('x', std::strlen(text)), std::string::npos) << code;
        lines.push_back("CCalderApp Comment PHN_GetNetworkErrorString is being executed.");
    }
    EXPECT_EQ(bench_.TakeLog(), lines);
}

TEST_F(ServiceTest, NetworkErrorTextsNeedRoomForTheirTerminator)
{
    StartService();
    char buffer[33] = {};
    EXPECT_EQ(CALL(PHN_GetNetworkErrorString)(1025, buffer, 32), PHN_ERROR_NONE);
    std::memset(buffer, 'x', sizeof buffer);
    bench_.TakeLog();
    EXPECT_EQ(CALL(PHN_GetNetworkErrorString)(1025, buffer, 31), PHN_ERROR_BUFFER_TOO_SMALL);
    EXPECT_EQ(std::string(buffer, sizeof buffer), std::string(31, '\0') + "xx");
    EXPECT_EQ(CALL(PHN_GetNetworkErrorString)(1025, nullptr, 31), PHN_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(CALL(PHN_GetNetworkErrorString)(1025, buffer, 0), PHN_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(CALL(PHN_GetNetworkErrorString)(1025, buffer, -1), PHN_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(CALL(PHN_Shutdown)(), PHN_ERROR_NONE);
    EXPECT_EQ(CALL(PHN_GetNetworkErrorString)(1025, buffer, 33), PHN_ERROR_NO_SERVICE_OBJECT);
    EXPECT_EQ(std::string(buffer, sizeof buffer), std::string(33, '\0'));

    const std::string entry = "CCalderApp Comment PHN_GetNetworkErrorString is being executed.";
    const std::string error = "CCalderApp Error PHN_GetNetworkErrorString - ";
    const std::string empty = error + "pBufferm is NULL or nBufferSize is less than or equal to 0.";
    EXPECT_EQ(bench_.TakeLog(),
              (Lines{entry,
                     error + "nBufferSize (31, 0x1F) is less than the length of the target string "
                             "[PHN_NETWORK_ERROR_1X_FADE, Fade].",
                     entry, empty, entry, empty, entry, empty, "CCalderApp Comment PHN_Shutdown is being executed.",
                     entry, error + "pInstance->m_pSetupObject is NULL."}));
}

} // namespace
