#include "simulator/script/line_queue.h"

#include <exception>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace simulator {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

void LineQueue::Add(const Place& place, const std::string& text)
{
    try {
        lines_.push_back({place, text, ParseControlLine(text, place)});
    } catch (const std::exception& error) {
        control_.Report(place, error.what());
    }
}

void LineQueue::AddAll(std::istream& script, const std::string& file)
{
    Place place{.file = file, .isStrict = true};
    std::string text;
    while (std::getline(script, text) && !control_.isOver) {
        if (++place.line == 1 && text.starts_with(kByteOrderMark))
            text.erase(0, kByteOrderMark.size());
        Add(place, text);
    }
    if (!control_.isOver && (script.bad() || !script.eof()))
        throw std::runtime_error(file + " cannot be read");
}

void LineQueue::Advance()
{
    while (!control_.isOver && !Waits() && !lines_.empty()) {
        last_ = std::move(lines_.front());
        lines_.pop_front();
        RunControlLine(control_, last_.line, last_.place);
        due_.reset();
        if (last_.line.pause.count() > 0)
            due_ = std::chrono::steady_clock::now() + last_.line.pause;
    }
}

bool LineQueue::Waits() const
{
    return WaitsForHost() || (due_ && std::chrono::steady_clock::now() < *due_);
}

bool LineQueue::WaitsForHost() const
{
    return control_.history.Count(last_.line.deed) < last_.line.count;
}

void LineQueue::GiveUp(const std::string& why)
{
    const Queued& line = Waits() || lines_.empty() ? last_ : lines_.front();
    std::string wrong = line.text + " waits in vain: " + why;
    if (WaitsForHost())
        wrong += ", and it " + control_.history.WhatCame(line.line.deed);
    control_.Report(line.place, wrong);
}

} // namespace simulator
