// A host that loads the library, dispatches its messages until standard input ends, and returns without unloading.
#include <poll.h>

#include "support/messages.h"

int main(int count, char** arguments)
{
    if (count != 2 || !LoadLibraryA(arguments[1]))
        return 1;
    pollfd input{0, POLLIN, 0};
    while (poll(&input, 1, 0) == 0) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
        DispatchPending();
    }
    return 0;
}
