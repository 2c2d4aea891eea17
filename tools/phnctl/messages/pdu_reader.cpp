#include "phnctl/messages/pdu.h"
#include "phnctl/messages/pdu_items.h"
#include "phnctl/messages/pdu_meaning.h"
#include "phnctl/text/counted.h"

#include <array>
#include <fmt/format.h>
#include <utility>

namespace phnctl {

namespace {

using Bytes = std::span<const std::uint8_t>;

class Reader
{
public:
    explicit Reader(Bytes bytes) : m_bytes(bytes) {}

    Pdu Read()
    {
        m_pdu.type = m_bytes[0];
        if (m_bytes[0] != 0) {
            m_pdu.problems.push_back(
                fmt::format("message type {} is not point-to-point; nothing else is read", m_bytes[0]));
            return std::move(m_pdu);
        }
        ReadItems(1, m_bytes.size(), 0, m_pdu.content);
        if (m_pdu.problems.empty() && !m_pdu.content.from && !m_pdu.content.to)
            m_pdu.problems.emplace_back("there is no address, which every message has: the end may be missing");
        return std::move(m_pdu);
    }

private:
    // Those that begin before `end`. As the library reads them, the first of several with one identifier counts, and
    // one that runs past the end of the Bearer Data is read as far as it is there.
    void ReadItems(std::size_t begin, std::size_t end, unsigned level, PduContent& content)
    {
        PduContent repeated;
        std::array<bool, 256> isKnown{};
        for (std::size_t at = begin; at < end;) {
            PduItem item{at, level, m_bytes[at], ItemName(level, m_bytes[at]), {}, {}};
            const std::size_t left = m_bytes.size() - at - 1;
            if (left == 0 || m_bytes[at + 1] > left - 1)
                return TellCut(item, left);
            const Bytes data = m_bytes.subspan(at + 2, m_bytes[at + 1]);
            item.data.assign(data.begin(), data.end());
            at += 2 + data.size();
            if (at > end)
                m_pdu.problems.push_back(fmt::format("the {} at byte {} runs past the end of the Bearer Data by {}",
                                                     item.name, item.offset, Counted(at - end, "byte")));
            PduContent& taken = std::exchange(isKnown[item.id], true) ? repeated : content;
            Explain(item, taken, m_pdu.problems);
            m_pdu.items.push_back(item);
            if (level == 0 && item.id == parameter::kBearerData)
                ReadItems(item.offset + 2, at, level + 1, taken);
        }
    }

    void TellCut(const PduItem& item, std::size_t left)
    {
        m_pdu.problems.push_back(
            left == 0 ? fmt::format("the {} at byte {} ends before its length", item.name, item.offset)
                      : fmt::format("the {} at byte {} says that it has {}, of which {} are there", item.name,
                                    item.offset, Counted(m_bytes[item.offset + 1], "byte"), left - 1));
    }

    const Bytes m_bytes;
    Pdu m_pdu;
};

} // namespace

Pdu ReadPdu(std::span<const std::uint8_t> bytes)
{
    if (!bytes.empty())
        return Reader(bytes).Read();
    Pdu pdu;
    pdu.problems.emplace_back("there are no bytes");
    return pdu;
}

} // namespace phnctl
