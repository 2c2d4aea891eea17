// What runs on the watch's threads may run out of memory: it is said, and the threads go on.
#pragma once

#include <exception>

#include "log/log.h"

template <typename Work>
void RunGuarded(Work&& DoWork)
{
    try {
        DoWork();
    } catch (const std::exception&) {
        CLogSource{LOG_CDEVICE}.Error("BT_Thread - Out of memory");
    }
}
