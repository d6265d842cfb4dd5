#include "tests/monkey/viewers.h"

#include "factory/zel_viewer.h"
#include "host/frame/hostmenus.h"
#include "host/imageframe.h"
#include "overlay/zel_labeledimagecanvas3d.h"

#include <wx/menu.h>

#include <complex>
#include <cstdint>
#include <utility>

namespace zel::test {

namespace {

using zelviewer::Labels;

template <typename T>
constexpr const char* typeName = "";
template <>
constexpr const char* typeName<unsigned char> = "gray8";
template <>
constexpr const char* typeName<unsigned short> = "gray16";
template <>
constexpr const char* typeName<int> = "int";
template <>
constexpr const char* typeName<float> = "float";
template <>
constexpr const char* typeName<kep::RGB_generic<unsigned char>> = "rgb8";
template <>
constexpr const char* typeName<kep::RGB_generic<unsigned short>> = "rgb16";
template <>
constexpr const char* typeName<std::complex<float>> = "complex";

template <typename T>
struct Throw {
    static T Voxel(Dice& dice) { return static_cast<T>(dice.Any(dice.OneIn(3) ? 65536 : 100)); }
};
template <>
struct Throw<int> { // its histograms count each number between the extremes
    static int Voxel(Dice& dice) { return dice.Any(3000) - 1000; }
};
template <>
struct Throw<float> {
    static float Voxel(Dice& dice) { return dice.Between(-5, 70); }
};
template <typename C>
struct Throw<kep::RGB_generic<C>> {
    static kep::RGB_generic<C> Voxel(Dice& dice) {
        const C red = Throw<C>::Voxel(dice), green = Throw<C>::Voxel(dice), blue = Throw<C>::Voxel(dice);
        return {red, green, blue};
    }
};
template <>
struct Throw<std::complex<float>> {
    static std::complex<float> Voxel(Dice& dice) {
        const float real = dice.Between(-5, 5), imaginary = dice.Between(-5, 5);
        return {real, imaginary};
    }
};

template <typename T>
void FillFrame(kep::Image3d<T>& frame, Dice& dice) {
    for (T& voxel : frame)
        voxel = Throw<T>::Voxel(dice);
}

kep::Vector3d<std::size_t> AnySize(Dice& dice, bool small) {
    const auto any = [&dice](int count) { return static_cast<std::size_t>(1 + dice.Any(count)); };
    switch (dice.Any(8)) {
    case 0:
        return {1, 1, 1};
    case 1:
        return {any(6), 1, any(3)};
    case 2:
        return {1, any(9), any(4)};
    default:
        const std::size_t x = any(small ? 9 : 64), y = any(small ? 9 : 48), z = any(small ? 5 : 20);
        return {x, y, z};
    }
}

kep::Resolution AnyResolution(Dice& dice) {
    constexpr float resolutions[] = {1, 1, 2, 0.5F, 4, 10, 0.07F};
    const float x = dice.Of(resolutions), y = dice.OneIn(3) ? dice.Of(resolutions) : x, z = dice.Of(resolutions);
    return {x, y, z};
}

kep::Vector3d<float> AnyOffset(Dice& dice) {
    if (dice.OneIn(2))
        return {};
    const float x = dice.Between(-30, 30), y = dice.Between(-1000, 1000), z = dice.Between(-2, 2);
    return {x, y, z};
}

template <typename T>
std::unique_ptr<mor::Image4d<T>> AnyImage(Dice& dice, const ViewerChoice& choice) {
    const kep::Vector3d<float> offset = AnyOffset(dice);
    const kep::Resolution resolution = AnyResolution(dice);
    auto image = std::make_unique<mor::Image4d<T>>(&offset, &resolution);
    const kep::Vector3d<std::size_t> size = AnySize(dice, choice.small);
    const int frames =
        size == kep::Vector3d<std::size_t>(1, 1, 1) ? 2 : 1 + (dice.OneIn(2) ? dice.Any(choice.mostFrames) : 0);
    image->MakeRoom(size, static_cast<std::size_t>(frames)); // two, as those of a constant image are refused
    for (std::size_t t = 0; t < image->GetNumFrames(); ++t)
        FillFrame(*image->GetImage(t), dice);
    image->UpdateMinMaxValues();
    return image;
}

/// Blocks of labels at the image's place, for as many of its frames as it comes.
template <typename T>
std::unique_ptr<Labels> AnyLabels(Dice& dice, const mor::Image4d<T>& image) {
    auto labels = std::make_unique<Labels>(false, &image.GetOffset(), &image.GetResolution());
    const auto frames = static_cast<std::size_t>(1 + dice.Any(static_cast<int>(image.GetNumFrames())));
    labels->MakeRoom(image.GetSize(), frames);
    const auto block = static_cast<std::size_t>(1 + dice.Any(12));
    const int count = dice.OneIn(5) ? 65536 : 7;
    for (std::size_t t = 0; t < frames; ++t)
        for (std::size_t i = 0; i < labels->GetFrameSize(); ++i) {
            const kep::Vector3d<std::size_t> at = labels->GetFramePos(i);
            const std::size_t number = at.x / block * 31 + at.y / block * 7 + at.z / block + t;
            labels->SetVoxel(i, t, static_cast<unsigned short>(number * 7919 % static_cast<std::size_t>(count)));
        }
    return labels;
}

/// A menu of two entries that do nothing.
class IdleModule : public zel_ExtensionModule {
public:
    wxMenu* CreateMenu(int& id) override {
        SetFirstMenuId(id);
        auto* const menu = new wxMenu;
        menu->Append(id++, "Nothing");
        menu->AppendCheckItem(id++, "Nothing to check\tX");
        return menu;
    }
};

template <typename T>
class TypedViewer : public AnyViewer {
public:
    using Canvas = zel_ImageViewer3dCanvas<T>;

    /// @param image, labels  null if they are the frame's
    void Take(zel_Viewer3dFrame* newFrame, std::unique_ptr<mor::Image4d<T>> image, std::unique_ptr<Labels> labels) {
        frame = newFrame;
        m_image = std::move(image);
        m_labels = std::move(labels);
        m_sum = Sum();
    }

    void InsertFrame(Dice& dice) override {
        if (GetImage() == nullptr || GetImage()->GetNumFrames() >= 12)
            return;
        mor::Image4d<T>& image = *GetImage();
        auto made = std::make_unique<kep::Image3d<T>>(&image.GetOffset(), &image.GetResolution());
        made->MakeRoom(image.GetSize().x, image.GetSize().y, image.GetSize().z);
        FillFrame(*made, dice);
        const int frames = static_cast<int>(image.GetNumFrames());
        image.InsertFrame(made.get(), "inserted.tif", dice.OneIn(2) || frames == 0 ? -1 : dice.Any(frames));
        made.release(); // the image's
        m_sum = Sum();
        GetTyped()->OnSequenceChange();
    }
    void RemoveFrame(Dice& dice) override {
        if (GetImage() == nullptr || GetImage()->GetNumFrames() < (dice.OneIn(4) ? 1U : 2U))
            return;
        GetImage()->RemoveFrame(dice.Any(static_cast<int>(GetImage()->GetNumFrames())));
        m_sum = Sum();
        GetTyped()->OnSequenceChange();
    }
    void ChangeVoxels(Dice& dice) override {
        if (!HasPicture())
            return;
        const auto t = static_cast<std::size_t>(dice.Any(GetCanvas()->GetImageCount()));
        FillFrame(*GetImage()->GetImage(t), dice);
        GetImage()->UpdateMinMaxValues();
        m_sum = Sum();
        GetTyped()->OnFrameChange(t);
        GetTyped()->OnFrameChange(t + 20); // which there is not
    }
    void ChangeGeometry(Dice& dice) override {
        if (!HasPicture())
            return;
        GetImage()->SetResolution(AnyResolution(dice));
        if (dice.OneIn(2))
            GetImage()->SetOffset(AnyOffset(dice));
        GetCanvas()->OnDataChange();
        if (dice.OneIn(2))
            GetCanvas()->Update();
        const MicronBox& box = GetCanvas()->GetBoundingBox(); // the cut has stayed where it was
        GetCanvas()->ChangeCut(
            {box.offset.x + box.size.x / 2, box.offset.y + box.size.y / 2, box.offset.z + box.size.z / 2});
    }
    void ReplaceCanvas() override {
        if (!HasPicture() || m_image == nullptr || m_labels != nullptr)
            return;
        frame->SetCanvas(new Canvas(frame, GetTyped()->GetMapper(), m_image.get(), false, wxID_ANY, wxDefaultPosition,
                                    wxDefaultSize));
    }
    void AskAboutPixels(Dice& dice) override {
        if (GetTyped() == nullptr)
            return;
        Canvas& canvas = *GetTyped();
        const auto type = static_cast<zel_ProjectionType>(1 << dice.Any(3));
        const wxPoint at(dice.Any(400) - 50, dice.Any(400) - 50);
        const auto info = canvas.GetPixelInfo(type, at);
        if (info && HasPicture()) {
            const kep::Vector3d<std::size_t> size = GetImage()->GetSize();
            EXPECT_TRUE(info->voxel.x < size.x && info->voxel.y < size.y && info->voxel.z < size.z);
            EXPECT_NE(canvas.GetVoxelText(info->voxel, static_cast<std::size_t>(info->time)), "");
        }
        wxString text;
        wxColour colour;
        canvas.GetColourInfo(type, at.x, at.y, text, colour);
        wxIconBundle icons;
        canvas.GetIcons(icons);
    }
    bool AreVoxelsKept() const override { return GetImage() == nullptr || Sum() == m_sum; }

private:
    Canvas* GetTyped() const { return dynamic_cast<Canvas*>(GetCanvas()); }
    mor::Image4d<T>* GetImage() const { return GetTyped() != nullptr ? GetTyped()->GetImage() : nullptr; }
    void DeleteImage() override {
        m_image.reset();
        m_labels.reset();
    }
    /// FNV-1a of all voxels.
    std::uint64_t Sum() const {
        std::uint64_t sum = 0xcbf29ce484222325U;
        if (GetImage() == nullptr)
            return sum;
        for (std::size_t t = 0; t < GetImage()->GetNumFrames(); ++t) {
            const auto* const bytes = reinterpret_cast<const unsigned char*>(GetImage()->GetFirstVoxelAddr(t));
            for (std::size_t i = 0; i < GetImage()->GetFrameSize() * sizeof(T); ++i)
                sum = (sum ^ bytes[i]) * 0x100000001b3U;
        }
        return sum;
    }

    std::unique_ptr<mor::Image4d<T>> m_image;
    std::unique_ptr<Labels> m_labels;
    std::uint64_t m_sum = 0;
};

enum class Opening { factory, equipped, program };

template <typename T>
std::unique_ptr<AnyViewer> OpenTyped(Dice& dice, wxWindow* parent, const std::function<void()>& open,
                                     const ViewerChoice& choice) {
    auto opening = static_cast<Opening>(dice.Any(3));
    const bool withLabels = dice.OneIn(2) || (std::is_same_v<T, int> && opening != Opening::program);
    const bool keeps = dice.OneIn(2);
    auto image = AnyImage<T>(dice, choice);
    auto labels = withLabels ? AnyLabels(dice, *image) : nullptr;
    auto viewer = std::make_unique<TypedViewer<T>>();
    viewer->name = std::string(typeName<T>) + (withLabels ? " with labels, " : ", ") +
                   std::to_string(image->GetSize().x) + " x " + std::to_string(image->GetSize().y) + " x " +
                   std::to_string(image->GetSize().z) + " x " + std::to_string(image->GetNumFrames());
    zel_Viewer3dFrame* frame = nullptr;
    if (opening == Opening::program) {
        viewer->name += ", as in the program";
        zelviewer::FirstLook look;
        look.inVoxels = dice.OneIn(3);
        look.outlines = dice.OneIn(2);
        look.fillsDisplay = dice.OneIn(3);
        frame = zelviewer::MakeFrame(std::move(image), look, std::move(labels));
        zelviewer::AddHostMenus(*frame, {[open](const std::vector<std::string>&) { open(); }, [] {},
                                         [] { return std::vector<zelviewer::OpenedFiles>{{"/a/b.tif"}}; }});
        viewer->Take(frame, nullptr, nullptr);
        zelviewer::ShowInPlace(*frame, std::nullopt);
        return viewer;
    }
    const wxPoint place(dice.Any(900), dice.Any(600));
    const wxSize size(250 + dice.Any(400), 250 + dice.Any(400));
    if constexpr (!std::is_same_v<T, int>)
        if (!withLabels)
            frame = zel_CreateImage3dFrame<T>(image.get(), !keeps, parent, wxID_ANY, viewer->name, place, size,
                                              wxDEFAULT_FRAME_STYLE);
    if (frame == nullptr)
        frame = zel_CreateLabeledImage3dFrame<T, unsigned short, unsigned short>(image.get(), labels.get(), !keeps,
                                                                                 !keeps, parent, wxID_ANY, viewer->name,
                                                                                 place, size, wxDEFAULT_FRAME_STYLE);
    if (!keeps) {
        image.release();
        labels.release();
    }
    viewer->Take(frame, std::move(image), std::move(labels));
    if (opening == Opening::equipped) {
        viewer->name += ", equipped";
        const bool trueProportions = !dice.OneIn(4), fillsDisplay = dice.OneIn(2);
        EquipFrame(*frame, {trueProportions, fillsDisplay});
    }
    frame->Show();
    return viewer;
}

} // namespace

bool AnyViewer::HasPicture() const {
    return GetCanvas() != nullptr && !GetCanvas()->IsMapperDetached() && GetCanvas()->GetImageCount() > 0;
}

void AnyViewer::AddModule(bool withMenu) {
    auto module = std::make_unique<IdleModule>();
    if (!withMenu)
        m_modules.push_back(std::move(module));
    frame->AddExtensionModule(withMenu ? module.release() : m_modules.back().get(), "&Idle", withMenu);
}

void AnyViewer::Detach() {
    if (GetCanvas() == nullptr)
        return;
    GetCanvas()->DetachMapper();
    DeleteImage();
}

void AnyViewer::Destroy() {
    if (!frame)
        return;
    frame->Destroy();
    DeleteImage();
}

std::unique_ptr<AnyViewer> OpenAnyViewer(Dice& dice, wxWindow* parent, const std::function<void()>& open,
                                         const ViewerChoice& choice) {
    switch (dice.Any(7)) {
    case 0:
        return OpenTyped<unsigned char>(dice, parent, open, choice);
    case 1:
        return OpenTyped<unsigned short>(dice, parent, open, choice);
    case 2:
        return OpenTyped<int>(dice, parent, open, choice);
    case 3:
        return OpenTyped<float>(dice, parent, open, choice);
    case 4:
        return OpenTyped<kep::RGB_generic<unsigned char>>(dice, parent, open, choice);
    case 5:
        return OpenTyped<kep::RGB_generic<unsigned short>>(dice, parent, open, choice);
    default:
        return OpenTyped<std::complex<float>>(dice, parent, open, choice);
    }
}

} // namespace zel::test
