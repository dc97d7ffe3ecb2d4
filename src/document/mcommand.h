#pragma once

#include <QRectF>
#include <QUndoCommand>

class MCanvas;
class MTextureLayer;

// An undo step of a document. Each concrete command does its work and pushes
// itself on the canvas's stack at the end of its constructor, so callers only
// write `new MCommandX(...)` and never keep the pointer. A command made as the
// child of another is not pushed: its parent carries it.
class MCommand : public QUndoCommand
{
public:
    explicit MCommand(MCanvas* canvas, QUndoCommand* parent = nullptr);
    ~MCommand() override;

    MCanvas* canvas() const { return m_canvas; }

protected:
    // The last step of every constructor.
    void push();
    // Makes the canvas's context current, logging failure under source.
    bool makeCurrent(const QString& source) const;
    // A new layer named after the new row count, put at row; it becomes current.
    MTextureLayer* insertNewLayer(int row, const QString& source);
    // Frees the textures of the layer of that row and deletes it.
    bool deleteLayer(int row, const QString& source);
    // Exchanges two rows; the current row follows the layer that was at from.
    bool swapLayers(int from, int to);

    MCanvas* m_canvas;
    bool m_firstRedo = true;
    QRectF m_oldRect;
    QRectF m_newRect;

private:
    bool m_isChild;
};
