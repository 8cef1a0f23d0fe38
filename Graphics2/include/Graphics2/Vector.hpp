#pragma once

#include <Graphics2/Angle.hpp>
#include <Graphics2/MatrixTransformation.hpp>

#include <string>
#include <vector>

namespace vantel {

// Three doubles used for points (z = 1, so that matrices can translate them)
// and directions. Every operation acts on all three lanes: sums of points
// carry z = 2, differences z = 0, and nothing renormalises z.
struct Vector {
    double x = 0;
    double y = 0;
    double z = 0;

    Vector() = default;
    Vector(double x, double y, double z);
    // transformation · (x, y, z) as a column vector.
    Vector(double x, double y, double z, const Matrix3& transformation);

    // The plane point (x, y, 1).
    static Vector point(double x, double y);
    static Vector lerp(double percent, const Vector& start, const Vector& end);

    double mag() const;
    double length() const;
    double magSq() const;
    double lengthSquared() const;
    double dist(const Vector& other) const;
    double distance(const Vector& other) const;
    double distSquared(const Vector& other) const;
    double distanceSquared(const Vector& other) const;

    // A zero vector becomes NaN in every lane.
    Vector normalized() const;
    void normalize();

    double dot(const Vector& other) const;
    Vector cross(const Vector& other) const;
    Vector cross2(const Vector& other) const;
    // Per lane: ±1 by the lane's sign, 0 for zero and NaN.
    Vector sign() const;
    Angle heading() const;

    // Keeps the magnitude and turns x to the requested direction, then
    // recomputes the magnitude with the new x before setting y: the result
    // points where asked only if x already had its target value.
    void rotateTo(Angle angle);
    // As rotateTo with the heading plus angle.
    void rotateBy(Angle angle);
    // self · R (R = MatrixTransformation::rotate): counter-clockwise in a
    // y-up frame, the opposite sense of R · self.
    void matrixRotate(Angle angle);
    void rotateBy(Angle angle, const Vector& around);

    // "Vector (1.0, 2.0, 3.0)"
    std::string description() const;

    Vector& operator+=(const Vector& other);
    Vector& operator-=(const Vector& other);
    Vector& operator+=(double scalar);
    Vector& operator-=(double scalar);
    Vector& operator*=(double scalar);
    Vector& operator/=(double scalar);

    friend bool operator==(const Vector&, const Vector&) = default;
};

Vector operator+(Vector a, const Vector& b);
Vector operator-(Vector a, const Vector& b);
Vector operator+(Vector a, double scalar);
Vector operator-(Vector a, double scalar);
Vector operator*(Vector a, double scalar);
Vector operator*(double scalar, Vector a);
Vector operator/(Vector a, double scalar);
// (s / x, s / y, s / z)
Vector operator/(double scalar, const Vector& a);
// The dot product.
double operator*(const Vector& a, const Vector& b);
// 0 - lane in every lane, so a zero lane stays +0.
Vector operator-(const Vector& a);

// Sum of the distances between consecutive points (0 for fewer than two).
double length(const std::vector<Vector>& points);
// The point a fraction percent along the polyline through points. Past the
// end (or for a single point) it is the last point; a negative percent
// extrapolates back from the first segment. An empty list is fatal.
Vector lerp(const std::vector<Vector>& points, double percent);

}  // namespace vantel
