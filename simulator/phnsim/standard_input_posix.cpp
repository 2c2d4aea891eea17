#include "simulator/phnsim/standard_input.h"

#include <poll.h>
#include <unistd.h>

namespace simulator {

bool StandardInputIsReadable()
{
    pollfd input{STDIN_FILENO, POLLIN, 0};
    return poll(&input, 1, 0) > 0;
}

} // namespace simulator
