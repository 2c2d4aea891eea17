// The only way to read handset data of variable length: a cursor over a span that checks every count, length and offset
// against what is there, without overflow, before anything is allocated or copied. A call that fails returns false and
// moves nothing. Values are little-endian, as are all supported systems.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>

static_assert(std::endian::native == std::endian::little);

class CByteReader
{
public:
    explicit CByteReader(std::span<const uint8_t> Data) : m_Data(Data) {}

    size_t GetOffset() const { return m_uOffset; }
    size_t GetRemaining() const { return m_Data.size() - m_uOffset; }

    // Are dwCount records of uSize bytes each still there?
    bool Holds(uint64_t qwCount, size_t uSize) const { return uSize == 0 || qwCount <= GetRemaining() / uSize; }

    bool Skip(uint64_t qwLength)
    {
        if (!Holds(qwLength, 1))
            return false;
        m_uOffset += static_cast<size_t>(qwLength);
        return true;
    }

    // A number or a whole packed record.
    template <typename T>
    bool Read(T* pValue)
    {
        static_assert(std::is_trivially_copyable_v<T>);
        return ReadBytes(pValue, sizeof(T));
    }

    bool ReadBytes(void* pBuffer, size_t uLength)
    {
        if (!Holds(uLength, 1))
            return false;
        if (uLength)
            std::memcpy(pBuffer, m_Data.data() + m_uOffset, uLength);
        m_uOffset += uLength;
        return true;
    }

    // A view of the next bytes, which are then behind the cursor.
    bool Take(uint64_t qwLength, std::span<const uint8_t>* pView)
    {
        if (!Holds(qwLength, 1))
            return false;
        *pView = m_Data.subspan(m_uOffset, static_cast<size_t>(qwLength));
        return Skip(qwLength);
    }

private:
    std::span<const uint8_t> m_Data;
    size_t m_uOffset = 0;
};
