#pragma once

#include "tools/mtool.h"

#include <QPointF>
#include <QPolygonF>

// An axis over the canvas and the images of a position by it: a mirror for a
// symmetry number of 1, a mirror and a half turn for 2, and n turns about the
// centre for n of 3 or more. The brush tool repeats each stroke at every
// image. Point 0 is the centre, point 1 the end of the axis.
class MSymmetryTool : public MTool
{
    Q_OBJECT

public:
    explicit MSymmetryTool(QObject* parent = nullptr);

    int symmetryNumber() const;
    // The position first, then its images; the position alone while the tool
    // is hidden.
    QPolygonF symmetryPoints(const QPointF& pos);

    // "Sym. number" and "Lock".
    void setupToolBar(QToolBar* toolBar) override;

public Q_SLOTS:
    void setSymmetryNumber(int value);
    bool updateCursor(const QPointF& localPos, double scale) override;
    void paint(QPainter* painter) override;
    bool mousePressEvent(MEvent* event) override;
    void mouseMoveEvent(MEvent* event) override;

Q_SIGNALS:
    void symmetryNumberChanged(int value);
};
