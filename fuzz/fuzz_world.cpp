#include "fuzz/fuzz_world.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "link/exec_command.h"
#include "log/log_file.h"

namespace fuzz {
namespace {

class Port final : public CPort
{
public:
    explicit Port(World& world) : CPort("fuzz"), world_(world) {}

    bool Write(HANDLE, const void*, DWORD length, DWORD* written, DWORD*) override
    {
        *written = length;
        return true;
    }

    bool Read(HANDLE, void* buffer, DWORD size, DWORD* read, DWORD* error, DWORD) override
    {
        const auto reply = world_.TakeReply();
        const size_t length = std::min<size_t>(reply.size(), size);
        std::copy_n(reply.begin(), length, static_cast<uint8_t*>(buffer));
        std::fill_n(static_cast<uint8_t*>(buffer) + length, size - length, uint8_t{0});
        *read = static_cast<DWORD>(length);
        *error = reply.empty() ? 121 : 0;
        return !reply.empty();
    }

private:
    World& world_;
};

} // namespace

World& World::Get()
{
    static World& world = *new World;
    return world;
}

World::World()
{
    std::string folder = std::filesystem::temp_directory_path() / "phn-fuzz-XXXXXX";
    if (!mkdtemp(folder.data()))
        throw std::runtime_error(folder);
    const std::string registry = folder + "/log.reg";
    std::ofstream(registry) << "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk]\n"
                               "\"Logging Level\"=dword:00000000\n";
    setenv("PHNNRV_REGISTRY", registry.c_str(), 1);
    CreateLogLock();
    CreateCommandLock();
    port_ = std::make_shared<COpenPort>(MakeEvent(), std::make_unique<Port>(*this));
    SetDeviceOwner(this);
}

std::span<const uint8_t> World::TakeReply()
{
    size_t length = replies_.size();
    if (length > 2) {
        length = std::min<size_t>(length - 2, replies_[0] | size_t{replies_[1]} << 8);
        replies_ = replies_.subspan(2);
    }
    const auto reply = replies_.first(length);
    replies_ = replies_.subspan(length);
    return reply;
}

} // namespace fuzz
