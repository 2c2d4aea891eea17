#include "simulator/recording/mask.h"

#include "simulator/recording/recording.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <utility>

namespace simulator {
namespace {

using Kind = Dissection::Kind;

// Which bytes somebody interprets.
using Understood = std::vector<bool>;

void MarkUnderstood(Understood& understood, std::size_t offset, std::size_t size)
{
    const auto first = understood.begin() + static_cast<std::ptrdiff_t>(offset);
    std::fill(first, first + static_cast<std::ptrdiff_t>(size), true);
}

// The frame's own parts. Of a reply's, nobody interprets what lies between the command code and the length.
void MarkFrame(Understood& understood, Sender sender)
{
    constexpr std::size_t kLengthOffset = 5;
    if (sender == Sender::Host)
        MarkUnderstood(understood, 0, kRequestRecordOffset);
    else {
        MarkUnderstood(understood, 0, 1);
        MarkUnderstood(understood, kLengthOffset, kReplyPayloadOffset - kLengthOffset);
    }
    MarkUnderstood(understood, understood.size() - kCheckSize, kCheckSize);
}

// What lies behind the end of a text is no part of it.
std::size_t UsedSize(const PlacedField& field, const Bytes& plain)
{
    const std::size_t unit = field.layout->form == Form::Text ? 2 : 1;
    if (field.layout->form != Form::Text && field.layout->form != Form::Characters &&
        field.layout->form != Form::Digits)
        return field.size;
    for (std::size_t at = 0; at + unit <= field.size; at += unit) {
        const std::uint8_t* const bytes = plain.data() + field.offset + at;
        if (std::all_of(bytes, bytes + unit, [](std::uint8_t byte) { return byte == 0; }))
            return at;
    }
    return field.size / unit * unit;
}

std::size_t Blank(Bytes& plain, const Understood& understood)
{
    std::size_t blanked = 0;
    for (std::size_t i = 0; i < plain.size(); ++i)
        if (!understood[i] && plain[i] != 0) {
            plain[i] = 0;
            ++blanked;
        }
    return blanked;
}

void SetCheckValue(Bytes& plain, bool isRight)
{
    const std::size_t size = plain.size() - kCheckSize;
    const auto check = static_cast<std::uint16_t>(CheckValue(std::span(plain).first(size)) ^ (isRight ? 0 : 0xFFFF));
    plain[size] = static_cast<std::uint8_t>(check);
    plain[size + 1] = static_cast<std::uint8_t>(check >> 8);
}

bool IsKnownAtText(std::string_view text)
{
    constexpr std::string_view kKnown[] = {"AT",       "ATE0",     "ATE1",     "AT+MODE=0", "AT+MODE=1", "AT+MODE=2",
                                           "AT+MODE?", "+MODE: 0", "+MODE: 1", "+MODE: 2",  "OK",        "ERROR"};
    return std::find(std::begin(kKnown), std::end(kKnown), text) != std::end(kKnown);
}

// Line by line: what is none of the known ones becomes x, behind the letters that make a command of it.
std::size_t BlankAt(Bytes& text)
{
    const auto isLineEnd = [](std::uint8_t byte) { return byte == '\r' || byte == '\n'; };
    std::size_t blanked = 0;
    for (auto at = text.begin(); at != text.end();) {
        const auto end = std::find_if(at, text.end(), isLineEnd);
        const std::string line(at, end);
        if (!IsKnownAtText(line)) {
            at += IsAtCommand(line) ? 2 : 0;
            blanked += static_cast<std::size_t>(end - at);
            std::fill(at, end, 'x');
        }
        at = std::find_if_not(end, text.end(), isLineEnd);
    }
    return blanked;
}

std::uint32_t ToNumber(std::span<const std::uint8_t> bytes)
{
    std::uint32_t number = 0;
    for (std::size_t i = bytes.size(); i > 0; --i)
        number = number << 8 | bytes[i - 1];
    return number;
}

void FromNumber(std::uint32_t number, std::span<std::uint8_t> bytes)
{
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(number);
        number >>= 8;
    }
}

} // namespace

Mask::Masked Mask::Apply(const Packet& packet)
{
    Dissection dissection = dissector_.Dissect(packet);
    Masked masked{packet};
    Bytes& bytes = masked.packet.bytes;
    if (dissection.kind == Kind::Closing)
        return masked;
    if (dissection.kind == Kind::At) {
        masked.blanked = BlankAt(bytes);
        return masked;
    }
    const bool isFramed = dissection.kind == Kind::Framed;
    Bytes& plain = isFramed ? dissection.plain : bytes;
    Understood understood(plain.size(), false);
    if (isFramed)
        MarkFrame(understood, packet.sender);
    else if (dissection.kind == Kind::Unknown && plain.back() == kFlag)
        understood.back() = true;
    for (PlacedField field : dissection.fields) {
        field.size = UsedSize(field, plain);
        MarkUnderstood(understood, field.offset, field.size);
        ReplaceField(field, plain);
    }
    masked.blanked = Blank(plain, understood);
    if (isFramed) {
        SetCheckValue(plain, dissection.isCheckRight);
        bytes = Stuff(plain);
    }
    return masked;
}

void Mask::ReplaceField(const PlacedField& field, Bytes& plain)
{
    const auto bytes = std::span(plain).subspan(field.offset, field.size);
    if (field.layout->privacy == Privacy::Public)
        return;
    if (field.layout->privacy == Privacy::LockCode)
        return static_cast<void>(std::fill(bytes.begin(), bytes.end(), '0'));
    switch (field.layout->form) {
    case Form::Text:
        return ReplaceText(bytes, 2);
    case Form::Characters:
        return ReplaceText(bytes, 1);
    case Form::Digits:
        return ReplaceDigits(bytes);
    default:
        return ReplaceNumber(bytes);
    }
}

void Mask::ReplaceText(std::span<std::uint8_t> field, std::size_t unitSize)
{
    std::u16string real;
    for (std::size_t at = 0; at < field.size(); at += unitSize)
        real.push_back(static_cast<char16_t>(ToNumber(field.subspan(at, unitSize))));
    std::size_t at = 0;
    for (const char16_t unit : madeUp_.Text(real)) {
        FromNumber(unit, field.subspan(at, unitSize));
        at += unitSize;
    }
}

// As text, so that the handset's number is the same one in a contact.
void Mask::ReplaceDigits(std::span<std::uint8_t> field)
{
    std::u16string real;
    for (const std::uint8_t digit : field)
        real.push_back(static_cast<char16_t>(u'0' + digit % 10));
    const std::u16string& text = madeUp_.Text(real);
    for (std::size_t i = 0; i < field.size(); ++i)
        field[i] = static_cast<std::uint8_t>(text[i] == u'0' ? 10 : text[i] - u'0');
}

void Mask::ReplaceNumber(std::span<std::uint8_t> field)
{
    const auto largest = static_cast<std::uint32_t>((std::uint64_t{1} << 8 * field.size()) - 1);
    FromNumber(madeUp_.Number(ToNumber(field), largest), field);
}

void MaskRecording(const std::filesystem::path& from, const std::filesystem::path& to)
{
    const Recording recording = ReadRecording(from);
    RecordingHeader header = recording.header;
    header.isMasked = true;
    RecordingWriter writer(to, header);
    Mask mask(header.kind);
    for (const RecordedPacket& recorded : recording.packets) {
        const auto [packet, blanked] = mask.Apply(recorded.packet);
        writer.Write(packet, recorded.blanked + blanked);
    }
    writer.Check();
}

} // namespace simulator
