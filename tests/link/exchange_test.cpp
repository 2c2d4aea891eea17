#include "link/exchange.h"

#include <cstring>
#include <tuple>

#include "link/exec_command.h"
#include "link/scripted_port.h"

namespace {

constexpr CLogSource Log{LOG_CPHONEBOOK};

constexpr ExchangeSpec kDelete{"Delete", 37, {16, "RES (", "rcRes.wStatus"}, "rcRes->dwResult"};
constexpr ExchangeSpec kRadio{"SetRadio", 8};

// Header with this status, record that begins with this result.
Bytes Reply(uint16_t status, uint32_t result, size_t length)
{
    Bytes reply(16);
    std::memcpy(&reply[6], &status, 2);
    std::memcpy(&reply[8], &result, 4);
    reply.resize(length);
    return reply;
}

} // namespace

TEST_F(ExchangeTest, TheFirstCheckThatFailsGivesTheLineAndTheCode)
{
    const std::string read = "readwrite Error ReadDevice - pInstance->m_pDeviceObject->GetPort()->Read returned false.";
    const std::string write =
        "readwrite Error WriteDevice - pInstance->m_pDeviceObject->GetPort()->Write returned false.";
    const std::string exec = "readwrite Error ExecCmd - ";
    const std::string failed = "CPhonebook Error Delete - ExecCmd failed with dwErrSts = ";
    const std::string tooLong = exec + "Returned data(8194) is longer than allocated buffer(8193)";
    const std::string tooShort = "CPhonebook Error Delete - dwRetBufferLen(15, 0xF) is less than RES (16, 0x10).";
    const std::tuple<ExchangeSpec, Answer, PHN_ERROR, Lines> cases[] = {
        {kDelete, {Reply(0, 0, 16)}, 0, {}},
        {kDelete, {{}, 121}, 104, {read, exec + "Reading from the device failed", failed + "121(0x79)."}},
        {kDelete, {{}, 5, 0, true}, 104, {write, exec + "Writing to the device failed", failed + "5(0x5)."}},
        {kDelete, {Bytes(8193), 0, 1}, 104, {tooLong, failed + "0(0x0)."}},
        {kDelete, {Reply(7, 1, 15)}, 104, {tooShort}},
        {kDelete, {Reply(7, 1, 16)}, 102, {"CPhonebook Error Delete - rcRes.wStatus = 7(0x7)."}},
        {kDelete, {Reply(0xFFFF, 0, 16)}, 104, {"CPhonebook Error Delete - rcRes.wStatus = 65535(0xFFFF)."}},
        {kDelete, {Reply(0, 139, 16)}, 1255, {"CPhonebook Error Delete - rcRes->dwResult = 139(0x8B)."}},
        {kRadio, {Reply(0, 139, 16)}, 0, {}}, // the record has no result
        {kRadio, {Reply(10, 0, 16)}, 203, {"CPhonebook Error SetRadio - rcRxHeader.wStatus = 10(0xA)."}},
        {kRadio, {{}}, 0, {}}, // no minimum: an empty reply is a header of zeros
    };
    for (const auto& [spec, answer, code, lines] : cases) {
        port_->answers = {answer};
        PHN_ERROR error = 0;
        EXPECT_EQ(CExchange(Log, spec).Run(Device(), {}, &error), code == 0);
        EXPECT_EQ(error, code);
        EXPECT_EQ(log_.TakeLines(), lines);
    }
}

TEST_F(ExchangeTest, SizesHandlesAndPortsAreCheckedInOrder)
{
    const HANDLE good = Device(), bad = INVALID_HANDLE_VALUE;
    Bytes buffer(50002);
    uint8_t* const some = buffer.data();
    // The line without the category, and without ExecCmd's own.
    const std::tuple<HANDLE, const void*, DWORD, void*, DWORD, std::string> cases[] = {
        {good, some, 8193, some, 50001, ""},
        {nullptr, some, 0, some, 1, ""}, // a zero handle reaches the port
        {bad, nullptr, 8194, nullptr, 0, "WriteDevice - One of the input pointer is NULL."},
        {bad, some, 8194, nullptr, 0, "WriteDevice - Buffer length exceeds maximum limit."},
        {bad, some, 1, nullptr, 0, "WriteDevice - Handle is NULL."},
        {good, some, 1, nullptr, 50002, "ReadDevice - One of the input pointer is NULL."},
        {good, some, 1, some, 0, "ReadDevice - One of the input pointer is NULL."},
        {good, some, 1, some, 50002, "ReadDevice - Buffer length exceeds maximum limit."},
    };
    DWORD length = 0;
    DWORD error = 77;
    for (const auto& [device, request, requestLength, reply, replySize, line] : cases) {
        port_->answers = {{}};
        EXPECT_EQ(ExecCmd(device, request, requestLength, reply, replySize, &length, &error, 3000, nullptr),
                  line.empty());
        EXPECT_EQ(error, 0u);
        const std::string tail =
            line.starts_with("Write") ? "Writing to the device failed" : "Reading from the device failed";
        EXPECT_EQ(log_.TakeLines(),
                  line.empty() ? Lines{} : (Lines{"readwrite Error " + line, "readwrite Error ExecCmd - " + tail}));
    }

    EXPECT_FALSE(ReadDevice(bad, some, 1, &length, 3000, &error, nullptr));
    EXPECT_EQ(log_.TakeLines(), Lines{"readwrite Error ReadDevice - Handle is NULL."});

    DropPort();
    EXPECT_FALSE(ReadDevice(good, some, 1, &length, 3000, &error, nullptr));
    EXPECT_FALSE(WriteDevice(good, some, 1, &error, nullptr));
    const std::string none =
        " - pInstance, pInstance->m_pDeviceObject or pInstance->m_pDeviceObject->GetPort() is NULL.";
    EXPECT_EQ(log_.TakeLines(), (Lines{"readwrite Error ReadDevice" + none, "readwrite Error WriteDevice" + none}));
}
