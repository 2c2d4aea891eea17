#include "phnctl/contacts/name_key.h"

#include "phnctl/text/text.h"

namespace phnctl {

namespace {

// Capitals that have their small letters at one distance.
struct Capitals
{
    unsigned first;
    unsigned last;
    unsigned distance;
};

constexpr Capitals kCapitals[] = {{'A', 'Z', 0x20},     {0xC0, 0xD6, 0x20},   {0xD8, 0xDE, 0x20},
                                  {0x391, 0x3A9, 0x20}, {0x400, 0x40F, 0x50}, {0x410, 0x42F, 0x20}};

// Small and capital letters take turns: the capital has the even number, or the odd one.
constexpr Capitals kEvenCapitals[] = {{0x100, 0x137, 1}, {0x14A, 0x177, 1}, {0x460, 0x481, 1}, {0x48A, 0x4BF, 1}};
constexpr Capitals kOddCapitals[] = {{0x139, 0x148, 1}, {0x179, 0x17E, 1}};

unsigned Small(unsigned code)
{
    const auto isIn = [&](const Capitals& range) { return code >= range.first && code <= range.last; };
    for (const Capitals& range : kCapitals)
        if (isIn(range))
            return code + range.distance;
    for (const Capitals& range : kEvenCapitals)
        if (isIn(range) && code % 2 == 0)
            return code + range.distance;
    for (const Capitals& range : kOddCapitals)
        if (isIn(range) && code % 2 == 1)
            return code + range.distance;
    return code;
}

} // namespace

std::string NameKey(std::string_view name)
{
    const std::string line = OneLine(std::string(name));
    std::string key;
    for (std::size_t i = 0; i < line.size();) {
        const std::size_t length = CharacterLength(std::string_view(line).substr(i));
        const auto byte = [&](std::size_t at) { return static_cast<unsigned>(static_cast<unsigned char>(line[at])); };
        if (line[i] == ' ' && key.ends_with(' ')) {
            // one is enough
        } else if (length == 1) {
            key += byte(i) < 0x80 ? static_cast<char>(Small(byte(i))) : line[i];
        } else if (length == 2) {
            const unsigned small = Small((byte(i) & 0x1F) << 6 | (byte(i + 1) & 0x3F));
            key += static_cast<char>(0xC0 | small >> 6);
            key += static_cast<char>(0x80 | (small & 0x3F));
        } else {
            key.append(line, i, length);
        }
        i += length;
    }
    return key;
}

} // namespace phnctl
