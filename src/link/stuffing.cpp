#include <algorithm>
#include <bit>
#include <cstring>

#include "link/frame_codec.h"

// What is stuffed is copied eight bytes at a time up to the next byte that needs escaping, which a zero-byte test on
// the whole word finds; what is unstuffed, up to the next escape. Escapes that follow each other are handled one by
// one, so that a handset which sends nothing else costs no more than a plain loop would.

namespace {

constexpr uint8_t kEscape = 0x7D;
constexpr uint8_t kFlag = 0x7E;
constexpr uint8_t kToggle = 0x20;
constexpr size_t kWord = sizeof(uint64_t);

constexpr uint64_t Repeat(uint8_t byValue)
{
    return 0x0101010101010101u * byValue;
}

// The top bit of every byte that is zero. Bytes above the lowest such byte may be marked wrongly.
constexpr uint64_t MarkZeros(uint64_t qwWord)
{
    return (qwWord - Repeat(0x01)) & ~qwWord & Repeat(0x80);
}

bool NeedsEscape(uint8_t byValue)
{
    return byValue == kEscape || byValue == kFlag;
}

// Copies bytes up to the first one that needs escaping, at most uCount.
size_t CopyPlain(const uint8_t* pSource, uint8_t* pDest, size_t uCount)
{
    size_t uDone = 0;
    for (; uCount - uDone >= kWord; uDone += kWord) {
        uint64_t qwWord;
        std::memcpy(&qwWord, pSource + uDone, kWord);
        std::memcpy(pDest + uDone, &qwWord, kWord);
        if (const uint64_t qwMarks = MarkZeros(qwWord ^ Repeat(kEscape)) | MarkZeros(qwWord ^ Repeat(kFlag)))
            return uDone + static_cast<size_t>(std::countr_zero(qwMarks)) / 8;
    }
    for (; uDone < uCount && !NeedsEscape(pSource[uDone]); ++uDone)
        pDest[uDone] = pSource[uDone];
    return uDone;
}

// The same up to an escape: a single value, which the C library finds faster.
size_t CopyUnescaped(const uint8_t* pSource, uint8_t* pDest, size_t uCount)
{
    if (uCount == 0)
        return 0; // there may be no destination either
    const void* const pEscape = std::memchr(pSource, kEscape, uCount);
    const size_t uPlain = pEscape ? static_cast<size_t>(static_cast<const uint8_t*>(pEscape) - pSource) : uCount;
    std::memcpy(pDest, pSource, uPlain);
    return uPlain;
}

} // namespace

SStuffing StuffBytes(const uint8_t* pSource, size_t uLength, uint8_t* pDest, size_t uSize)
{
    SStuffing Done{};
    for (;;) {
        const size_t uPlain =
            CopyPlain(pSource + Done.uSource, pDest + Done.uDest, std::min(uLength - Done.uSource, uSize - Done.uDest));
        Done.uSource += uPlain;
        Done.uDest += uPlain;
        if (Done.uSource == uLength)
            return Done;
        do {
            if (uSize - Done.uDest < 3)
                return Done;
            pDest[Done.uDest] = kEscape;
            pDest[Done.uDest + 1] = pSource[Done.uSource] ^ kToggle;
            Done.uDest += 2;
            ++Done.uSource;
            if (Done.uSource == uLength)
                return Done;
        } while (NeedsEscape(pSource[Done.uSource]));
    }
}

SStuffing UnstuffBytes(const uint8_t* pSource, size_t uLength, uint8_t* pDest, size_t uSize, bool* pbEscape)
{
    SStuffing Done{};
    bool bEscape = *pbEscape;
    while (Done.uSource < uLength) {
        if (!bEscape) {
            const size_t uPlain = CopyUnescaped(pSource + Done.uSource, pDest + Done.uDest,
                                                std::min(uLength - Done.uSource, uSize - Done.uDest));
            Done.uSource += uPlain;
            Done.uDest += uPlain;
        }
        // Escapes that follow each other.
        while (Done.uSource < uLength && (bEscape || pSource[Done.uSource] == kEscape)) {
            if (!bEscape) {
                bEscape = true;
                if (++Done.uSource == uLength)
                    break;
            }
            if (Done.uDest == uSize)
                break;
            pDest[Done.uDest++] = pSource[Done.uSource++] ^ kToggle;
            bEscape = false;
        }
        if (Done.uDest == uSize)
            break;
    }
    *pbEscape = bEscape;
    return Done;
}
