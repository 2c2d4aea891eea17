// Finds the word that a person meant and misspelt. Used where one of a few known words was expected.
#pragma once

#include <string>
#include <vector>

namespace phnctl {

// "Did you mean 'info'? "; nothing when no name is near: half of the word's letters may be wrong, and no more than two.
// There must be a name.
std::string DidYouMean(const std::string& word, const std::vector<std::string>& names);

} // namespace phnctl
