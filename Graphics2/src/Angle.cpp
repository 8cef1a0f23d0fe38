#include <Graphics2/Angle.hpp>

#include <numbers>

namespace vantel {

namespace {
constexpr double piRadians = std::numbers::pi;
}

Angle Angle::fromDegrees(double degrees) { return {degrees, (degrees * piRadians) / 180}; }
Angle Angle::fromRadians(double radians) { return {(radians * 180) / piRadians, radians}; }

Angle Angle::pi() { return {180, piRadians}; }
Angle Angle::twoPi() { return {360, 2 * piRadians}; }
Angle Angle::halfPi() { return {90, piRadians / 2}; }
Angle Angle::fullCircle() { return twoPi(); }
Angle Angle::halfCircle() { return pi(); }
Angle Angle::quarterCircle() { return halfPi(); }

Angle operator+(const Angle& a, const Angle& b) { return Angle::fromRadians(a.radians + b.radians); }
Angle operator-(const Angle& a, const Angle& b) { return Angle::fromRadians(a.radians - b.radians); }

}  // namespace vantel
