// What every service operation does: send one request, then check the reply in the fixed order exchange, length,
// status, result, with one Error line and one error code for the first check that fails. An ExchangeSpec states once,
// beside the service, what differs between operations; CExchange runs it and holds the reply.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>

#include <windows.h>

#include "common/byte_reader.h"
#include "link/command.h"
#include "link/reply_codes.h"
#include "log/log.h"

// How a reply is checked, and what the lines of the checks call it and its status.
struct ReplySpec
{
    DWORD dwMinimum = 0;            // shortest reply that is accepted; 0: the length is not checked
    const char* pszReply = nullptr; // with its spacing and bracket: "PB_RET_RES("
    const char* pszStatus = "rcRxHeader.wStatus";
};

inline constexpr DWORD kCommandVaries = 0; // each exchange states it

struct ExchangeSpec
{
    const char* pszOperation; // begins every line
    DWORD dwCommand;
    ReplySpec Reply = {};
    const char* pszResult = nullptr; // its name in its line; none: there is no result, or it is not looked at
    DWORD dwTimeout = kServiceTimeout;
    PHN_ERROR (*pfnMapResult)(DWORD) = MapDeviceResult;
};

// A reply, for an exchange whose Send has returned true, and the length that was reported. That length also counts the
// bytes that stand behind the payload. Fixed records may be read beyond it, as zeros; data of variable length goes
// through a reader.
class CReply
{
public:
    DWORD GetLength() const { return m_dwLength; }

    // The record at a fixed offset.
    template <typename T, size_t uOffset = 0>
    T Load() const
    {
        static_assert(std::is_trivially_copyable_v<T> && uOffset + sizeof(T) <= kReplyBufferSize);
        T Record;
        std::memcpy(&Record, m_abyBuffer.data() + uOffset, sizeof Record);
        return Record;
    }

    // What stands from an offset to the reported length; empty if the reply ends before the offset.
    std::span<const uint8_t> GetData(size_t uOffset) const
    {
        const std::span<const uint8_t> Data(m_abyBuffer.data(), m_dwLength);
        return Data.subspan(std::min<size_t>(uOffset, m_dwLength));
    }
    CByteReader GetReader(size_t uOffset) const { return CByteReader(GetData(uOffset)); }

private:
    friend class CExchange;

    std::array<uint8_t, kReplyBufferSize> m_abyBuffer; // zero behind the reply, as a port leaves it
    DWORD m_dwLength = 0;
};

class CExchange
{
public:
    // The description must outlive the exchange.
    CExchange(const CLogSource& Log, const ExchangeSpec& Spec) : CExchange(Log, Spec, Spec.dwCommand) {}

    // For operations that share one description and differ in their command.
    CExchange(const CLogSource& Log, const ExchangeSpec& Spec, DWORD dwCommand)
        : m_Log(Log), m_Spec(Spec), m_dwCommand(dwCommand)
    {
    }

    // The whole: Send, then Check. On false, *pError says why.
    bool Run(HANDLE hDevice, std::span<const uint8_t> Parameters, PHN_ERROR* pError)
    {
        return Send(hDevice, Parameters, pError) && Check(pError);
    }

    // Sends the command with its parameters, what follows the six bytes of the request header, through the current
    // port, and checks that a reply of the minimum length came.
    bool Send(HANDLE hDevice, std::span<const uint8_t> Parameters, PHN_ERROR* pError);

    // Checks the reply's status, and its result if it has one.
    bool Check(PHN_ERROR* pError) const;

    const CReply& GetReply() const { return m_Reply; }

private:
    bool CheckStatus(PHN_ERROR* pError) const;
    bool CheckResult(PHN_ERROR* pError) const;

    const CLogSource& m_Log;
    const ExchangeSpec& m_Spec;
    DWORD m_dwCommand;
    CReply m_Reply;
};

// The bytes of a packed record of parameters.
template <typename T>
std::span<const uint8_t> AsBytes(const T& Record)
{
    static_assert(std::is_trivially_copyable_v<T>);
    return {reinterpret_cast<const uint8_t*>(&Record), sizeof Record};
}
