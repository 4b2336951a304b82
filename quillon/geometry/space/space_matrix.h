// Linear and affine transforms of space.
//
// Points are row vectors: p' = p·M, i.e. p'_j = x·m0j + y·m1j + z·m2j (+ tj for a Matrix4x3). A
// Matrix4x3 holds the linear part in rows 0-2 and the translation in row 3. Products are written in
// the order the transforms act: _Mat_Mat(A, B, C) gives C = A·B, "first A, then B", and every
// builder X_Y(x, y, out) writes "first X, then Y" into its last argument (which may be one of its
// operands). A Matrix3 operand acts with zero translation.
//
// Rotations are right-handed: Rotate3_Z(a) turns (x, y) to (x·cos a − y·sin a, x·sin a + y·cos a),
// and likewise Rotate3_X turns y towards z and Rotate3_Y turns z towards x. A single-axis rotation
// stores its sine and cosine, in that order; wherever a rotation is given by two doubles they are
// the sine and the cosine. Rotate3(yaw, pitch, roll) turns a point first about y by the yaw, then
// about x by the pitch, then about z by the roll.
//
// Matrices are singular when |det| < 2.220446049250313e-16; _Inverse then returns -1 and copies the
// source into the result, so a caller that ignores the code still holds a usable transform. The
// inverse of an isometry is its transpose and cannot fail. Nothing here throws.
#pragma once

#include <type_traits>

#include "quillon/geometry/space/vector3.h"

namespace quillon {

// Selects the constructors that leave a matrix uninitialised (for results about to be written).
struct _Undef_3D {};

// Names the coordinate axes for rotations about one of them.
struct Axis3 {
    enum Axis : int { X = 0, Y = 1, Z = 2 };
};

class Matrix3 {
public:
    double m[3][3];

    Matrix3() { identity(); }
    explicit Matrix3(_Undef_3D) {}
    Matrix3(double m00, double m01, double m02, double m10, double m11, double m12, double m20,
            double m21, double m22)
        : m{{m00, m01, m02}, {m10, m11, m12}, {m20, m21, m22}} {}
    // The three rows.
    Matrix3(const Vector3& r0, const Vector3& r1, const Vector3& r2)
        : Matrix3(r0.x, r0.y, r0.z, r1.x, r1.y, r1.z, r2.x, r2.y, r2.z) {}

    double* operator[](short i) { return m[i]; }
    const double* operator[](short i) const { return m[i]; }
    static constexpr short dims() { return 3; }
    static constexpr short cell() { return 9; }
    Vector3 row(short i) const { return {m[i][0], m[i][1], m[i][2]}; }

    Matrix3& identity();
    double det() const;
};

class Matrix4x3 {
public:
    Matrix3 lin;  // rows 0-2
    double t[3];  // row 3: the translation

    Matrix4x3() : t{0.0, 0.0, 0.0} {}
    explicit Matrix4x3(_Undef_3D u) : lin(u) {}
    explicit Matrix4x3(const Matrix3& linear, const Vector3& translation = Vector3::_OO)
        : lin(linear), t{translation.x, translation.y, translation.z} {}

    double* operator[](short i) { return i < 3 ? lin.m[i] : t; }
    const double* operator[](short i) const { return i < 3 ? lin.m[i] : t; }
    static constexpr short rows() { return 4; }
    static constexpr short cols() { return 3; }
    Matrix3& mat3() { return lin; }
    const Matrix3& mat3() const { return lin; }
    Vector3 row(short i) const { return {(*this)[i][0], (*this)[i][1], (*this)[i][2]}; }

    Matrix4x3& identity();
    double det() const { return lin.det(); }
};

// A rotation about one coordinate axis: sine and cosine of the angle, in that order.
struct Rotate3_X {
    double sin = 0.0;
    double cos = 1.0;

    Rotate3_X() = default;
    explicit Rotate3_X(double angle) { set(angle); }
    Rotate3_X(double s, double c) : sin(s), cos(c) {}
    Rotate3_X& set(double angle);
    Rotate3_X& set(double s, double c) {
        sin = s;
        cos = c;
        return *this;
    }
    double angle() const { return PolarAngle2(cos, sin); }
};

struct Rotate3_Y {
    double sin = 0.0;
    double cos = 1.0;

    Rotate3_Y() = default;
    explicit Rotate3_Y(double angle) { set(angle); }
    Rotate3_Y(double s, double c) : sin(s), cos(c) {}
    Rotate3_Y& set(double angle);
    Rotate3_Y& set(double s, double c) {
        sin = s;
        cos = c;
        return *this;
    }
    double angle() const { return PolarAngle2(cos, sin); }
};

struct Rotate3_Z {
    double sin = 0.0;
    double cos = 1.0;

    Rotate3_Z() = default;
    explicit Rotate3_Z(double angle) { set(angle); }
    Rotate3_Z(double s, double c) : sin(s), cos(c) {}
    Rotate3_Z& set(double angle);
    Rotate3_Z& set(double s, double c) {
        sin = s;
        cos = c;
        return *this;
    }
    double angle() const { return PolarAngle2(cos, sin); }
};

struct Translate3 {
    Vector3 vec;

    Translate3() = default;
    explicit Translate3(const Vector3& v) : vec(v) {}
    Translate3(double dx, double dy, double dz) : vec(dx, dy, dz) {}
};

// Scale factors along x, y and z.
struct Scale3 {
    double x = 1.0;
    double y = 1.0;
    double z = 1.0;

    Scale3() = default;
    Scale3(double sx, double sy, double sz) : x(sx), y(sy), z(sz) {}
    explicit Scale3(const Node3& n) : x(n.x), y(n.y), z(n.z) {}
};

// A rotation matrix.
class Rotate3 : public Matrix3 {
public:
    Rotate3() = default;
    explicit Rotate3(_Undef_3D u) : Matrix3(u) {}
    // Kept as given: the caller vouches that m is a rotation.
    explicit Rotate3(const Matrix3& mm) : Matrix3(mm) {}
    Rotate3(const Rotate3_X& r);
    Rotate3(const Rotate3_Y& r);
    Rotate3(const Rotate3_Z& r);
    // First about y by the yaw, then about x by the pitch, then about z by the roll.
    Rotate3(double yaw, double pitch, double roll) { set(yaw, pitch, roll); }

    Rotate3& set(double yaw, double pitch, double roll);
    // The three angles back: pitch in [-π/2, π/2], yaw and roll in (-π, π]. Rotate3(yaw, pitch,
    // roll) rebuilds this matrix to rounding. At gimbal lock (|cos pitch| below 1e-15, where only
    // yaw + roll or yaw − roll is determined) the roll is 0 and the yaw takes the whole turn. The
    // yaw is read last, from the matrix with pitch and roll undone, so the rounding of the other
    // two angles near the lock is absorbed by it and the rebuilt matrix stays exact. A matrix that
    // is not a rotation gives the angles of some rotation, without failing.
    void get(double& yaw, double& pitch, double& roll) const;
};

// A linear transform of space (no translation).
class Anchor3 : public Matrix3 {
public:
    Anchor3() = default;
    explicit Anchor3(_Undef_3D u) : Matrix3(u) {}
    explicit Anchor3(const Matrix3& mm) : Matrix3(mm) {}
    Anchor3(const Rotate3_X& r) : Matrix3(Rotate3(r)) {}
    Anchor3(const Rotate3_Y& r) : Matrix3(Rotate3(r)) {}
    Anchor3(const Rotate3_Z& r) : Matrix3(Rotate3(r)) {}
    Anchor3(const Rotate3& r) : Matrix3(r) {}
    Anchor3(const Scale3& s) : Matrix3(s.x, 0.0, 0.0, 0.0, s.y, 0.0, 0.0, 0.0, s.z) {}
};

// A general affine transform whose linear part is an Anchor3.
class Linear3 : public Matrix4x3 {
public:
    Linear3() = default;
    explicit Linear3(_Undef_3D u) : Matrix4x3(u) {}
    explicit Linear3(const Matrix4x3& mm) : Matrix4x3(mm) {}
    Linear3(const Anchor3& an, const Translate3& tr = Translate3()) : Matrix4x3(an, tr.vec) {}

    Anchor3 anchor() const { return Anchor3(lin); }
    Translate3 translate() const { return Translate3(t[0], t[1], t[2]); }
    // The inverse; a singular transform comes back unchanged (see _Inverse).
    Linear3 inverse() const;
};

// A rotation followed by a translation.
class Isometry3 : public Matrix4x3 {
public:
    Isometry3() = default;
    explicit Isometry3(_Undef_3D u) : Matrix4x3(u) {}
    // Kept as given: the caller vouches that the linear part is orthonormal.
    explicit Isometry3(const Matrix4x3& mm) : Matrix4x3(mm) {}
    Isometry3(const Rotate3& r, const Translate3& tr = Translate3()) : Matrix4x3(r, tr.vec) {}
    Isometry3(const Rotate3_X& r) : Matrix4x3(Rotate3(r)) {}
    Isometry3(const Rotate3_Y& r) : Matrix4x3(Rotate3(r)) {}
    Isometry3(const Rotate3_Z& r) : Matrix4x3(Rotate3(r)) {}
    Isometry3(const Translate3& tr) : Matrix4x3(Matrix3(), tr.vec) {}

    Rotate3 rotate() const { return Rotate3(lin); }
    Translate3 translate() const { return Translate3(t[0], t[1], t[2]); }
    // The inverse motion: the transposed rotation after the negated translation.
    Isometry3 inverse() const;
    operator Linear3() const { return Linear3(static_cast<const Matrix4x3&>(*this)); }
};

// ---- points and vectors as row vectors ----

inline Point3 operator*(const Point3& p, const Matrix3& mm) {
    return {p.x * mm.m[0][0] + p.y * mm.m[1][0] + p.z * mm.m[2][0],
            p.x * mm.m[0][1] + p.y * mm.m[1][1] + p.z * mm.m[2][1],
            p.x * mm.m[0][2] + p.y * mm.m[1][2] + p.z * mm.m[2][2]};
}
inline Vector3 operator*(const Vector3& v, const Matrix3& mm) { return (v.pnt() * mm).vec(); }
inline Point3 operator*(const Point3& p, const Matrix4x3& mm) {
    const Point3 q = p * mm.lin;
    return {q.x + mm.t[0], q.y + mm.t[1], q.z + mm.t[2]};
}
// A vector is a displacement: only the linear part acts on it.
inline Vector3 operator*(const Vector3& v, const Matrix4x3& mm) { return v * mm.lin; }
// Column-vector product.
inline Point3 operator*(const Matrix3& mm, const Point3& p) {
    return {mm.m[0][0] * p.x + mm.m[0][1] * p.y + mm.m[0][2] * p.z,
            mm.m[1][0] * p.x + mm.m[1][1] * p.y + mm.m[1][2] * p.z,
            mm.m[2][0] * p.x + mm.m[2][1] * p.y + mm.m[2][2] * p.z};
}
inline Point3& operator*=(Point3& p, const Matrix3& mm) { return p = p * mm; }
inline Point3& operator*=(Point3& p, const Matrix4x3& mm) { return p = p * mm; }
inline Vector3& operator*=(Vector3& v, const Matrix3& mm) { return v = v * mm; }

// Applies the inverse transform. A singular linear part leaves the point (or vector) unchanged.
Point3& operator/=(Point3& p, const Matrix4x3& mm);
Vector3& operator/=(Vector3& v, const Matrix3& mm);
// For rigid motions and rotations the inverse is the transpose: cheaper, and what frames use.
Point3& operator/=(Point3& p, const Isometry3& mm);
Vector3& operator/=(Vector3& v, const Rotate3& mm);

// Single-axis rotations about the origin: p << R turns forward, p >> R back.
inline Point3 operator<<(const Point3& p, const Rotate3_X& r) {
    return {p.x, p.y * r.cos - p.z * r.sin, p.y * r.sin + p.z * r.cos};
}
inline Point3 operator>>(const Point3& p, const Rotate3_X& r) {
    return {p.x, p.y * r.cos + p.z * r.sin, p.z * r.cos - p.y * r.sin};
}
inline Point3 operator<<(const Point3& p, const Rotate3_Y& r) {
    return {p.x * r.cos + p.z * r.sin, p.y, p.z * r.cos - p.x * r.sin};
}
inline Point3 operator>>(const Point3& p, const Rotate3_Y& r) {
    return {p.x * r.cos - p.z * r.sin, p.y, p.x * r.sin + p.z * r.cos};
}
inline Point3 operator<<(const Point3& p, const Rotate3_Z& r) {
    return {p.x * r.cos - p.y * r.sin, p.x * r.sin + p.y * r.cos, p.z};
}
inline Point3 operator>>(const Point3& p, const Rotate3_Z& r) {
    return {p.x * r.cos + p.y * r.sin, p.y * r.cos - p.x * r.sin, p.z};
}
template <class R>
concept SingleAxisRotation3 =
    std::is_same_v<R, Rotate3_X> || std::is_same_v<R, Rotate3_Y> || std::is_same_v<R, Rotate3_Z>;
template <SingleAxisRotation3 R>
Point3& operator*=(Point3& p, const R& r) {
    return p = p << r;
}
template <SingleAxisRotation3 R>
Point3& operator/=(Point3& p, const R& r) {
    return p = p >> r;
}
template <SingleAxisRotation3 R>
Vector3 operator<<(const Vector3& v, const R& r) {
    return (v.pnt() << r).vec();
}
template <SingleAxisRotation3 R>
Vector3 operator>>(const Vector3& v, const R& r) {
    return (v.pnt() >> r).vec();
}
template <SingleAxisRotation3 R>
Vector3& operator*=(Vector3& v, const R& r) {
    return v = v << r;
}
template <SingleAxisRotation3 R>
Vector3& operator/=(Vector3& v, const R& r) {
    return v = v >> r;
}

// ---- products: C = A·B, first A, then B ----

Matrix3& _Mat_Mat(const Matrix3& A, const Matrix3& B, Matrix3& C);
Matrix4x3& _Mat_Mat(const Matrix3& A, const Matrix4x3& B, Matrix4x3& C);
Matrix4x3& _Mat_Mat(const Matrix4x3& A, const Matrix3& B, Matrix4x3& C);
Matrix4x3& _Mat_Mat(const Matrix4x3& A, const Matrix4x3& B, Matrix4x3& C);

// ---- single transforms as matrices ----

Matrix3& _Rot_X(const Rotate3_X& R, Matrix3& M);
Matrix3& _Rot_Y(const Rotate3_Y& R, Matrix3& M);
Matrix3& _Rot_Z(const Rotate3_Z& R, Matrix3& M);
Matrix4x3& _Rot_X(const Rotate3_X& R, Matrix4x3& M);
Matrix4x3& _Rot_Y(const Rotate3_Y& R, Matrix4x3& M);
Matrix4x3& _Rot_Z(const Rotate3_Z& R, Matrix4x3& M);
Matrix3& _Scale(const Scale3& S, Matrix3& M);
Matrix4x3& _Scale(const Scale3& S, Matrix4x3& M);
Matrix4x3& _Translate(const Translate3& T, Matrix4x3& M);
// The rotation about `axis` (through the origin, right-handed) with the given sine and cosine. A
// zero axis gives the identity.
Matrix3& _Rot_V(const Vector3& axis, double sin, double cos, Matrix3& M);
// The rotation about `centre` that turns the direction `from` into the direction `to` (about their
// common normal). Equal directions, or a zero vector, give the identity; opposite directions turn
// by π about an axis perpendicular to `from`.
Matrix4x3& _Rot_V2(const Vector3& from, const Vector3& to, const Node3& centre, Matrix4x3& M);
// M = the transpose of A (A may be M).
Matrix3& _Transpose(const Matrix3& A, Matrix3& M);
// The linear part of M4 becomes M3; the translation becomes zero.
Matrix4x3& _Copy_Mat3_To_Mat4x3(const Matrix3& M3, Matrix4x3& M4);

// ---- products of two transforms in the order of the name, the left one first ----

Matrix3& _Mat_Rot_X(const Matrix3& A, const Rotate3_X& R, Matrix3& M);
Matrix3& _Mat_Rot_Y(const Matrix3& A, const Rotate3_Y& R, Matrix3& M);
Matrix3& _Mat_Rot_Z(const Matrix3& A, const Rotate3_Z& R, Matrix3& M);
Matrix4x3& _Mat_Rot_X(const Matrix4x3& A, const Rotate3_X& R, Matrix4x3& M);
Matrix4x3& _Mat_Rot_Y(const Matrix4x3& A, const Rotate3_Y& R, Matrix4x3& M);
Matrix4x3& _Mat_Rot_Z(const Matrix4x3& A, const Rotate3_Z& R, Matrix4x3& M);
Matrix3& _Rot_X_Mat(const Rotate3_X& R, const Matrix3& A, Matrix3& M);
Matrix3& _Rot_Y_Mat(const Rotate3_Y& R, const Matrix3& A, Matrix3& M);
Matrix3& _Rot_Z_Mat(const Rotate3_Z& R, const Matrix3& A, Matrix3& M);
Matrix4x3& _Rot_X_Mat(const Rotate3_X& R, const Matrix4x3& A, Matrix4x3& M);
Matrix4x3& _Rot_Y_Mat(const Rotate3_Y& R, const Matrix4x3& A, Matrix4x3& M);
Matrix4x3& _Rot_Z_Mat(const Rotate3_Z& R, const Matrix4x3& A, Matrix4x3& M);

Matrix3& _Rot_X_Rot_Y(const Rotate3_X& R1, const Rotate3_Y& R2, Matrix3& M);
Matrix3& _Rot_X_Rot_Z(const Rotate3_X& R1, const Rotate3_Z& R2, Matrix3& M);
Matrix3& _Rot_Y_Rot_X(const Rotate3_Y& R1, const Rotate3_X& R2, Matrix3& M);
Matrix3& _Rot_Y_Rot_Z(const Rotate3_Y& R1, const Rotate3_Z& R2, Matrix3& M);
Matrix3& _Rot_Z_Rot_X(const Rotate3_Z& R1, const Rotate3_X& R2, Matrix3& M);
Matrix3& _Rot_Z_Rot_Y(const Rotate3_Z& R1, const Rotate3_Y& R2, Matrix3& M);

Matrix3& _Rot_X_Scale(const Rotate3_X& R, const Scale3& S, Matrix3& M);
Matrix3& _Rot_Y_Scale(const Rotate3_Y& R, const Scale3& S, Matrix3& M);
Matrix3& _Rot_Z_Scale(const Rotate3_Z& R, const Scale3& S, Matrix3& M);
Matrix3& _Scale_Rot_X(const Scale3& S, const Rotate3_X& R, Matrix3& M);
Matrix3& _Scale_Rot_Y(const Scale3& S, const Rotate3_Y& R, Matrix3& M);
Matrix3& _Scale_Rot_Z(const Scale3& S, const Rotate3_Z& R, Matrix3& M);

Matrix4x3& _Rot_X_Tran(const Rotate3_X& R, const Translate3& T, Matrix4x3& M);
Matrix4x3& _Rot_Y_Tran(const Rotate3_Y& R, const Translate3& T, Matrix4x3& M);
Matrix4x3& _Rot_Z_Tran(const Rotate3_Z& R, const Translate3& T, Matrix4x3& M);
Matrix4x3& _Tran_Rot_X(const Translate3& T, const Rotate3_X& R, Matrix4x3& M);
Matrix4x3& _Tran_Rot_Y(const Translate3& T, const Rotate3_Y& R, Matrix4x3& M);
Matrix4x3& _Tran_Rot_Z(const Translate3& T, const Rotate3_Z& R, Matrix4x3& M);

Matrix3& _Scale_Mat(const Scale3& S, const Matrix3& A, Matrix3& M);
Matrix4x3& _Scale_Mat(const Scale3& S, const Matrix4x3& A, Matrix4x3& M);
Matrix3& _Mat_Scale(const Matrix3& A, const Scale3& S, Matrix3& M);
Matrix4x3& _Mat_Scale(const Matrix4x3& A, const Scale3& S, Matrix4x3& M);
Matrix4x3& _Scale_Tran(const Scale3& S, const Translate3& T, Matrix4x3& M);
Matrix4x3& _Tran_Scale(const Translate3& T, const Scale3& S, Matrix4x3& M);
Matrix4x3& _Tran_Mat(const Translate3& T, const Matrix3& A, Matrix4x3& M);
Matrix4x3& _Tran_Mat(const Translate3& T, const Matrix4x3& A, Matrix4x3& M);
Matrix4x3& _Mat_Tran(const Matrix3& A, const Translate3& T, Matrix4x3& M);
Matrix4x3& _Mat_Tran(const Matrix4x3& A, const Translate3& T, Matrix4x3& M);

// ---- inverses ----

// 0 on success; -1 when |det| < 2.220446049250313e-16, R then receives a copy of M.
short _Inverse(const Matrix3& M, Matrix3& R);
// Translate by the negated translation, then apply the inverted linear part; same status.
short _Inverse(const Matrix4x3& M, Matrix4x3& R);
short _Inverse(const Linear3& M, Linear3& R);
// Translate by the negated translation, then apply the transposed rotation; always 0.
short _Inverse(const Isometry3& M, Isometry3& R);
// Maps P back through the rigid motion M (translation removed, transposed linear part applied).
Point3& _Inverse_Isometry_Point(const Matrix4x3& M, const Point3& P, Point3& Q);

}  // namespace quillon
