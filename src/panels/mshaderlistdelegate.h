#pragma once

#include "lists/mlistpaneldelegate.h"

// Paints an effect of the effect panel: its thumbnail on the left,
// "description [group]" beside it, and a mark at the top right on brush
// engines. It reads the item's properties, so an effect or a stand-in of one
// paints alike.
class MShaderListDelegate : public MListPanelDelegate
{
    Q_OBJECT

public:
    static constexpr int margin = 2;
    static constexpr int markSize = 16;

    explicit MShaderListDelegate(QObject* parent = nullptr);

    void paint(QPainter* painter, QObject* item, const QRectF& rect, bool selected) override;

    // Where the thumbnail of a cell goes: a square at its left, inside the margin.
    static QRectF thumbnailRect(const QRectF& cell);
    // Where the mark of an engine goes: the top right corner.
    static QRectF markRect(const QRectF& cell);
};
