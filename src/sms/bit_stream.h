// Fields of a few bits each, packed from the most significant bit on across byte boundaries. The reader reads nothing
// beyond its bytes and the writer grows as needed.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <windows.h>

class CBitReader
{
public:
    explicit CBitReader(std::span<const uint8_t> Data) : m_Data(Data) {}

    // A field of at most 16 bits; false, and nothing is read, if that many are not there.
    bool Read(unsigned nBits, DWORD* pdwValue)
    {
        if (!Holds(1, nBits))
            return false;
        for (; m_nHeld < nBits; m_nHeld += 8)
            m_dwHeld = m_dwHeld << 8 | m_Data[m_uNext++];
        m_nHeld -= nBits;
        *pdwValue = m_dwHeld >> m_nHeld & ((1u << nBits) - 1);
        return true;
    }

    // So many characters of nBits bits, at most 8, each; false, and nothing is read, if they are not all there.
    bool ReadText(DWORD dwCount, unsigned nBits, std::string* pstrText)
    {
        if (!Holds(dwCount, nBits))
            return false;
        pstrText->resize(dwCount);
        const uint8_t* pNext = m_Data.data() + m_uNext;
        DWORD dwHeld = m_dwHeld;
        unsigned nHeld = m_nHeld;
        for (char& chText : *pstrText) {
            if (nHeld < nBits) {
                dwHeld = dwHeld << 8 | *pNext++;
                nHeld += 8;
            }
            nHeld -= nBits;
            chText = static_cast<char>(dwHeld >> nHeld & ((1u << nBits) - 1));
        }
        m_uNext = static_cast<size_t>(pNext - m_Data.data());
        m_dwHeld = dwHeld;
        m_nHeld = nHeld;
        return true;
    }

private:
    bool Holds(DWORD dwCount, unsigned nBits) const
    {
        return uint64_t{dwCount} * nBits <= uint64_t{m_Data.size() - m_uNext} * 8 + m_nHeld;
    }

    std::span<const uint8_t> m_Data;
    size_t m_uNext = 0;
    DWORD m_dwHeld = 0; // its low m_nHeld bits are still to be read
    unsigned m_nHeld = 0;
};

class CBitWriter
{
public:
    CBitWriter() { m_Bytes.reserve(512); }

    // The low nBits bits, at most 16, of a value.
    void Put(DWORD dwValue, unsigned nBits)
    {
        m_dwHeld = m_dwHeld << nBits | (dwValue & ((1u << nBits) - 1));
        for (m_nHeld += nBits; m_nHeld >= 8;) {
            m_nHeld -= 8;
            m_Bytes.push_back(static_cast<uint8_t>(m_dwHeld >> m_nHeld));
        }
    }

    // The low nBits bits, at most 8, of each character.
    void PutText(std::string_view strText, unsigned nBits)
    {
        const size_t uStart = m_Bytes.size();
        m_Bytes.resize(uStart + (m_nHeld + strText.size() * nBits) / 8);
        uint8_t* pNext = m_Bytes.data() + uStart;
        DWORD dwHeld = m_dwHeld;
        unsigned nHeld = m_nHeld;
        for (const char chText : strText) {
            dwHeld = dwHeld << nBits | (static_cast<uint8_t>(chText) & ((1u << nBits) - 1));
            nHeld += nBits;
            if (nHeld >= 8) {
                nHeld -= 8;
                *pNext++ = static_cast<uint8_t>(dwHeld >> nHeld);
            }
        }
        m_dwHeld = dwHeld;
        m_nHeld = nHeld;
    }

    bool IsAligned() const { return m_nHeld == 0; }
    // Zero bits up to the next byte boundary.
    void Align() { Put(0, (8 - m_nHeld) % 8); }

    // The whole bytes written so far.
    std::span<const uint8_t> GetBytes() const { return m_Bytes; }
    void SetByte(size_t uOffset, uint8_t byValue) { m_Bytes.at(uOffset) = byValue; }

private:
    std::vector<uint8_t> m_Bytes;
    DWORD m_dwHeld = 0; // its low m_nHeld bits are not yet in the bytes
    unsigned m_nHeld = 0;
};
