// Where the fields of requests and replies lie: what a record says, for whoever has only its bytes.
// The command table writes and reads the same fields; tests hold the two against each other.
// A new command is a row of the table in layout.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace simulator {

enum class Form
{
    Unsigned,
    Signed,
    Text,       // UTF-16, up to its first zero
    Characters, // one byte each
    Digits,     // one byte each, 10 for 0, up to the first zero
    Time,
};

// What a masked recording makes of a field.
enum class Privacy
{
    Public,
    Private,  // another value of equal length
    LockCode, // zeros
};

struct FieldLayout
{
    std::string_view name;
    Form form;
    std::size_t size; // in bytes; 0: the number before it
    Privacy privacy = Privacy::Public;
    std::size_t gap = 0; // bytes before it that nobody interprets
};

// `items`, if there are any, follow the fields as often as the last of these says.
struct Layout
{
    std::span<const FieldLayout> fields{};
    const Layout* items = nullptr;
};

// What follows the header of a request, and the status and result of a reply; nothing for an unknown command.
Layout RequestLayout(std::uint32_t command);
Layout ReplyLayout(std::uint32_t command);

// Their names, without those of the status and the result, in their order.
std::vector<std::string_view> FieldNames(std::uint32_t command);

// A field where it lies in its record.
struct PlacedField
{
    const FieldLayout* layout;
    std::size_t offset;
    std::size_t size;
};

// The fields that lie whole in `bytes` from `offset` on, in their order.
std::vector<PlacedField> PlaceFields(const Layout& layout, std::span<const std::uint8_t> bytes, std::size_t offset);

} // namespace simulator
