// One libFuzzer target per format, whose decoder is LAMINA_FUZZ_DECODER: the one that works in this process.

#include "ArrivalCheck.h"
#include "DecodeCheck.h"

#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/decoder/BareDecoders_p.h"

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
    static const PictureDecoder& decoder = LAMINA_FUZZ_DECODER;
    if (!decoder.recognizes(bytes.first(std::min<std::size_t>(size, 64))))
        return 0;
    for (const int shortSide : {0, 5}) {
        DecodeOptions options;
        options.memoryLimit = kFuzzMemoryLimit;
        options.shortSide = shortSide;
        const auto source = memorySource(bytes);
        const Result<UIImage> decoded = decoder.decode(*source, options);
        if (const std::string fault = faultOf(decoded); !fault.empty())
            stop(fault);
        if (shortSide > 0)
            continue;
        if (const std::string fault = faultOfFacts(bytes, decoded); !fault.empty())
            stop(fault);
        if (const std::string fault = decoder.incremental ? faultOfArrival(bytes, decoded) : ""; !fault.empty())
            stop(fault);
    }
    return 0;
}
