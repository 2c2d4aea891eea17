// The PDU of a message with 160 characters, either way, besides the log lines that its conversion writes.
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "log/log.h"
#include "log/log_file.h"
#include "ratio.h"
#include "sms/bit_stream.h"
#include "sms/pdu_decoder.h"
#include "sms/pdu_encoder.h"

namespace {

SMS_MESSAGE Stored()
{
    SMS_MESSAGE message;
    message.rcRecord.rcTime = {.byHour = 12, .byMinute = 5, .wSecond = 3, .byDay = 15, .byMonth = 7, .wYear = 2009};
    message.rcRecord.szAddress.SetText("5551230000");
    message.rcRecord.szCallbackNumber.SetText("5550142730");
    message.strBody = std::u16string(160, u'x') + u'\0';
    message.rcRecord.dwBodySize = static_cast<uint32_t>(2 * message.strBody.size());
    return message;
}

std::vector<uint8_t> Outgoing()
{
    CBitWriter pdu;
    const auto put = [&](std::initializer_list<int> bytes) {
        for (const int byte : bytes)
            pdu.Put(static_cast<DWORD>(byte), 8);
    };
    put({0, 4, 7, 0x02, 0x95, 0x54, 0x55, 0x55, 0x55, 0x54}); // 5555555555
    put({8, 153, 1, 142});
    pdu.Put(2, 5);
    pdu.Put(160, 8);
    pdu.PutText(std::string(160, 'x'), 7);
    pdu.Align();
    put({8, 1, 0x40, 14, 4, 0x02, 0xA9, 0x51, 0x20});
    const auto bytes = pdu.GetBytes();
    return {bytes.begin(), bytes.end()};
}

void Encode(benchmark::State& state)
{
    const SMS_MESSAGE message = Stored();
    uint8_t buffer[400];
    PHN_SMS_MESSAGE host{};
    host.pIS637Data = buffer;
    PHN_ERROR error = PHN_ERROR_NONE;
    for (auto _ : state) {
        host.uSizeofData = sizeof buffer;
        if (!TextToIS637(&host, message, &error))
            return state.SkipWithError("the PDU does not fit");
        benchmark::ClobberMemory();
    }
}

void Decode(benchmark::State& state)
{
    std::vector<uint8_t> pdu = Outgoing();
    PHN_SMS_MESSAGE host{};
    host.pIS637Data = pdu.data();
    host.uSizeofData = static_cast<uint32_t>(pdu.size());
    PHN_ERROR error = PHN_ERROR_NONE;
    for (auto _ : state) {
        SMS_MESSAGE message;
        if (!IS637ToText(&host, &message, &error) || message.strBody.size() != 161)
            return state.SkipWithError("the PDU is rejected");
        benchmark::DoNotOptimize(message);
    }
}

// Address, text and call-back number leave one line each.
void DecodeLines(benchmark::State& state)
{
    constexpr CLogSource kLog{LOG_CSMS};
    for (auto _ : state) {
        for (int i = 0; i < 3; ++i)
            kLog.Error("%s", "IS637UserDataDecoder - pUserData is NULL.");
    }
}

} // namespace

int main(int argc, char** argv)
{
    setenv("TZ", "Europe/Paris", 1);
    std::string folder = std::filesystem::temp_directory_path() / "phn-bench-XXXXXX";
    if (!mkdtemp(folder.data()))
        return 1;
    std::filesystem::current_path(folder);
    // Logging is on, for other lines.
    std::ofstream(folder + "/log.reg") << "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk]\n"
                                          "\"Logging Level\"=dword:00000104\n";
    setenv("PHNNRV_REGISTRY", (folder + "/log.reg").c_str(), 1);
    CreateLogLock();
    benchmark::RegisterBenchmark("pdu_encode", Encode)->Repetitions(5);
    benchmark::RegisterBenchmark("pdu_decode", Decode)->Repetitions(5);
    benchmark::RegisterBenchmark("pdu_decode_lines", DecodeLines)->Repetitions(5);
    using bench::Bound;
    const int status =
        bench::RunBenchmarks(argc, argv,
                             {
                                 {"encode 160 characters", "pdu_encode", "", Bound::AtMost, 1.0},
                                 {"decode 160 characters", "pdu_decode", "pdu_decode_lines", Bound::AtMostAbove, 1.0},
                             });
    CloseLog();
    std::filesystem::current_path("/");
    std::filesystem::remove_all(folder);
    return status;
}
