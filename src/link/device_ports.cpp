// How the device object opens a port: configured, with its port object, and on a modem port after the AT dialogue.
#include <exception>
#include <string_view>

#include "link/at_commands.h"
#include "link/command.h"
#include "link/device.h"
#include "link/diagnostic_port.h"
#include "link/modem_port.h"
#include "link/prompt_port.h"
#include "log/log.h"

namespace {

constexpr CLogSource Log{LOG_CDEVICE};

constexpr COMMTIMEOUTS kDiagnosticTimeouts{10, 10, 1000, 2, 10};
constexpr COMMTIMEOUTS kModemTimeouts{7000, 7000, 1000, 2, 8000};

CHandle OpenPath(const std::string& strPath, DWORD dwFlags)
{
    return CHandle(
        CreateFileA(strPath.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, dwFlags, nullptr));
}

} // namespace

std::shared_ptr<COpenPort> CDevice::OpenDiagPortOnly(const std::string& strPath) const
{
    const bool bPrompt = CPromptPort::IsWanted();
    std::unique_ptr<DP> pObject = bPrompt ? std::make_unique<CPromptPort>(strPath) : std::make_unique<DP>(strPath);
    CHandle hOpened = OpenPath(strPath, FILE_FLAG_OVERLAPPED);
    if (!hOpened) {
        Log.Error("CDevice::OpenDiagPort - Unable to create file. Last error 0x%X", GetLastError());
        return nullptr;
    }
    auto pPort = std::make_shared<COpenPort>(std::move(hOpened), std::move(pObject));
    Log.Comment("CDevice::OpenDiagPort - Setting COM port");
    if (!SetupComPort(pPort->GetHandle(), bPrompt ? CPromptPort::kTimeouts : kDiagnosticTimeouts)) {
        Log.Error("CDevice::OpenDiagPort - ERROR setting COM port");
        pPort->Close();
        return nullptr;
    }
    return pPort;
}

bool CDevice::OpenDiagPort(const std::string& strPath)
{
    const auto pPort = OpenDiagPortOnly(strPath);
    return pPort && AdoptPort(pPort);
}

bool CDevice::OpenModemPort(const std::string& strPath)
{
    auto pObject = std::make_unique<MP>(strPath);
    CHandle hOpened = OpenPath(strPath, 0);
    if (!hOpened) {
        Log.Error("CDevice::OpenModemPort - Unable to create file. Last error 0x%X", GetLastError());
        return false;
    }
    const auto pPort = std::make_shared<COpenPort>(std::move(hOpened), std::move(pObject));
    Log.Comment("CDevice::OpenModemPort - Setting COM port");
    if (!SetupComPort(pPort->GetHandle(), kModemTimeouts)) {
        Log.Error("CDevice::OpenModemPort - ERROR setting COM port");
        pPort->Close();
        return false;
    }
    if (!AdoptPort(pPort))
        return false;
    try {
        if (!StartModem(pPort->GetHandle())) {
            ClosePort();
            return false;
        }
    } catch (const std::exception&) {
        ClosePort();
        throw;
    }
    Log.Comment("CDevice::OpenModemPort - Setting the Handle");
    return true;
}

bool CDevice::StartModem(HANDLE hPort) const
{
    std::vector<char> Answer;
    DWORD dwLength = 0;
    DWORD dwErrSts = 0;
    const auto Send = [&](std::string_view strCommand) {
        Answer.assign(kMaxReply, '\0');
        return GetATCmdStr(hPort, strCommand.data(), static_cast<DWORD>(strCommand.size()), Answer.data(),
                           static_cast<DWORD>(Answer.size()), &dwLength, &dwErrSts);
    };
    Log.Comment("CDevice::OpenModemPort - Sending the AT command");
    if (!Send("AT\r")) {
        Log.Error("CDevice::OpenModemPort - ERROR sending the AT command");
        return false;
    }
    Log.Comment("CDevice::OpenModemPort - Sending the AT+MODE=2 command");
    if (!SetPhoneMode(hPort, 2)) {
        Log.Error("CDevice::OpenModemPort - ERROR Setting Accessory mode interface");
        return false;
    }
    Log.Comment("CDevice::OpenModemPort - Sending the ATE0 command");
    if (!Send("ATE0\r")) {
        Log.Error("CDevice::OpenModemPort - ERROR sending the ATE0 command");
        return false;
    }
    return true;
}

bool CDevice::SetupComPort(HANDLE hPort, COMMTIMEOUTS Timeouts) const
{
    if (!PurgeComm(hPort, PURGE_TXABORT | PURGE_RXABORT | PURGE_TXCLEAR | PURGE_RXCLEAR)) {
        Log.Error("CDevice::SetupComPort - ERROR purging COMM port. Last error is 0x%X", GetLastError());
        return false;
    }
    if (!SetCommTimeouts(hPort, &Timeouts)) {
        Log.Error("CDevice::SetupComPort - ERROR setting COMM timeouts. Last error is 0x%X", GetLastError());
        return false;
    }
    DWORD dwErrors = 0;
    if (!ClearCommError(hPort, &dwErrors, nullptr)) {
        Log.Error("CDevice::SetupComPort - ERROR clearing COMM port. Last error is 0x%X", GetLastError());
        return false;
    }
    return true;
}
