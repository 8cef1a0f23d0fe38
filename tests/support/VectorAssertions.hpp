#pragma once

#include <Graphics2/Vector.hpp>

#include <gtest/gtest.h>

namespace vantel::testing {

// All three lanes within 1e-12, the rounding of a few operations on values
// near 1; the failure names the whole vector.
inline void expectNear(const Vector& actual, const Vector& expected) {
    EXPECT_NEAR(actual.x, expected.x, 1e-12) << actual.description();
    EXPECT_NEAR(actual.y, expected.y, 1e-12) << actual.description();
    EXPECT_NEAR(actual.z, expected.z, 1e-12) << actual.description();
}

}  // namespace vantel::testing
