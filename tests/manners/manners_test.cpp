// What a session leaves as it was in the host's process, and what it asks of the kernel.
#include "manners/host_session.h"
#include "manners/process_state.h"
#include "manners/system_call_list.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <thread>

namespace {

class Manners : public HostSession
{
protected:
    std::string ReadAll();
    void Write(std::string text);
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
    EXPECT_LT(SessionCallCount(), 45u);
    std::thread([this] {
        AllowSessionCallsOnly();
        Run();
    }).join();
}

// Fills every text and number of the owner's with this one.
void Plant(simulator::Phone& phone, const std::string& planted)
{
    phone.setup.lockCode = planted.substr(0, 4);
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
}

// What the exports read of the stores, one after the other.
std::string Manners::ReadAll()
{
    std::array<uint8_t, 1500> room{};
    std::string read;
    const auto take = [&](PHN_ERROR error) {
        if (!error)
            read.append(room.begin(), room.end());
    };
    for (uint32_t index = 0; index < 20; ++index) {
        PHN_CONTACT_RECORD contact{sizeof contact, reinterpret_cast<char*>(room.data()), room.size()};
        take(CALL(PHN_GetContact)(index, &contact));
        PHN_EVENT_RECORD event{sizeof event, reinterpret_cast<char*>(room.data()), room.size()};
        take(CALL(PHN_GetEvent)(index, &event));
    }
    for (int32_t box = PHN_MESSAGE_BOX_FIRST; box <= PHN_MESSAGE_BOX_LAST; ++box) {
        PHN_SMS_MESSAGE message{sizeof message, room.data(), room.size(), 0, 0};
        for (PHN_ERROR error = CALL(PHN_GetFirstMessage)(box, &message); !error;
             error = CALL(PHN_GetNextMessage)(&message))
            take(error);
    }
    for (int32_t list = 0; list < 3; ++list) {
        PHN_CALL_ENTRY call{};
        call.uSize = sizeof call;
        for (PHN_ERROR error = CALL(PHN_GetFirstCallEntry)(list, &call); !error;
             error = CALL(PHN_GetNextCallEntry)(&call))
            read += call.szEntryText;
    }
    return read;
}

// As a contact, an event and a PDU: it is taken as one of them, or refused.
void Manners::Write(std::string text)
{
    const auto size = static_cast<uint32_t>(text.size());
    PHN_CONTACT_RECORD contact{sizeof contact, text.data(), size};
    CALL(PHN_SetContact)(0, &contact);
    PHN_EVENT_RECORD event{sizeof event, text.data(), size};
    CALL(PHN_SetEvent)(0, &event);
    PHN_SMS_MESSAGE message{sizeof message, reinterpret_cast<uint8_t*>(text.data()), size, 0, 0};
    CALL(PHN_SendMessage)(&message);
}

TEST_F(Manners, TheLogTellsNothingOfTheOwner)
{
    const std::string planted = "739184625", code = planted.substr(0, 4);
    bench_.Handset().Change(0, [&](simulator::Phone& phone) { Plant(phone, planted); });
    StartService();
    const std::string read = ReadAll();
    int found = 0;
    for (size_t at = read.find(planted); at != read.npos; at = read.find(planted, at + planted.size()))
        ++found;
    EXPECT_GE(found, 8) << "the stores were read";
    const std::string event = "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nDESCRIPTION:" + planted + "\r\nDTSTART:";
    for (const std::string& text :
         {"BEGIN:VCARD\r\nVERSION:3.0\r\nFN:" + planted + "\r\nTEL;TYPE=CELL:" + planted + "\r\nEND:VCARD\r\n",
          event + "20260704T180000\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n", event + planted, planted})
        Write(text);
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
