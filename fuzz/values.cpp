#include "core/kepcore/kep_exceptions.h"
#include "fuzz/input.h"
#include "fuzz/targets.h"
#include "model/zel_channelmapping.h"
#include "model/zel_filenames.h"
#include "model/zel_sequencename.h"
#include "model/zel_viewfile.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace fuzz {

namespace {

template <typename T>
void FillTables(const zel::ChannelMapping<T>& mapping, zel::GrayTable<T>& table) {
    zel::FillTable(mapping.thresholds, table);
    try {
        zel::FillTable(mapping.levels, table);
    } catch (const kep::LibException&) {
        const auto gamma = static_cast<float>(mapping.levels.gamma);
        Require(!(gamma > 0 && std::isfinite(gamma)), "levels with a positive gamma make a table");
    }
}

template <typename T>
void Stretch(Numbers numbers) {
    const auto takeFinite = [&] { // as the extremes of an image are
        const T number = numbers.Take<T>();
        return std::isfinite(static_cast<double>(number)) ? number : T{0};
    };
    zel::Histogram<T> histogram;
    const T left = takeFinite();
    const T right = takeFinite();
    histogram.Init(std::min(left, right), std::max(left, right), numbers.Take<unsigned char>());
    for (std::size_t& counter : histogram)
        counter = numbers.Take<std::uint32_t>();
    zel::ChannelMapping<T> mapping = zel::ChannelMapping<T>::Of(histogram);
    zel::GrayTable<T> table;
    if (!histogram.empty())
        table.Init(static_cast<long>(histogram.size()), histogram.GetLeftCenter(), histogram.GetRightCenter());
    FillTables(mapping, table);
    mapping.rangeMin = numbers.Take<T>();
    mapping.rangeMax = numbers.Take<T>();
    mapping.NarrowRange(histogram);
    mapping.StretchLinearOrWhole(histogram);
    FillTables(mapping, table);
    mapping.StretchPercentil(histogram, numbers.Take<double>());
    FillTables(mapping, table);
    mapping.Equalize(histogram, table);
    mapping.levels = {numbers.Take<T>(), numbers.Take<T>(), numbers.Take<double>(), numbers.Take<unsigned char>(),
                      numbers.Take<unsigned char>()};
    mapping.thresholds = {numbers.Take<T>(), numbers.Take<T>()};
    FillTables(mapping, table);
    mapping.HoldLevels(histogram);
    mapping.HoldThresholds(histogram);
    FillTables(mapping, table);
    mapping.HoldAll(histogram);
    FillTables(mapping, table);
}

} // namespace

void ReadViewFile(std::string_view bytes) {
    zel::VolumePose pose;
    zel::ReadPose(bytes, pose);
    zel::VolumeView view;
    view.pose = pose;
    view.Advance();
    static_cast<void>(view.GetModelView());
    static_cast<void>(view.GetEye());
    const std::string text = zel::WritePose(pose);
    zel::VolumePose again;
    zel::ReadPose(text, again);
    Require(zel::WritePose(again) == text, "a pose that was written and read is written alike");
}

void StretchValues(std::string_view bytes) {
    Numbers numbers(bytes);
    switch (numbers.Take<unsigned char>() % 4U) {
    case 0:
        return Stretch<unsigned char>(numbers);
    case 1:
        return Stretch<unsigned short>(numbers);
    case 2:
        return Stretch<int>(numbers);
    default:
        return Stretch<float>(numbers);
    }
}

void SortNames(std::string_view bytes) {
    std::vector<std::string> names;
    for (std::string_view rest = bytes; !rest.empty() && names.size() < 40;) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        names.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    if (names.empty())
        return;
    const std::string first = names.front();
    const std::vector<std::string> sequence = zel::FindSequence(first, names);
    Require(std::find(sequence.begin(), sequence.end(), first) != sequence.end(), "a file is in its sequence");
    zel::SortFileNames(names);
    for (std::size_t i = 0; i < names.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            Require(!zel::ComesBefore(names[i], names[j]), "sorted names stand in their order");
    if (first.find('X') == std::string::npos)
        return;
    try {
        Require(zel::MakeSequenceName(first, 7).size() == first.size(), "a frame's name is as long as its template");
    } catch (const kep::InternalException&) {
        Require(first.back() == 'X', "only a template that ends with its number is refused");
    }
}

} // namespace fuzz
