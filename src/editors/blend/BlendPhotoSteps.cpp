// The blend editor's states: going back and forth between them, and telling those who watch.

#include "editors/blend/BlendPhotoViewController.h"

#include "editors/blend/BlendToolList.h"

namespace lamina {

void BlendPhotoViewController::setComposition(const BlendComposition& composition)
{
    cancelGestures();
    show(composition);
    m_history.record(m_composition);
    tell();
}

void BlendPhotoViewController::undo()
{
    cancelGestures();
    if (!canUndo())
        return;
    show(m_history.undo());
    tell();
}

void BlendPhotoViewController::redo()
{
    cancelGestures();
    if (!canRedo())
        return;
    show(m_history.redo());
    tell();
}

void BlendPhotoViewController::show(const BlendComposition& composition)
{
    m_composition = composition;
    buildTree();
    if (!m_composition.panBool)
        return;
    hidePanels();
    m_toolBar.clearBackgrounds();
    m_toolBar.setActiveTool(BlendTool::Pan);
}

void BlendPhotoViewController::tell()
{
    const Told before = m_told;
    m_told.bar = m_toolBar;
    m_told.selection = {photo1Selected(), photo2Selected(), panBool(), photo2OnTop()};
    m_told.history = {canUndo(), canRedo()};
    m_told.pictures = {m_composition.photos[0].image, m_composition.photos[1].image};

    emit changed();
    if (m_told.bar != before.bar) {
        m_tools = blendToolList(m_toolBar);
        emit barChanged();
    }
    if (m_told.selection != before.selection)
        emit selectionChanged();
    if (m_told.history != before.history)
        emit historyChanged();
    if (!m_told.pictures[0].isIdenticalTo(before.pictures[0]) || !m_told.pictures[1].isIdenticalTo(before.pictures[1]))
        emit picturesChanged();
    tellEdited();
}

void BlendPhotoViewController::tellEdited()
{
    const bool edited = m_history.isEdited(m_composition);
    if (edited == m_edited)
        return;
    m_edited = edited;
    emit editedChanged();
}

} // namespace lamina
