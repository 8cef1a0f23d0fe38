#pragma once

namespace vantel {

// An angle that carries both units. The factories keep the two consistent;
// arithmetic works on radians and recomputes degrees from them.
struct Angle {
    double degrees = 0;
    double radians = 0;

    static Angle fromDegrees(double degrees);
    static Angle fromRadians(double radians);

    static Angle pi();
    static Angle twoPi();
    static Angle halfPi();
    static Angle fullCircle();
    static Angle halfCircle();
    static Angle quarterCircle();

    friend Angle operator+(const Angle& a, const Angle& b);
    friend Angle operator-(const Angle& a, const Angle& b);
    friend bool operator==(const Angle&, const Angle&) = default;
};

}  // namespace vantel
