// The files of the panel's page, which are built into the program; the page itself is the first.
#pragma once

#include <span>
#include <string_view>

namespace simulator {

struct PageFile
{
    std::string_view name; // as in its address, "panel.css"
    std::string_view type;
    std::string_view text;
};

std::span<const PageFile> PageFiles();

} // namespace simulator
