#include "core/kepcore/convert/kep_block.h"

#include "core/kepcore/kep_hugepages.h"
#include "core/kepcore/kep_voxeltypes.h"

#include <cstring>
#include <limits>
#include <new>
#include <type_traits>

namespace kep::detail {

// std::valarray has no way to take a block over, and nothing can be done between its taking the memory and its
// writing zeros, so the block is handed to its two fields. They are named in an explicit instantiation, where the
// language tests no access. libstdc++ frees the block by operator delete, and its binary interface fixes the fields;
// with another library the plain constructor does.
#ifdef __GLIBCXX__

namespace {

/// The block of a new object of std::valarray, which frees it.
void* TakeMemory(std::size_t count, std::size_t bytesEach) {
    if (count > static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max()) / bytesEach)
        throw std::bad_array_new_length();
    void* const block = ::operator new(count* bytesEach);
    AdviseHugePages(block, count * bytesEach);
    return block;
}

template <typename T, auto size, auto data>
struct Fields {
    friend void Adopt(std::valarray<T>& array, T* block, std::size_t voxels) {
        array.*size = voxels;
        array.*data = block;
    }
};
#define KEP_OPEN_FIELDS(T)                                                                                             \
    void Adopt(std::valarray<T>& array, T* block, std::size_t voxels);                                                 \
    template struct Fields<T, &std::valarray<T>::_M_size, &std::valarray<T>::_M_data>;
KEP_FRAME_TYPES(KEP_OPEN_FIELDS)
#undef KEP_OPEN_FIELDS

} // namespace

template <typename T>
std::valarray<T> MakeUnsetBlock(std::size_t voxels) {
    static_assert(std::is_trivially_copyable_v<T> && alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);
    std::valarray<T> block;
    if (voxels > 0)
        Adopt(block, static_cast<T*>(TakeMemory(voxels, sizeof(T))), voxels);
    return block;
}

template <typename T>
std::valarray<T> MakeZeroBlock(std::size_t voxels) {
    std::valarray<T> block = MakeUnsetBlock<T>(voxels);
    if (voxels > 0)
        std::memset(static_cast<void*>(&block[0]), 0, voxels * sizeof(T)); // all types of voxels are 0 in bytes of 0
    return block;
}

#else

template <typename T>
std::valarray<T> MakeUnsetBlock(std::size_t voxels) {
    return MakeZeroBlock<T>(voxels);
}

template <typename T>
std::valarray<T> MakeZeroBlock(std::size_t voxels) {
    return std::valarray<T>(voxels);
}

#endif

#define KEP_INSTANTIATE(T)                                                                                             \
    template std::valarray<T> MakeUnsetBlock<T>(std::size_t);                                                          \
    template std::valarray<T> MakeZeroBlock<T>(std::size_t);
KEP_FRAME_TYPES(KEP_INSTANTIATE)
#undef KEP_INSTANTIATE

} // namespace kep::detail
