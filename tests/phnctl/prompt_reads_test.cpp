#include "phnctl/handset/prompt_reads.h"

#include "simulator/lines/device_directory.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <tuple>

TEST(Reads, ArePromptUnlessTheUserOrTheOptionSaysOtherwise)
{
    // Of what is chosen, empty is what the file says.
    const std::tuple<const char*, const char*, bool, const char*> cases[] = {
        {"", "", false, "1"},
        {"", "0", false, "0"},
        {"\"Prompt Reads\"=dword:00000000\n", "", false, ""},
        {"\"Prompt Reads\"=dword:00000001\n", "", true, "0"},
        {"", "1", true, "0"},
    };
    const simulator::DeviceDirectory folder;
    int number = 0;
    for (const auto& [file, environment, slow, chosen] : cases) {
        const std::string path = folder.Path() / (std::to_string(number++) + ".reg");
        std::ofstream(path) << "REGEDIT4\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk]\n" << file;
        setenv("PHNNRV_REGISTRY", path.c_str(), 1);
        setenv("PHNNRV_PROMPT_READS", environment, 1);
        phnctl::ChooseReads(slow);
        EXPECT_STREQ(std::getenv("PHNNRV_PROMPT_READS"), chosen) << file << environment << slow;
    }
}
