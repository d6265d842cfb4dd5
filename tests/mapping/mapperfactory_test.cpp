#include "image/zel_framereading.h"
#include "mapping/zel_complexmapping.h"
#include "mapping/zel_mapperfactory.h"
#include "mapping/zel_rgbmapping.h"
#include "tests/mapping/viewer_fixture.h"
#include "tests/support/notice_watcher.h"
#include "tests/support/text_of.h"

#include <complex>
#include <limits>

using namespace zel;
using namespace zel::test;

namespace {

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float infinite = std::numeric_limits<float>::infinity();

class MapperFactory : public GuiTest {
protected:
    void SetUp() override { frame = new wxFrame(nullptr, wxID_ANY, "host"); }
    void TearDown() override {
        frame->Destroy();
        GuiTest::TearDown();
    }

    template <typename T>
    std::unique_ptr<zel_GrayMappingModule<T>> Create(const mor::Image4d<T>& image) {
        std::unique_ptr<zel_MappingModule<T>> module(zel_CreateMapperForType<T>(frame, image));
        EXPECT_EQ(module->GetFrame(), frame);
        EXPECT_EQ(module->GetMenuId(0), 0) << "no menu yet";
        return std::unique_ptr<zel_GrayMappingModule<T>>(&dynamic_cast<zel_GrayMappingModule<T>&>(*module.release()));
    }
    /// A frame of one row, with these voxels and known extremes.
    template <typename T>
    static std::unique_ptr<mor::Image4d<T>> Row(const std::vector<T>& voxels) {
        return MakeImage<T>({voxels.size(), 1, 1}, 1, [&](auto x, auto, auto, auto) { return voxels[x]; });
    }

    wxFrame* frame = nullptr;
};

template <typename T>
std::vector<std::size_t> Counts(const zel_GrayMappingModule<T>& module) {
    const auto& histogram = module.GetHistograms().Get();
    return {histogram.begin(), histogram.end()};
}

} // namespace

TEST_F(MapperFactory, AllVoxelsOfAllFramesCount) {
    // Frame t holds 6 voxels of value t and one of 255.
    const auto image =
        MakeImage<unsigned char>({7, 1, 1}, 5, [](auto x, auto, auto, auto t) { return x == 6 ? 255 : t; });
    const auto counts = Counts(*Create(*image));
    ASSERT_EQ(counts.size(), 256U);
    for (std::size_t t = 0; t < 5; ++t)
        EXPECT_EQ(counts[t], 6U) << t;
    EXPECT_EQ(counts[255], 5U);
    EXPECT_EQ(counts[5], 0U);
}

TEST_F(MapperFactory, WordsHaveABinForEachValue) {
    const auto module = Create(*Row<unsigned short>({0, 65535, 300, 300}));
    const auto counts = Counts(*module);
    ASSERT_EQ(counts.size(), 65536U);
    EXPECT_EQ(counts[0], 1U);
    EXPECT_EQ(counts[300], 2U);
    EXPECT_EQ(counts[65535], 1U);
}

TEST_F(MapperFactory, IntsHaveABinForEachNumberBetweenTheExtremes) {
    const auto module = Create(*Row<int>({-3, 2, 0, 0, -3}));
    EXPECT_EQ(Counts(*module), (std::vector<std::size_t>{2, 0, 0, 2, 0, 1}));
    EXPECT_EQ(module->GetRangeMin(), -3);
    EXPECT_EQ(module->GetRangeMax(), 2);
    EXPECT_EQ(module->GetMappingTable().GetSize(), 6U);
}

TEST_F(MapperFactory, FloatsHave256Bins) {
    const auto module = Create(*Row<float>({-1.0F, 0.0F, 1.0F, 0.001F}));
    const auto counts = Counts(*module);
    ASSERT_EQ(counts.size(), 256U);
    EXPECT_EQ(counts[0], 1U);
    EXPECT_EQ(counts[127], 2U); // 1 / 2 * 255 = 127.5 and 127.6, truncated
    EXPECT_EQ(counts[255], 1U);
    EXPECT_EQ(module->GetRangeMin(), -1.0F);
    EXPECT_EQ(module->GetRangeMax(), 1.0F);
}

TEST_F(MapperFactory, ConstantBytesAndWordsAreAccepted) {
    const auto bytes = Create(*Row<unsigned char>({7, 7, 7}));
    EXPECT_EQ(Counts(*bytes)[7], 3U);
    EXPECT_EQ(bytes->GetRangeMax(), 255);
    const auto words = Create(*Row<unsigned short>({0, 0}));
    EXPECT_EQ(Counts(*words)[0], 2U);
}

TEST_F(MapperFactory, ConstantIntsAndFloatsAreRefused) {
    const std::string text = "Consistency check failed. Constant images are not supported! (Value=";
    EXPECT_EQ(TextOf([&] { Create(*Row<int>({-7, -7})); }), text + "-7)");
    EXPECT_EQ(TextOf([&] { Create(*Row<int>({5})); }), text + "5)") << "a single voxel";
    EXPECT_EQ(TextOf([&] { Create(*Row<float>({2.5F, 2.5F, 2.5F})); }), text + "2.500000)");
    EXPECT_EQ(TextOf([&] { Create(*Row<float>({0.0F, -0.0F})); }), text + "0.000000)");
    EXPECT_EQ(TextOf([&] { Create(*Row<float>({notANumber, 1.0F, notANumber})); }), text + "1.000000)");
    EXPECT_EQ(TextOf([&] { Create(*Row<float>({notANumber, notANumber})); }), text + "nan)");
    EXPECT_EQ(TextOf([&] { Create(*Row<float>({infinite, 3.0F})); }), text + "3.000000)");
    Pump();
    EXPECT_EQ(wxTopLevelWindows.size(), 1U) << "the notice has gone";
}

TEST_F(MapperFactory, ANoticeIsOnTheScreenWhileItCounts) {
    const NoticeWatcher notices;
    Create(*Row<unsigned char>({1, 2}));
    Create(*Row<float>({1.0F, 2.0F}));
    EXPECT_EQ(notices.CountShown(), 0U) << "it goes with the call";
    EXPECT_EQ(TextOf([&] {
                  Create(*Row<int>({5, 5}));
              }),
              "Consistency check failed. Constant images are not supported! (Value=5)");
    EXPECT_EQ(notices.texts, std::vector<std::string>(3, "Creating histogram...")) << "before anything is checked";
    EXPECT_EQ(notices.most, 1U);
    EXPECT_EQ(notices.CountShown(), 0U);
}

TEST_F(MapperFactory, ImagesWithoutVoxelsAreRefused) {
    const std::string text = "Consistency check failed. Empty images are not supported!";
    EXPECT_EQ(TextOf([&] { Create(mor::Image4d<unsigned char>()); }), text);
    EXPECT_EQ(TextOf([&] { Create(mor::Image4d<float>()); }), text);
    mor::Image4d<int> withoutVoxels;
    withoutVoxels.MakeRoom(0, 4, 4, 2);
    EXPECT_EQ(TextOf([&] { Create(withoutVoxels); }), text);
}

TEST_F(MapperFactory, ASingleByteIsAnImage) {
    const auto module = Create(*Row<unsigned char>({9}));
    EXPECT_TRUE(module->HasData());
    EXPECT_EQ(Counts(*module)[9], 1U);
}

TEST_F(MapperFactory, NumbersDecideTheRangeOfAnImageThatHoldsOthers) {
    for (const auto& voxels : std::vector<std::vector<float>>{{0.0F, notANumber, 10.0F},
                                                              {notANumber, 0.0F, 10.0F},
                                                              {0.0F, infinite, 10.0F},
                                                              {-infinite, 0.0F, 10.0F},
                                                              {0.0F, 10.0F, -infinite}}) {
        const auto module = Create(*Row<float>(voxels));
        EXPECT_EQ(module->GetRangeMin(), 0.0F);
        EXPECT_EQ(module->GetRangeMax(), 10.0F);
        const auto counts = Counts(*module);
        EXPECT_EQ(counts[0] + counts[255], 3U) << "the others are in the end bins";
        EXPECT_EQ(module->GetMappingTable().Get(5.0F), 128); // 127.5
    }
}

TEST_F(MapperFactory, ExtremesThatWereNeverMeasuredAreFound) {
    mor::Image4d<int> numbers;
    numbers.MakeRoom(3, 1, 1, 2);
    for (std::size_t t = 0; t < 2; ++t)
        for (std::size_t x = 0; x < 3; ++x)
            numbers.SetVoxel(x, 0, 0, t, static_cast<int>(10 * t + x));
    EXPECT_EQ(Create(numbers)->GetRangeMax(), 12);
    mor::Image4d<float> reals;
    reals.MakeRoom(2, 1, 1, 1);
    reals.SetVoxel(0, 0, 0, 0, -4.0F);
    reals.SetVoxel(1, 0, 0, 0, -2.0F);
    const auto module = Create(reals);
    EXPECT_EQ(module->GetRangeMin(), -4.0F);
    EXPECT_EQ(module->GetRangeMax(), -2.0F);
}

TEST_F(MapperFactory, ExtremesThatWereMeasuredAreTakenAsTheyAre) {
    const auto image = Row<int>({0, 1, 2, 1});
    image->SetVoxel(3, 0, 0, 0, 1000);
    const auto module = Create(*image);
    EXPECT_EQ(Counts(*module), (std::vector<std::size_t>{1, 1, 2}));
}

TEST_F(MapperFactory, HistogramsThatAreFinishedMakeAModuleUnasked) {
    HistogramSet<int> numbers;
    numbers.Get().Init(5, 5, 1);
    const std::unique_ptr<zel_GrayMappingModule<int>> one(zel_CreateGrayMapperForType<int>(frame, numbers));
    EXPECT_EQ(one->GetRangeMin(), 5);
    EXPECT_EQ(one->GetFrame(), frame);
    HistogramSet<float> reals;
    reals.Get().Init(0.0F, 2.0F, 3);
    const std::unique_ptr<zel_GrayMappingModule<float>> three(zel_CreateGrayMapperForType<float>(frame, reals));
    EXPECT_EQ(three->GetMappingTable().GetSize(), 3U);
    EXPECT_EQ(wxTopLevelWindows.size(), 1U) << "no notice";
}

namespace {

using Complex = std::complex<float>;

class ComplexFactory : public MapperFactory {
protected:
    std::unique_ptr<zel_ComplexMappingModule<float>> CreateComplex(const mor::Image4d<Complex>& image) {
        std::unique_ptr<zel_MappingModule<Complex>> module(zel_CreateMapperForType<Complex>(frame, image));
        return std::unique_ptr<zel_ComplexMappingModule<float>>(
            &dynamic_cast<zel_ComplexMappingModule<float>&>(*module.release()));
    }
    std::vector<std::string> Messages() const {
        std::vector<std::string> texts;
        for (const LogCatcher::Entry& entry : log.GetEntries())
            if (entry.level == wxLOG_Message)
                texts.push_back(entry.text);
        return texts;
    }

    LogCatcher log;
};

std::vector<bool> EnabledParts(const zel_ComplexMappingModule<float>& module) {
    return {module.IsPartEnabled(Real), module.IsPartEnabled(Imaginary), module.IsPartEnabled(Phase),
            module.IsPartEnabled(Amplitude)};
}

} // namespace

TEST_F(MapperFactory, ColoursHaveAHistogramForEachChannelOverTheWholeType) {
    using Colour16 = kep::RGB_generic<unsigned short>;
    const auto image = MakeImage<Colour16>({4, 1, 1}, 3, [](auto x, auto, auto, auto t) {
        return Colour16(static_cast<unsigned short>(x), static_cast<unsigned short>(1000 * t), 65535);
    });
    const std::unique_ptr<zel_MappingModule<Colour16>> made(zel_CreateMapperForType<Colour16>(frame, *image));
    const auto* const module = dynamic_cast<zel_RGBMappingModule<unsigned short>*>(made.get());
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(module->GetFrame(), frame);
    const auto& histograms = module->GetHistograms();
    for (const int c : {0, 1, 2}) {
        ASSERT_EQ(histograms[c].size(), 65536U);
        EXPECT_EQ(histograms[c].GetSum(), 12U);
        EXPECT_EQ(module->GetRangeMax(c), 65535);
    }
    EXPECT_EQ(histograms[0][3], 3U);
    EXPECT_EQ(histograms[1][2000], 4U);
    EXPECT_EQ(histograms[2][65535], 12U);
}

TEST_F(MapperFactory, AConstantColourIsAccepted) {
    using Colour8 = kep::RGB_generic<unsigned char>;
    const auto image = MakeImage<Colour8>({2, 1, 1}, 1, [](auto, auto, auto, auto) { return Colour8(1, 2, 3); });
    const std::unique_ptr<zel_MappingModule<Colour8>> module(zel_CreateMapperForType<Colour8>(frame, *image));
    EXPECT_EQ(module->GetHistograms()[2][3], 2U);
    EXPECT_EQ(module->GetHistograms()[0].size(), 256U);
}

TEST_F(ComplexFactory, CountsTheFourPartsOfAllFramesBetweenTheirExtremes) {
    // Voxels 0, 1, 2, 3 and 4i, 1 + 4i, 2 + 4i, 3 + 4i.
    const auto image = MakeImage<Complex>({4, 1, 1}, 2, [](auto x, auto, auto, auto t) {
        return Complex(static_cast<float>(x), static_cast<float>(4 * t));
    });
    const auto module = CreateComplex(*image);
    EXPECT_EQ(module->GetShowMode(), Real);
    EXPECT_EQ(EnabledParts(*module), (std::vector<bool>{true, true, true, true}));
    EXPECT_EQ(module->GetRangeMax(Real), 3.0F);
    EXPECT_EQ(module->GetRangeMax(Imaginary), 4.0F);
    EXPECT_EQ(module->GetRangeMin(Phase), 0.0F);
    EXPECT_FLOAT_EQ(module->GetRangeMax(Phase), 1.57079633F);
    EXPECT_EQ(module->GetRangeMax(Amplitude), 5.0F);
    const auto& histograms = module->GetHistograms();
    for (const int part : {0, 1, 2, 3}) {
        EXPECT_EQ(histograms[part].size(), 256U);
        EXPECT_EQ(histograms[part].GetSum(), 8U);
    }
    EXPECT_EQ(histograms[0][85], 2U); // 1 / 3 * 255
    EXPECT_EQ(histograms[1][255], 4U);
    EXPECT_EQ(histograms[2][0], 4U); // 0, 1, 2 and 3
    EXPECT_EQ(histograms[3][255], 1U);
    EXPECT_TRUE(Messages().empty());
}

TEST_F(ComplexFactory, DisablesThePartsThatAreConstantAndSaysSo) {
    const auto module = CreateComplex(*Row<Complex>({{0, 1}, {0, 2}, {0, 5}}));
    EXPECT_EQ(module->GetShowMode(), Imaginary);
    EXPECT_EQ(EnabledParts(*module), (std::vector<bool>{false, true, false, true}));
    EXPECT_EQ(Messages(), (std::vector<std::string>{"Disabling constant real part. (value=0.000000)",
                                                    "Disabling constant phase. (value=1.570796)"}));
}

TEST_F(ComplexFactory, DisablesAConstantAmplitude) {
    const auto module = CreateComplex(*Row<Complex>({{3, 4}, {4, 3}, {5, 0}}));
    EXPECT_EQ(EnabledParts(*module), (std::vector<bool>{true, true, true, false}));
    EXPECT_EQ(Messages(), (std::vector<std::string>{"Disabling constant amplitude. (value=5.000000)"}));
}

TEST_F(ComplexFactory, RefusesAnImageOfWhichNoPartVaries) {
    EXPECT_EQ(
        TextOf([&] {
            CreateComplex(*Row<Complex>({{3, 4}, {3, 4}}));
        }),
        "Consistency check failed. Complex images with both parts, phase and amplitude constant are not supported! "
        "(real value=3.000000, imaginary value=4.000000, phase value=0.927295, amplitude value=5.000000)");
    EXPECT_EQ(Messages().size(), 4U);
    EXPECT_EQ(Messages()[1], "Disabling constant imaginary part. (value=4.000000)");
    Pump();
    EXPECT_EQ(wxTopLevelWindows.size(), 1U) << "the notice has gone";
}

TEST_F(ComplexFactory, RefusesAnImageWithoutVoxels) {
    EXPECT_EQ(TextOf([&] { CreateComplex(mor::Image4d<Complex>()); }),
              "Consistency check failed. Empty images are not supported!");
}

TEST_F(ComplexFactory, FiniteValuesDecideTheRangesOfAnImageThatHoldsOthers) {
    const auto module = CreateComplex(*Row<Complex>({{1, 2}, {notANumber, 7}, {3, infinite}, {-5, 4}}));
    EXPECT_EQ(module->GetRangeMin(Real), -5.0F);
    EXPECT_EQ(module->GetRangeMax(Real), 3.0F);
    EXPECT_EQ(module->GetRangeMin(Imaginary), 2.0F);
    EXPECT_EQ(module->GetRangeMax(Imaginary), 7.0F) << "a voxel counts for each part by itself";
    EXPECT_FLOAT_EQ(module->GetRangeMax(Amplitude), 6.40312424F); // of -5 + 4i
    const auto none = CreateComplex(*Row<Complex>({{notANumber, 2}, {notANumber, 4}}));
    EXPECT_EQ(EnabledParts(*none), (std::vector<bool>{false, true, false, false}));
    EXPECT_EQ(Messages(), (std::vector<std::string>{"Disabling constant real part. (value=0.000000)",
                                                    "Disabling constant phase. (value=0.000000)",
                                                    "Disabling constant amplitude. (value=0.000000)"}));
}

TEST_F(ComplexFactory, ExtremesThatWereNeverMeasuredAreFound) {
    mor::Image4d<Complex> image;
    image.MakeRoom(2, 1, 1, 1);
    image.SetVoxel(0, 0, 0, 0, Complex(1, -1));
    image.SetVoxel(1, 0, 0, 0, Complex(2, -3));
    const auto module = CreateComplex(image);
    EXPECT_EQ(module->GetRangeMin(Real), 1.0F);
    EXPECT_EQ(module->GetRangeMax(Imaginary), -1.0F);
}

TEST_F(ComplexFactory, CanBeAskedByTheTypeOfTheParts) {
    const auto image = Row<Complex>({{1, 2}, {3, 4}});
    const std::unique_ptr<zel_MappingModule<Complex>> module(zel_CreateMapperForType<float>(frame, *image));
    EXPECT_NE(dynamic_cast<zel_ComplexMappingModule<float>*>(module.get()), nullptr);
    const std::unique_ptr<zel_MappingModule<Complex>> unnamed(zel_CreateMapperForType(frame, *image));
    EXPECT_NE(dynamic_cast<zel_ComplexMappingModule<float>*>(unnamed.get()), nullptr);
}

TEST_F(MapperFactory, ConstantImagesAreAcceptedIfAskedFor) {
    const auto boundsOf = [this]<typename T>(T value) {
        zel_MapperOptions options;
        options.acceptsConstant = true;
        const std::unique_ptr<zel_MappingModule<T>> module(
            zel_CreateMapperForType<T>(frame, *Row<T>({value, value}), options));
        const auto& histogram = module->GetHistograms().Get();
        EXPECT_EQ(histogram.GetSum(), 2U);
        return std::pair(histogram.GetLeftCenter(), histogram.GetRightCenter());
    };
    EXPECT_EQ(boundsOf(5), std::pair(0, 5));
    EXPECT_EQ(boundsOf(-5), std::pair(-5, 0));
    EXPECT_EQ(boundsOf(0), std::pair(0, 1));
    EXPECT_EQ(boundsOf(0.5F), std::pair(0.0F, 0.5F));
    EXPECT_EQ(boundsOf(notANumber), std::pair(0.0F, 1.0F));
    EXPECT_THROW(zel_CreateMapperForType<int>(frame, *Row<int>({5, 5}), zel_MapperOptions()), kep::InternalException);
}

TEST_F(MapperFactory, IntegersShareBinsIfAskedFor) {
    zel_MapperOptions options;
    options.mostBins = 3;
    const std::unique_ptr<zel_MappingModule<int>> module(
        zel_CreateMapperForType<int>(frame, *Row<int>({0, 1, 50, 100}), options));
    const auto& histogram = module->GetHistograms().Get();
    EXPECT_EQ((std::vector<std::size_t>{histogram.begin(), histogram.end()}), (std::vector<std::size_t>{2, 1, 1}));
}

TEST_F(MapperFactory, CountingThatIsToldShowsNoNoticeAndCanBeStopped) {
    double told = 0;
    zel_MapperOptions options;
    options.progress = [&told](double done) {
        told = done;
        return true;
    };
    using Complex = std::complex<float>;
    const auto image = Row<Complex>({{1, 2}, {3, 4}, {5, 6}});
    const std::unique_ptr<zel_MappingModule<Complex>> module(zel_CreateMapperForType<Complex>(frame, *image, options));
    EXPECT_EQ(told, 1.0);
    EXPECT_EQ(module->GetHistograms()[0].GetSum(), 3U);
    options.progress = [](double) { return false; };
    EXPECT_THROW(zel_CreateMapperForType<Complex>(frame, *image, options), kep::ReadingStopped);
}

TEST_F(MapperFactory, ABitdepthIsAppliedWithoutADialog) {
    const auto gray = Create(*Row<unsigned short>({1, 1000}));
    gray->ApplyBitdepth(10);
    EXPECT_EQ(gray->GetRangeMin(), 0);
    EXPECT_EQ(gray->GetRangeMax(), 1023);
    EXPECT_EQ(gray->GetLevels().inMax, 1023) << "no stretch spans the range";
    gray->ApplyBitdepth(16);
    EXPECT_EQ(gray->GetRangeMax(), 65535);
    gray->ApplyBitdepth(40);
    EXPECT_EQ(gray->GetRangeMax(), 65535);
    using Colour = kep::RGB_generic<unsigned char>;
    const std::unique_ptr<zel_MappingModule<Colour>> colours(
        zel_CreateMapperForType<Colour>(frame, *Row<Colour>({{1, 2, 3}, {4, 5, 6}})));
    auto& rgb = dynamic_cast<zel_RGBMappingModule<unsigned char>&>(*colours);
    rgb.ApplyBitdepth(3);
    for (int channel = 0; channel < 3; ++channel)
        EXPECT_EQ(rgb.GetRangeMax(channel), 7);
}
