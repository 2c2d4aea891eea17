// Runs the built phnctl the way a person does, by a shell, and keeps what it said. Used by every test of this folder;
// each run gets its own folder for temporary files, so that a test can see what is left behind.
#pragma once

#include "simulator/lines/device_directory.h"
#include "support/files.h"

#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

struct Outcome
{
    int status = -1; // 256 + signal when a signal ended it
    std::string out;
    std::string err;
};

// Expects this status, and that each of these parts was said.
void Expect(const Outcome& outcome, int status, const std::vector<std::string>& says = {});

class Program
{
public:
    Program();

    const std::filesystem::path& TemporaryFolder() const { return m_temporary.Path(); }
    void Set(const std::string& variable, const std::string& value) { m_environment[variable] = value; }

    // Then the outcome has no output of the program.
    void SendOutputTo(const std::string& file) { m_output = file; }

    // The words are a shell's.
    Outcome Run(const std::string& words, const std::string& input = "") { return Finish(Start(words, input)); }

    // The two halves of Run, for a test that does something in between.
    pid_t Start(const std::string& words, const std::string& input = "");
    Outcome Finish(pid_t process);

private:
    simulator::DeviceDirectory m_temporary;
    simulator::DeviceDirectory m_streams; // what the program reads and writes
    std::map<std::string, std::string> m_environment;
    std::string m_output = (m_streams.Path() / "out").string();
};

bool Has(const std::string& text, const std::string& part);
