// The far end of the COM port that a test run on Windows is given: PHNNRV_TEST_PORT names the port ("COM5"), and what
// is written to it comes out of the TCP port PHNNRV_TEST_PEER on 127.0.0.1. Used by the tests of the port calls and by
// the simulated handset. There is one connection for the whole run, because the port ends with it.
#pragma once

#include <winsock2.h>

// Throws std::runtime_error when there is no such port.
SOCKET PortPeer();
