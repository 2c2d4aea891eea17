#include "link/frame_codec.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "link/command.h"
#include "log/log.h"

namespace {

constexpr CLogSource Log{LOG_CPORT};

constexpr uint8_t kCommandCode = 0x4B;
constexpr uint8_t kFlag = 0x7E;
constexpr DWORD kRequestHeaderSize = 8;                    // of a request frame
constexpr DWORD kRequestOverhead = kRequestHeaderSize + 3; // with check sequence and flag
constexpr DWORD kReplyHeaderSize = 13;                     // of a reply frame
constexpr DWORD kReplyOverhead = kReplyHeaderSize + 3;
constexpr DWORD kLengthOffset = 5;
constexpr DWORD kSequenceOffset = 9;

// The reflected polynomial of CRC-16/X.25, one step for each byte value.
constexpr std::array<uint16_t, 256> kCheckTable = [] {
    std::array<uint16_t, 256> Table{};
    for (unsigned nByte = 0; nByte < 256; ++nByte) {
        unsigned nValue = nByte;
        for (int nBit = 0; nBit < 8; ++nBit)
            nValue = nValue & 1 ? nValue >> 1 ^ 0x8408 : nValue >> 1;
        Table[nByte] = static_cast<uint16_t>(nValue);
    }
    return Table;
}();

// A 32-bit field of a frame; bytes that have not been received read as 0.
uint32_t LoadField(const uint8_t* pFrame, DWORD dwLength, DWORD dwOffset)
{
    uint32_t dwValue = 0;
    if (dwLength > dwOffset)
        std::memcpy(&dwValue, pFrame + dwOffset, std::min<size_t>(sizeof dwValue, dwLength - dwOffset));
    return dwValue;
}

// A reply frame's whole length, by its length field.
uint64_t ExpectedLength(const uint8_t* pFrame, DWORD dwLength)
{
    return uint64_t{LoadField(pFrame, dwLength, kLengthOffset)} + kSequenceOffset;
}

} // namespace

uint16_t CheckSequence(const void* pData, size_t uBits)
{
    const uint8_t* pNext = static_cast<const uint8_t*>(pData);
    unsigned nCheck = 0xFFFF;
    for (const uint8_t* pEnd = pNext + uBits / 8; pNext != pEnd; ++pNext)
        nCheck = nCheck >> 8 ^ kCheckTable[(nCheck ^ *pNext) & 0xFF];
    for (size_t uBit = 0; uBit < uBits % 8; ++uBit) {
        const unsigned nDifferent = (nCheck ^ *pNext >> uBit) & 1;
        nCheck = nCheck >> 1 ^ (nDifferent ? 0x8408 : 0);
    }
    return static_cast<uint16_t>(~nCheck);
}

bool CFrameCodec::ComposeData(const void* pRecord, DWORD dwLength, uint8_t* pDest, DWORD dwSize, DWORD* pdwStuffed)
{
    if (!pRecord || !pDest) {
        Log.Error("DP::ComposeData ERROR - All or some data buffer parameter is null");
        return false;
    }
    const uint64_t qwFrame = uint64_t{dwLength} + kRequestOverhead;
    if (qwFrame >= std::min(dwSize, kMaxRequest)) {
        Log.Error("DP::ComposeData - Destination buffer size(%d) is not enough. Data to store is %d", dwSize, qwFrame);
        return false;
    }
    ++m_dwSequence;
    constexpr uint8_t kHeader[] = {kCommandCode, 0x00, 0x13, 0x00};
    uint8_t abyFrame[kMaxRequest];
    std::memcpy(abyFrame, kHeader, sizeof kHeader);
    std::memcpy(abyFrame + sizeof kHeader, &m_dwSequence, sizeof m_dwSequence);
    std::memcpy(abyFrame + kRequestHeaderSize, pRecord, dwLength);
    const size_t uChecked = size_t{kRequestHeaderSize} + dwLength;
    const uint16_t wCheck = CheckSequence(abyFrame, 8 * uChecked);
    std::memcpy(abyFrame + uChecked, &wCheck, sizeof wCheck);
    abyFrame[uChecked + sizeof wCheck] = kFlag;
    std::memset(pDest, 0, dwSize);
    if (!Encode(abyFrame, static_cast<DWORD>(qwFrame), pDest, dwSize, pdwStuffed)) {
        Log.Error("DP::ComposeData - Failed encoding data");
        return false;
    }
    return true;
}

bool CFrameCodec::Encode(const uint8_t* pSource, DWORD dwLength, uint8_t* pDest, DWORD dwSize, DWORD* pdwStuffed)
{
    *pdwStuffed = 0;
    if (dwLength == 0)
        return true;
    const SStuffing Done = StuffBytes(pSource, dwLength - 1, pDest, dwSize);
    if (Done.uDest >= dwSize) {
        Log.Error("DP::Encode - Destination counter(%d) is greater than destination data size(%d)", Done.uDest, dwSize);
        return false;
    }
    if (Done.uSource < dwLength - 1) {
        Log.Error("DP::Encode - Destination counter plus 1(%d) is greater than destination data size(%d)",
                  Done.uDest + 2, dwSize);
        return false;
    }
    pDest[Done.uDest] = pSource[dwLength - 1];
    *pdwStuffed = static_cast<DWORD>(Done.uDest + 1);
    return true;
}

bool CFrameCodec::Decode(const uint8_t* pSource, DWORD dwLength, uint8_t* pDest, DWORD dwSize, DWORD* pdwDecoded)
{
    const SStuffing Done = UnstuffBytes(pSource, dwLength, pDest, dwSize, &m_bEscape);
    *pdwDecoded = static_cast<DWORD>(Done.uDest);
    if (Done.uSource < dwLength) {
        Log.Error("DP::Decode - Destination counter(%d) is greater than destination data size(%d)", Done.uDest, dwSize);
        return false;
    }
    return true;
}

int CFrameCodec::CheckSize(const uint8_t* pData, DWORD dwLength)
{
    if (!pData || dwLength == 0) {
        Log.Error("DP::CheckSize - All or some data buffer parameter is null");
        return -1;
    }
    if (dwLength < 4) {
        Log.Error("DP::CheckSize - Insufficient size, will reread data. Data length is %d", dwLength);
        return 0;
    }
    const uint64_t qwExpected = ExpectedLength(pData, dwLength);
    if (dwLength < qwExpected) {
        Log.Error("DP::CheckSize - Wrong size will reread data. Data length = %d, Expected length = %d", dwLength,
                  qwExpected);
        return 0;
    }
    return 1;
}

DWORD CFrameCodec::CountMissing(const uint8_t* pData, DWORD dwLength)
{
    if (dwLength < kReplyOverhead)
        return kReplyOverhead - dwLength;
    const uint64_t qwExpected = ExpectedLength(pData, dwLength);
    if (dwLength < qwExpected)
        return static_cast<DWORD>(std::min<uint64_t>(qwExpected - dwLength, MAXDWORD));
    return dwLength == qwExpected && pData[dwLength - 1] == kFlag ? 0 : MAXDWORD;
}

bool CFrameCodec::IsForLastRequest(const uint8_t* pFrame, DWORD dwLength) const
{
    return LoadField(pFrame, dwLength, kSequenceOffset) == m_dwSequence;
}

bool CFrameCodec::DecomposeData(const uint8_t* pFrame, DWORD dwLength, void* pDest, DWORD dwSize, DWORD* pdwDelivered)
{
    if (!pFrame || !pDest) {
        Log.Error("DP::DecomposeData - All or some data buffer parameter is null");
        return false;
    }
    if (uint64_t{dwSize} + kReplyOverhead < dwLength) {
        Log.Error(
            "DP::DecomposeData - Destination buffer size is not enough. Destination buffer = %d, data read = %d - "
            "Header = %d",
            dwSize, dwLength, kReplyOverhead);
        return false;
    }
    std::memset(pDest, 0, dwSize);
    const uint32_t dwCommand = LoadField(pFrame, dwLength, 0) & 0xFF;
    if (dwCommand != kCommandCode) {
        Log.Error("DP::DecomposeData - Sent command(%d) is not equal to returned command(%d)", kCommandCode, dwCommand);
        return false;
    }
    const uint32_t dwSequence = LoadField(pFrame, dwLength, kSequenceOffset);
    if (dwSequence != m_dwSequence) {
        Log.Error("DP::DecomposeData - Expected sequence id(%d) does not match the returned sequence id(%d)",
                  m_dwSequence, dwSequence);
        return false;
    }
    // The payload and 13 bytes more are delivered: check sequence, flag, and ten that lie behind the frame, as zeros.
    const DWORD dwDelivered = dwLength - 3;
    if (dwLength < 3 || dwSize < dwDelivered) {
        Log.Error("DP::DecomposeData - Destination buffer(%d) is less than terminating character index(%d)", dwSize,
                  dwDelivered);
        return false;
    }
    if (dwLength > kReplyHeaderSize)
        std::memcpy(pDest, pFrame + kReplyHeaderSize, dwLength - kReplyHeaderSize);
    *pdwDelivered = dwDelivered;
    return true;
}
