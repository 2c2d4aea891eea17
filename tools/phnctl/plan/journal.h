// What a run does to the handset, written down so that it can be taken back or finished: each step before it is taken,
// with what was there and what is to be there. It is on the disk before the handset hears of anything, so it also tells
// of a run that was killed. A journal is a file of JSON lines in the run's folder in the user's state folder, beside
// the copies; retrace.h reads what to do from it.
#pragma once

#include "phnctl/plan/entry.h"
#include "system/files.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace phnctl {

// Of one entry, in the form in which entries are compared: nothing before an entry that is added, nothing after one
// that is deleted.
struct JournalStep
{
    std::string kind; // "contacts"
    std::optional<std::uint32_t> index{};
    std::optional<Entry> before{};
    std::optional<Entry> after{};
    bool isBegun = false; // it may have reached the handset
    bool isDone = false;  // it has
};

// Whose handset it was: indexes and entries mean nothing to another one.
struct JournalHandset
{
    std::string model;
    std::string serial;

    bool operator==(const JournalHandset&) const = default;
};

struct JournalRun
{
    std::string name;    // its folder's: "20261125-181500-import"
    std::string command; // "contacts import"
    JournalHandset handset{};
    std::string takesBack{}; // the run that this one takes back; empty: none
    std::string continues{}; // the run that this one finishes; empty: none
    std::vector<JournalStep> steps{};
    bool isOver = false;    // it came to its own end
    bool isSettled = false; // it has been taken back, or another run has finished it

    bool IsWhole() const;
};

// The journal of a run that is going on.
class Journal
{
public:
    // Makes the file in the folder. This and all below throw Failure: then the handset must be left as it is.
    Journal(const std::filesystem::path& folder, const JournalRun& run);

    // Steps that are going to be taken; returns the number of the first.
    std::size_t Expect(const std::vector<JournalStep>& steps);
    // A step whose entry goes under this index; or several that are taken at once, each at its own.
    void BeginAt(std::size_t step, std::uint32_t index);
    void Begin(std::size_t first, std::size_t count = 1);
    void Done(std::size_t first, std::size_t count = 1);
    // Where the entry is now, and what the handset made of it.
    void DoneAt(std::size_t step, std::uint32_t index, const Entry& holds);
    void Over();

private:
    void Append(const std::string& lines);
    void Reserve(std::size_t size);

    host::GrowingFile m_file;
    std::size_t m_steps = 0;
};

// Where the runs are: in the current folder where the user has no place for them.
std::filesystem::path RunsFolder();

// A new folder for a run; of the older ones so many are left that 50 are kept. Throws Failure.
std::filesystem::path MakeRunFolder(const std::string& name);

// The runs that are kept, the newest first; what is no journal is left out.
std::vector<JournalRun> KeptRuns();

// Notes in the run's journal that it has been taken back, or finished by another; or that it had done everything. Throw
// Failure.
void MarkSettled(const JournalRun& run);
void MarkWhole(const JournalRun& run);

} // namespace phnctl
