// Has the library end its reads with a reply's last byte in this run, or by 10 ms of silence as it does for other
// hosts. prompt_reads_environment.cpp has it; prompt_reads_none.cpp takes its place where the registry is Windows' own.
#pragma once

namespace phnctl {

// A setting of the user's own holds unless slow reads are asked for. Call it before the library is loaded. Throws
// Failure.
void ChooseReads(bool slow);

} // namespace phnctl
