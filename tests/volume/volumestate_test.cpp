// What OpenGL has been told: constants that a picture shows only roughly.

#include <GL/glew.h> // before any header that brings OpenGL's own

#include "tests/volume/volume_window.h"

#include <array>

namespace zel::test {
namespace {

class VolumeState : public GuiTest {};

using Four = std::array<float, 4>;

Four LightOf(GLenum name) {
    Four values{};
    glGetLightfv(GL_LIGHT0, name, values.data());
    return values;
}
Four MaterialOf(GLenum face, GLenum name) {
    Four values{};
    glGetMaterialfv(face, name, values.data());
    return values;
}
int NumberOf(GLenum name) {
    GLint value = -1;
    glGetIntegerv(name, &value);
    return value;
}
int TextureNumber(GLenum name) {
    GLint value = -1;
    glGetTexParameteriv(GL_TEXTURE_3D, name, &value);
    return value;
}

TEST_F(VolumeState, LightAndMaterialAreSetUpOnce) {
    const VolumeWindow window;
    ASSERT_TRUE(window.Canvas().MakeCurrent());
    EXPECT_EQ(LightOf(GL_DIFFUSE), (Four{1, 1, 1, 1}));
    EXPECT_EQ(LightOf(GL_AMBIENT), (Four{0.2F, 0.2F, 0.2F, 1}));
    EXPECT_EQ(LightOf(GL_SPECULAR), (Four{1, 1, 1, 1}));
    for (const unsigned face : {unsigned{GL_FRONT}, unsigned{GL_BACK}}) {
        EXPECT_EQ(MaterialOf(face, GL_AMBIENT), (Four{0.25F, 0.25F, 0.25F, 1}));
        EXPECT_EQ(MaterialOf(face, GL_SPECULAR), (Four{0.6F, 0.6F, 0.6F, 1}));
        EXPECT_EQ(MaterialOf(face, GL_SHININESS)[0], 70.0F);
    }
    EXPECT_EQ(NumberOf(GL_SHADE_MODEL), GL_SMOOTH);
    EXPECT_EQ(NumberOf(GL_DEPTH_FUNC), GL_LESS);
    EXPECT_EQ(NumberOf(GL_UNPACK_ALIGNMENT), 1);
    GLint mode = 0;
    glGetTexEnviv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, &mode);
    EXPECT_EQ(mode, GL_MODULATE);
}

TEST_F(VolumeState, TheProjectionIsThatOfTheWindow) {
    const VolumeWindow window;
    ASSERT_TRUE(ResizeClient(*window.frame, {400, 200}));
    ASSERT_TRUE(window.Canvas().MakeCurrent());
    std::array<float, 16> matrix{};
    glGetFloatv(GL_PROJECTION_MATRIX, matrix.data());
    // f = 1 / tan 20 degrees = 2.747477; the width is twice the height.
    EXPECT_NEAR(matrix[0], 2.747477 / 2, 1e-6);
    EXPECT_NEAR(matrix[5], 2.747477, 1e-6);
    EXPECT_NEAR(matrix[10], -1.0040080160320641, 1e-6);
    EXPECT_NEAR(matrix[14], -0.20040080160320642, 1e-6);
    EXPECT_EQ(matrix[11], -1.0F);
    EXPECT_EQ(matrix[15], 0.0F);
    std::array<GLint, 4> viewport{};
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    EXPECT_EQ(viewport, (std::array<GLint, 4>{0, 0, 400, 200}));
}

TEST_F(VolumeState, TheTextureIsSmoothAndEndsAtItsBorder) {
    const VolumeWindow window;
    window.Show(4, [](auto...) { return Voxel{1, 2, 3, 4}; });
    for (const unsigned wrap : {unsigned{GL_TEXTURE_WRAP_S}, unsigned{GL_TEXTURE_WRAP_T}, unsigned{GL_TEXTURE_WRAP_R}})
        EXPECT_EQ(TextureNumber(wrap), GL_CLAMP_TO_EDGE);
    EXPECT_EQ(TextureNumber(GL_TEXTURE_MIN_FILTER), GL_LINEAR);
    EXPECT_EQ(TextureNumber(GL_TEXTURE_MAG_FILTER), GL_LINEAR);
    Four border{};
    glGetTexParameterfv(GL_TEXTURE_3D, GL_TEXTURE_BORDER_COLOR, border.data());
    EXPECT_EQ(border, (Four{1, 1, 1, 1}));
    GLint format = 0, width = 0;
    glGetTexLevelParameteriv(GL_TEXTURE_3D, 0, GL_TEXTURE_INTERNAL_FORMAT, &format);
    glGetTexLevelParameteriv(GL_TEXTURE_3D, 0, GL_TEXTURE_WIDTH, &width);
    EXPECT_EQ(format, GL_RGBA8);
    EXPECT_EQ(width, 6);
}

TEST_F(VolumeState, APaintLeavesBlendingOnAndNoError) {
    const VolumeWindow window;
    window.Show(4, [](auto...) { return Voxel{}; });
    window.Press(WXK_UP, 4);    // intensity 0.625
    window.Press(WXK_RIGHT, 8); // threshold 0.75
    window.Picture();
    ASSERT_TRUE(window.Canvas().MakeCurrent());
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
    EXPECT_TRUE(glIsEnabled(GL_BLEND));
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    for (const unsigned off :
         {unsigned{GL_ALPHA_TEST}, unsigned{GL_CLIP_PLANE0}, unsigned{GL_TEXTURE_3D}, unsigned{GL_TEXTURE_GEN_S},
          unsigned{GL_TEXTURE_GEN_T}, unsigned{GL_TEXTURE_GEN_R}, unsigned{GL_LIGHTING}})
        EXPECT_FALSE(glIsEnabled(off)) << off;
    EXPECT_EQ(NumberOf(GL_BLEND_SRC), GL_SRC_ALPHA);
    EXPECT_EQ(NumberOf(GL_BLEND_DST), GL_ONE_MINUS_SRC_ALPHA);
    EXPECT_EQ(NumberOf(GL_ALPHA_TEST_FUNC), GL_GREATER);
    float reference = 0.0F;
    glGetFloatv(GL_ALPHA_TEST_REF, &reference);
    EXPECT_NEAR(reference, 0.625 * 0.75, 1e-6);
    const Four light = LightOf(GL_POSITION); // directional, in the eye's own axes
    EXPECT_EQ(light, (Four{0, 2, 10, 0}));
    for (const unsigned axis : {unsigned{GL_S}, unsigned{GL_T}, unsigned{GL_R}}) {
        GLint generation = 0;
        glGetTexGeniv(axis, GL_TEXTURE_GEN_MODE, &generation);
        EXPECT_EQ(generation, GL_EYE_LINEAR);
    }
}

} // namespace
} // namespace zel::test
