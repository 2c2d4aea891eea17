// A simulated handset inside the tool, for --simulator: it is found through the same discovery as a real one.
// embedded_simulator.cpp has it; embedded_none.cpp takes its place where there are no pseudo terminals.
#pragma once

#include <memory>

namespace phnctl {

class EmbeddedHandset
{
public:
    virtual ~EmbeddedHandset() = default;
};

bool HasEmbeddedHandset();

// From now on the library, which must not be loaded yet, sees this handset and no other. Throws Failure.
std::unique_ptr<EmbeddedHandset> StartEmbeddedHandset();

} // namespace phnctl
