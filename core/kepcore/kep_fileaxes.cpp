#include "core/kepcore/kep_fileaxes.h"

#include "core/kepcore/kep_framereader.h"

namespace kep {

FileAxes ReadFileAxes(const char* fileName) {
    return FrameReader(fileName).GetAxes();
}

} // namespace kep
