#include "api/handset_fixture.h"

#include <stdexcept>

HandsetTest::~HandsetTest()
{
    if (library_)
        FreeLibrary(library_);
}

void HandsetTest::Load()
{
    library_ = LoadLibraryA(bench_.LibraryPath().c_str());
    if (!library_)
        throw std::runtime_error("the library does not load: " + std::to_string(GetLastError()));
}

void HandsetTest::StartService()
{
    bench_.Plug();
    Load();
    if (const PHN_ERROR error = CALL(PHN_Startup)())
        throw std::runtime_error("PHN_Startup: " + std::to_string(error));
    bench_.TakeLog();
}

void* HandsetTest::FindAddress(const char* name) const
{
    void* const address = reinterpret_cast<void*>(GetProcAddress(library_, name));
    if (!address)
        throw std::runtime_error(std::string("not exported: ") + name);
    return address;
}
