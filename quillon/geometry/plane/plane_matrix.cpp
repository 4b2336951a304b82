#include "quillon/geometry/plane/plane_matrix.h"

#include <cmath>

namespace quillon {

namespace {

// Below this |det| a matrix has no usable inverse.
constexpr double kSingularDet = 2.220446049250313e-16;

Matrix2 RotationOf(const Rotate2& r) { return Matrix2(r.cos, r.sin, -r.sin, r.cos); }
Matrix2 ScalingOf(const Scale2& s) { return Matrix2(s.x, 0.0, 0.0, s.y); }
Matrix3x2 TranslationOf(const Translate2& t) { return Matrix3x2(Matrix2(), t.vec); }

}  // namespace

Rotate2& Rotate2::set(double angle) { return set(std::sin(angle), std::cos(angle)); }

Isometry2& Isometry2::set(const Line2& l) {
    if (!l.is_line()) return *this;
    const double a = l.a, b = l.b, c = l.c;
    const double n = a * a + b * b;
    lin.m[1][1] = (a * a - b * b) / n;
    lin.m[0][0] = -lin.m[1][1];
    lin.m[0][1] = lin.m[1][0] = -2.0 * a * b / n;
    t[0] = -2.0 * a * c / n;
    t[1] = -2.0 * b * c / n;
    return *this;
}

Linear2 Linear2::inverse() const {
    Linear2 r;
    _Inverse(*this, r);
    return r;
}

Isometry2 Isometry2::inverse() const {
    Isometry2 r;
    _Inverse(*this, r);
    return r;
}

// ---- products ----

Matrix2& _Mat_Mat(const Matrix2& A, const Matrix2& B, Matrix2& C) {
    const Matrix2 a = A, b = B;  // C may be A or B
    for (int i = 0; i < 2; ++i) {
        for (int j = 0; j < 2; ++j) C.m[i][j] = a.m[i][0] * b.m[0][j] + a.m[i][1] * b.m[1][j];
    }
    return C;
}

Matrix3x2& _Mat_Mat(const Matrix3x2& A, const Matrix3x2& B, Matrix3x2& C) {
    const Matrix3x2 a = A, b = B;  // C may be A or B
    _Mat_Mat(a.lin, b.lin, C.lin);
    // The first translation carried through the second transform, plus the second translation.
    C.t[0] = a.t[0] * b.lin.m[0][0] + a.t[1] * b.lin.m[1][0] + b.t[0];
    C.t[1] = a.t[0] * b.lin.m[0][1] + a.t[1] * b.lin.m[1][1] + b.t[1];
    return C;
}

Matrix3x2& _Mat_Mat(const Matrix2& A, const Matrix3x2& B, Matrix3x2& C) {
    return _Mat_Mat(Matrix3x2(A), B, C);
}

Matrix3x2& _Mat_Mat(const Matrix3x2& A, const Matrix2& B, Matrix3x2& C) {
    return _Mat_Mat(A, Matrix3x2(B), C);
}

// ---- single transforms ----

Matrix2& _Rotate(const Rotate2& R, Matrix2& M) { return M = RotationOf(R); }
Matrix3x2& _Rotate(const Rotate2& R, Matrix3x2& M) { return M = Matrix3x2(RotationOf(R)); }
Matrix3x2& _Translate(const Translate2& T, Matrix3x2& M) { return M = TranslationOf(T); }
Matrix2& _Scale(const Scale2& S, Matrix2& M) { return M = ScalingOf(S); }
Matrix3x2& _Scale(const Scale2& S, Matrix3x2& M) { return M = Matrix3x2(ScalingOf(S)); }
Matrix3x2& _Copy_Mat2_To_Mat3x2(const Matrix2& M2, Matrix3x2& M3) { return M3 = Matrix3x2(M2); }

// ---- products of two transforms, first the left one ----

Matrix3x2& _Tran_Rotate(const Translate2& T, const Rotate2& R, Matrix3x2& M) {
    return _Mat_Mat(TranslationOf(T), RotationOf(R), M);
}
Matrix3x2& _Rotate_Tran(const Rotate2& R, const Translate2& T, Matrix3x2& M) {
    return _Mat_Mat(RotationOf(R), TranslationOf(T), M);
}
Matrix2& _Scale_Rotate(const Scale2& S, const Rotate2& R, Matrix2& M) {
    return _Mat_Mat(ScalingOf(S), RotationOf(R), M);
}
Matrix3x2& _Scale_Rotate(const Scale2& S, const Rotate2& R, Matrix3x2& M) {
    Matrix2 m;
    return _Copy_Mat2_To_Mat3x2(_Scale_Rotate(S, R, m), M);
}
Matrix2& _Rotate_Scale(const Rotate2& R, const Scale2& S, Matrix2& M) {
    return _Mat_Mat(RotationOf(R), ScalingOf(S), M);
}
Matrix3x2& _Rotate_Scale(const Rotate2& R, const Scale2& S, Matrix3x2& M) {
    Matrix2 m;
    return _Copy_Mat2_To_Mat3x2(_Rotate_Scale(R, S, m), M);
}
Matrix2& _Mat_Rotate(const Matrix2& A, const Rotate2& R, Matrix2& M) {
    return _Mat_Mat(A, RotationOf(R), M);
}
Matrix3x2& _Mat_Rotate(const Matrix3x2& A, const Rotate2& R, Matrix3x2& M) {
    return _Mat_Mat(A, RotationOf(R), M);
}
Matrix2& _Rotate_Mat(const Rotate2& R, const Matrix2& A, Matrix2& M) {
    return _Mat_Mat(RotationOf(R), A, M);
}
Matrix3x2& _Rotate_Mat(const Rotate2& R, const Matrix3x2& A, Matrix3x2& M) {
    return _Mat_Mat(RotationOf(R), A, M);
}
Matrix3x2& _Scale_Tran(const Scale2& S, const Translate2& T, Matrix3x2& M) {
    return _Mat_Mat(ScalingOf(S), TranslationOf(T), M);
}
Matrix3x2& _Tran_Scale(const Translate2& T, const Scale2& S, Matrix3x2& M) {
    return _Mat_Mat(TranslationOf(T), ScalingOf(S), M);
}
Matrix2& _Scale_Mat(const Scale2& S, const Matrix2& A, Matrix2& M) {
    return _Mat_Mat(ScalingOf(S), A, M);
}
Matrix3x2& _Scale_Mat(const Scale2& S, const Matrix3x2& A, Matrix3x2& M) {
    return _Mat_Mat(ScalingOf(S), A, M);
}
Matrix2& _Mat_Scale(const Matrix2& A, const Scale2& S, Matrix2& M) {
    return _Mat_Mat(A, ScalingOf(S), M);
}
Matrix3x2& _Mat_Scale(const Matrix3x2& A, const Scale2& S, Matrix3x2& M) {
    return _Mat_Mat(A, ScalingOf(S), M);
}
Matrix3x2& _Tran_Mat(const Translate2& T, const Matrix2& A, Matrix3x2& M) {
    return _Mat_Mat(TranslationOf(T), A, M);
}
Matrix3x2& _Tran_Mat(const Translate2& T, const Matrix3x2& A, Matrix3x2& M) {
    return _Mat_Mat(TranslationOf(T), A, M);
}
Matrix3x2& _Mat_Tran(const Matrix2& A, const Translate2& T, Matrix3x2& M) {
    return _Mat_Mat(A, TranslationOf(T), M);
}
Matrix3x2& _Mat_Tran(const Matrix3x2& A, const Translate2& T, Matrix3x2& M) {
    return _Mat_Mat(A, TranslationOf(T), M);
}

// ---- inverses ----

short _Inverse(const Matrix2& M, Matrix2& R) {
    const double det = M.det();
    if (std::fabs(det) < kSingularDet) {  // mutate: off (exactly at the singular limit)
        R = M;
        return -1;
    }
    const Matrix2 src = M;  // R may be M
    R.m[0][0] = src.m[1][1] / det;
    R.m[0][1] = -src.m[0][1] / det;
    R.m[1][0] = -src.m[1][0] / det;
    R.m[1][1] = src.m[0][0] / det;
    return 0;
}

short _Inverse(const Matrix3x2& M, Matrix3x2& R) {
    const Matrix3x2 src = M;  // R may be M
    Matrix2 inv;
    if (_Inverse(src.lin, inv) != 0) {
        R = src;
        return -1;
    }
    R.lin = inv;
    // -t carried through the inverted linear part.
    R.t[0] = -(src.t[0] * inv.m[0][0] + src.t[1] * inv.m[1][0]);
    R.t[1] = -(src.t[0] * inv.m[0][1] + src.t[1] * inv.m[1][1]);
    return 0;
}

short _Inverse(const Isometry2& M, Isometry2& R) {
    return _Inverse(static_cast<const Matrix3x2&>(M), static_cast<Matrix3x2&>(R));
}

short _Inverse(const Linear2& M, Linear2& R) {
    return _Inverse(static_cast<const Matrix3x2&>(M), static_cast<Matrix3x2&>(R));
}

Point2& _Inverse_Isometry_Point(const Matrix3x2& M, const Point2& P, Point2& Q) {
    Point2 p = P;
    p /= M;
    return Q = p;
}

}  // namespace quillon
