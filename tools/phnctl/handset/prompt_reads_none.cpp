#include "phnctl/handset/prompt_reads.h"

#include "phnctl/text/failure.h"

namespace phnctl {

void ChooseReads(bool slow)
{
    if (slow)
        throw Failure(kUsage, "--slow-reads is not available on this system: the value \"Prompt Reads\" of "
                              "HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk decides");
}

} // namespace phnctl
