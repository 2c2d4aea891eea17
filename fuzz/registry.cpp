// Any file as a registry: every value is found again under its name, and every key's ancestors are there.
#include <string>

#include "fuzz/require.h"
#include "registry/registry_text.h"
#include "registry/registry_tree.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    platform::RegistryTree tree;
    const std::string text = platform::AnsiText(std::string(reinterpret_cast<const char*>(data), size));
    fuzz::Require(platform::AddRegistry(text, tree) || tree.empty());
    for (const auto& [path, key] : tree) {
        const size_t end = path.rfind('\\');
        fuzz::Require(end == path.npos || tree.contains(path.substr(0, end)));
        for (const platform::RegistryValue& value : key.Values())
            fuzz::Require(key.Find(value.name) == &value);
        fuzz::Require(!key.Find("a\nb")); // which no line names
    }
    return 0;
}
