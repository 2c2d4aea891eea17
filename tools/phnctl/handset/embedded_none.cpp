#include "phnctl/handset/embedded.h"

#include "phnctl/text/failure.h"

namespace phnctl {

bool HasEmbeddedHandset()
{
    return false;
}

std::unique_ptr<EmbeddedHandset> StartEmbeddedHandset()
{
    throw Failure(kUsage, "--simulator is not available in this build: it has no simulated handset");
}

} // namespace phnctl
