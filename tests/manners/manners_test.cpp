// What a session leaves as it was in the host's process, and what it asks of the kernel.
#include "manners/host_session.h"
#include "manners/process_state.h"
#include "manners/system_call_list.h"

#include <sys/wait.h>
#include <unistd.h>

#include <thread>

namespace {

class Manners : public HostSession
{
protected:
    // As a contact, an event and a PDU: it is taken as one of them, or refused.
    void Write(std::string text)
    {
        const auto size = static_cast<uint32_t>(text.size());
        PHN_CONTACT_RECORD contact{sizeof contact, text.data(), size};
        CALL(PHN_SetContact)(0, &contact);
        PHN_EVENT_RECORD event{sizeof event, text.data(), size};
        CALL(PHN_SetEvent)(0, &event);
        PHN_SMS_MESSAGE message{sizeof message, reinterpret_cast<uint8_t*>(text.data()), size, 0, 0};
        CALL(PHN_SendMessage)(&message);
    }
};

TEST_F(Manners, ASessionLeavesTheProcessAsItWas)
{
    const std::vector<std::string> before = ProcessState(), inherited = InheritedDescriptors();
    Run([&] {
        EXPECT_EQ(ProcessState(), before);
        EXPECT_EQ(InheritedDescriptors(), inherited);
    });
    EXPECT_EQ(ProcessState(), before);
    EXPECT_EQ(InheritedDescriptors(), inherited);
}

TEST_F(Manners, NoControllingTerminalIsTaken)
{
    ASSERT_FALSE(HasControllingTerminal());
    Run([] { EXPECT_FALSE(HasControllingTerminal()); });
}

TEST_F(Manners, ASessionNeedsFewSystemCalls)
{
    EXPECT_LT(std::size(kSessionCalls), 45u);
    std::thread([this] {
        AllowSessionCallsOnly();
        Run();
    }).join();
}

TEST_F(Manners, TheLogTellsNothingOfTheOwner)
{
    const std::string planted = "739184625", code = planted.substr(0, 4);
    bench_.Handset().Change(0, [&](simulator::Phone& phone) {
        for (auto& [id, contact] : phone.contacts) {
            contact.firstName = contact.lastName = planted;
            for (simulator::ContactEntry& entry : contact.entries)
                entry.value = planted;
        }
        for (auto& [index, event] : phone.events)
            event.description = planted;
        for (auto& [index, message] : phone.messages)
            message.address = message.body = planted;
        for (auto& [id, call] : phone.calls)
            call.text = planted;
    });
    StartService();
    const std::string read = CallAll();
    int found = 0;
    for (size_t at = read.find(planted); at != read.npos; at = read.find(planted, at + planted.size()))
        ++found;
    EXPECT_GE(found, 6) << "the stores were read";
    const std::string event = "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nDESCRIPTION:" + planted + "\r\nDTSTART:";
    for (const std::string& text :
         {"BEGIN:VCARD\r\nVERSION:3.0\r\nFN:" + planted + "\r\nTEL;TYPE=CELL:" + planted + "\r\nEND:VCARD\r\n",
          event + "20260704T180000\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n", event + planted, planted})
        Write(text);
    bench_.Handset().Change(0, [&](simulator::Phone& phone) { phone.setup.lockCode = code; });
    EXPECT_EQ(CALL(PHN_SetLock)(1, code.c_str()), PHN_ERROR_NONE);
    EXPECT_EQ(CALL(PHN_ChangeLockCode)(code.c_str(), "8462"), PHN_ERROR_NONE);
    for (const std::string& line : bench_.TakeLog())
        for (const std::string& secret : {planted, code, std::string("8462")})
            EXPECT_EQ(line.find(secret), std::string::npos) << line;
}

} // namespace

// The first terminal that the leader of a session opens becomes its controlling one, unless it is opened otherwise: the
// tests run as such a leader, which only a child of this process is sure to become.
int main(int count, char** arguments)
{
    testing::InitGoogleTest(&count, arguments);
    if (const pid_t child = fork(); child != 0) {
        int status = 1;
        return waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : 1;
    }
    setsid();
    return RUN_ALL_TESTS();
}
