#include "simulator/lines/pipe_line_windows.h"

#include <windows.h>

#include <cstddef>
#include <vector>

namespace simulator {
namespace {

// Allows the user of this process everything, and nobody else anything.
class OwnUserOnly
{
public:
    OwnUserOnly()
    {
        HANDLE opened = nullptr;
        if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened))
            ThrowLastError("the user's token");
        const Handle token(opened);
        DWORD size = 0;
        GetTokenInformation(opened, TokenUser, nullptr, 0, &size);
        user_.resize(size);
        if (!GetTokenInformation(opened, TokenUser, user_.data(), size, &size))
            ThrowLastError("the user's name");
        const PSID sid = reinterpret_cast<const TOKEN_USER*>(user_.data())->User.Sid;
        list_.resize(sizeof(ACL) + sizeof(ACCESS_ALLOWED_ACE) + GetLengthSid(sid));
        auto* list = reinterpret_cast<ACL*>(list_.data());
        if (!InitializeAcl(list, static_cast<DWORD>(list_.size()), ACL_REVISION) ||
            !AddAccessAllowedAce(list, ACL_REVISION, GENERIC_ALL, sid) ||
            !InitializeSecurityDescriptor(&descriptor_, SECURITY_DESCRIPTOR_REVISION) ||
            !SetSecurityDescriptorDacl(&descriptor_, TRUE, list, FALSE))
            ThrowLastError("who may open a pipe");
    }

    SECURITY_ATTRIBUTES* Get() { return &attributes_; }

private:
    std::vector<std::byte> user_;
    std::vector<std::byte> list_;
    SECURITY_DESCRIPTOR descriptor_{};
    SECURITY_ATTRIBUTES attributes_{sizeof attributes_, &descriptor_, FALSE};
};

} // namespace

PipeLine::PipeLine(const std::string& name)
{
    constexpr DWORD kBuffer = 65536;
    OwnUserOnly security;
    open_.Reset(CreateNamedPipeA(
        name.c_str(), PIPE_ACCESS_DUPLEX | FILE_FLAG_FIRST_PIPE_INSTANCE | FILE_FLAG_OVERLAPPED,
        PIPE_TYPE_BYTE | PIPE_READMODE_BYTE | PIPE_REJECT_REMOTE_CLIENTS, 1, kBuffer, kBuffer, 0, security.Get()));
    if (open_.Get() == INVALID_HANDLE_VALUE)
        ThrowLastError(name);
}

std::size_t PipeLine::Read(std::span<std::uint8_t> buffer)
{
    if (!isConnected_ && !Connect())
        return 0;
    const std::size_t size = HandleLine::Read(buffer);
    hasSent_ = hasSent_ || size != 0;
    return size;
}

bool PipeLine::Write(std::span<const std::uint8_t> bytes)
{
    return HandleLine::Write(bytes) || !IsInterrupted();
}

// Waits for a client. One that has come before, and perhaps gone, may have left bytes.
bool PipeLine::Connect()
{
    const auto begin = [this](void* record) {
        auto* overlapped = static_cast<OVERLAPPED*>(record);
        if (ConnectNamedPipe(open_.Get(), overlapped))
            return true;
        const bool isThere = GetLastError() == ERROR_PIPE_CONNECTED || GetLastError() == ERROR_NO_DATA;
        return isThere && SetEvent(overlapped->hEvent);
    };
    isConnected_ = Transfer(begin) >= 0;
    return isConnected_;
}

bool PipeLine::HostHasGone()
{
    DisconnectNamedPipe(open_.Get());
    ClientHasGone();
    return Connect();
}

void PipeLine::ClientHasGone()
{
    if (std::exchange(hasSent_, false))
        hostClosed_();
}

} // namespace simulator
