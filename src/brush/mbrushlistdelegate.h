#pragma once

#include "lists/mlistpaneldelegate.h"

// Paints a brush of the list: its thumbnail at the top left, small icons for
// an eraser, an engine and a texture, and "description [group]" at the lower
// right. Items that are no brush get the plain painting.
class MBrushListDelegate : public MListPanelDelegate
{
    Q_OBJECT

public:
    // The icons' place: the k-th one drawn lies at (x + left + step * k, y + top).
    static constexpr int iconLeft = 5;
    static constexpr int iconTop = 5;
    static constexpr int iconStep = 18;
    static constexpr int iconSize = 16;
    // The text ends this far from the right and from the bottom of the cell.
    static constexpr int textMargin = 5;

    explicit MBrushListDelegate(QObject* parent = nullptr);

    void paint(QPainter* painter, QObject* item, const QRectF& rect, bool selected) override;
};
