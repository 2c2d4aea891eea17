#include "simulator/lines/worker.h"

#include <thread>
#include <utility>

namespace simulator {

struct Worker::System
{
    explicit System(std::function<void()> work) : thread(std::move(work)) {}

    std::thread thread;
};

Worker::Worker(std::function<void()> work) : system_(std::make_unique<System>(std::move(work))) {}

Worker::~Worker()
{
    Join();
}

void Worker::Join()
{
    if (system_->thread.joinable())
        system_->thread.join();
}

bool Worker::IsCurrent() const
{
    return system_->thread.get_id() == std::this_thread::get_id();
}

} // namespace simulator
