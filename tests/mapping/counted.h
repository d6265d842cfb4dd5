#pragma once

// Sets of small histograms.

#include "histogram/zel_histogramset.h"
#include "tests/model/counted.h"

namespace zel::test {

template <typename T>
HistogramSet<T> SetOf(const Histogram<T>& histogram) {
    HistogramSet<T> set;
    set.Set(histogram);
    return set;
}

} // namespace zel::test
