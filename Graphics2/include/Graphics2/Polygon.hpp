#pragma once

#include <Graphics2/Rectangle.hpp>
#include <Graphics2/Vector.hpp>

#include <vector>

namespace vantel {

// Point lists as polygon outlines: in order, the first point not repeated
// at the end (a repeated one is tolerated). Fewer than three points contain
// nothing. Both containment tests count points on a left or bottom edge as
// inside and on a right or top edge as outside.

// Positive if p2 lies left of the directed line p0 -> p1, negative if right.
double isLeft(const Vector& p0, const Vector& p1, const Vector& p2);

// Even-odd rule. The crossing abscissa mixes the edge's end point (for the
// parameter) with its start point (for the position), so it differs from
// the textbook intersection on slanted edges; callers rely on this form.
bool crossingNumber(const Vector& point, const std::vector<Vector>& polygon);
// Non-zero winding rule.
bool windingNumber(const Vector& point, const std::vector<Vector>& polygon);

// The winding-number test.
bool contains(const std::vector<Vector>& polygon, const Vector& point);

// The axis-aligned box around points. Its far corner starts at (0, 0), not
// at -infinity, so a box around negative points always reaches the axes.
// An empty list gives a NaN origin and -infinity sizes.
Rectangle boundingBox(const std::vector<Vector>& points);

// lerp over the open outline.
Vector pointOnPerimeter(const std::vector<Vector>& polygon, double t);

}  // namespace vantel
