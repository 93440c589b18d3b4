#pragma once

#include <cassert>

namespace brin {

/// A point or vector of the plane; (0, 0) unless something else is given.
template <class T>
struct Vec2 {
    T x{}, y{};

    constexpr Vec2() = default;
    constexpr Vec2(T x_, T y_) : x(x_), y(y_) {}

    /// x for axis 0, y for axis 1.
    constexpr T& operator[](int axis) { return assert(axis == 0 || axis == 1), axis == 0 ? x : y; }
    constexpr const T& operator[](int axis) const {
        return assert(axis == 0 || axis == 1), axis == 0 ? x : y;
    }

    constexpr Vec2& operator+=(const Vec2& o) { return *this = *this + o; }
    constexpr Vec2& operator-=(const Vec2& o) { return *this = *this - o; }
    constexpr Vec2& operator*=(T s) { return *this = *this * s; }
    constexpr Vec2& operator/=(T s) { return *this = *this / s; }

    friend constexpr Vec2 operator+(const Vec2& a, const Vec2& b) { return {a.x + b.x, a.y + b.y}; }
    friend constexpr Vec2 operator-(const Vec2& a, const Vec2& b) { return {a.x - b.x, a.y - b.y}; }
    friend constexpr Vec2 operator-(const Vec2& a) { return {-a.x, -a.y}; }
    friend constexpr Vec2 operator*(const Vec2& a, T s) { return {a.x * s, a.y * s}; }
    friend constexpr Vec2 operator*(T s, const Vec2& a) { return {s * a.x, s * a.y}; }
    friend constexpr Vec2 operator/(const Vec2& a, T s) { return {a.x / s, a.y / s}; }
    friend constexpr bool operator==(const Vec2& a, const Vec2& b) { return a.x == b.x && a.y == b.y; }
    friend constexpr bool operator!=(const Vec2& a, const Vec2& b) { return !(a == b); }
};

/// A point or vector of space; (0, 0, 0) unless something else is given.
template <class T>
struct Vec3 {
    T x{}, y{}, z{};

    constexpr Vec3() = default;
    constexpr Vec3(T x_, T y_, T z_) : x(x_), y(y_), z(z_) {}

    /// x for axis 0, y for axis 1, z for axis 2.
    constexpr T& operator[](int axis) {
        return assert(axis >= 0 && axis <= 2), axis == 0 ? x : axis == 1 ? y : z;
    }
    constexpr const T& operator[](int axis) const {
        return assert(axis >= 0 && axis <= 2), axis == 0 ? x : axis == 1 ? y : z;
    }

    constexpr Vec3& operator+=(const Vec3& o) { return *this = *this + o; }
    constexpr Vec3& operator-=(const Vec3& o) { return *this = *this - o; }
    constexpr Vec3& operator*=(T s) { return *this = *this * s; }
    constexpr Vec3& operator/=(T s) { return *this = *this / s; }

    friend constexpr Vec3 operator+(const Vec3& a, const Vec3& b) {
        return {a.x + b.x, a.y + b.y, a.z + b.z};
    }
    friend constexpr Vec3 operator-(const Vec3& a, const Vec3& b) {
        return {a.x - b.x, a.y - b.y, a.z - b.z};
    }
    friend constexpr Vec3 operator-(const Vec3& a) { return {-a.x, -a.y, -a.z}; }
    friend constexpr Vec3 operator*(const Vec3& a, T s) { return {a.x * s, a.y * s, a.z * s}; }
    friend constexpr Vec3 operator*(T s, const Vec3& a) { return {s * a.x, s * a.y, s * a.z}; }
    friend constexpr Vec3 operator/(const Vec3& a, T s) { return {a.x / s, a.y / s, a.z / s}; }
    friend constexpr bool operator==(const Vec3& a, const Vec3& b) {
        return a.x == b.x && a.y == b.y && a.z == b.z;
    }
    friend constexpr bool operator!=(const Vec3& a, const Vec3& b) { return !(a == b); }
};

/// Scalar product.
template <class T>
constexpr T dot(const Vec2<T>& a, const Vec2<T>& b) {
    return a.x * b.x + a.y * b.y;
}
template <class T>
constexpr T dot(const Vec3<T>& a, const Vec3<T>& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// Vector product.
template <class T>
constexpr Vec3<T> cross(const Vec3<T>& a, const Vec3<T>& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

}  // namespace brin
