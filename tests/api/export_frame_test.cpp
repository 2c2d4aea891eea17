// The exports' boundary by itself: what a host gets when a row throws, and when there is no instance.
#include "api/export_frame.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "log/log_capture.h"

// Before load and after unload.
CPluginInstance* GetInstance()
{
    return nullptr;
}

TEST(ExportFrame, AnExceptionBecomesOneLineAndAFailure)
{
    LogCapture log(0x1FF);
    EXPECT_EQ(Export("PHN_X", [](CExportFrame&) -> PHN_ERROR { throw std::runtime_error("any"); }), PHN_ERROR_FAILED);
    EXPECT_EQ(Export("PHN_X", [](CExportFrame&) -> PHN_ERROR { throw CTextError(); }), PHN_ERROR_FAILED);
    const auto count = [](CExportFrame&, uint32_t* value) -> PHN_ERROR {
        *value = 7;
        throw std::bad_alloc();
    };
    EXPECT_EQ(ExportCount("PHN_Y", count), 0u);
    EXPECT_EQ(log.TakeLines(), (Lines{"CCalderApp Comment PHN_X is being executed.",
                                      "CCalderApp Error PHN_X - ended by an exception: unexpected exception.",
                                      "CCalderApp Comment PHN_X is being executed.",
                                      "CCalderApp Error PHN_X - ended by an exception: text conversion failed.",
                                      "CCalderApp Comment PHN_Y is being executed.",
                                      "CCalderApp Error PHN_Y - ended by an exception: out of memory."}));
}

TEST(ExportFrame, WithoutAnInstanceNothingIsCalled)
{
    LogCapture log(0x1FF);
    EXPECT_EQ(Export("PHN_X", [](CExportFrame& Frame) { return Frame.Device(); }), PHN_ERROR_NO_DEVICE);
    EXPECT_EQ(log.TakeLines(),
              (Lines{"CCalderApp Comment PHN_X is being executed.", "CCalderApp Error PHN_X - pInstance is NULL."}));
}
