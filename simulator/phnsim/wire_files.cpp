#include "simulator/phnsim/wire_files.h"

#include "simulator/recording/tap.h"

namespace simulator {

WireFiles::WireFiles(const Options& options)
    : packets_(options.port.kind, [this](const Packet& packet) {
          if (recording_)
              recording_->Write(packet);
          if (capture_)
              capture_->Write(packet);
      })
{
    if (!options.record.empty())
        recording_.emplace(options.record,
                           RecordingHeader{.program = "phnsim " PHN_VERSION, .kind = options.port.kind});
    if (!options.pcap.empty())
        capture_.emplace(options.pcap, options.port.kind);
}

LineOpener WireFiles::Tap(LineOpener lines)
{
    if (!recording_ && !capture_)
        return lines;
    return Tapped(std::move(lines), [this](const Chunk& chunk) { packets_.Take(chunk); });
}

void WireFiles::Check() const
{
    if (recording_)
        recording_->Check();
    if (capture_)
        capture_->Check();
}

} // namespace simulator
