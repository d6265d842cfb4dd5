// A machine without OpenGL: run on a display that has none.

#include "tests/mapping/viewer_fixture.h"
#include "viewer/zel_commands.h"
#include "volume/vol3D_canvas.h"

namespace zel::test {
namespace {

using Byte = unsigned char;

class WithoutOpenGL : public GuiTest {};

TEST_F(WithoutOpenGL, TheViewerSaysSoAndGoesOn) {
    MappedViewer<Byte> viewer(MakeImage<Byte>({8, 8, 8}, 2, [](auto x, auto...) { return x; }));
    LogCatcher log;
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(viewer.frame->ProcessCommand(zel_CMD_VOLUME));
        Settle();
        EXPECT_EQ(viewer.canvas->GetVolVisFrame(), nullptr);
    }
    EXPECT_EQ(log.GetEntries(),
              (LogCatcher::Entries{{wxLOG_Error, "Unable to init GLEW."}, {wxLOG_Error, "Unable to init GLEW."}}));
    viewer.canvas->UpdateVolVis();
    viewer.canvas->UpdateIsosurface();
    EXPECT_TRUE(viewer.canvas->ShowNextImage());
    EXPECT_TRUE(viewer.frame->IsShown());
}

} // namespace
} // namespace zel::test
