// The present device interfaces of one class, one path after the other, and the registry key that a path leads to: how
// the device object's traversal finds the maker's. Failures and the end of the list are logged here, as the traversal's
// own lines.
#pragma once

#include <string>
#include <string_view>

#include <windows.h>

#include <setupapi.h>

extern const GUID kDiagnosticInterface; // of the handset's maker; such a port is opened as a diagnostic port
extern const GUID kModemInterface;      // the standard modem class

class CInterfaceList
{
public:
    explicit CInterfaceList(const GUID& Class);
    ~CInterfaceList();
    CInterfaceList(const CInterfaceList&) = delete;
    CInterfaceList& operator=(const CInterfaceList&) = delete;

    // The next path, lower-cased. False at the end of the list and on failure.
    bool Next(std::string* pstrPath);

private:
    bool GetDetail(SP_DEVICE_INTERFACE_DATA* pInterface, std::string* pstrPath);

    GUID m_Class;
    HDEVINFO m_hList;
    DWORD m_dwIndex = 0;
};

// Whether the lower-cased interface path or notification name is of a USB device of the handset's maker.
bool IsMakersDevice(std::string_view strName);

// The key, under HKEY_LOCAL_MACHINE, of the parameters of the USB device with this interface path. Empty when it does
// not fit a key path's 259 characters.
std::string UsbParametersKey(std::string_view strPath);

// Whether the serial port of this name belongs to the USB device with this interface path.
bool CheckIfUSB(std::string_view strPath, const std::string& strPort);

// The lower-cased path of the maker's first present interface of the class, or of the one that the port pszPort belongs
// to if it is not null.
bool FindMakersInterface(const GUID& Class, std::string* pstrPath, const char* pszPort);
