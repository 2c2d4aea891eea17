#include "phnctl/cli/options.h"

#include "system/system.h"

namespace phnctl {

std::filesystem::path LabelFolder()
{
    return host::DataDirectory() / "labels";
}

} // namespace phnctl
