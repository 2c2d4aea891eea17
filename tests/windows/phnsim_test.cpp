// phnsim.exe on a serial port: what it keeps when its console window is closed, and how it ends when the port has gone.
#include "simulator/host_side.h"
#include "support/files.h"
#include "temporary_folder.h"
#include "windows/driver.h"
#include "windows/port_peer.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>

namespace {

constexpr DWORD kPatience = 20'000;

// On the test run's port, in a console of its own.
class PhnsimTest : public testing::Test
{
protected:
    PhnsimTest()
    {
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        HANDLE end = nullptr;
        CreatePipe(&output_, &end, &inherited, 0);
        SetHandleInformation(output_, HANDLE_FLAG_INHERIT, 0);
        std::ofstream(folder_.Path() / "script") << "set battery/battery2 41\n";
        const std::string program = driver::BuiltLibrary().replace_filename("phnsim.exe").string();
        std::string command =
            "\"" + program + "\" --ready --script script --data data --port " + std::getenv("PHNNRV_TEST_PORT");
        STARTUPINFOA startup{};
        startup.cb = sizeof startup;
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdOutput = startup.hStdError = end;
        const std::string folder = folder_.Path().string();
        EXPECT_TRUE(CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, CREATE_NEW_CONSOLE, nullptr,
                                   folder.c_str(), &startup, &phnsim_))
            << command;
        CloseHandle(end);
        while (said_.find("{\"ready\":true") == std::string::npos && ReadMore())
            ;
    }
    ~PhnsimTest() override
    {
        TerminateProcess(phnsim_.hProcess, 1); // nothing, when it has ended
        for (const HANDLE handle : {phnsim_.hThread, phnsim_.hProcess, output_})
            CloseHandle(handle);
    }

    bool ReadMore()
    {
        std::array<char, 4096> bytes;
        DWORD size = 0;
        const bool isOpen = ReadFile(output_, bytes.data(), bytes.size(), &size, nullptr);
        said_.append(bytes.data(), size);
        return isOpen;
    }

    // As the system does it: the program's handlers are called on a thread of their own, then it is ended.
    void CloseConsole()
    {
        const HMODULE system = GetModuleHandleA("kernelbase.dll");
        auto* const routine = reinterpret_cast<void*>(GetProcAddress(system, "CtrlRoutine"));
        const HANDLE thread =
            CreateRemoteThread(phnsim_.hProcess, nullptr, 0, reinterpret_cast<LPTHREAD_START_ROUTINE>(routine),
                               reinterpret_cast<void*>(UINT_PTR{CTRL_CLOSE_EVENT}), 0, nullptr);
        ASSERT_TRUE(thread) << GetLastError();
        EXPECT_EQ(WaitForSingleObject(thread, kPatience), WAIT_OBJECT_0);
        TerminateProcess(phnsim_.hProcess, 1);
        CloseHandle(thread);
    }

    DWORD ExitStatus() const
    {
        DWORD status = 0;
        EXPECT_EQ(WaitForSingleObject(phnsim_.hProcess, kPatience), WAIT_OBJECT_0) << "still running";
        EXPECT_TRUE(GetExitCodeProcess(phnsim_.hProcess, &status));
        return status;
    }

    std::string Saved() const { return ReadAll(folder_.Path() / "data"); }

    std::string said_;

private:
    const TemporaryFolder folder_;
    HANDLE output_ = nullptr;
    PROCESS_INFORMATION phnsim_{};
};

TEST_F(PhnsimTest, SavesWhenItsConsoleIsClosed)
{
    CloseConsole();
    EXPECT_NE(Saved().find("\"battery2\": 41"), std::string::npos) << Saved();
}

// The last test, as the port is the whole run's.
TEST_F(PhnsimTest, ServesThePortUntilItHasGone)
{
    const SOCKET peer = PortPeer();
    setsockopt(peer, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&kPatience), sizeof kPatience);
    const host::Bytes request = host::Frame(1, host::Record(1, {}));
    send(peer, reinterpret_cast<const char*>(request.data()), static_cast<int>(request.size()), 0);
    char last = 0;
    while (last != static_cast<char>(simulator::kFlag) && recv(peer, &last, 1, 0) == 1)
        ;
    EXPECT_EQ(last, static_cast<char>(simulator::kFlag));
    closesocket(peer);
    EXPECT_EQ(ExitStatus(), 1u);
    while (ReadMore())
        ;
    EXPECT_NE(said_.find("phnsim: the port is lost: COM5: "), std::string::npos) << said_;
    EXPECT_NE(Saved().find("\"battery2\": 41"), std::string::npos);
}

} // namespace
