// How watch shows what happens: a screen that is redrawn in place on a terminal, a line per event elsewhere, a JSON
// object per line for programs (docs/watch.md is its schema). Used from one thread, except for Close.
#pragma once

#include "phnctl/cli/options.h"
#include "phnctl/cli/report.h"

#include <ctime>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace phnctl {

// What an event says about the handset as a whole.
enum class Effect
{
    None,
    Present, // it is there and answers
    Missing, // what is known is what was last known
};

struct WatchEvent
{
    std::string name;              // "battery"; the JSON member "event"
    std::string text;              // for people
    std::vector<Field> fields;     // more members of the JSON object
    std::vector<Section> sections; // what is known now; replaces what the screen shows under their keys
    Effect effect = Effect::None;
};

class WatchView
{
public:
    virtual ~WatchView() = default;
    WatchView(const WatchView&) = delete;
    WatchView& operator=(const WatchView&) = delete;

    void Show(const WatchEvent& event);

    // Nothing is shown from now on. Any thread.
    void Close();

protected:
    WatchView() = default;

private:
    virtual void Draw(const WatchEvent& event, std::time_t now) = 0;
    virtual void Finish() {}

    std::mutex m_mutex;
    bool m_closed = false;
};

// The view that these options and standard output ask for.
std::unique_ptr<WatchView> MakeWatchView(const Options& options);

} // namespace phnctl
