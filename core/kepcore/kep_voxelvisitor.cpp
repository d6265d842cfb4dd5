#include "core/kepcore/kep_voxelvisitor.h"

#include <utility>

namespace kep {

template <typename T>
VoxelVisitor<T>::VoxelVisitor(Visit toWhom) : visit(std::move(toWhom)), outer(std::exchange(Innermost(), this)) {}

template <typename T>
VoxelVisitor<T>::~VoxelVisitor() {
    Innermost() = outer;
}

template <typename T>
bool VoxelVisitor<T>::IsThere() {
    return Innermost() != nullptr;
}

template <typename T>
void VoxelVisitor<T>::Show(const T* first, std::size_t number) {
    for (const VoxelVisitor* visitor = Innermost(); visitor != nullptr; visitor = visitor->outer)
        visitor->visit(first, number);
}

template <typename T>
VoxelVisitor<T>*& VoxelVisitor<T>::Innermost() {
    thread_local VoxelVisitor* innermost = nullptr;
    return innermost;
}

#define KEP_INSTANTIATE(T) template class VoxelVisitor<T>;
KEP_FRAME_TYPES(KEP_INSTANTIATE)
#undef KEP_INSTANTIATE

} // namespace kep
