#pragma once

namespace lamina {

// Plain records of floats for uniforms.

/// A colour, or a row of a matrix.
struct GPUVector3 {
    float one = 0;
    float two = 0;
    float three = 0;
    friend bool operator==(const GPUVector3&, const GPUVector3&) = default;
};

/// A colour with alpha, or a row of a matrix.
struct GPUVector4 {
    float one = 0;
    float two = 0;
    float three = 0;
    float four = 0;
    friend bool operator==(const GPUVector4&, const GPUVector4&) = default;
};

/// Goes to the GPU as it lies in memory, without transposing: a record `one` is the first *column* of the shader's
/// matrix.
struct GPUMatrix3x3 {
    GPUVector3 one;
    GPUVector3 two;
    GPUVector3 three;

    /// Leaves every vector as it is.
    static constexpr GPUMatrix3x3 identity() { return {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}; }
    friend bool operator==(const GPUMatrix3x3&, const GPUMatrix3x3&) = default;
};

/// As `GPUMatrix3x3`.
struct GPUMatrix4x4 {
    GPUVector4 one;
    GPUVector4 two;
    GPUVector4 three;
    GPUVector4 four;

    /// Leaves every vector as it is.
    static constexpr GPUMatrix4x4 identity() { return {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}; }
    friend bool operator==(const GPUMatrix4x4&, const GPUMatrix4x4&) = default;
};

} // namespace lamina
