// The exports' boundary by itself: what a host gets when a row throws, and when there is no instance.
#include "api/export_frame.h"

#include <filesystem>
#include <stdexcept>

#include "api/handset_fixture.h"
#include "log/log_file.h"

// Before load and after unload.
CPluginInstance* GetInstance()
{
    return nullptr;
}

namespace {

using Lines = std::vector<std::string>;

class ExportFrameTest : public testing::Test
{
protected:
    ExportFrameTest()
    {
        // Without the module, the log file lies in the current folder.
        std::filesystem::current_path(std::filesystem::path(bench_.LibraryPath()).parent_path());
        CreateLogLock();
    }
    ~ExportFrameTest() override
    {
        CloseLog();
        DestroyLogLock();
        std::filesystem::current_path("/");
    }

    TestBench bench_;
};

TEST_F(ExportFrameTest, AnExceptionBecomesOneLineAndAFailure)
{
    EXPECT_EQ(Export("PHN_X", [](CExportFrame&) -> PHN_ERROR { throw std::bad_alloc(); }), PHN_ERROR_FAILED);
    EXPECT_EQ(Export("PHN_Y", [](CExportFrame&) -> PHN_ERROR { throw std::runtime_error("any"); }), PHN_ERROR_FAILED);
    EXPECT_EQ(ExportCount("PHN_Z",
                          [](CExportFrame&, uint32_t* count) -> PHN_ERROR {
                              *count = 7;
                              throw std::bad_alloc();
                          }),
              0u);
    EXPECT_EQ(bench_.TakeLog(), (Lines{"CCalderApp\tComment\tPHN_X is being executed.",
                                       "CCalderApp\tError\tPHN_X - ended by an exception: out of memory.",
                                       "CCalderApp\tComment\tPHN_Y is being executed.",
                                       "CCalderApp\tError\tPHN_Y - ended by an exception: unexpected exception.",
                                       "CCalderApp\tComment\tPHN_Z is being executed.",
                                       "CCalderApp\tError\tPHN_Z - ended by an exception: out of memory."}));
}

TEST_F(ExportFrameTest, WithoutAnInstanceNothingIsCalled)
{
    EXPECT_EQ(Export("PHN_X", [](CExportFrame& Frame) { return Frame.Device(); }), PHN_ERROR_NO_DEVICE);
    EXPECT_EQ(ExportCount("PHN_Y", [](CExportFrame& Frame, uint32_t*) { return Frame.Device(); }), 0u);
    EXPECT_EQ(
        bench_.TakeLog(),
        (Lines{"CCalderApp\tComment\tPHN_X is being executed.", "CCalderApp\tError\tPHN_X - pInstance is NULL.",
               "CCalderApp\tComment\tPHN_Y is being executed.", "CCalderApp\tError\tPHN_Y - pInstance is NULL."}));
}

} // namespace
