// The lines of standard input, read beside everything else. Reading cannot be ended on every system, so its thread
// stays behind until the program ends, and calls nobody once the object is gone.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace simulator {

class StandardInput
{
public:
    using Take = std::function<void(std::string line)>;

    // `take` is called for what is there already, a file or what a pipe holds, before this returns, and for what
    // comes later on the reading thread.
    explicit StandardInput(Take take);
    ~StandardInput();
    StandardInput(const StandardInput&) = delete;
    StandardInput& operator=(const StandardInput&) = delete;

private:
    struct Reader;
    std::shared_ptr<Reader> reader_;
};

// Whether reading now would not wait; its end counts.
bool StandardInputIsReadable();

} // namespace simulator
