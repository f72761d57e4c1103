#pragma once

#include <vector>

// What it took to do so much.
struct Point {
    double size, cost;
};

// The power of the size that the cost grows with, by the straight line through the logarithms: 1
// for twice the cost at twice the size. What it costs to do nothing is no part of the growth, and
// subtracted; points that cost no more than that are left out. 0 when fewer than two are left.
double growthExponent(const std::vector<Point>& points, double costOfNothing);
