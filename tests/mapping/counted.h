#pragma once

// Small histograms, and a log that is read.

#include "histogram/zel_histogramset.h"

#include <wx/log.h>

#include <string>
#include <utility>
#include <vector>

namespace zel::test {

/// A histogram from min to max with these counters.
template <typename T>
Histogram<T> Counted(T min, T max, const std::vector<std::size_t>& counts) {
    Histogram<T> histogram;
    histogram.Init(min, max, counts.size());
    for (std::size_t i = 0; i < counts.size(); ++i)
        histogram[i] = counts[i];
    return histogram;
}

/// The histogram of an image with these voxels, which is as long as one of a whole sequence: a bin for each value of
/// an unsigned type, or for each number from the least to the greatest.
template <typename T>
Histogram<T> OfVoxels(const std::vector<T>& voxels, T min = std::numeric_limits<T>::min(),
                      T max = std::numeric_limits<T>::max()) {
    Histogram<T> histogram;
    histogram.Init(min, max, static_cast<std::size_t>(static_cast<long long>(max) - static_cast<long long>(min)) + 1);
    for (const T voxel : voxels)
        ++histogram.GetBin(voxel);
    return histogram;
}

template <typename T>
HistogramSet<T> SetOf(const Histogram<T>& histogram) {
    HistogramSet<T> set;
    set.Set(histogram);
    return set;
}

/// Takes in everything that is logged while it lives.
class NotedLog : public wxLog {
public:
    using Entries = std::vector<std::pair<wxLogLevel, std::string>>;

    NotedLog() : m_previous(wxLog::SetActiveTarget(this)), m_previousLevel(wxLog::GetLogLevel()) {
        wxLog::SetLogLevel(wxLOG_Max);
    }
    ~NotedLog() override {
        wxLog::SetLogLevel(m_previousLevel);
        wxLog::SetActiveTarget(m_previous);
    }
    NotedLog(const NotedLog&) = delete;
    NotedLog& operator=(const NotedLog&) = delete;

    Entries entries;

protected:
    void DoLogRecord(wxLogLevel level, const wxString& text, const wxLogRecordInfo&) override {
        entries.emplace_back(level, text.utf8_string());
    }

private:
    wxLog* m_previous;
    wxLogLevel m_previousLevel;
};

} // namespace zel::test
