// Work in a process of its own.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>

// Runs the work in a child of this process, which must have one thread only; its standard error goes to the file. True
// if the work returns true; a child that does not end in time is aborted.
bool RunForked(const std::filesystem::path& errors, std::chrono::seconds longest, const std::function<bool()>& work);
