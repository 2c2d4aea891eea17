// phnsim at work: script, standard input, timers and signals, until one of them ends it.
#pragma once

#include "simulator/script/line_queue.h"

#include <string>
#include <vector>

namespace simulator {

class Loop
{
public:
    // `signals` is readable once a signal asks for the end; standard input is read as `isStrict` says; with `isOnce`
    // the host's closing of the port is the end.
    Loop(Control& control, int signals, bool isStrict, bool isOnce)
        : control_(control), signals_(signals), isStrict_(isStrict), isOnce_(isOnce), script_(control), input_(control)
    {
    }

    LineQueue& Script() { return script_; }
    // Until the end, which control.failure tells when it is one.
    void Run();

private:
    void Wait();
    int Timeout() const;
    void RunTimers();
    void TakeInput();
    void TakeInputLine(const std::string& line);
    void EndOnceHostIsGone();

    Control& control_;
    const int signals_;
    const bool isStrict_;
    const bool isOnce_;
    LineQueue script_;
    LineQueue input_;
    bool isInputOpen_ = true;
    unsigned inputLines_ = 0;
    std::string pending_; // of standard input, the beginning of a line
};

} // namespace simulator
