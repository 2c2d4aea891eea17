// What of a Linux system keeps a handset from being found, apart from its ports: the udev rule that publishes them, the
// drivers that make them, the registry file. Used by the surroundings. A test names another root than /.
#pragma once

#include "phnctl/handset/finding.h"

#include <filesystem>
#include <vector>

namespace phnctl {

// Whether udev has the rule. It may have come with the program, in the folder `shippedIn`.
Finding FindRule(const std::filesystem::path& root, const std::filesystem::path& shippedIn);

// The USB handsets that no driver has made a terminal for.
std::vector<Finding> FindDriverless(const std::filesystem::path& root);

// The names of the user's registry files, parted by colons: what SetUpLog adds for itself is not among them.
std::string UsersRegistry();

// Nothing where each of them is missing or can be read.
std::vector<Finding> FindRegistryProblem();

} // namespace phnctl
