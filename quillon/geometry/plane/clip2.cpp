#include "quillon/geometry/plane/clip2.h"

#include <utility>

namespace quillon {

bool Clip2::is_valid() {
    if (state != 0) return state > 0;
    state = ((onL && onR && xL >= xR) || (onB && onT && yB >= yT)) ? -1 : 1;
    return state > 0;
}

int Clip2::point_code(const Point2& p) const {
    int code = 0;
    if (onL && p.x < xL) code += 1;
    if (onR && p.x > xR) code += 2;
    if (onB && p.y < yB) code += 4;
    if (onT && p.y > yT) code += 8;
    return code;
}

bool Clip2::clip_point(const Point2& p) { return is_valid() && point_code(p) == 0; }

bool Clip2::clip_line(Point2& p1, Point2& p2) {
    if (!is_valid()) return false;
    bool swapped = false;
    // Each move puts P1 exactly on a limit, which in exact arithmetic clears that bit for good, so
    // a few rounds suffice; the bound only guards against rounding ping-pong and rejects then.
    for (int round = 0;; ++round) {
        int c1 = point_code(p1);
        int c2 = point_code(p2);
        if (c1 == 0 && c2 == 0) break;
        if ((c1 & c2) != 0 || round == 64) {
            if (swapped) std::swap(p1, p2);
            return false;
        }
        if (c1 == 0) {
            std::swap(p1, p2);
            std::swap(c1, c2);
            swapped = !swapped;
        }
        if (c1 & 1) {
            p1.y += (xL - p1.x) * (p2.y - p1.y) / (p2.x - p1.x);
            p1.x = xL;
        } else if (c1 & 2) {
            p1.y += (xR - p1.x) * (p2.y - p1.y) / (p2.x - p1.x);
            p1.x = xR;
        } else if (c1 & 4) {
            p1.x += (yB - p1.y) * (p2.x - p1.x) / (p2.y - p1.y);
            p1.y = yB;
        } else {
            p1.x += (yT - p1.y) * (p2.x - p1.x) / (p2.y - p1.y);
            p1.y = yT;
        }
    }
    if (swapped) std::swap(p1, p2);
    return true;
}

}  // namespace quillon
