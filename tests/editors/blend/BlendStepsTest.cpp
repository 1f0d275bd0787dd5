#include "BlendEditorFixture.h"
#include "platform/view/TouchDispatcher.h"

#include <QStringList>
#include <QVariantMap>

#include <limits>
#include <map>
#include <string>

namespace lamina::test {
namespace {

constexpr CGAffineTransform moved(double x, double y)
{
    return CGAffineTransform::translation(x, y);
}

class BlendSteps : public BlendEditor {
protected:
    /// A finger that drags from the middle: the first 10 points only make it a drag.
    void dragBy(double x)
    {
        beginDrag(x);
        fingers->touchEnded(1, {kSide / 2.0 + 10 + x, kSide / 2.0}, 0.3);
    }
    void beginDrag(double x)
    {
        if (!fingers)
            fingers = std::make_unique<TouchDispatcher>(editor->canvasView());
        fingers->touchBegan(1, {kSide / 2.0, kSide / 2.0}, 0);
        fingers->touchMoved(1, {kSide / 2.0 + 10, kSide / 2.0}, 0.1);
        fingers->touchMoved(1, {kSide / 2.0 + 10 + x, kSide / 2.0}, 0.2);
    }
    /// Undoes all; the number of steps it took.
    int undoAll()
    {
        int steps = 0;
        for (; editor->canUndo(); ++steps)
            editor->undo();
        return steps;
    }

    std::unique_ptr<TouchDispatcher> fingers;
};

TEST_F(BlendSteps, ADragIsOneStepBackAndForth)
{
    EXPECT_FALSE(editor->canUndo());
    dragBy(6);
    dragBy(5);
    const CGAffineTransform both = transform();
    editor->undo();
    const CGAffineTransform first = transform();
    EXPECT_EQ(both.tx - first.tx, first.tx / 6 * 5);
    EXPECT_GT(first.tx, 0);
    EXPECT_EQ(state().photos[1].transform, first);
    editor->undo();
    EXPECT_TRUE(transform().isIdentity());
    EXPECT_FALSE(editor->canUndo() || editor->isEdited());
    editor->undo();

    editor->redo();
    editor->redo();
    EXPECT_EQ(transform(), both);
    EXPECT_TRUE(editor->isEdited() && !editor->canRedo());
    // What was brought back can be moved on.
    editor->undo();
    dragBy(1);
    EXPECT_GT(transform().tx, first.tx);
}

TEST_F(BlendSteps, ActionsEndAGestureThatIsUnderWay)
{
    dragBy(4);
    const CGAffineTransform first = transform();
    beginDrag(7);
    ASSERT_NE(transform(), first);
    editor->undo();
    EXPECT_EQ(transform(), first);
    // The finger is still down; it drags nothing any more.
    fingers->touchMoved(1, {60, 60}, 0.3);
    fingers->touchEnded(1, {60, 60}, 0.4);
    EXPECT_EQ(transform(), first);
    EXPECT_TRUE(editor->canRedo());

    beginDrag(7);
    const CGAffineTransform second = transform();
    editor->resetBtn();
    fingers->touchMoved(1, {60, 60}, 0.3);
    EXPECT_TRUE(transform().isIdentity());
    editor->undo();
    EXPECT_EQ(transform(), second);
    editor->undo();
    EXPECT_EQ(transform(), first);
}

TEST_F(BlendSteps, KeysAndWheelJoinWithinASecond)
{
    fingers = std::make_unique<TouchDispatcher>(editor->canvasView());
    editor->nudge(1, 0);
    clock->advance(0.9);
    editor->nudge(0, 1);
    clock->advance(0.9);
    editor->nudge(1, 0);
    const CGAffineTransform run = moved(2, 1);
    EXPECT_EQ(transform(), run);
    clock->advance(1.1);
    editor->nudge(8, 0);
    for (int notch = 0; notch < 5; ++notch)
        EXPECT_TRUE(fingers->wheel({32, 32}, 1));
    editor->zoomBy(2);
    EXPECT_NEAR(transform().a, 3.22102, 1e-9); // 1.1^5 · 2
    EXPECT_EQ(transform().tx, 10);

    editor->undo();
    EXPECT_EQ(transform(), moved(10, 1));
    editor->undo();
    EXPECT_EQ(transform(), run);
    for (const double there :
         {1, -1, 1}) // no part of the run that was gone back to, nor of one that has come to nothing
        editor->nudge(there, 0);
    editor->undo();
    EXPECT_EQ(transform(), run);
    EXPECT_EQ(undoAll(), 1);
}

TEST_F(BlendSteps, WhatChangesNothingIsNoStep)
{
    editor->resetBtn();
    editor->panBtn();
    editor->photo1();
    editor->nudge(3, 0);
    editor->nudge(-3, 0);
    dragBy(0);
    EXPECT_FALSE(editor->canUndo() || editor->isEdited());

    // Nor is a change after which the photo would be lost.
    const double infinity = std::numeric_limits<double>::infinity();
    editor->nudge(infinity, 0);
    editor->nudge(0, std::numeric_limits<double>::quiet_NaN());
    for (const double factor : {0.0, -1.0, infinity, 1e-200})
        editor->zoomBy(factor);
    EXPECT_TRUE(transform().isIdentity());
    leaveMoveMode();
    editor->nudge(3, 0);
    editor->zoomBy(2);
    EXPECT_FALSE(editor->canUndo());
}

TEST_F(BlendSteps, AResetIsAStepAndTheBarFollowsBack)
{
    BlendComposition work = state();
    work.photos[0].image = flat({1, 2, 3, 255});
    work.photos[0].alpha = 0.9;
    work.backdrop = UIColor{1, 0, 0, 1};
    work.bringToFront(0);
    work.photo2Selected = false;
    editor->setComposition(work);
    editor->resetBtn();
    EXPECT_TRUE(editor->tools()[0].toMap()["gray"].toBool());
    editor->undo();
    EXPECT_TRUE(editor->imgView1().image().isIdenticalTo(work.photos[0].image));
    EXPECT_EQ(editor->imgView1().alpha(), 0.9);
    EXPECT_EQ(editor->mainImgView().backgroundColor(), work.backdrop);
    EXPECT_EQ(stack(), (std::vector<UIView*>{&editor->imgView2(), &editor->imgView1()}));
    EXPECT_FALSE(editor->photo2OnTop() || editor->photo2Selected());
    EXPECT_FALSE(editor->tools()[0].toMap()["gray"].toBool());
    EXPECT_TRUE(editor->tools()[1].toMap()["active"].toBool());
    EXPECT_EQ(undoAll(), 1);
}

TEST_F(BlendSteps, FlatteningIsNeitherAStepNorAnEditNorTheEndOfADrag)
{
    editor->flattened();
    EXPECT_FALSE(editor->canUndo() || editor->isEdited());
    beginDrag(4);
    editor->flattened();
    fingers->touchEnded(1, {46, 32}, 0.3);
    EXPECT_TRUE(editor->isEdited());
    EXPECT_EQ(undoAll(), 1);
    EXPECT_TRUE(transform().isIdentity());
}

TEST_F(BlendSteps, ADragWakesOnlyWhoHasToKnow)
{
    using Editor = BlendPhotoViewController;
    std::map<std::string, int> heard;
    const auto listen = [&](const char* name, auto signal) {
        QObject::connect(editor.get(), signal, editor.get(), [&heard, name] { ++heard[name]; });
    };
    listen("changed", &Editor::changed);
    listen("bar", &Editor::barChanged);
    listen("selection", &Editor::selectionChanged);
    listen("history", &Editor::historyChanged);
    listen("edited", &Editor::editedChanged);
    listen("pictures", &Editor::picturesChanged);

    beginDrag(4);
    fingers->touchMoved(1, {50, 32}, 0.3);
    EXPECT_GE(heard["changed"], 2);
    heard.erase("changed");
    EXPECT_EQ(heard, (std::map<std::string, int>{{"edited", 1}}));
    fingers->touchEnded(1, {50, 32}, 0.4);
    heard.erase("changed");
    EXPECT_EQ(heard, (std::map<std::string, int>{{"edited", 1}, {"history", 1}}));

    heard.clear();
    editor->resetBtn();
    EXPECT_EQ(heard, (std::map<std::string, int>{{"changed", 1}, {"edited", 1}, {"bar", 1}}));
    heard.clear();
    BlendComposition other = state();
    other.photos[1].image = flat(kRed);
    other.photo1Selected = true;
    editor->setComposition(other);
    EXPECT_EQ(heard, (std::map<std::string, int>{
                         {"changed", 1}, {"edited", 1}, {"bar", 1}, {"selection", 1}, {"pictures", 1}}));
    EXPECT_TRUE(qvariant_cast<UIImage>(editor->property("photo2Picture")).isIdenticalTo(other.photos[1].image));
}

TEST_F(BlendSteps, TheBarOffersWhatWorks)
{
    QStringList shown;
    for (const QVariant& tool : editor->property("tools").toList()) {
        const QVariantMap map = tool.toMap();
        shown << map["name"].toString() + " " + map["icon"].toString() + " " + map["tag"].toString() +
                     (map["active"].toBool() ? " active" : "") + (map["enabled"].toBool() ? "" : " off");
    }
    EXPECT_EQ(shown.join(", "),
              "Reset Reset 51, Move Pan1 0 active, Tools Tools 53 off, Effects Fx 54 off, Sticker Sticker 55 off");
}

} // namespace
} // namespace lamina::test
