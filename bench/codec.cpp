// Byte stuffing and the check sequence beside plain loops over the same bytes.
#include <array>
#include <cstdint>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "link/frame_codec.h"
#include "ratio.h"

namespace {

std::vector<uint8_t> RandomBytes(size_t count)
{
    std::mt19937 random(1);
    std::vector<uint8_t> bytes(count);
    for (uint8_t& byte : bytes)
        byte = static_cast<uint8_t>(random());
    return bytes;
}

std::vector<uint8_t> Escapes(size_t count)
{
    std::vector<uint8_t> bytes(count);
    for (size_t i = 0; i < count; ++i)
        bytes[i] = i % 2 ? 0x7E : 0x7D;
    return bytes;
}

size_t PlainStuff(const uint8_t* source, size_t length, uint8_t* dest, size_t size)
{
    size_t out = 0;
    for (size_t i = 0; i < length; ++i) {
        if (source[i] == 0x7D || source[i] == 0x7E) {
            if (out + 2 > size)
                break;
            dest[out++] = 0x7D;
            dest[out++] = source[i] ^ 0x20;
        } else {
            if (out + 1 > size)
                break;
            dest[out++] = source[i];
        }
    }
    return out;
}

size_t PlainUnstuff(const uint8_t* source, size_t length, uint8_t* dest, size_t size, bool* escape)
{
    size_t out = 0;
    for (size_t i = 0; i < length; ++i) {
        if (*escape) {
            if (out == size)
                break;
            dest[out++] = source[i] ^ 0x20;
            *escape = false;
        } else if (source[i] == 0x7D) {
            *escape = true;
        } else {
            if (out == size)
                break;
            dest[out++] = source[i];
        }
    }
    return out;
}

constexpr std::array<uint16_t, 256> kTable = [] {
    std::array<uint16_t, 256> table{};
    for (unsigned i = 0; i < 256; ++i) {
        unsigned value = i;
        for (int bit = 0; bit < 8; ++bit)
            value = value & 1 ? (value >> 1) ^ 0x8408 : value >> 1;
        table[i] = static_cast<uint16_t>(value);
    }
    return table;
}();

uint16_t PlainCheckSequence(const uint8_t* data, size_t length)
{
    unsigned value = 0xFFFF;
    for (size_t i = 0; i < length; ++i)
        value = (value >> 8) ^ kTable[(value ^ data[i]) & 0xFF];
    return static_cast<uint16_t>(value ^ 0xFFFF);
}

void Stuff(benchmark::State& state, const std::vector<uint8_t>& source, bool isPlain)
{
    std::vector<uint8_t> dest(2 * source.size());
    for (auto _ : state) {
        size_t length = isPlain ? PlainStuff(source.data(), source.size(), dest.data(), dest.size())
                                : StuffBytes(source.data(), source.size(), dest.data(), dest.size()).uDest;
        benchmark::DoNotOptimize(length);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * source.size()));
}

void Unstuff(benchmark::State& state, const std::vector<uint8_t>& plainBytes, bool isPlain)
{
    std::vector<uint8_t> source(2 * plainBytes.size());
    source.resize(PlainStuff(plainBytes.data(), plainBytes.size(), source.data(), source.size()));
    std::vector<uint8_t> dest(source.size());
    for (auto _ : state) {
        bool escape = false;
        size_t length = isPlain ? PlainUnstuff(source.data(), source.size(), dest.data(), dest.size(), &escape)
                                : UnstuffBytes(source.data(), source.size(), dest.data(), dest.size(), &escape).uDest;
        benchmark::DoNotOptimize(length);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * source.size()));
}

void Check(benchmark::State& state, const std::vector<uint8_t>& bytes, bool isPlain)
{
    for (auto _ : state) {
        uint16_t value =
            isPlain ? PlainCheckSequence(bytes.data(), bytes.size()) : CheckSequence(bytes.data(), 8 * bytes.size());
        benchmark::DoNotOptimize(value);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes.size()));
}

void Register(const std::string& name, void (*body)(benchmark::State&, const std::vector<uint8_t>&, bool),
              const std::vector<uint8_t>& bytes)
{
    for (const bool isPlain : {false, true})
        benchmark::RegisterBenchmark((name + (isPlain ? "_plain" : "")).c_str(), body, bytes, isPlain)->Repetitions(5);
}

} // namespace

int main(int argc, char** argv)
{
    Register("stuff_random_8k", Stuff, RandomBytes(8192));
    Register("unstuff_random_8k", Unstuff, RandomBytes(8192));
    Register("stuff_random_40", Stuff, RandomBytes(40));
    Register("unstuff_random_40", Unstuff, RandomBytes(40));
    Register("stuff_escapes_8k", Stuff, Escapes(8192));
    Register("unstuff_escapes_8k", Unstuff, Escapes(8192));
    Register("check_sequence_8k", Check, RandomBytes(8192));

    using bench::Bound;
    return bench::RunBenchmarks(
        argc, argv,
        {
            {"stuffing, 8 KiB random", "stuff_random_8k", "stuff_random_8k_plain", Bound::AtLeast, 3},
            {"unstuffing, 8 KiB random", "unstuff_random_8k", "unstuff_random_8k_plain", Bound::AtLeast, 3},
            {"stuffing, 40 bytes", "stuff_random_40", "stuff_random_40_plain", Bound::AtLeast, 1},
            {"unstuffing, 40 bytes", "unstuff_random_40", "unstuff_random_40_plain", Bound::AtLeast, 1},
            {"stuffing, all escapes", "stuff_escapes_8k", "stuff_escapes_8k_plain", Bound::AtLeast, 0.8},
            {"unstuffing, all escapes", "unstuff_escapes_8k", "unstuff_escapes_8k_plain", Bound::AtLeast, 0.8},
            {"check sequence", "check_sequence_8k", "check_sequence_8k_plain", Bound::AtLeast, 0.95},
        });
}
