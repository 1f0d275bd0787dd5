// The libFuzzer target of curve files.

#include "CurveCheck.h"

#include "platform/base/Log.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace lamina;
    [[maybe_unused]] static const LogSink quiet = setLogSink([](LogLevel, std::string_view) {});
    const std::string fault = faultOf(GPUImageACVFile::makeWithACVFileData({data, size}), size);
    if (!fault.empty()) {
        std::fprintf(stderr, "%s\n", fault.c_str());
        std::abort();
    }
    return 0;
}
