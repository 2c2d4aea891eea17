# Tests that the emulator of a 32-bit build cannot run, which ctest then names as disabled: to end in a process without
# other threads they start their own program anew, and the kernel that has to do that is one that cannot.
set_tests_properties(PortTest.AProcessEndsWhileThreadsWait Clock.TheScaleAppliesToStatedTimes PROPERTIES DISABLED ON)
