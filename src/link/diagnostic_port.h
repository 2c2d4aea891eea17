// The handset's diagnostic port: frames requests and unframes replies, over overlapped I/O. Every wait also ends when
// the port is being closed or the library unloaded, and every operation is over before its buffer and its event go.
// How the bytes of a reply are gathered is a step of its own: here a read ends by silence on the line, and
// prompt_port.h has the other way.
#pragma once

#include <memory>
#include <string>

#include "link/frame_codec.h"
#include "link/overlapped.h"
#include "link/port.h"

class DP : public CPort, public CFrameCodec
{
public:
    explicit DP(std::string strPath);

    // Writes one request record as one frame; waits at most 15 seconds.
    bool Write(HANDLE hPort, const void* pData, DWORD dwLength, DWORD* pdwWritten, DWORD* pdwError) override;

    // Reads until one reply frame is complete, in at most three reads that wait dwTimeout each, and delivers its
    // payload and 13 bytes more (CFrameCodec::DecomposeData).
    bool Read(HANDLE hPort, void* pBuffer, DWORD dwSize, DWORD* pdwRead, DWORD* pdwError, DWORD dwTimeout) override;

protected:
    static constexpr DWORD kBufferSize = 50001; // of received, and of decoded bytes

    // A reply that is being read.
    struct SReply
    {
        HANDLE hPort;
        DWORD dwTimeout;
        DWORD* pdwError;
        COverlappedOperation Operation{};
        DWORD dwDecoded = 0; // bytes of the accumulator; behind them it is stale
        DWORD dwCounted = 0; // those decoded before this read, and those received in it: fewer than kBufferSize
    };

    // Called before a request is written.
    virtual void DropLeftovers(HANDLE) const {}

    // One read: takes bytes until none comes for 10 ms. What is in the accumulator then is judged.
    virtual bool Gather(SReply& Reply);

    // Reads into the chunk, and fails when that takes longer than the time-out; where silence ends it, 10 ms without a
    // byte end it before.
    bool ReadChunk(SReply& Reply, DWORD dwSize, DWORD dwTimeout, bool bSilenceEnds, DWORD* pdwGot);

    // Decodes the chunk's bytes onto the accumulator's end.
    bool Append(SReply& Reply, DWORD dwGot);

    const uint8_t* GetDecoded() const { return m_pAccumulator.get(); }

private:
    // Into the accumulator. The read's event is closed when this returns.
    bool ReadFrame(HANDLE hPort, DWORD dwTimeout, DWORD* pdwError, DWORD* pdwDecoded);

    std::unique_ptr<uint8_t[]> m_pChunk;       // received bytes of one read
    std::unique_ptr<uint8_t[]> m_pAccumulator; // decoded bytes of one reply
};
