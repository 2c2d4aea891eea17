// What of a process every part of it shares, as text that a test can compare.
#pragma once

#include <string>
#include <vector>

// One line for the working directory, the umask, the locale, each environment variable and each signal's handler.
std::vector<std::string> ProcessState();

// What a child would inherit of this process's descriptors, by what they stand for.
std::vector<std::string> InheritedDescriptors();

bool HasControllingTerminal();
