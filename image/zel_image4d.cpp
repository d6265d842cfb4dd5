#include "image/zel_image4d.h"

#include "image/sequence/zel_image4d_files_impl.h"
#include "image/sequence/zel_image4d_impl.h"

namespace mor {

#define ZEL_INSTANTIATE(T) template class Image4d<T>;
KEP_CONTAINER_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace mor
