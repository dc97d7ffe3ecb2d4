#pragma once

#include "app/mevent.h"
#include "brush/mrunner.h"
#include "gpu/mvertex.h"

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QSet>
#include <QVector>

class MTextureLayer;
class MTile;

// Lays the stamps of stroke index from its last stamp towards the event, at
// the brush's spacing, with every setting evaluated for each stamp, and draws
// them in one pass per touched tile of the stroke layer.
class MStrokeToRunner : public MRunner
{
    Q_OBJECT

public:
    MStrokeToRunner(MSharedData* sharedData, int index, const MEvent& event, QObject* parent = nullptr);

    // The event of the stamp at t between from and to; the row's values are
    // evaluated for it, spacing and angle resolved, and the offsets added to
    // its position.
    MEvent strokeEvent(const MEvent& from, const MEvent& to, double t);
    // The row's colour, opaque.
    QColor brushColor() const;
    // The stamp of the row's values at position; its bounds, or an empty
    // rectangle when it lies too far outside the page to be made.
    QRectF addStamp(QVector<MVertex>& stamps, const QPointF& position, const QColor& color);
    // The tiles of layer under rect, made where missing, join tiles, and
    // each records rect as changed.
    void collectTiles(const QRectF& rect, MTextureLayer* layer, QSet<MTile*>& tiles);
    void drawStampBuffer(const QSet<MTile*>& tiles, const QVector<MVertex>& stamps, const QPointF& offset);
    // Moves the brush's wet colour towards the current layer's paint around
    // position; clear starts it afresh.
    void getColorSample(const QPointF& position, bool clear);
    // Within 100 pixels of the page.
    bool inCanvas(const QRectF& rect) const;

public Q_SLOTS:
    void run() override;

private:
    int m_index;
    MEvent m_event;
};
