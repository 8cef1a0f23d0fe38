#pragma once

#include <Graphics2/Angle.hpp>

#include <array>

namespace vantel {

struct Vector;

// A 3x3 matrix of doubles stored column by column: columns[c][r] is the
// element in column c, row r. Points of the plane are (x, y, 1) columns.
struct Matrix3 {
    std::array<std::array<double, 3>, 3> columns{};

    static Matrix3 identity();
    friend bool operator==(const Matrix3&, const Matrix3&) = default;
};

// Matrix product a · b.
Matrix3 operator*(const Matrix3& a, const Matrix3& b);
// Matrix times column vector, all three lanes.
Vector operator*(const Matrix3& m, const Vector& v);

// Rotation and translation matrices in homogeneous plane coordinates.
struct MatrixTransformation {
    // Rows (cos, sin, 0), (-sin, cos, 0), (0, 0, 1): applied to a column
    // vector it turns the opposite way from Vector::matrixRotate.
    static Matrix3 rotate(Angle angle);
    static Matrix3 translate(double x, double y);
    static Matrix3 translate(const Vector& vector);
};

}  // namespace vantel
