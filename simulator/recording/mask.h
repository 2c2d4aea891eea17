// A recording made fit for strangers: numbers, names, texts, addresses and serial numbers become made-up ones of equal
// length, lock codes and whatever is not understood become zeros; check values and stuffing are right again.
#pragma once

#include "simulator/recording/dissector.h"
#include "simulator/recording/made_up.h"
#include "simulator/recording/packet.h"

#include <cstddef>
#include <filesystem>
#include <vector>

namespace simulator {

class Mask
{
public:
    explicit Mask(PortKind kind) : dissector_(kind) {}

    struct Masked
    {
        Packet packet;
        std::size_t blanked = 0; // bytes of what is not understood
    };
    // Packets in their order: a reply is understood by the request that it answers.
    Masked Apply(const Packet& packet);

private:
    void ReplaceField(const PlacedField& field, Bytes& plain);
    void ReplaceText(std::span<std::uint8_t> field, std::size_t unitSize);
    void ReplaceDigits(std::span<std::uint8_t> field);
    void ReplaceNumber(std::span<std::uint8_t> field);

    Dissector dissector_;
    MadeUp madeUp_;
};

// Throws std::runtime_error.
void MaskRecording(const std::filesystem::path& from, const std::filesystem::path& to);

} // namespace simulator
