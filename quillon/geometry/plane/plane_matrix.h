// Affine transforms of the plane.
//
// Points are row vectors: p' = p·M, i.e. x' = x·m00 + y·m10 + m20, y' = x·m01 + y·m11 + m21.
// A Matrix3x2 holds the linear part in rows 0 and 1 and the translation in row 2. Products are
// written in the order the transforms act: _Mat_Mat(A, B, C) gives C = A·B, "first A, then B", and
// every builder X_Y(x, y, out) writes "first X, then Y" into its last argument (which may be one of
// its operands). A Matrix2 operand acts with zero translation.
//
// Matrices are singular when |det| < 2.220446049250313e-16; _Inverse then returns -1 and copies the
// source into the result, so a caller that ignores the code still holds a usable transform.
#pragma once

#include "quillon/geometry/plane/line2.h"
#include "quillon/geometry/plane/vector2.h"

namespace quillon {

// Selects the constructors that leave a matrix uninitialised (for results about to be written).
struct _Undef_2D {};

class Matrix2 {
public:
    double m[2][2];

    Matrix2() { identity(); }
    explicit Matrix2(_Undef_2D) {}
    Matrix2(double m00, double m01, double m10, double m11) : m{{m00, m01}, {m10, m11}} {}

    double* operator[](short i) { return m[i]; }
    const double* operator[](short i) const { return m[i]; }
    static constexpr short dims() { return 2; }
    static constexpr short cell() { return 4; }

    Matrix2& identity() {
        m[0][0] = 1.0;
        m[0][1] = 0.0;
        m[1][0] = 0.0;
        m[1][1] = 1.0;
        return *this;
    }
    double det() const { return m[0][0] * m[1][1] - m[0][1] * m[1][0]; }
};

class Matrix3x2 {
public:
    Matrix2 lin;  // rows 0 and 1
    double t[2];  // row 2: the translation

    Matrix3x2() : t{0.0, 0.0} {}
    explicit Matrix3x2(_Undef_2D u) : lin(u) {}
    explicit Matrix3x2(const Matrix2& linear, const Vector2& translation = Vector2::_OO)
        : lin(linear), t{translation.x, translation.y} {}
    Matrix3x2(double m00, double m01, double m10, double m11, double m20, double m21)
        : lin(m00, m01, m10, m11), t{m20, m21} {}

    double* operator[](short i) { return i < 2 ? lin.m[i] : t; }
    const double* operator[](short i) const { return i < 2 ? lin.m[i] : t; }
    static constexpr short rows() { return 3; }
    static constexpr short cols() { return 2; }
    Matrix2& mat2() { return lin; }
    const Matrix2& mat2() const { return lin; }

    Matrix3x2& identity() {
        lin.identity();
        t[0] = t[1] = 0.0;
        return *this;
    }
    double det() const { return lin.det(); }
};

struct Rotate2 {
    double sin = 0.0;
    double cos = 1.0;

    Rotate2() = default;
    explicit Rotate2(double angle) { set(angle); }
    Rotate2(double s, double c) : sin(s), cos(c) {}

    Rotate2& set(double angle);
    Rotate2& set(double s, double c) {
        sin = s;
        cos = c;
        return *this;
    }
    double angle() const { return PolarAngle2(cos, sin); }
};

// The rotation by the sum of the two angles.
inline Rotate2 operator+(const Rotate2& r1, const Rotate2& r2) {
    return {r1.sin * r2.cos + r1.cos * r2.sin, r1.cos * r2.cos - r1.sin * r2.sin};
}

struct Translate2 {
    Vector2 vec;

    Translate2() = default;
    explicit Translate2(const Vector2& v) : vec(v) {}
    Translate2(double dx, double dy) : vec(dx, dy) {}
};

struct Scale2 {
    double x = 1.0;
    double y = 1.0;

    Scale2() = default;
    Scale2(double sx, double sy) : x(sx), y(sy) {}
    explicit Scale2(const Node2& n) : x(n.x), y(n.y) {}
};

// A linear transform of the plane (no translation).
class Anchor2 : public Matrix2 {
public:
    Anchor2() = default;
    explicit Anchor2(_Undef_2D u) : Matrix2(u) {}
    explicit Anchor2(const Matrix2& mm) : Matrix2(mm) {}
    Anchor2(const Rotate2& r) : Matrix2(r.cos, r.sin, -r.sin, r.cos) {}
    Anchor2(const Scale2& s) : Matrix2(s.x, 0.0, 0.0, s.y) {}
};

// A general affine transform whose linear part is an Anchor2.
class Linear2 : public Matrix3x2 {
public:
    Linear2() = default;
    explicit Linear2(_Undef_2D u) : Matrix3x2(u) {}
    explicit Linear2(const Matrix3x2& mm) : Matrix3x2(mm) {}
    Linear2(const Anchor2& an, const Translate2& tr = Translate2()) : Matrix3x2(an, tr.vec) {}
    Linear2(const Rotate2& r) : Linear2(Anchor2(r)) {}

    Anchor2 anchor() const { return Anchor2(lin); }
    Translate2 translate() const { return Translate2(t[0], t[1]); }
    // The inverse; a singular transform comes back unchanged (see _Inverse).
    Linear2 inverse() const;
};

// A rotation (or reflection) followed by a translation.
class Isometry2 : public Matrix3x2 {
public:
    Isometry2() = default;
    explicit Isometry2(_Undef_2D u) : Matrix3x2(u) {}
    explicit Isometry2(const Matrix3x2& mm) : Matrix3x2(mm) {}
    Isometry2(const Rotate2& r) : Matrix3x2(Anchor2(r)) {}
    Isometry2(const Translate2& tr) : Matrix3x2(Matrix2(), tr.vec) {}
    Isometry2(const Rotate2& r, const Translate2& tr) : Matrix3x2(Anchor2(r), tr.vec) {}
    // The reflection in l; an invalid line gives the identity.
    explicit Isometry2(const Line2& l) { set(l); }

    // The reflection in l; an invalid line leaves the transform unchanged.
    Isometry2& set(const Line2& l);

    Rotate2 rotate() const { return {lin.m[0][1], lin.m[0][0]}; }
    Translate2 translate() const { return Translate2(t[0], t[1]); }
    Isometry2 inverse() const;
    operator Linear2() const { return Linear2(static_cast<const Matrix3x2&>(*this)); }
};

// Rotation about the origin: P << R turns counter-clockwise, P >> R back.
inline Point2 operator<<(const Point2& p, const Rotate2& r) {
    return {p.x * r.cos - p.y * r.sin, p.x * r.sin + p.y * r.cos};
}
inline Point2 operator>>(const Point2& p, const Rotate2& r) {
    return {p.x * r.cos + p.y * r.sin, p.y * r.cos - p.x * r.sin};
}
inline Point2& operator*=(Point2& p, const Rotate2& r) { return p = p << r; }
inline Point2& operator/=(Point2& p, const Rotate2& r) { return p = p >> r; }
inline Vector2 operator<<(const Vector2& v, const Rotate2& r) {
    return {v.x * r.cos - v.y * r.sin, v.x * r.sin + v.y * r.cos};
}
inline Vector2 operator>>(const Vector2& v, const Rotate2& r) {
    return {v.x * r.cos + v.y * r.sin, v.y * r.cos - v.x * r.sin};
}
inline Vector2& operator*=(Vector2& v, const Rotate2& r) { return v = v << r; }
inline Vector2& operator/=(Vector2& v, const Rotate2& r) { return v = v >> r; }

// Row-vector products.
inline Point2 operator*(const Point2& p, const Matrix2& mm) {
    return {p.x * mm.m[0][0] + p.y * mm.m[1][0], p.x * mm.m[0][1] + p.y * mm.m[1][1]};
}
inline Vector2 operator*(const Vector2& v, const Matrix2& mm) {
    return {v.x * mm.m[0][0] + v.y * mm.m[1][0], v.x * mm.m[0][1] + v.y * mm.m[1][1]};
}
inline Point2 operator*(const Point2& p, const Matrix3x2& mm) {
    return {p.x * mm.lin.m[0][0] + p.y * mm.lin.m[1][0] + mm.t[0],
            p.x * mm.lin.m[0][1] + p.y * mm.lin.m[1][1] + mm.t[1]};
}
// Column-vector product.
inline Point2 operator*(const Matrix2& mm, const Point2& p) {
    return {p.x * mm.m[0][0] + p.y * mm.m[0][1], p.x * mm.m[1][0] + p.y * mm.m[1][1]};
}
inline Point2& operator*=(Point2& p, const Matrix2& mm) { return p = p * mm; }
inline Point2& operator*=(Point2& p, const Matrix3x2& mm) { return p = p * mm; }
// Subtracts the translation and applies the transposed linear part: the exact inverse for
// isometries only. Kept deliberately cheap; use _Inverse for general transforms.
inline Point2& operator/=(Point2& p, const Matrix3x2& mm) {
    const double dx = p.x - mm.t[0], dy = p.y - mm.t[1];
    return p.set(mm.lin.m[0][0] * dx + mm.lin.m[0][1] * dy,
                 mm.lin.m[1][0] * dx + mm.lin.m[1][1] * dy);
}

// C = A·B: first A, then B.
Matrix2& _Mat_Mat(const Matrix2& A, const Matrix2& B, Matrix2& C);
Matrix3x2& _Mat_Mat(const Matrix2& A, const Matrix3x2& B, Matrix3x2& C);
Matrix3x2& _Mat_Mat(const Matrix3x2& A, const Matrix2& B, Matrix3x2& C);
Matrix3x2& _Mat_Mat(const Matrix3x2& A, const Matrix3x2& B, Matrix3x2& C);

// Single transforms as matrices.
Matrix2& _Rotate(const Rotate2& R, Matrix2& M);
Matrix3x2& _Rotate(const Rotate2& R, Matrix3x2& M);
Matrix3x2& _Translate(const Translate2& T, Matrix3x2& M);
Matrix2& _Scale(const Scale2& S, Matrix2& M);
Matrix3x2& _Scale(const Scale2& S, Matrix3x2& M);
// The linear part of M3 becomes M2; the translation becomes zero.
Matrix3x2& _Copy_Mat2_To_Mat3x2(const Matrix2& M2, Matrix3x2& M3);

// Products in the order of the name: first the left operand, then the right one.
Matrix3x2& _Tran_Rotate(const Translate2& T, const Rotate2& R, Matrix3x2& M);
Matrix3x2& _Rotate_Tran(const Rotate2& R, const Translate2& T, Matrix3x2& M);
Matrix2& _Scale_Rotate(const Scale2& S, const Rotate2& R, Matrix2& M);
Matrix3x2& _Scale_Rotate(const Scale2& S, const Rotate2& R, Matrix3x2& M);
Matrix2& _Rotate_Scale(const Rotate2& R, const Scale2& S, Matrix2& M);
Matrix3x2& _Rotate_Scale(const Rotate2& R, const Scale2& S, Matrix3x2& M);
Matrix2& _Mat_Rotate(const Matrix2& A, const Rotate2& R, Matrix2& M);
Matrix3x2& _Mat_Rotate(const Matrix3x2& A, const Rotate2& R, Matrix3x2& M);
Matrix2& _Rotate_Mat(const Rotate2& R, const Matrix2& A, Matrix2& M);
Matrix3x2& _Rotate_Mat(const Rotate2& R, const Matrix3x2& A, Matrix3x2& M);
Matrix3x2& _Scale_Tran(const Scale2& S, const Translate2& T, Matrix3x2& M);
Matrix3x2& _Tran_Scale(const Translate2& T, const Scale2& S, Matrix3x2& M);
Matrix2& _Scale_Mat(const Scale2& S, const Matrix2& A, Matrix2& M);
Matrix3x2& _Scale_Mat(const Scale2& S, const Matrix3x2& A, Matrix3x2& M);
Matrix2& _Mat_Scale(const Matrix2& A, const Scale2& S, Matrix2& M);
Matrix3x2& _Mat_Scale(const Matrix3x2& A, const Scale2& S, Matrix3x2& M);
Matrix3x2& _Tran_Mat(const Translate2& T, const Matrix2& A, Matrix3x2& M);
Matrix3x2& _Tran_Mat(const Translate2& T, const Matrix3x2& A, Matrix3x2& M);
Matrix3x2& _Mat_Tran(const Matrix2& A, const Translate2& T, Matrix3x2& M);
Matrix3x2& _Mat_Tran(const Matrix3x2& A, const Translate2& T, Matrix3x2& M);

// 0 on success; -1 for a singular matrix, R then receives a copy of M.
short _Inverse(const Matrix2& M, Matrix2& R);
short _Inverse(const Matrix3x2& M, Matrix3x2& R);
short _Inverse(const Isometry2& M, Isometry2& R);
short _Inverse(const Linear2& M, Linear2& R);
// Maps P back through the isometry M (translation removed, transposed linear part applied).
Point2& _Inverse_Isometry_Point(const Matrix3x2& M, const Point2& P, Point2& Q);

}  // namespace quillon
