#pragma once

#include "brush/mrunner.h"

#include <QColor>

// Fills every existing tile of a layer with one colour, as one undo step;
// within the selection when there is one. An empty layer stays empty.
class MFillCanvasRunner : public MRunner
{
    Q_OBJECT

public:
    MFillCanvasRunner(MSharedData* sharedData, int layerIndex, const QColor& color,
                      QObject* parent = nullptr);

public Q_SLOTS:
    void run() override;

private:
    int m_layerIndex;
    QColor m_color;
};
