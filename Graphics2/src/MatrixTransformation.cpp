#include <Graphics2/MatrixTransformation.hpp>
#include <Graphics2/Vector.hpp>

#include <cmath>

namespace vantel {

Matrix3 Matrix3::identity() {
    Matrix3 m;
    for (int i = 0; i < 3; ++i) m.columns[i][i] = 1;
    return m;
}

Matrix3 operator*(const Matrix3& a, const Matrix3& b) {
    Matrix3 product;
    for (int c = 0; c < 3; ++c) {
        const auto& column = b.columns[c];
        Vector mapped = a * Vector(column[0], column[1], column[2]);
        product.columns[c] = {mapped.x, mapped.y, mapped.z};
    }
    return product;
}

Vector operator*(const Matrix3& m, const Vector& v) { return Vector(v.x, v.y, v.z, m); }

Matrix3 MatrixTransformation::rotate(Angle angle) {
    const double c = std::cos(angle.radians);
    const double s = std::sin(angle.radians);
    Matrix3 m;
    m.columns[0] = {c, -s, 0};
    m.columns[1] = {s, c, 0};
    m.columns[2] = {0, 0, 1};
    return m;
}

Matrix3 MatrixTransformation::translate(double x, double y) {
    Matrix3 m = Matrix3::identity();
    m.columns[2][0] = x;
    m.columns[2][1] = y;
    return m;
}

Matrix3 MatrixTransformation::translate(const Vector& vector) { return translate(vector.x, vector.y); }

}  // namespace vantel
