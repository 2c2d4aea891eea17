// Fields of a few bits, most significant bit first, as messages pack them (TIA/EIA-637). Used by the PDU reader and
// writer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace phnctl {

class BitReader
{
public:
    explicit BitReader(std::span<const std::uint8_t> bytes) : m_bytes(bytes) {}

    // Nothing when fewer than `count` bits are left.
    std::optional<unsigned> Take(unsigned count)
    {
        if (m_bytes.size() * 8 - m_at < count)
            return std::nullopt;
        unsigned value = 0;
        for (unsigned i = 0; i < count; ++i, ++m_at)
            value = value << 1 | (m_bytes[m_at / 8] >> (7 - m_at % 8) & 1u);
        return value;
    }

private:
    std::span<const std::uint8_t> m_bytes;
    std::size_t m_at = 0;
};

class BitWriter
{
public:
    void Put(unsigned value, unsigned count)
    {
        for (unsigned bit = count; bit-- > 0; ++m_count) {
            if (m_count % 8 == 0)
                m_bytes.push_back(0);
            m_bytes.back() = static_cast<std::uint8_t>(m_bytes.back() | (value >> bit & 1u) << (7 - m_count % 8));
        }
    }

    std::size_t Count() const { return m_count; }
    // The last byte is filled up with zeros.
    const std::vector<std::uint8_t>& Bytes() const { return m_bytes; }

private:
    std::vector<std::uint8_t> m_bytes;
    std::size_t m_count = 0;
};

} // namespace phnctl
