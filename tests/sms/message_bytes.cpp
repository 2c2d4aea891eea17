#include "sms/message_bytes.h"

#include <stdexcept>

Bytes ToBytes(const Record& record)
{
    Bytes bytes;
    Put32(bytes, record.index);
    Put32(bytes, 0xEEEEEEEE); // the handset's own
    Put32(bytes, record.replyOption);
    bytes.insert(bytes.end(), {record.hour, record.minute});
    Put16(bytes, record.second);
    bytes.insert(bytes.end(), {record.day, record.month});
    Put16(bytes, record.year);
    PutWide(bytes, record.address, 36);
    PutWide(bytes, record.callback, 36);
    Put32(bytes, record.priority);
    Put32(bytes, static_cast<uint32_t>(2 * record.body.size()));
    PutWide(bytes, record.body, record.body.size());
    return bytes;
}

std::string Bits(unsigned value, unsigned count)
{
    std::string bits;
    for (unsigned bit = count; bit-- > 0;)
        bits += value >> bit & 1 ? '1' : '0';
    return bits;
}

std::string Characters(const std::string& text, unsigned count)
{
    std::string bits;
    for (const char character : text)
        bits += Bits(static_cast<uint8_t>(character), count);
    return bits;
}

Bytes Item(uint8_t id, const std::string& bits, size_t length)
{
    std::string padded = bits;
    if (bits.size() > 8 * length || length > 255)
        throw std::logic_error("the bits do not fit");
    padded.resize(8 * length, '0');
    Bytes item{id, static_cast<uint8_t>(length)};
    for (size_t byte = 0; byte < length; ++byte)
        item.push_back(static_cast<uint8_t>(std::stoul(padded.substr(8 * byte, 8), nullptr, 2)));
    return item;
}

Bytes Item(uint8_t id, const std::string& bits)
{
    return Item(id, bits, (bits.size() + 7) / 8);
}

Bytes Group(uint8_t id, const std::vector<Bytes>& items)
{
    const Bytes data = Join(items);
    if (data.size() > 255)
        throw std::logic_error("the items do not fit");
    return Join({{id, static_cast<uint8_t>(data.size())}, data});
}

Bytes Join(const std::vector<Bytes>& parts)
{
    Bytes joined;
    for (const Bytes& part : parts)
        Append(joined, part);
    return joined;
}

Bytes Number(uint8_t id, const std::string& form, const std::string& codes)
{
    return Item(id, form + Bits(static_cast<unsigned>(codes.size()), 8) + Characters(codes, 4));
}

std::u16string Widen(const std::string& text)
{
    return {text.begin(), text.end()};
}
