#include "core/kepalgo/kep_labeledimage3d.h"

#include "core/kepalgo/runs/kep_runs.h"
#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/kep_threads.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <type_traits>
#include <utility>
#include <vector>

namespace kep {

namespace {

constexpr std::size_t labelCount = std::size_t{std::numeric_limits<unsigned short>::max()} + 1;

/// What a component's runs add up to.
struct Extent {
    Vector3d<std::size_t> low;  ///< first voxel of the bounding box
    Vector3d<std::size_t> high; ///< its last voxel
    std::size_t volume = 0;
    std::size_t firstVoxel = 0; ///< index
    bool border = false;
};

/// Takes runs along x, in the order of their voxels, into the extents of their components.
class ExtentCounter {
public:
    explicit ExtentCounter(const Vector3d<std::size_t>& size) : m_size(size) {}

    void StartRow(std::size_t y, std::size_t z) {
        m_y = y;
        m_z = z;
        m_row = (m_size.y * z + y) * m_size.x;
        m_rowOnBorder = IsOuter(y, m_size.y) || IsOuter(z, m_size.z);
    }
    /// Takes a run that starts a component.
    Extent Start(std::size_t from, std::size_t until) const {
        return {{from, m_y, m_z}, {until - 1, m_y, m_z}, until - from, m_row + from, IsOnBorder(from, until)};
    }
    void Add(std::size_t from, std::size_t until, Extent& extent) const {
        extent.low.x = std::min(extent.low.x, from);
        extent.low.y = std::min(extent.low.y, m_y); // low.z stays, as z never falls
        extent.high.x = std::max(extent.high.x, until - 1);
        extent.high.y = std::max(extent.high.y, m_y);
        extent.high.z = m_z;
        extent.volume += until - from;
        extent.border = extent.border || IsOnBorder(from, until);
    }

private:
    /// An axis of size 1 has no border.
    static bool IsOuter(std::size_t at, std::size_t size) { return size != 1 && (at == 0 || at == size - 1); }
    bool IsOnBorder(std::size_t from, std::size_t until) const {
        return m_rowOnBorder || IsOuter(from, m_size.x) || IsOuter(until - 1, m_size.x);
    }

    Vector3d<std::size_t> m_size;
    std::size_t m_y = 0;
    std::size_t m_z = 0;
    std::size_t m_row = 0; ///< index of its first voxel
    bool m_rowOnBorder = false;
};

template <typename L, typename V>
ComponentInfo<L, V> MakeComponent(const Extent& extent, const Image3d<V>& image) {
    const Vector3d<std::size_t> size(extent.high.x - extent.low.x + 1, extent.high.y - extent.low.y + 1,
                                     extent.high.z - extent.low.z + 1);
    return {{extent.low, size}, extent.volume, image.GetVoxel(extent.firstVoxel), extent.border};
}

/// The runs of voxels that are not 0, row by row, each with the number of the component that it belongs to.
class ComponentRuns {
public:
    struct Run {
        std::uint32_t from;
        std::uint32_t until;
        /// While runs are being joined: an earlier run of the same component, or the run itself. Then the label.
        std::uint32_t link;
    };

    template <typename V>
    explicit ComponentRuns(const Image3d<V>& image) : m_size(image.size), m_rowStarts(1) {
        const std::size_t rows = m_size.y * m_size.z;
        std::vector<ComponentRuns> parts(GetPartCount(), ComponentRuns(m_size));
        const auto getFirstRow = [&](std::size_t part) { return rows * part / parts.size(); };
        ForEachPart(parts.size(), [&](std::size_t i) { parts[i].Find(image, getFirstRow(i), getFirstRow(i + 1)); });
        if (parts.size() == 1) {
            *this = std::move(parts[0]);
            return;
        }
        for (ComponentRuns& part : parts)
            Append(std::move(part));
        for (std::size_t i = 1; i < parts.size(); ++i)
            JoinWithRowsBefore(getFirstRow(i), std::min(getFirstRow(i) + m_size.y, getFirstRow(i + 1)));
    }

    /// Turns links into labels, which rise with the first voxel of each component.
    /// @return the extents, by label; [0] is of no component
    std::vector<Extent> Number() {
        std::vector<Extent> extents(1);
        ExtentCounter counter(m_size);
        ForEachRow([&](std::size_t y, std::size_t z, std::size_t row) {
            counter.StartRow(y, z);
            for (std::size_t i = m_rowStarts[row]; i < m_rowStarts[row + 1]; ++i) {
                Run& run = m_runs[i];
                if (run.link != i) {
                    run.link = m_runs[run.link].link; // a label already, as the linked run lies before
                    counter.Add(run.from, run.until, extents[run.link]);
                    continue;
                }
                if (extents.size() == labelCount)
                    throw LibException("CreateForegroundRegionsFF(): More than 65535 components.");
                run.link = static_cast<std::uint32_t>(extents.size());
                extents.push_back(counter.Start(run.from, run.until));
            }
        });
        return extents;
    }

    /// Writes the labels of all runs into a frame.
    /// @param isClear  the frame is all zeros
    template <typename L>
    void Paint(L* voxels, bool isClear) const {
        const std::size_t rows = m_rowStarts.size() - 1;
        const std::size_t parts = GetPartCount();
        ForEachPart(parts, [&](std::size_t part) {
            for (std::size_t row = rows * part / parts; row < rows * (part + 1) / parts; ++row) {
                L* const to = voxels + row * m_size.x;
                if (!isClear)
                    std::memset(to, 0, m_size.x * sizeof(L));
                for (std::size_t i = m_rowStarts[row]; i < m_rowStarts[row + 1]; ++i)
                    std::fill(to + m_runs[i].from, to + m_runs[i].until, static_cast<L>(m_runs[i].link));
            }
        });
    }

private:
    static constexpr std::size_t most = std::numeric_limits<std::uint32_t>::max();

    explicit ComponentRuns(const Vector3d<std::size_t>& size) : m_size(size), m_rowStarts(1) {}

    [[noreturn]] static void ThrowTooLarge() {
        throw LibException("CreateForegroundRegionsFF(): The image is too large.");
    }

    /// How many threads share the rows.
    std::size_t GetPartCount() const {
        constexpr std::size_t worthwhile = 2000000; // voxels for each
        return std::clamp<std::size_t>(m_size.x * m_size.y * m_size.z / worthwhile, 1, GetThreadLimit());
    }

    /// Finds the runs of some rows, and joins those that touch within these rows.
    template <typename V>
    void Find(const Image3d<V>& image, std::size_t begin, std::size_t end) {
        if (m_size.x > most)
            ThrowTooLarge();
        m_rowStarts.reserve(end - begin + 1);
        m_runs.reserve(end - begin);
        for (std::size_t row = begin; row < end; ++row) {
            detail::ForEachRun(image.begin() + row * m_size.x, m_size.x, [this](std::size_t from, std::size_t until) {
                m_runs.push_back({static_cast<std::uint32_t>(from), static_cast<std::uint32_t>(until),
                                  static_cast<std::uint32_t>(m_runs.size())});
            });
            if (m_runs.size() > most)
                ThrowTooLarge();
            m_rowStarts.push_back(static_cast<std::uint32_t>(m_runs.size()));
            if (m_rowStarts[row - begin] == m_runs.size())
                continue;
            if (row % m_size.y != 0 && row > begin)
                Join(row - begin, row - begin - 1);
            if (row >= begin + m_size.y)
                Join(row - begin, row - begin - m_size.y);
        }
    }

    /// Takes the runs of the rows that follow.
    void Append(ComponentRuns&& part) {
        const std::size_t before = m_runs.size();
        if (part.m_runs.size() > most - before)
            ThrowTooLarge();
        const auto offset = static_cast<std::uint32_t>(before);
        for (Run& run : part.m_runs)
            run.link += offset;
        m_runs.insert(m_runs.end(), part.m_runs.begin(), part.m_runs.end());
        std::transform(part.m_rowStarts.begin() + 1, part.m_rowStarts.end(), std::back_inserter(m_rowStarts),
                       [offset](std::uint32_t start) { return start + offset; });
        part = ComponentRuns(m_size);
    }

    /// Joins the runs of some rows, no more than a slice has, with those of the rows before `begin`.
    void JoinWithRowsBefore(std::size_t begin, std::size_t end) {
        if (begin % m_size.y != 0)
            Join(begin, begin - 1);
        for (std::size_t row = std::max(begin, m_size.y); row < end; ++row)
            Join(row, row - m_size.y);
    }

    template <typename Visit>
    void ForEachRow(Visit visit) const {
        std::size_t row = 0;
        for (std::size_t z = 0; z < m_size.z; ++z) {
            for (std::size_t y = 0; y < m_size.y; ++y)
                visit(y, z, row++);
        }
    }

    static std::uint32_t FindFirst(Run* runs, std::uint32_t run) {
        std::uint32_t first = runs[run].link;
        while (runs[first].link != first)
            first = runs[first].link;
        runs[run].link = first;
        return first;
    }

    /// Joins the runs of two rows that touch.
    void Join(std::size_t row, std::size_t other) {
        Run* const runs = m_runs.data();
        std::uint32_t a = m_rowStarts[row];
        std::uint32_t b = m_rowStarts[other];
        const std::uint32_t aEnd = m_rowStarts[row + 1];
        const std::uint32_t bEnd = m_rowStarts[other + 1];
        while (a < aEnd && b < bEnd) {
            const bool touch = runs[a].from < runs[b].until && runs[b].from < runs[a].until;
            if (touch && runs[a].link != runs[b].link) {
                const std::uint32_t first = FindFirst(runs, a);
                const std::uint32_t second = FindFirst(runs, b);
                // Links lead to earlier runs only: the first run of a component stays its root.
                runs[std::max(first, second)].link = std::min(first, second);
            }
            const bool aEndsFirst = runs[a].until < runs[b].until;
            a += aEndsFirst;
            b += !aEndsFirst;
        }
    }

    Vector3d<std::size_t> m_size;
    std::vector<Run> m_runs;
    std::vector<std::uint32_t> m_rowStarts; ///< index of each row's first run, and the number of runs
};

/// The extents of labels as they stand, each label's at the place that `slots` tells.
class LabelExtents {
public:
    Extent* Find(std::size_t label) { return m_slots[label] == 0 ? nullptr : &m_extents[m_slots[label] - 1]; }
    void Insert(std::size_t label, const Extent& extent) {
        m_extents.push_back(extent);
        m_slots[label] = static_cast<std::uint32_t>(m_extents.size());
    }

private:
    std::vector<std::uint32_t> m_slots = std::vector<std::uint32_t>(labelCount);
    std::vector<Extent> m_extents;
};

} // namespace

template <typename L, typename V>
LabeledImage3d<L, V>::LabeledImage3d(const Vector3d<float>* newOffset, const Resolution* res)
    : Image3d<L>(newOffset, res) {}

template <typename L, typename V>
LabeledImage3d<L, V>::LabeledImage3d(const LabeledImage3d& src) = default;

template <typename L, typename V>
LabeledImage3d<L, V>& LabeledImage3d<L, V>::operator=(const LabeledImage3d& src) = default;

template <typename L, typename V>
LabeledImage3d<L, V>::LabeledImage3d(LabeledImage3d&& src) noexcept : Image3d<L>() {
    Image3d<L>::Swap(src);
    components.swap(src.components);
}

template <typename L, typename V>
LabeledImage3d<L, V>& LabeledImage3d<L, V>::operator=(LabeledImage3d&& src) noexcept {
    LabeledImage3d taken(std::move(src));
    Image3d<L>::Swap(taken);
    components.swap(taken.components);
    return *this;
}

template <typename L, typename V>
LabeledImage3d<L, V>::~LabeledImage3d() = default;

template <typename L, typename V>
void LabeledImage3d<L, V>::MakeRoom(std::size_t x, std::size_t y, std::size_t z) {
    const Vector3d<std::size_t> before = this->size;
    Image3d<L>::MakeRoom(x, y, z);
    if (this->size != before)
        components.clear();
}

template <typename L, typename V>
void LabeledImage3d<L, V>::DisposeData() {
    Image3d<L>::DisposeData();
    components.clear();
}

template <typename L, typename V>
void LabeledImage3d<L, V>::TakePlace(const Image3d<V>& image) {
    this->MakeRoom(image.size.x, image.size.y, image.size.z);
    this->offset = image.offset;
    this->resolution = image.resolution;
    this->description = image.description;
}

template <typename L, typename V>
void LabeledImage3d<L, V>::CreateForegroundRegionsFF(const Image3d<V>& image, const Neighbourhood&) {
    try {
        ComponentRuns runs(image);
        const std::vector<Extent> extents = runs.Number();
        std::map<L, Component> found;
        for (std::size_t label = 1; label < extents.size(); ++label)
            found.emplace_hint(found.end(), static_cast<L>(label), MakeComponent<L>(extents[label], image));
        // From here on the image is asked no more: it may be this frame.
        const bool sameBlock = this->GetNumVoxels() == image.GetNumVoxels();
        TakePlace(image);
        if (!this->IsEmpty())
            runs.Paint(this->begin(), !sameBlock); // a new block is zeroed
        components.swap(found);
    } catch (...) {
        DisposeData();
        throw;
    }
}

template <typename L, typename V>
void LabeledImage3d<L, V>::CreateRegionsOfLabels(const Image3d<V>& image) {
    try {
        LabelExtents extents;
        ExtentCounter counter(image.size);
        // Flags are 0 and 1 in a byte, which compilers handle better as such.
        using Stored = std::conditional_t<std::is_same_v<V, bool>, unsigned char, V>;
        const auto* const stored = reinterpret_cast<const Stored*>(image.begin());
        const Stored* row = stored;
        for (std::size_t z = 0; z < image.size.z; ++z) {
            for (std::size_t y = 0; y < image.size.y; ++y, row += image.size.x) {
                counter.StartRow(y, z);
                detail::ForEachRun(row, image.size.x, [&](std::size_t from, std::size_t until) {
                    while (from < until) {
                        const Stored value = row[from];
                        const auto end = static_cast<std::size_t>(
                            std::find_if(row + from, row + until, [value](Stored v) { return v != value; }) - row);
                        const std::size_t label = static_cast<L>(value);
                        if (Extent* const extent = extents.Find(label))
                            counter.Add(from, end, *extent);
                        else
                            extents.Insert(label, counter.Start(from, end));
                        from = end;
                    }
                });
            }
        }
        std::map<L, Component> found;
        for (std::size_t label = 1; label < labelCount; ++label) {
            if (const Extent* const extent = extents.Find(label))
                found.emplace_hint(found.end(), static_cast<L>(label), MakeComponent<L>(*extent, image));
        }
        TakePlace(image);
        std::transform(stored, stored + image.GetNumVoxels(), this->begin(),
                       [](Stored v) { return static_cast<L>(v); });
        components.swap(found);
    } catch (...) {
        DisposeData();
        throw;
    }
}

template <typename L, typename V>
std::string LabeledImage3d<L, V>::SaveImage(const char* fileName, FileFormat format) const {
    return Image3d<L>::SaveImage(fileName, format, true, nullptr);
}

#define KEP_INSTANTIATE(L, V) template class LabeledImage3d<L, V>;
KEP_LABEL_TYPES(KEP_INSTANTIATE)
#undef KEP_INSTANTIATE

} // namespace kep
