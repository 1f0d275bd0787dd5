#pragma once

#include <vector>

namespace lamina {

/// How one axis of a picture lands on the device: device = offset + scale · source, both counted from pixel edges.
/// A negative scale mirrors.
struct AxisMapping {
    int sourceLength = 0;
    double scale = 1;
    double offset = 0;
};

enum class ResampleFilter {
    Best,    ///< chosen by the scale: see makeAxisTable
    Nearest, ///< the sample under the pixel's centre
    Area,    ///< the mean of the source span under the pixel, at any scale
};

/// Which source samples make each output sample of one axis, and by what weights. Every output has the same number of
/// taps (unused ones weigh nothing), and all of them lie inside the source.
struct AxisTable {
    int begin = 0; ///< first output
    int end = 0;   ///< one past the last
    int taps = 1;
    double step = 1;        ///< source samples from one output to the next
    double reach = 1;       ///< source samples that an output reads by rights: `taps` without regard to edges and range
    std::vector<int> first; ///< an output's first source sample
    std::vector<float> weights; ///< `taps` of them an output; their sum is 1
    bool copies = false;        ///< output i is source sample `first[0] + i - begin`, untouched
    bool overshoots = false;    ///< some weights are negative, so that results may leave the range of the source
    int sourceBegin = 0;        ///< the source samples that are used at all
    int sourceEnd = 0;

    int count() const { return end - begin; }
    int firstOf(int output) const { return first[static_cast<unsigned>(output - begin)]; }
    const float* weightsOf(int output) const
    {
        return weights.data() + static_cast<long>(output - begin) * static_cast<long>(taps);
    }
};

/// The table for device pixels [begin, end), which should touch the picture. The filter follows |scale|:
///
///   up to 1/2   the mean of the source span under the pixel, cut to the picture
///   below 1     Lanczos, three lobes, widened to device pixels
///   above       Keys' cubic convolution, a = -1/2; an exact copy where scale is ±1 and the offset is whole
///
/// Samples beyond the edge repeat the edge. Memory grows with the range and the source, never with the scale.
AxisTable makeAxisTable(const AxisMapping& mapping, int begin, int end, ResampleFilter filter = ResampleFilter::Best);

} // namespace lamina
