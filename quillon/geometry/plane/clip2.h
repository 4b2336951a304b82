// Clip2: an axis-parallel clipping region whose four sides (left xL, right xR, bottom yB, top yT)
// are switched on and off one by one, so one object clips to a rectangle, a half-plane or a strip.
//
// Points on a limit are inside. Validity is decided lazily, as for lines: every setter marks the
// region unchecked (0) and the first `is_valid()` decides between valid (1) and contradictory (-1,
// xL >= xR or yB >= yT with both sides of the pair in force). Segments are clipped in place with
// Cohen-Sutherland outcodes (1 left, 2 right, 4 bottom, 8 top) and keep the caller's point order.
#pragma once

#include "quillon/geometry/plane/plane_types.h"

namespace quillon {

class Clip2 {
public:
    double xL = 0.0, xR = 0.0, yB = 0.0, yT = 0.0;

    // No side in force: the region accepts everything.
    Clip2() = default;
    // All four sides in force.
    Clip2(double left, double right, double bottom, double top) { set(left, right, bottom, top); }

    Clip2& set(double left, double right, double bottom, double top) {
        return set_xL(left).set_xR(right).set_yB(bottom).set_yT(top);
    }
    Clip2& set_xL(double v) { return side(xL, onL, v); }
    Clip2& set_xR(double v) { return side(xR, onR, v); }
    Clip2& set_yB(double v) { return side(yB, onB, v); }
    Clip2& set_yT(double v) { return side(yT, onT, v); }
    Clip2& reset_xL() { return off(onL); }
    Clip2& reset_xR() { return off(onR); }
    Clip2& reset_yB() { return off(onB); }
    Clip2& reset_yT() { return off(onT); }

    bool has_xL() const { return onL; }
    bool has_xR() const { return onR; }
    bool has_yB() const { return onB; }
    bool has_yT() const { return onT; }
    int get_state() const { return state; }

    bool is_valid();
    explicit operator bool() { return is_valid(); }

    int point_code(const Point2& p) const;
    bool clip_point(const Point2& p);
    // Clips the segment P1-P2 to the region in place. False when the region is invalid or the
    // segment lies wholly outside; a rejected segment keeps the clipping applied before it was
    // found outside (it may come back moved), on purpose.
    bool clip_line(Point2& p1, Point2& p2);

private:
    Clip2& side(double& limit, bool& on, double v) {
        limit = v;
        on = true;
        state = 0;
        return *this;
    }
    Clip2& off(bool& on) {
        on = false;
        state = 0;
        return *this;
    }

    bool onL = false, onR = false, onB = false, onT = false;
    int state = 1;
};

}  // namespace quillon
