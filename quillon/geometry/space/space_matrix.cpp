#include "quillon/geometry/space/space_matrix.h"

#include <cmath>

namespace quillon {

namespace {

// Below this |det| a matrix has no usable inverse.
constexpr double kSingularDet = 2.220446049250313e-16;
// Below this |cos pitch| the yaw and the roll turn about one axis (gimbal lock). Rounding level, so
// that forcing the roll to 0 there moves the rebuilt matrix by no more than π·1e-15.
constexpr double kGimbalLock = 1e-15;

Matrix3 Mat(const Matrix3& a) { return a; }
Matrix3 Mat(const Rotate3_X& r) { return Rotate3(r); }
Matrix3 Mat(const Rotate3_Y& r) { return Rotate3(r); }
Matrix3 Mat(const Rotate3_Z& r) { return Rotate3(r); }
Matrix3 Mat(const Scale3& s) { return Anchor3(s); }
Matrix4x3 Mat(const Translate3& t) { return Matrix4x3(Matrix3(), t.vec); }
Matrix4x3 Mat(const Matrix4x3& a) { return a; }

// The product of two operands of any transform type, in the order given.
template <class A, class B, class Out>
Out& Product(const A& a, const B& b, Out& out) {
    return _Mat_Mat(Mat(a), Mat(b), out);
}

void SinCos(double angle, double& s, double& c) {
    s = std::sin(angle);
    c = std::cos(angle);
}

}  // namespace

// ---- types ----

Matrix3& Matrix3::identity() {
    *this = Matrix3(1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0);
    return *this;
}

double Matrix3::det() const {
    return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
           m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
           m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

Matrix4x3& Matrix4x3::identity() {
    lin.identity();
    t[0] = t[1] = t[2] = 0.0;
    return *this;
}

Rotate3_X& Rotate3_X::set(double angle) {
    SinCos(angle, sin, cos);
    return *this;
}
Rotate3_Y& Rotate3_Y::set(double angle) {
    SinCos(angle, sin, cos);
    return *this;
}
Rotate3_Z& Rotate3_Z::set(double angle) {
    SinCos(angle, sin, cos);
    return *this;
}

Rotate3::Rotate3(const Rotate3_X& r)
    : Matrix3(1.0, 0.0, 0.0, 0.0, r.cos, r.sin, 0.0, -r.sin, r.cos) {}
Rotate3::Rotate3(const Rotate3_Y& r)
    : Matrix3(r.cos, 0.0, -r.sin, 0.0, 1.0, 0.0, r.sin, 0.0, r.cos) {}
Rotate3::Rotate3(const Rotate3_Z& r)
    : Matrix3(r.cos, r.sin, 0.0, -r.sin, r.cos, 0.0, 0.0, 0.0, 1.0) {}

Rotate3& Rotate3::set(double yaw, double pitch, double roll) {
    Matrix3 m2(_Undef_3D{});
    _Mat_Mat(_Rot_Y_Rot_X(Rotate3_Y(yaw), Rotate3_X(pitch), m2), Rotate3(Rotate3_Z(roll)), *this);
    return *this;
}

// With a = yaw, b = pitch, c = roll the matrix is
//   ( ca·cc − sa·sb·sc   ca·sc + sa·sb·cc   −sa·cb )
//   ( −cb·sc             cb·cc              sb     )
//   ( sa·cc + ca·sb·sc   sa·sc − ca·sb·cc   ca·cb  )
void Rotate3::get(double& yaw, double& pitch, double& roll) const {
    const double cb = std::hypot(m[1][0], m[1][1]);
    pitch = std::atan2(m[1][2], cb);
    roll = cb > kGimbalLock ? PolarAngle2(m[1][1], -m[1][0]) : 0.0;
    // Undo roll and pitch; what remains is the yaw about y, whatever rounding the other two took.
    Matrix3 n(_Undef_3D{});
    _Mat_Mat(*this, Rotate3(Rotate3_Z(-roll)), n);
    _Mat_Mat(n, Rotate3(Rotate3_X(-pitch)), n);
    yaw = PolarAngle2(n.m[0][0] + n.m[2][2], n.m[2][0] - n.m[0][2]);
}

Linear3 Linear3::inverse() const {
    Linear3 r;
    _Inverse(*this, r);
    return r;
}

Isometry3 Isometry3::inverse() const {
    Isometry3 r;
    _Inverse(*this, r);
    return r;
}

// ---- points and vectors ----

Point3& operator/=(Point3& p, const Matrix4x3& mm) {
    Matrix3 inv(_Undef_3D{});
    if (_Inverse(mm.lin, inv) != 0) return p;
    return p = Point3(p.x - mm.t[0], p.y - mm.t[1], p.z - mm.t[2]) * inv;
}

Vector3& operator/=(Vector3& v, const Matrix3& mm) {
    Matrix3 inv(_Undef_3D{});
    if (_Inverse(mm, inv) != 0) return v;
    return v = v * inv;
}

Point3& operator/=(Point3& p, const Isometry3& mm) { return _Inverse_Isometry_Point(mm, p, p); }

Vector3& operator/=(Vector3& v, const Rotate3& mm) { return v = (mm * v.pnt()).vec(); }

// ---- products ----

Matrix3& _Mat_Mat(const Matrix3& A, const Matrix3& B, Matrix3& C) {
    const Matrix3 a = A, b = B;  // C may be A or B
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j)
            C.m[i][j] = a.m[i][0] * b.m[0][j] + a.m[i][1] * b.m[1][j] + a.m[i][2] * b.m[2][j];
    }
    return C;
}

Matrix4x3& _Mat_Mat(const Matrix4x3& A, const Matrix4x3& B, Matrix4x3& C) {
    const Matrix4x3 a = A, b = B;  // C may be A or B
    _Mat_Mat(a.lin, b.lin, C.lin);
    // The first translation carried through the second transform, plus the second translation.
    const Point3 t = Point3(a.t[0], a.t[1], a.t[2]) * b;
    C.t[0] = t.x;
    C.t[1] = t.y;
    C.t[2] = t.z;
    return C;
}

Matrix4x3& _Mat_Mat(const Matrix3& A, const Matrix4x3& B, Matrix4x3& C) {
    return _Mat_Mat(Matrix4x3(A), B, C);
}

Matrix4x3& _Mat_Mat(const Matrix4x3& A, const Matrix3& B, Matrix4x3& C) {
    return _Mat_Mat(A, Matrix4x3(B), C);
}

// ---- single transforms ----

Matrix3& _Rot_X(const Rotate3_X& R, Matrix3& M) { return M = Mat(R); }
Matrix3& _Rot_Y(const Rotate3_Y& R, Matrix3& M) { return M = Mat(R); }
Matrix3& _Rot_Z(const Rotate3_Z& R, Matrix3& M) { return M = Mat(R); }
Matrix4x3& _Rot_X(const Rotate3_X& R, Matrix4x3& M) { return M = Matrix4x3(Mat(R)); }
Matrix4x3& _Rot_Y(const Rotate3_Y& R, Matrix4x3& M) { return M = Matrix4x3(Mat(R)); }
Matrix4x3& _Rot_Z(const Rotate3_Z& R, Matrix4x3& M) { return M = Matrix4x3(Mat(R)); }
Matrix3& _Scale(const Scale3& S, Matrix3& M) { return M = Mat(S); }
Matrix4x3& _Scale(const Scale3& S, Matrix4x3& M) { return M = Matrix4x3(Mat(S)); }
Matrix4x3& _Translate(const Translate3& T, Matrix4x3& M) { return M = Mat(T); }
Matrix4x3& _Copy_Mat3_To_Mat4x3(const Matrix3& M3, Matrix4x3& M4) { return M4 = Matrix4x3(M3); }

Matrix3& _Transpose(const Matrix3& A, Matrix3& M) {
    const Matrix3 a = A;  // M may be A
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) M.m[i][j] = a.m[j][i];
    }
    return M;
}

Matrix3& _Rot_V(const Vector3& axis, double sin, double cos, Matrix3& M) {
    const double len = axis.length();
    if (len == 0.0) return M.identity();
    const Vector3 k = axis / len;
    const double v = 1.0 - cos;
    // Row-vector form of the right-handed rotation: cos·I + (1 − cos)·k kᵀ + sin·[k]×ᵀ.
    M = Matrix3(cos + v * k.x * k.x, v * k.x * k.y + sin * k.z, v * k.x * k.z - sin * k.y,
                v * k.y * k.x - sin * k.z, cos + v * k.y * k.y, v * k.y * k.z + sin * k.x,
                v * k.z * k.x + sin * k.y, v * k.z * k.y - sin * k.x, cos + v * k.z * k.z);
    return M;
}

Matrix4x3& _Rot_V2(const Vector3& from, const Vector3& to, const Node3& centre, Matrix4x3& M) {
    const double lf = from.length(), lt = to.length();
    Matrix3 rot;
    if (lf != 0.0 && lt != 0.0) {
        const Vector3 f = from / lf, g = to / lt;
        const Vector3 axis = f % g;
        const double s = axis.length(), c = f * g;
        if (s != 0.0) {
            _Rot_V(axis, s, c, rot);
        } else if (c < 0.0) {
            // Opposite directions: a half turn about the coordinate axis least along `from`,
            // made perpendicular to it.
            const Vector3 pick =
                std::fabs(f.x) <= std::fabs(f.y) && std::fabs(f.x) <= std::fabs(f.z)
                    ? Vector3::_Ox
                    : (std::fabs(f.y) <= std::fabs(f.z) ? Vector3::_Oy : Vector3::_Oz);
            _Rot_V(f % pick, 0.0, -1.0, rot);
        }
    }
    // Move the centre to the origin, turn, move back.
    const Vector3 c(centre.x, centre.y, centre.z);
    Matrix4x3 r(_Undef_3D{});
    _Tran_Mat(Translate3(-c), rot, r);
    return _Mat_Tran(r, Translate3(c), M);
}

// ---- products of two transforms, first the left one ----

Matrix3& _Mat_Rot_X(const Matrix3& A, const Rotate3_X& R, Matrix3& M) { return Product(A, R, M); }
Matrix3& _Mat_Rot_Y(const Matrix3& A, const Rotate3_Y& R, Matrix3& M) { return Product(A, R, M); }
Matrix3& _Mat_Rot_Z(const Matrix3& A, const Rotate3_Z& R, Matrix3& M) { return Product(A, R, M); }
Matrix4x3& _Mat_Rot_X(const Matrix4x3& A, const Rotate3_X& R, Matrix4x3& M) {
    return Product(A, R, M);
}
Matrix4x3& _Mat_Rot_Y(const Matrix4x3& A, const Rotate3_Y& R, Matrix4x3& M) {
    return Product(A, R, M);
}
Matrix4x3& _Mat_Rot_Z(const Matrix4x3& A, const Rotate3_Z& R, Matrix4x3& M) {
    return Product(A, R, M);
}
Matrix3& _Rot_X_Mat(const Rotate3_X& R, const Matrix3& A, Matrix3& M) { return Product(R, A, M); }
Matrix3& _Rot_Y_Mat(const Rotate3_Y& R, const Matrix3& A, Matrix3& M) { return Product(R, A, M); }
Matrix3& _Rot_Z_Mat(const Rotate3_Z& R, const Matrix3& A, Matrix3& M) { return Product(R, A, M); }
Matrix4x3& _Rot_X_Mat(const Rotate3_X& R, const Matrix4x3& A, Matrix4x3& M) {
    return Product(R, A, M);
}
Matrix4x3& _Rot_Y_Mat(const Rotate3_Y& R, const Matrix4x3& A, Matrix4x3& M) {
    return Product(R, A, M);
}
Matrix4x3& _Rot_Z_Mat(const Rotate3_Z& R, const Matrix4x3& A, Matrix4x3& M) {
    return Product(R, A, M);
}

Matrix3& _Rot_X_Rot_Y(const Rotate3_X& R1, const Rotate3_Y& R2, Matrix3& M) {
    return Product(R1, R2, M);
}
Matrix3& _Rot_X_Rot_Z(const Rotate3_X& R1, const Rotate3_Z& R2, Matrix3& M) {
    return Product(R1, R2, M);
}
Matrix3& _Rot_Y_Rot_X(const Rotate3_Y& R1, const Rotate3_X& R2, Matrix3& M) {
    return Product(R1, R2, M);
}
Matrix3& _Rot_Y_Rot_Z(const Rotate3_Y& R1, const Rotate3_Z& R2, Matrix3& M) {
    return Product(R1, R2, M);
}
Matrix3& _Rot_Z_Rot_X(const Rotate3_Z& R1, const Rotate3_X& R2, Matrix3& M) {
    return Product(R1, R2, M);
}
Matrix3& _Rot_Z_Rot_Y(const Rotate3_Z& R1, const Rotate3_Y& R2, Matrix3& M) {
    return Product(R1, R2, M);
}

Matrix3& _Rot_X_Scale(const Rotate3_X& R, const Scale3& S, Matrix3& M) { return Product(R, S, M); }
Matrix3& _Rot_Y_Scale(const Rotate3_Y& R, const Scale3& S, Matrix3& M) { return Product(R, S, M); }
Matrix3& _Rot_Z_Scale(const Rotate3_Z& R, const Scale3& S, Matrix3& M) { return Product(R, S, M); }
Matrix3& _Scale_Rot_X(const Scale3& S, const Rotate3_X& R, Matrix3& M) { return Product(S, R, M); }
Matrix3& _Scale_Rot_Y(const Scale3& S, const Rotate3_Y& R, Matrix3& M) { return Product(S, R, M); }
Matrix3& _Scale_Rot_Z(const Scale3& S, const Rotate3_Z& R, Matrix3& M) { return Product(S, R, M); }

Matrix4x3& _Rot_X_Tran(const Rotate3_X& R, const Translate3& T, Matrix4x3& M) {
    return _Mat_Mat(Mat(R), Mat(T), M);
}
Matrix4x3& _Rot_Y_Tran(const Rotate3_Y& R, const Translate3& T, Matrix4x3& M) {
    return _Mat_Mat(Mat(R), Mat(T), M);
}
Matrix4x3& _Rot_Z_Tran(const Rotate3_Z& R, const Translate3& T, Matrix4x3& M) {
    return _Mat_Mat(Mat(R), Mat(T), M);
}
Matrix4x3& _Tran_Rot_X(const Translate3& T, const Rotate3_X& R, Matrix4x3& M) {
    return _Mat_Mat(Mat(T), Mat(R), M);
}
Matrix4x3& _Tran_Rot_Y(const Translate3& T, const Rotate3_Y& R, Matrix4x3& M) {
    return _Mat_Mat(Mat(T), Mat(R), M);
}
Matrix4x3& _Tran_Rot_Z(const Translate3& T, const Rotate3_Z& R, Matrix4x3& M) {
    return _Mat_Mat(Mat(T), Mat(R), M);
}

Matrix3& _Scale_Mat(const Scale3& S, const Matrix3& A, Matrix3& M) { return Product(S, A, M); }
Matrix4x3& _Scale_Mat(const Scale3& S, const Matrix4x3& A, Matrix4x3& M) {
    return _Mat_Mat(Mat(S), A, M);
}
Matrix3& _Mat_Scale(const Matrix3& A, const Scale3& S, Matrix3& M) { return Product(A, S, M); }
Matrix4x3& _Mat_Scale(const Matrix4x3& A, const Scale3& S, Matrix4x3& M) {
    return _Mat_Mat(A, Mat(S), M);
}
Matrix4x3& _Scale_Tran(const Scale3& S, const Translate3& T, Matrix4x3& M) {
    return _Mat_Mat(Mat(S), Mat(T), M);
}
Matrix4x3& _Tran_Scale(const Translate3& T, const Scale3& S, Matrix4x3& M) {
    return _Mat_Mat(Mat(T), Mat(S), M);
}
Matrix4x3& _Tran_Mat(const Translate3& T, const Matrix3& A, Matrix4x3& M) {
    return _Mat_Mat(Mat(T), A, M);
}
Matrix4x3& _Tran_Mat(const Translate3& T, const Matrix4x3& A, Matrix4x3& M) {
    return _Mat_Mat(Mat(T), A, M);
}
Matrix4x3& _Mat_Tran(const Matrix3& A, const Translate3& T, Matrix4x3& M) {
    return _Mat_Mat(A, Mat(T), M);
}
Matrix4x3& _Mat_Tran(const Matrix4x3& A, const Translate3& T, Matrix4x3& M) {
    return _Mat_Mat(A, Mat(T), M);
}

// ---- inverses ----

short _Inverse(const Matrix3& M, Matrix3& R) {
    const double det = M.det();
    if (!(std::fabs(det) >= kSingularDet)) {  // NaN counts as singular
        R = M;
        return -1;
    }
    const Matrix3 a = M;  // R may be M
    const auto& m = a.m;
    R = Matrix3(m[1][1] * m[2][2] - m[1][2] * m[2][1], m[0][2] * m[2][1] - m[0][1] * m[2][2],
                m[0][1] * m[1][2] - m[0][2] * m[1][1], m[1][2] * m[2][0] - m[1][0] * m[2][2],
                m[0][0] * m[2][2] - m[0][2] * m[2][0], m[0][2] * m[1][0] - m[0][0] * m[1][2],
                m[1][0] * m[2][1] - m[1][1] * m[2][0], m[0][1] * m[2][0] - m[0][0] * m[2][1],
                m[0][0] * m[1][1] - m[0][1] * m[1][0]);
    for (auto& row : R.m) {
        for (double& v : row) v /= det;
    }
    return 0;
}

short _Inverse(const Matrix4x3& M, Matrix4x3& R) {
    const Matrix4x3 src = M;  // R may be M
    Matrix3 inv(_Undef_3D{});
    if (_Inverse(src.lin, inv) != 0) {
        R = src;
        return -1;
    }
    _Tran_Mat(Translate3(-src.t[0], -src.t[1], -src.t[2]), inv, R);
    return 0;
}

short _Inverse(const Linear3& M, Linear3& R) {
    return _Inverse(static_cast<const Matrix4x3&>(M), static_cast<Matrix4x3&>(R));
}

short _Inverse(const Isometry3& M, Isometry3& R) {
    const Isometry3 src = M;  // R may be M
    Matrix3 tr(_Undef_3D{});
    _Tran_Mat(Translate3(-src.t[0], -src.t[1], -src.t[2]), _Transpose(src.lin, tr), R);
    return 0;
}

Point3& _Inverse_Isometry_Point(const Matrix4x3& M, const Point3& P, Point3& Q) {
    // The transposed linear part, applied as a column-vector product.
    return Q = M.lin * Point3(P.x - M.t[0], P.y - M.t[1], P.z - M.t[2]);
}

}  // namespace quillon
