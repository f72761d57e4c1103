#include "exponent.h"

#include <cmath>

double growthExponent(const std::vector<Point>& points, double costOfNothing) {
    double n = 0, sumX = 0, sumY = 0, sumXX = 0, sumXY = 0;
    for (const Point& point : points) {
        if (point.cost <= costOfNothing) {
            continue;
        }
        const double x = std::log(point.size), y = std::log(point.cost - costOfNothing);
        n += 1, sumX += x, sumY += y, sumXX += x * x, sumXY += x * y;
    }
    const double width = n * sumXX - sumX * sumX;
    return n >= 2 && width > 0 ? (n * sumXY - sumX * sumY) / width : 0;
}
