#include <Graphics2/PerlinGenerator.hpp>

#include <Platform/Fatal.hpp>
#include <Platform/SecureRandom.hpp>

#include <cmath>
#include <cstdint>
#include <numbers>
#include <string>

namespace vantel {

namespace {

constexpr std::size_t tableLength = 4096;
constexpr std::int64_t tableMask = 4095;
constexpr std::int64_t yStep = 16;
constexpr std::int64_t zStep = 256;

std::int64_t checkedAdd(std::int64_t a, std::int64_t b) {
    std::int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) fatalError("Perlin noise: table offset overflows");
    return sum;
}

std::int64_t checkedDouble(std::int64_t a) {
    std::int64_t product = 0;
    if (__builtin_mul_overflow(a, std::int64_t{2}, &product)) {
        fatalError("Perlin noise: lattice coordinate overflows");
    }
    return product;
}

// The floor as a 64-bit integer; NaN, infinities and values past the
// integer range have none.
std::int64_t latticeFloor(double value) {
    double floored = std::floor(value);
    if (!(floored >= -9223372036854775808.0 && floored < 9223372036854775808.0)) {
        fatalError("Perlin noise: coordinate has no 64-bit integer floor");
    }
    return static_cast<std::int64_t>(floored);
}

double ease(double fraction) { return 0.5 * (1.0 - std::cos(fraction * std::numbers::pi)); }

struct Axis {
    std::int64_t lattice;
    double fraction;

    explicit Axis(double coordinate) {
        double value = std::fabs(coordinate);
        lattice = latticeFloor(value);
        fraction = value - std::floor(value);
    }

    void carry() {
        if (fraction >= 1.0) {
            lattice = checkedAdd(lattice, 1);
            fraction -= 1.0;
        }
    }
};

}  // namespace

PerlinGenerator::PerlinGenerator() {
    perlin.reserve(tableLength);
    for (std::size_t i = 0; i < tableLength; ++i) perlin.push_back(secureRandomUnitClosed());
}

PerlinGenerator& PerlinGenerator::shared() {
    static PerlinGenerator generator;
    return generator;
}

int PerlinGenerator::yWrap() {
    if (!yWrap_) yWrap_ = 1 << yWrapB();
    return *yWrap_;
}

int PerlinGenerator::zWrap() {
    if (!zWrap_) zWrap_ = 1 << zWrapB();
    return *zWrap_;
}

double PerlinGenerator::noise(double x, double y, double z) {
    // No octave reads a coordinate, so none of them needs an integer floor.
    if (octives < 0) fatalError("Perlin noise: negative octave count");
    if (octives == 0) return 0.0;
    // The mask reads every index below 4096; a replaced table must cover them.
    if (perlin.size() < tableLength) {
        fatalError("Perlin noise: the table holds " + std::to_string(perlin.size()) + " values, " +
                   std::to_string(tableLength) + " are needed");
    }
    Axis ax(x), ay(y), az(z);
    auto table = [this](std::int64_t index) { return perlin[static_cast<std::size_t>(index & tableMask)]; };
    auto mix = [](double a, double b, double weight) { return a + weight * (b - a); };

    double result = 0.0;
    double amplitude = 0.5;
    for (int octave = 0; octave < octives; ++octave) {
        // Shifts wrap like the integer shifts they are; only additions trap.
        auto shifted = [](std::int64_t v, int bits) {
            return static_cast<std::int64_t>(static_cast<std::uint64_t>(v) << bits);
        };
        std::int64_t offset = checkedAdd(checkedAdd(ax.lattice, shifted(ay.lattice, 4)), shifted(az.lattice, 8));
        double rxf = ease(ax.fraction);
        double ryf = ease(ay.fraction);

        double ua = mix(table(offset), table(checkedAdd(offset, 1)), rxf);
        double ub = mix(table(checkedAdd(offset, yStep)), table(checkedAdd(offset, yStep + 1)), rxf);
        ua = mix(ua, ub, ryf);
        offset = checkedAdd(offset, zStep);
        ub = mix(table(offset), table(checkedAdd(offset, 1)), rxf);
        double uc = mix(table(checkedAdd(offset, yStep)), table(checkedAdd(offset, yStep + 1)), rxf);
        ub = mix(ub, uc, ryf);
        ua = mix(ua, ub, ease(az.fraction));

        result += amplitude * ua;
        amplitude *= ampFalloff;

        ax.lattice = checkedDouble(ax.lattice);
        ax.fraction += 2.0;
        ay.lattice = checkedDouble(ay.lattice);
        ay.fraction *= 2.0;
        az.lattice = checkedDouble(az.lattice);
        az.fraction *= 2.0;
        ax.carry();
        ay.carry();
        az.carry();
    }
    return result;
}

}  // namespace vantel
