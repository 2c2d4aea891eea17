// The handset's diagnostic port: frames requests and unframes replies, over overlapped I/O. Every wait also ends when
// the port is being closed or the library unloaded, and every operation is over before its buffer and its event go.
#pragma once

#include <memory>
#include <string>

#include "link/frame_codec.h"
#include "link/port.h"

class COverlappedOperation;

class DP final : public CPort, public CFrameCodec
{
public:
    explicit DP(std::string strPath);

    // Writes one request record as one frame; waits at most 15 seconds.
    bool Write(HANDLE hPort, const void* pData, DWORD dwLength, DWORD* pdwWritten, DWORD* pdwError) override;

    // Reads until one reply frame is complete, in at most three reads that wait dwTimeout each, and delivers its
    // payload and 13 bytes more (CFrameCodec::DecomposeData).
    bool Read(HANDLE hPort, void* pBuffer, DWORD dwSize, DWORD* pdwRead, DWORD* pdwError, DWORD dwTimeout) override;

private:
    bool ReadFrame(HANDLE hPort, DWORD* pdwTotal, DWORD* pdwError, DWORD dwTimeout);
    bool ReadChunk(HANDLE hPort, COverlappedOperation& Operation, DWORD* pdwGot, DWORD* pdwError, DWORD dwTimeout);

    std::unique_ptr<uint8_t[]> m_pChunk;       // received bytes of one read
    std::unique_ptr<uint8_t[]> m_pAccumulator; // decoded bytes of one reply
};
