// Builds a request, field by field, in little-endian byte order. It grows as needed; what goes to the handset is
// limited where it is sent.
#pragma once

#include <cstdint>
#include <span>
#include <type_traits>
#include <vector>

class CByteWriter
{
public:
    CByteWriter() { m_Bytes.reserve(256); }

    // A number or a whole packed record.
    template <typename T>
    CByteWriter& Put(const T& Value)
    {
        static_assert(std::is_trivially_copyable_v<T>);
        return PutBytes(&Value, sizeof Value);
    }

    CByteWriter& PutBytes(const void* pData, size_t uLength)
    {
        const uint8_t* pBytes = static_cast<const uint8_t*>(pData);
        m_Bytes.insert(m_Bytes.end(), pBytes, pBytes + uLength);
        return *this;
    }

    std::span<const uint8_t> GetBytes() const { return m_Bytes; }

private:
    std::vector<uint8_t> m_Bytes;
};
