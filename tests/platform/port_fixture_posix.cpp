#include <poll.h>
#include <pty.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

#include "platform/pty_fixture.h"

PortTest::PortTest() : farEnd(std::make_unique<FarEnd>())
{
    setenv("PHNNRV_DEVICES", farEnd->directory.c_str(), 1);
    int terminal = -1;
    std::array<char, 64> name{};
    if (openpty(&farEnd->master, &terminal, name.data(), nullptr, nullptr))
        throw std::system_error(errno, std::generic_category());
    close(terminal);
    std::filesystem::create_symlink(name.data(), farEnd->directory / "com5");
}

PortTest::~PortTest()
{
    farEnd->HangUp();
}

void PortTest::FarEnd::HangUp()
{
    if (master >= 0)
        close(master);
    master = -1;
}

void PortTest::SetUp() {}

std::string PortTest::PortName() const
{
    return "\\\\?\\COM5";
}

void PortTest::Send(std::string_view bytes)
{
    ASSERT_EQ(write(farEnd->master, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
}

int PortTest::ReceiveSome(char* bytes, int room)
{
    pollfd ready{farEnd->master, POLLIN, 0};
    return poll(&ready, 1, 5000) > 0 ? static_cast<int>(read(farEnd->master, bytes, static_cast<std::size_t>(room)))
                                     : 0;
}
