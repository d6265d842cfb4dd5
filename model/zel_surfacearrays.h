#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <type_traits>
#include <utility>

namespace zel::detail {

/// An array that grows at its end without being cleared or copied element by element: a large block grows in place or
/// moves by its pages. Movable; a moved-from array is empty.
template <typename T>
class GrowingArray {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    GrowingArray() = default;
    ~GrowingArray() { std::free(m_data); }
    GrowingArray(GrowingArray&& other) noexcept
        : m_data(std::exchange(other.m_data, nullptr)),
          m_size(std::exchange(other.m_size, 0)),
          m_capacity(std::exchange(other.m_capacity, 0)) {}
    GrowingArray& operator=(GrowingArray&& other) noexcept {
        std::swap(m_data, other.m_data);
        std::swap(m_size, other.m_size);
        std::swap(m_capacity, other.m_capacity);
        return *this;
    }

    /// Null in an array that never held anything.
    const T* GetData() const { return m_data; }
    T* GetData() { return m_data; }
    std::size_t GetSize() const { return m_size; }

    /// Makes room for `count` more elements. @return where they go; they count from the Append on
    /// @throws std::bad_alloc
    T* Reserve(std::size_t count) {
        if (m_capacity - m_size < count)
            Reallocate(std::max(m_size + count, m_capacity + m_capacity / 2));
        return m_data + m_size;
    }
    /// Counts elements in that were written to the room reserved for them.
    void Append(std::size_t count) { m_size += count; }

    void Clear() { m_size = 0; }
    /// Forgets the elements from `size` on.
    void CutTo(std::size_t size) { m_size = size; }

    /// Gives the room that is not used back to the system.
    void ShrinkToFit() {
        if (m_size == 0)
            *this = GrowingArray();
        else
            Reallocate(m_size);
    }

private:
    void Reallocate(std::size_t capacity) {
        void* const block = std::realloc(m_data, capacity * sizeof(T));
        if (block == nullptr)
            throw std::bad_alloc();
        m_data = static_cast<T*>(block);
        m_capacity = capacity;
    }

    T* m_data = nullptr;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};

/// The arrays of one mesh.
struct SurfaceArrays {
    GrowingArray<float> vertices;        ///< x, y, z of each
    GrowingArray<float> normals;         ///< as many
    GrowingArray<std::uint64_t> indices; ///< three of each triangle
};

} // namespace zel::detail
