#pragma once

#include <Graphics2/Vector.hpp>

#include <optional>
#include <vector>

namespace vantel {

// Value noise on a 4096-entry lattice table: trilinear interpolation with a
// cosine ease, summed over octaves with a falling amplitude. A reference
// object because the table and the lazily computed wrap steps belong to one
// generator; not safe for concurrent use (the shared one included).
class PerlinGenerator {
public:
    // A freshly filled table from the secure random source: every generator
    // differs and none can be seeded.
    PerlinGenerator();
    PerlinGenerator(const PerlinGenerator&) = delete;
    PerlinGenerator& operator=(const PerlinGenerator&) = delete;

    // Created once, on first use, also under concurrent first access.
    static PerlinGenerator& shared();

    // The shifts, steps and mask the algorithm is built on. noise() uses the
    // constants directly, so these only describe it.
    int yWrapB() const { return 4; }
    int yWrap();
    int zWrapB() const { return 8; }
    int zWrap();
    int size() const { return 4095; }

    int octives = 2;  // spelled so on purpose: it is the field's known name
    double ampFalloff = 0.5;
    std::vector<double> perlin;

    // Mirror-symmetric about each axis plane. Per octave the x fraction is
    // raised by 2 while y and z are doubled; that asymmetry is the shape of
    // this noise and is kept. A negative octave count, a coordinate without
    // a 64-bit integer floor, or a table offset that overflows stops the
    // process: they are programming errors.
    double noise(double x, double y, double z);
    double noise(const Vector& v) { return noise(v.x, v.y, v.z); }

private:
    std::optional<int> yWrap_;
    std::optional<int> zWrap_;
};

}  // namespace vantel
