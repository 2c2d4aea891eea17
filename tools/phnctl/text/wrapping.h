// Lines that go on below themselves where the terminal ends, with whole words. Used by help texts and plans.
#pragma once

#include <cstddef>
#include <string>

namespace phnctl {

// Breaks the lines that are longer than the width between words; what goes on is indented like its line, and `hanging`
// columns more, or, with 0, under the second column of a line that has two. A width of 0: none is broken.
std::string Wrapped(const std::string& text, std::size_t width, std::size_t hanging);

// The lines of each paragraph as one; those that are indented stay.
std::string Flowing(std::string text);

} // namespace phnctl
