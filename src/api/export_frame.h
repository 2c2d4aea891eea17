// The frame that every export runs in: the entry line, the boundary that no exception passes, the fixed failure lines,
// and the fixed sequence instance -> device object -> open port -> service object -> method. An export is its own row
// of checks, written as early returns in the order that hosts rely on; the order differs from export to export.
#pragma once

#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <utility>

#include <windows.h>

#include "api/service_descriptors.h"
#include "common/text.h"
#include "log/host_check.h"
#include "phnnrv.h"

// A method as its failure line names it. The tail precedes the error code.
struct SMethodName
{
    constexpr SMethodName(const char* pszMethod, const char* pszReturned = " returned false with weError = ")
        : m_pszMethod(pszMethod), m_pszTail(pszReturned)
    {
    }

    const char* m_pszMethod;
    const char* m_pszTail;
};

class CExportFrame
{
public:
    // Logs the entry line.
    explicit CExportFrame(const char* pszExport);
    CExportFrame(const CExportFrame&) = delete;
    CExportFrame& operator=(const CExportFrame&) = delete;

    // From now on: the library could not be loaded, and a host that does not learn it otherwise may call all the same.
    static void RefuseAll() noexcept;
    // 0, or PHN_ERROR_FAILED behind RefuseAll.
    PHN_ERROR CheckLoad() const;

    // The failed argument checks: each logs its line and returns the code.
    PHN_ERROR Null(const char* pszArgument) const;
    PHN_ERROR OutOfRange(const char* pszText, int32_t eType) const;
    PHN_ERROR Fail(PHN_ERROR weError, const char* pszText) const;

    // The check of a record's uSize; 0, or as above.
    template <typename TRecord>
    PHN_ERROR CheckSize(const char* pszArgument, const TRecord* pRecord, const char* pszRecord) const
    {
        CHostCheck::OnRecordSize(m_pszExport, pRecord->uSize);
        if (pRecord->uSize < sizeof *pRecord)
            return TooSmall(pszArgument, pRecord->uSize, pszRecord, sizeof *pRecord);
        return PHN_ERROR_NONE;
    }

    // The steps up to the open port; 0 or PHN_ERROR_NO_DEVICE.
    PHN_ERROR Device();

    // The device object's window; null before Device has succeeded.
    HWND GetDeviceWindow() const;

    // The steps up to the service object; 0, PHN_ERROR_NO_DEVICE or PHN_ERROR_NO_SERVICE_OBJECT.
    template <typename T>
    PHN_ERROR Service(const CServiceDescriptor<T>& Descriptor)
    {
        std::shared_ptr<T> pService;
        return Service(Descriptor, &pService);
    }

    // All steps, then the method with the port's handle, the arguments and its place for the error code.
    template <typename T, typename TMethod, typename... TArguments>
    PHN_ERROR Call(const CServiceDescriptor<T>& Descriptor, SMethodName Name, TMethod Method, TArguments... Arguments)
    {
        std::shared_ptr<T> pService;
        if (const PHN_ERROR weError = Service(Descriptor, &pService))
            return weError;
        PHN_ERROR weError = PHN_ERROR_NONE;
        if (std::invoke(Method, *pService, m_hDevice, Arguments..., &weError))
            return PHN_ERROR_NONE;
        return MethodFailed(Descriptor.m_pszMember, Name, weError);
    }

    // The same for the methods that count: a place for the count instead of the error code.
    template <typename T, typename TMethod>
    PHN_ERROR Count(const CServiceDescriptor<T>& Descriptor, const char* pszMethod, TMethod Method, int32_t eType,
                    uint32_t* puCount)
    {
        std::shared_ptr<T> pService;
        if (const PHN_ERROR weError = Service(Descriptor, &pService))
            return weError;
        if (std::invoke(Method, *pService, m_hDevice, eType, puCount))
            return PHN_ERROR_NONE;
        return CountFailed(Descriptor.m_pszMember, pszMethod);
    }

private:
    template <typename T>
    PHN_ERROR Service(const CServiceDescriptor<T>& Descriptor, std::shared_ptr<T>* ppService)
    {
        if (const PHN_ERROR weError = Device())
            return weError;
        *ppService = (m_pInstance->*Descriptor.m_pSlot).Get();
        if (!*ppService)
            return ServiceMissing(Descriptor.m_pszMember);
        return PHN_ERROR_NONE;
    }

    PHN_ERROR TooSmall(const char* pszArgument, uint32_t uSize, const char* pszRecord, size_t nMinimum) const;
    PHN_ERROR ServiceMissing(const char* pszMember) const;
    PHN_ERROR MethodFailed(const char* pszMember, const SMethodName& Name, PHN_ERROR weError) const;
    PHN_ERROR CountFailed(const char* pszMember, const char* pszMethod) const;

    const CHostCall m_HostCall;
    const char* m_pszExport;
    CPluginInstance* m_pInstance = nullptr;
    std::shared_ptr<CDevice> m_pDevice;
    HANDLE m_hDevice = nullptr;
};

// What an exception that reached the boundary leaves behind: one Error line and PHN_ERROR_FAILED.
PHN_ERROR ReportException(const char* pszExport, const char* pszReason) noexcept;

// Runs an export's row inside the boundary.
template <typename TRow>
PHN_ERROR Export(const char* pszExport, const TRow& Row) noexcept
{
    try {
        CExportFrame Frame(pszExport);
        const PHN_ERROR weError = Frame.CheckLoad();
        return weError == PHN_ERROR_NONE ? Row(Frame) : weError;
    } catch (const std::bad_alloc&) {
        return ReportException(pszExport, "out of memory");
    } catch (const CTextError& Error) {
        return ReportException(pszExport, Error.what());
    } catch (...) {
        return ReportException(pszExport, "unexpected exception");
    }
}

// The same for an export that returns a count: the row stores it, and every failure gives 0.
template <typename TRow>
uint32_t ExportCount(const char* pszExport, const TRow& Row) noexcept
{
    uint32_t uCount = 0;
    const PHN_ERROR weError = Export(pszExport, [&](CExportFrame& Frame) { return Row(Frame, &uCount); });
    return weError == PHN_ERROR_NONE ? uCount : 0;
}

// Zeroes a host record from the given offset to its end as this library knows it.
template <typename TRecord>
void ClearFrom(TRecord* pRecord, size_t nOffset)
{
    std::memset(reinterpret_cast<char*>(pRecord) + nOffset, 0, sizeof *pRecord - nOffset);
}
