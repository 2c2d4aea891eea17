#include "simulator/recording/recording.h"

#include "simulator/handset/hex.h"
#include "simulator/recording/json_fields.h"

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string_view>

namespace simulator {
namespace {

constexpr int kVersion = 1;
constexpr std::uint32_t kLongestTook = 86'400'000; // a day

std::uint8_t HexDigit(char digit)
{
    constexpr std::string_view kDigits = "0123456789ABCDEFabcdef";
    const std::size_t value = kDigits.find(digit);
    if (value == std::string_view::npos)
        throw std::runtime_error("\"bytes\" are no hexadecimal digits");
    return static_cast<std::uint8_t>(value < 16 ? value : value - 6);
}

Bytes FromHex(const std::string& hex)
{
    if (hex.size() % 2 != 0)
        throw std::runtime_error("\"bytes\" are an odd number of digits");
    Bytes bytes(hex.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(HexDigit(hex[2 * i]) << 4 | HexDigit(hex[2 * i + 1]));
    return bytes;
}

Json ToJson(const RecordingHeader& header)
{
    return {{"recording", kVersion},
            {"program", header.program},
            {"port", header.kind == PortKind::Modem ? "modem" : "diagnostic"},
            {"masked", header.isMasked}};
}

RecordingHeader ParseHeader(const Json& line)
{
    if (!line.is_object() || !line.contains("recording"))
        throw std::runtime_error("this is no recording of phnsim");
    if (line.at("recording") != kVersion)
        throw std::runtime_error("this recording is of another version of phnsim");
    const auto port = line.at("port").get<std::string>();
    if (port != "modem" && port != "diagnostic")
        throw std::runtime_error("\"" + port + "\" is no kind of port");
    return {.program = line.value("program", ""),
            .kind = port == "modem" ? PortKind::Modem : PortKind::Diagnostic,
            .isMasked = line.value("masked", false)};
}

// None is 0. A number with a point is refused: one beyond all integers cannot be made one.
std::uint32_t Count(const Json& line, const std::string& name, std::uint32_t most)
{
    if (!line.contains(name))
        return 0;
    const Json& count = line.at(name);
    if (!count.is_number_unsigned() || count.get<std::uint64_t>() > most)
        throw std::runtime_error("\"" + name + "\" is no whole number up to " + std::to_string(most));
    return count.get<std::uint32_t>();
}

Packet ParsePacket(const Json& line)
{
    const auto time = ParseMoment(line.at("time").get<std::string>());
    const auto from = line.at("from").get<std::string>();
    if (!time || (from != "host" && from != "handset"))
        throw std::runtime_error("\"time\" or \"from\" cannot be read");
    return {.time = *time,
            .took = std::chrono::milliseconds(Count(line, "took", kLongestTook)),
            .sender = from == "host" ? Sender::Host : Sender::Handset,
            .bytes = FromHex(line.value("bytes", ""))};
}

// The JSON library's own words name its parts, not those of a recording.
std::string Reason(const std::exception& error)
{
    if (dynamic_cast<const Json::parse_error*>(&error))
        return "this is no line of JSON";
    if (dynamic_cast<const Json::exception*>(&error))
        return "a member is missing, or of another type";
    return error.what();
}

} // namespace

Recording ReadRecording(const std::filesystem::path& file)
{
    std::ifstream stream(file);
    Recording recording;
    unsigned number = 0;
    std::string text;
    try {
        while (std::getline(stream, text)) {
            if (text.empty() && number > 0 && stream.peek() == std::ifstream::traits_type::eof())
                break;
            ++number;
            const Json line = Json::parse(text);
            if (number == 1)
                recording.header = ParseHeader(line);
            else
                recording.packets.push_back({number, ParsePacket(line), Count(line, "blanked", UINT32_MAX)});
        }
    } catch (const std::exception& error) {
        throw std::runtime_error(file.string() + ":" + std::to_string(number) + ": " + Reason(error));
    }
    if (number == 0 || stream.bad())
        throw std::runtime_error(file.string() + " cannot be read");
    return recording;
}

RecordingWriter::RecordingWriter(const std::filesystem::path& file, const RecordingHeader& header)
    : file_(file), stream_(file, std::ios::trunc), dissector_(header.kind)
{
    stream_ << Dump(ToJson(header)) << std::endl;
    Check();
}

void RecordingWriter::Write(const Packet& packet, std::size_t blanked)
{
    Json line = {{"time", ToText(packet.time)}, {"from", packet.sender == Sender::Host ? "host" : "handset"}};
    const Dissection dissection = dissector_.Dissect(packet);
    if (dissection.kind == Dissection::Kind::Closing)
        line["name"] = "close";
    else {
        if (packet.took.count() > 0)
            line["took"] = packet.took.count();
        line["bytes"] = ToHex(packet.bytes);
        if (blanked > 0)
            line["blanked"] = blanked;
        AddExchange(line, dissection.exchange);
    }
    stream_ << Dump(line) << std::endl;
}

void RecordingWriter::Check() const
{
    if (!stream_)
        throw std::runtime_error(file_.string() + " cannot be written");
}

} // namespace simulator
