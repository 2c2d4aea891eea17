# A test that the emulator of a 32-bit build cannot run, which ctest then names as disabled: to end in a process without
# other threads it starts its own program anew, and the kernel that has to do that is one that cannot.
set_tests_properties(Clock.TheScaleAppliesToStatedTimes PROPERTIES DISABLED ON)
