// One libFuzzer target per format, whose name is LAMINA_FUZZ_NAME.

#include "DecodeCheck.h"

#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureFormats.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

[[noreturn]] static void stop(const std::string& fault)
{
    std::fprintf(stderr, "%s\n", fault.c_str());
    std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace lamina;
    const std::span<const std::uint8_t> bytes(data, size);
    static const PictureFormat& format = *std::ranges::find(pictureFormats(), LAMINA_FUZZ_NAME, &PictureFormat::name);
    if (!format.decoder->recognizes(bytes.first(std::min<std::size_t>(size, 64))))
        return 0;
    for (const int shortSide : {0, 5}) {
        DecodeOptions options;
        options.memoryLimit = kFuzzMemoryLimit;
        options.shortSide = shortSide;
        const auto source = memorySource(bytes);
        const Result<UIImage> decoded = format.decoder->decode(*source, options);
        if (const std::string fault = faultOf(decoded); !fault.empty())
            stop(fault);
        if (shortSide > 0)
            continue;
        if (const std::string fault = faultOfFacts(bytes, decoded); !fault.empty())
            stop(fault);
    }
    return 0;
}
