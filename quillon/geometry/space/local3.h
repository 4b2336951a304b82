// Local frames of space: LocalPlane (an orthonormal right-handed frame, the way a planar problem is
// carried into the plane types), LocalCoordSystem (an origin with three free axes) and
// LocalPlaneYPR (a frame given by an origin and three angles).
//
// A LocalPlane is an Isometry3 whose rows 0, 1, 2 are the unit x, y, z axes and whose row 3 is the
// origin, so p * frame maps local coordinates to global ones and p /= frame maps global ones back.
// A frame that cannot be built is undefined (`isDefined()` false) with identity axes and the
// requested origin: callers that ignore the flag still hold a usable pure translation. Turning a
// frame by a rotation R replaces its matrix M by M·R (the origin turns about the global origin
// too). Nothing here throws.
#pragma once

#include "quillon/geometry/space/space_matrix.h"

namespace quillon {

class LocalPlane : public Isometry3 {
public:
    static constexpr double eps = 1e-10;  // default minimum axis length

    bool defined = true;
    double tol = eps;  // minimum axis length when the frame is built; negative means eps

    // The global frame, defined.
    LocalPlane() = default;
    LocalPlane(const Point3& o, const Point3& px, const Point3& pq, double e = -1.0) {
        set(o, px, pq, e);
    }
    LocalPlane(const Point3& o, const Vector3& zdir, double e = -1.0) { set(o, zdir, e); }
    // A rigid motion taken as a frame, defined.
    LocalPlane(const Isometry3& iso) : Isometry3(iso) {}
    LocalPlane& operator=(const Isometry3& iso);

    // Origin o, x axis towards px, y axis on the side of pq. Undefined when px is closer than the
    // tolerance to o, or pq closer than it to the x axis.
    LocalPlane& set(const Point3& o, const Point3& px, const Point3& pq);
    LocalPlane& set(const Point3& o, const Point3& px, const Point3& pq, double e);
    // Origin o and z axis along zdir; undefined when zdir is shorter than the tolerance. The x axis
    // is the global x axis made perpendicular to z, or the global y axis so made when z lies within
    // 60° of ±x; y completes the right-handed frame. So a z along +z gives the global axes.
    LocalPlane& set(const Point3& o, const Vector3& zdir);
    LocalPlane& set(const Point3& o, const Vector3& zdir, double e);
    // Undefined: identity axes, origin o.
    LocalPlane& seterr(const Point3& o);

    // The origin and the tips of the unit axes (null pointers are skipped).
    void get(Point3* o, Point3* px, Point3* py) const;
    void get(Point3* o, Point3* px, Point3* py, Point3* pz) const;
    Vector3 get_dir_x() const { return lin.row(0); }
    Vector3 get_dir_y() const { return lin.row(1); }
    Vector3 get_dir_z() const { return lin.row(2); }
    // The local zero: the frame's origin in global coordinates.
    Point3 zero() const { return {t[0], t[1], t[2]}; }
    // Back to the global frame, defined.
    LocalPlane& identity();
    // Both defined or both undefined, and every axis and origin coordinate within e of the other's
    // (e < 0: this frame's tolerance).
    bool equal(const LocalPlane& f, double e = -1.0) const;
    bool isDefined() const { return defined; }
    explicit operator bool() const { return defined; }
    // The frame whose matrix is the inverse motion (global and local exchanged).
    LocalPlane inverse() const;

    LocalPlane& rotate(const Rotate3_X& r);
    LocalPlane& rotate(const Rotate3_Y& r);
    LocalPlane& rotate(const Rotate3_Z& r);
    LocalPlane& rotate(double angle, Axis3::Axis axis);
    LocalPlane& rotate(double sin, double cos, Axis3::Axis axis);
    // About `axis` through the global origin; a zero axis leaves the frame as it is.
    LocalPlane& rotate(double angle, const Vector3& axis);
    LocalPlane& translate(const Translate3& tr);

    // f <<= g: f was given in g's coordinates; afterwards it is the same frame in global ones.
    LocalPlane& operator<<=(const Isometry3& g);
    LocalPlane& operator<<=(const LocalPlane& g);
    // f >>= g: f was given in global coordinates; afterwards it is expressed in g's.
    LocalPlane& operator>>=(const Isometry3& g);
    LocalPlane& operator>>=(const LocalPlane& g);

private:
    double tolerance() const { return tol < 0.0 ? eps : tol; }
};

// An origin with three axes that need be neither unit nor perpendicular (a skew system is allowed).
class LocalCoordSystem {
public:
    static constexpr double eps = 1e-10;  // default minimum axis length

    Point3 origin;
    Vector3 x{1.0, 0.0, 0.0};
    Vector3 y{0.0, 1.0, 0.0};
    Vector3 z{0.0, 0.0, 1.0};
    bool defined = true;
    double tol = eps;

    // The global system, defined.
    LocalCoordSystem() = default;

    // Undefined when an axis is shorter than the tolerance, or when (taken as unit vectors) x and
    // y are within it of parallel or z within it of their plane. With `normalize` the axes are
    // stored at unit length, otherwise as given.
    LocalCoordSystem& set(const Point3& o, const Vector3& ax, const Vector3& ay, const Vector3& az,
                          bool normalize);
    // z = x × y.
    LocalCoordSystem& set(const Point3& o, const Vector3& ax, const Vector3& ay, bool normalize);
    void get(Point3* o, Vector3* ax, Vector3* ay, Vector3* az) const;
    bool isDefined() const { return defined; }
    explicit operator bool() const { return defined; }
    // Stores e when e >= 0; always returns the stored tolerance, so setEps(-1) reads it.
    double setEps(double e) {
        if (e >= 0.0) tol = e;
        return tol;
    }
    // Undefined: global axes, origin o.
    LocalCoordSystem& seterr(const Point3& o);
};

// A frame given by its origin and three angles: yaw about y, then pitch about x, then roll about z
// (row vectors, right-handed), as Rotate3(yaw, pitch, roll).
struct LocalPlaneYPR {
    Point3 origin;
    double yaw = 0.0;
    double pitch = 0.0;
    double roll = 0.0;

    LocalPlaneYPR() = default;
    LocalPlaneYPR(double y, double p, double r, const Point3& o)
        : origin(o), yaw(y), pitch(p), roll(r) {}
    LocalPlaneYPR(double y, double p, double r, double ox, double oy, double oz)
        : origin(ox, oy, oz), yaw(y), pitch(p), roll(r) {}
    explicit LocalPlaneYPR(const LocalPlane& f) { *this = f; }

    // The angles read back with Rotate3::get (see there for gimbal lock), the origin from the
    // translation.
    LocalPlaneYPR& operator=(const LocalPlane& f);
    // The rotation Rotate3(yaw, pitch, roll), then the translation by the origin.
    LocalPlane get() const;
    operator LocalPlane() const { return get(); }
};

}  // namespace quillon
