// The diagnostic port's frames: composing and taking apart, byte stuffing, check sequence. HDLC-like framing with flag
// 0x7E, escape 0x7D and CRC-16/X.25. The free functions are the pure inner steps; CFrameCodec adds the checks, their
// log lines and the sequence identifier that pairs a reply with its request. Whatever a handset sends, nothing outside
// of the given buffers is read or written.
#pragma once

#include <cstddef>
#include <cstdint>

#include <windows.h>

#include "link/first_sequence.h"

// CRC-16/X.25 over a length in bits; a trailing partial byte counts by its low bits.
uint16_t CheckSequence(const void* pData, size_t uBits);

// Progress through a source and a destination.
struct SStuffing
{
    size_t uSource; // bytes consumed
    size_t uDest;   // bytes written
};

// Stuffs uLength bytes: 0x7D and 0x7E become 0x7D and the byte XOR 0x20. Stops before the byte that has no room; one
// that is escaped needs room for a byte behind it too, where the closing flag would stand.
SStuffing StuffBytes(const uint8_t* pSource, size_t uLength, uint8_t* pDest, size_t uSize);

// The reverse. An escape at the source's end is left pending in *pbEscape, and one that is pending there applies to the
// first byte. Stops before the first output byte that has no room. Source and destination must not overlap.
SStuffing UnstuffBytes(const uint8_t* pSource, size_t uLength, uint8_t* pDest, size_t uSize, bool* pbEscape);

class CFrameCodec
{
public:
    // Wraps a request record in a stuffed frame under the next sequence identifier. The destination is zeroed first; a
    // frame is shorter than it and than kMaxRequest.
    bool ComposeData(const void* pRecord, DWORD dwLength, uint8_t* pDest, DWORD dwSize, DWORD* pdwStuffed);

    // Stuffs every byte but the last, the closing flag.
    bool Encode(const uint8_t* pSource, DWORD dwLength, uint8_t* pDest, DWORD dwSize, DWORD* pdwStuffed);

    // Unstuffs received bytes, which may continue those of an earlier call after BeginDecode.
    bool Decode(const uint8_t* pSource, DWORD dwLength, uint8_t* pDest, DWORD dwSize, DWORD* pdwDecoded);
    void BeginDecode() { m_bEscape = false; }

    // Is a whole reply frame in? -1 error, 0 not yet, 1 yes.
    int CheckSize(const uint8_t* pData, DWORD dwLength);

    // How many more bytes it takes at least until the reply frame that begins with these ends, counted as decoded ones;
    // 0 when it has ended. Of one that has no flag where its length says, nothing but silence tells the end: MAXDWORD.
    static DWORD CountMissing(const uint8_t* pData, DWORD dwLength);

    // Whether a reply frame carries the sequence identifier of the request that was sent last.
    bool IsForLastRequest(const uint8_t* pFrame, DWORD dwLength) const;

    // Checks a reply frame's command and sequence identifier and delivers what follows its 13 header bytes: the
    // payload, check sequence, flag and ten zeros. The destination is zeroed first.
    bool DecomposeData(const uint8_t* pFrame, DWORD dwLength, void* pDest, DWORD dwSize, DWORD* pdwDelivered);

private:
    uint32_t m_dwSequence = kSequenceBeforeFirst;
    bool m_bEscape = false;
};
