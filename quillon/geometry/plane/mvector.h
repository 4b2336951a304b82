// Mvector<T>: the library's growable array, a std::vector with the named operations that the
// geometry code is written in (append, insert, replace, erase by index, by range or by a sorted
// index list, reverse). Mmatrix<T> is a vector of such vectors, used for rows of indices or points.
//
// Index arguments that lie outside the vector make the named operations do nothing (Insert past the
// end appends), so no named operation throws; `at(i)` keeps the checked access of std::vector.
#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace quillon {

template <class T>
class Mvector : public std::vector<T> {
public:
    using base = std::vector<T>;
    using base::base;

    Mvector() = default;
    Mvector(const std::vector<T>& v) : base(v) {}
    Mvector(std::vector<T>&& v) : base(std::move(v)) {}
    // `count` elements copied from `items` (nothing when items is null).
    Mvector(const T* items, std::size_t count) {
        if (items != nullptr) this->assign(items, items + count);
    }
    // `count` copies of `value`.
    Mvector(std::size_t count, const T& value) : base(count, value) {}

    void Add(const T& item) { this->push_back(item); }
    void Add(T&& item) { this->push_back(std::move(item)); }
    void Add(const Mvector& other) {
        if (&other == this) {
            const std::size_t n = this->size();
            this->reserve(2 * n);
            for (std::size_t i = 0; i < n; ++i) this->push_back((*this)[i]);
            return;
        }
        this->insert(this->end(), other.begin(), other.end());
    }

    // Inserts before index i; an index at or past the end appends.
    void Insert(std::size_t i, const T& item) {
        if (i >= this->size())
            this->push_back(item);
        else
            this->insert(this->begin() + static_cast<std::ptrdiff_t>(i), item);
    }
    void Replace(std::size_t i, const T& item) {
        if (i < this->size()) (*this)[i] = item;
    }

    void Erase() { this->clear(); }
    void Erase(std::size_t i) {
        if (i < this->size()) this->erase(this->begin() + static_cast<std::ptrdiff_t>(i));
    }
    // Erases the half-open index range [first, last), clamped to the vector.
    void Erase(std::size_t first, std::size_t last) {
        last = std::min(last, this->size());
        if (first >= last) return;
        this->erase(this->begin() + static_cast<std::ptrdiff_t>(first),
                    this->begin() + static_cast<std::ptrdiff_t>(last));
    }
    // Erases the elements at the given indices, which come in ascending order. The kept elements
    // move down in their order and the tail is cut off, in one linear pass. Repeated indices and
    // indices past the end are ignored.
    void Erase(const Mvector<unsigned long long>& indices) {
        const std::size_t n = this->size();
        std::size_t write = 0, j = 0;
        for (std::size_t i = 0; i < n; ++i) {
            while (j < indices.size() && indices[j] < i) ++j;
            if (j < indices.size() && indices[j] == i) continue;
            if (write != i) (*this)[write] = std::move((*this)[i]);
            ++write;
        }
        this->erase(this->begin() + static_cast<std::ptrdiff_t>(write), this->end());
    }

    // Reverses the order of the elements; the elements themselves are not changed.
    void Reverse() { std::reverse(this->begin(), this->end()); }

    T& Front() { return this->front(); }
    const T& Front() const { return this->front(); }
    T& Back() { return this->back(); }
    const T& Back() const { return this->back(); }

    // Both give the number of elements.
    std::size_t Count() const { return this->size(); }
    std::size_t Size() const { return this->size(); }
};

// Rows of values; each row is an Mvector of its own and rows may differ in length.
template <class T>
class Mmatrix : public Mvector<Mvector<T>> {
public:
    using Mvector<Mvector<T>>::Mvector;
    Mmatrix() = default;
    // `rows` rows of `cols` copies of `value`.
    Mmatrix(std::size_t rows, std::size_t cols, const T& value = T())
        : Mvector<Mvector<T>>(rows, Mvector<T>(cols, value)) {}
};

}  // namespace quillon
