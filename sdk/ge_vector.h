// Vectors and matrices with the release-14 operators: `*` dot product or point transform, `%` cross product,
// `^` component-wise product or direction transform, `!` normalised copy or inverse.
#pragma once

#include "ge_types.h"

#include <cmath>

template <class R>
struct VectorT { // ours
  R x, y, z;

  VectorT() : x(0), y(0), z(0) {}
  VectorT(R in) : x(in), y(in), z(in) {}
  VectorT(R ix, R iy, R iz) : x(ix), y(iy), z(iz) {}
  VectorT(_DONTCONSTRUCT) {}

  VectorT& operator+=(const VectorT& v) { return x += v.x, y += v.y, z += v.z, *this; }
  VectorT& operator-=(const VectorT& v) { return x -= v.x, y -= v.y, z -= v.z, *this; }
  VectorT& operator*=(R s) { return x *= s, y *= s, z *= s, *this; }
  VectorT& operator/=(R s) { return *this = *this / s; }

  R& operator[](LONG i) { return i == 0 ? x : (i == 1 ? y : z); }
  R operator[](LONG i) const { return i == 0 ? x : (i == 1 ? y : z); }

  R GetLength() const { return std::sqrt(x * x + y * y + z * z); }
  R GetLengthSquared() const { return x * x + y * y + z * z; }
  VectorT GetNormalized() const { return !*this; }
  void Normalize() { *this = !*this; }

  VectorT<SReal> ToSV() const { return VectorT<SReal>((SReal)x, (SReal)y, (SReal)z); }
  VectorT<LReal> ToLV() const { return VectorT<LReal>(x, y, z); }
  VectorT<Real> ToRV() const { return VectorT<Real>(x, y, z); }

  /** Division by zero yields the zero vector. */
  friend VectorT operator/(const VectorT& v, R s) {
    return s == R(0) ? VectorT() : VectorT(v.x / s, v.y / s, v.z / s);
  }
  friend VectorT operator*(const VectorT& v, R s) { return VectorT(v.x * s, v.y * s, v.z * s); }
  friend VectorT operator*(R s, const VectorT& v) { return v * s; }
  friend R operator*(const VectorT& a, const VectorT& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
  friend VectorT operator%(const VectorT& a, const VectorT& b) {
    return VectorT(a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x);
  }
  friend VectorT operator^(const VectorT& a, const VectorT& b) {
    return VectorT(a.x * b.x, a.y * b.y, a.z * b.z);
  }
  friend VectorT operator+(const VectorT& a, const VectorT& b) {
    return VectorT(a.x + b.x, a.y + b.y, a.z + b.z);
  }
  friend VectorT operator-(const VectorT& a, const VectorT& b) {
    return VectorT(a.x - b.x, a.y - b.y, a.z - b.z);
  }
  friend VectorT operator-(const VectorT& v) { return VectorT(-v.x, -v.y, -v.z); }
  /** Unit vector; the zero vector stays zero. */
  friend VectorT operator!(const VectorT& v) { return v / v.GetLength(); }
  friend bool operator==(const VectorT& a, const VectorT& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
  }
  friend bool operator!=(const VectorT& a, const VectorT& b) { return !(a == b); }
};

typedef VectorT<SReal> SVector;
typedef VectorT<LReal> LVector;
typedef VectorT<Real> Vector;

static_assert(sizeof(SVector) == 12 && sizeof(LVector) == 24, "array transfers rely on packed vectors");

template <class R>
inline R Len(const VectorT<R>& v) {
  return v.GetLength();
}

/** Affine matrix: a point p maps to off + v1 * p.x + v2 * p.y + v3 * p.z. */
template <class R>
struct MatrixT { // ours
  typedef VectorT<R> V;
  V off, v1, v2, v3;

  MatrixT() : v1(1, 0, 0), v2(0, 1, 0), v3(0, 0, 1) {}
  MatrixT(const V& o, const V& a, const V& b, const V& c) : off(o), v1(a), v2(b), v3(c) {}
  MatrixT(_DONTCONSTRUCT) : off(DC), v1(DC), v2(DC), v3(DC) {}

  V Mul(const V& p) const { return off + MulV(p); }
  V MulV(const V& d) const { return v1 * d.x + v2 * d.y + v3 * d.z; }

  MatrixT<SReal> ToSM() const { return MatrixT<SReal>(off.ToSV(), v1.ToSV(), v2.ToSV(), v3.ToSV()); }
  MatrixT<LReal> ToLM() const { return MatrixT<LReal>(off.ToLV(), v1.ToLV(), v2.ToLV(), v3.ToLV()); }

  friend V operator*(const V& p, const MatrixT& m) { return m.Mul(p); }
  friend V operator*(const MatrixT& m, const V& p) { return m.Mul(p); }
  friend V operator^(const V& d, const MatrixT& m) { return m.MulV(d); }
  /** Concatenation: applied to a point, b acts first. */
  friend MatrixT operator*(const MatrixT& a, const MatrixT& b) {
    return MatrixT(a.Mul(b.off), a.MulV(b.v1), a.MulV(b.v2), a.MulV(b.v3));
  }
  /** Inverse; a singular matrix gives the identity. */
  friend MatrixT operator!(const MatrixT& m) {
    const R determinant = m.v1 * (m.v2 % m.v3);
    if (determinant == R(0) || !std::isfinite(determinant)) return MatrixT();
    const R s = R(1) / determinant;
    const V r1 = (m.v2 % m.v3) * s, r2 = (m.v3 % m.v1) * s, r3 = (m.v1 % m.v2) * s;
    MatrixT i(V(), V(r1.x, r2.x, r3.x), V(r1.y, r2.y, r3.y), V(r1.z, r2.z, r3.z));
    i.off = -i.MulV(m.off);
    return i;
  }
  friend bool operator==(const MatrixT& a, const MatrixT& b) {
    return a.off == b.off && a.v1 == b.v1 && a.v2 == b.v2 && a.v3 == b.v3;
  }
  friend bool operator!=(const MatrixT& a, const MatrixT& b) { return !(a == b); }
};

typedef MatrixT<SReal> SMatrix;
typedef MatrixT<LReal> LMatrix;
typedef MatrixT<Real> Matrix;

/** Four-component column vectors of a projective matrix: result = v1*x + v2*y + v3*z + off*w. */
template <class R>
struct Vector4T { // ours
  R x, y, z, w;
  Vector4T(R ix = 0, R iy = 0, R iz = 0, R iw = 0) : x(ix), y(iy), z(iz), w(iw) {}
};
template <class R>
struct Matrix4T { // ours
  Vector4T<R> off{0, 0, 0, 1}, v1{1, 0, 0, 0}, v2{0, 1, 0, 0}, v3{0, 0, 1, 0};
};
typedef Vector4T<SReal> SVector4;
typedef Vector4T<LReal> LVector4; // ours
typedef Matrix4T<SReal> SMatrix4;
typedef Matrix4T<LReal> LMatrix4;

inline Matrix MatrixMove(const Vector& t) {
  return Matrix(t, Vector(1, 0, 0), Vector(0, 1, 0), Vector(0, 0, 1));
}
inline Matrix MatrixScale(const Vector& s) {
  return Matrix(Vector(), Vector(s.x, 0, 0), Vector(0, s.y, 0), Vector(0, 0, s.z));
}
