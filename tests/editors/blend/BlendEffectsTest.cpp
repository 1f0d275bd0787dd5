#include "BlendEditorFixture.h"

#include <QVariantMap>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <utility>

namespace lamina::test {
namespace {

UIImage gray(int value)
{
    const auto byte = static_cast<std::uint8_t>(value);
    return flat({byte, byte, byte, 255});
}

class BlendEffects : public BlendEditor {
protected:
    void SetUp() override
    {
        firstPickedImage = gray(60);
        BlendEditor::SetUp();
        BlendComposition grays = state();
        grays.photos[0].image = grays.photos[0].actualImage = gray(60);
        grays.photos[1].image = grays.photos[1].actualImage = gray(100);
        editor->setComposition(grays);
        editor->FxBtn();
    }
    int level(std::size_t photo) const { return pixelAt(state().photos[photo].image.cgImage(), 3, 3)[1]; }
    double shownValue(int row) const { return editor->sliders()[row].toMap()["value"].toDouble(); }
};

TEST_F(BlendEffects, SlidersWorkFromSnapshotsThatTheyShare)
{
    const auto c = [this](double value) { editor->contrastFun(value); };
    const auto b = [this](double value) { editor->brightnFun(value); };
    b(-20);
    b(40);
    EXPECT_EQ(level(1), 140) << "moves don't add up";
    c(100); // from the brightened photo: 128 + 12 · 2.2677
    EXPECT_EQ(level(1), 155);
    b(10); // from the same
    EXPECT_EQ(level(1), 150);
    const UIImage snapshot = state().applyFxOnImage1;
    c(0);
    EXPECT_TRUE(state().photos[1].image.isIdenticalTo(snapshot));
    editor->FxBtn();
    b(1);
    EXPECT_EQ(level(1), 141) << "opening the panel takes no snapshot";
    editor->resetBtn();
    EXPECT_EQ(level(1), 100);
    b(20);
    EXPECT_EQ(level(1), 160) << "nor does a reset forget one";

    editor->FxBtn();
    editor->photo2(); // to the first
    b(5);
    EXPECT_EQ(level(0), 65);
    editor->toolBtn(); // the second is the current one now, with the first one's snapshot
    b(6);
    EXPECT_EQ(level(0), 65);
    EXPECT_EQ(level(1), 66);
    editor->photo1();
    c(-50); // 128 - 62 · 0.67384
    EXPECT_EQ(level(1), 86);
}

TEST_F(BlendEffects, BothPhotosHaveSnapshotsOfTheirOwn)
{
    BlendComposition both = state();
    both.photo1Selected = both.photo2Selected = true;
    editor->setComposition(both);
    for (const double value : {30.0, -10.0})
        editor->brightnFun(value);
    EXPECT_EQ(level(0), 50);
    EXPECT_EQ(level(1), 90);
    editor->opacityFun(0.25);
    EXPECT_EQ(editor->imgView1().alpha(), 0.25);
    EXPECT_EQ(editor->imgView2().alpha(), 0.25);
}

TEST_F(BlendEffects, FromPressToReleaseIsOneStep)
{
    int told = 0;
    QObject::connect(editor.get(), &BlendPhotoViewController::slidersChanged, editor.get(), [&told] { ++told; });
    const auto drag = [this](int tag, std::initializer_list<double> values) {
        editor->beginSliding(tag);
        for (const double value : values)
            editor->slide(tag, value);
        editor->endSliding(tag);
    };
    drag(51, {10, 300, 35}); // as far as the slider goes
    EXPECT_EQ(level(1), 135);
    drag(52, {0, 0.8});
    EXPECT_EQ(told, 0);
    editor->undo();
    EXPECT_EQ(std::exchange(told, 0), 1);
    EXPECT_EQ(editor->imgView2().alpha(), 0.5);
    EXPECT_EQ(shownValue(1), 35);
    EXPECT_EQ(shownValue(2), 0.5);
    editor->undo();
    EXPECT_EQ(level(1), 100);
    EXPECT_EQ(shownValue(1), 0);
    EXPECT_FALSE(state().brightBool);
    editor->redo();
    EXPECT_EQ(level(1), 135);
    EXPECT_EQ(shownValue(1), 35);
    drag(52, {0.9, 0.5});
    EXPECT_TRUE(editor->canRedo()) << "there and back is no step";
    editor->FxBtn(); // starts anew, and the photo keeps its look
    EXPECT_EQ(shownValue(1), 0);
    EXPECT_EQ(level(1), 135);

    // An action ends the step; the finger may go on.
    editor->beginSliding(51);
    editor->slide(51, 50);
    editor->undo();
    EXPECT_EQ(level(1), 135);
    editor->slide(51, 70);
    editor->endSliding(51);
    EXPECT_EQ(level(1), 170);
    editor->undo();
    EXPECT_EQ(level(1), 135);
}

TEST_F(BlendEffects, KeysOnASliderJoin)
{
    for (const double value : {1, 2, 3})
        editor->slide(51, value);
    editor->slide(50, 0);
    editor->slide(52, 0.6);
    editor->slide(52, 0.7);
    clock->advance(1.1);
    editor->slide(52, 0.8);
    for (const int other : {49, 53, 500})
        editor->slide(other, 1);
    editor->slide(51, std::numeric_limits<double>::quiet_NaN());
    for (const double alpha : {0.7, 0.5}) {
        editor->undo();
        EXPECT_EQ(state().photos[1].alpha, alpha);
    }
    EXPECT_EQ(level(1), 103);
    editor->undo();
    EXPECT_EQ(level(1), 100);
    editor->undo(); // the photos of this test
    EXPECT_FALSE(editor->canUndo());
}

TEST_F(BlendEffects, ValuesAreWrittenBesideSliders)
{
    const struct {
        int tag;
        double value;
        const char* text;
    } table[] = {
        {50, 34.4, "+34"},  {50, -12.5, "−13"}, {51, 0.4, "0"},   {51, -0.4, "0"}, {51, -1000, "−200"},
        {52, 0.62, "62 %"}, {52, 0, "10 %"},    {52, 1, "100 %"}, {53, 1, ""},
    };
    for (const auto& c : table)
        EXPECT_EQ(editor->sliderText(c.tag, c.value).toStdString(), c.text);
    const QVariantMap row = editor->sliders().last().toMap();
    EXPECT_EQ(row["tag"].toInt(), 52);
    EXPECT_EQ(row["label"].toString().toStdString(), "opacity");
    EXPECT_EQ(row["minimum"].toDouble(), 0.1);
    EXPECT_EQ(row["maximum"].toDouble(), 1.0);
    EXPECT_EQ(row["start"].toDouble(), 0.5);
}

} // namespace
} // namespace lamina::test
