// One use of the library: set up, load, find a handset, work with it, say goodbye. Commands use WithHandset; doctor
// takes the steps one by one. The thread that makes a Session dispatches window messages; work runs on another.
#pragma once

#include "phnctl/cli/options.h"
#include "phnctl/handset/embedded.h"
#include "phnctl/handset/handset.h"
#include "phnctl/handset/library.h"
#include "phnctl/handset/log_setup.h"

#include <chrono>
#include <functional>
#include <memory>

namespace phnctl {

class Session
{
public:
    // Loads the library, which begins to look for a handset at once. Throws Failure.
    explicit Session(const Options& options);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    const Library& Loaded() const { return *m_library; }

    // Asks for a handset until the wait is over, or until one is refused for good. Returns the library's last answer.
    // When it does not come soon, `onDelay` is called on another thread.
    PHN_ERROR Find(std::chrono::milliseconds wait, const std::function<void()>& onDelay = {});

    // Does the work with the handset that Find has found.
    void Run(const std::function<void(const Handset&)>& work);

    // The same without handset: the work finds its own, and may go on when a second has passed since `stop` was set.
    // It then uses the library until the process ends.
    void RunUntil(HANDLE stop, std::function<void(std::shared_ptr<Library>)> work);

    // Once all work has ended, for another session in the same process. Otherwise the library stays loaded.
    void Unload() { m_library->Unload(); }

private:
    const Options& m_options;
    std::unique_ptr<EmbeddedHandset> m_embedded;
    std::unique_ptr<LogSetup> m_log;
    std::shared_ptr<Library> m_library; // shared with a search that was given up and still runs
};

// Ends the service when the work with a handset is over.
struct Goodbye
{
    explicit Goodbye(const Library& api) : library(api) {}
    ~Goodbye() { library.Shutdown(); }
    Goodbye(const Goodbye&) = delete;
    Goodbye& operator=(const Goodbye&) = delete;

    const Library& library;
};

// Finds a handset, does the work and returns kDone. Throws Failure when there is none or it is refused.
int WithHandset(const Options& options, const std::function<void(const Handset&)>& work);

} // namespace phnctl
