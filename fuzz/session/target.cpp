// A hostile handset and a careless host, from the port's arrival to its removal.
#include "fuzz/session/session.h"

namespace {

class InputReplier final : public fuzz::Replier
{
public:
    explicit InputReplier(fuzz::Input& input) : input_(input) {}
    fuzz::Reply Answer(std::span<const std::uint8_t>, bool isFramed) override
    {
        return fuzz::HostileReply(input_, isFramed);
    }

private:
    fuzz::Input& input_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input({data, size});
    InputReplier replier(input);
    fuzz::Session(input, replier).Run();
    return 0;
}
