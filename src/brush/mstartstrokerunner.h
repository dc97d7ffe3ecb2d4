#pragma once

#include "app/mevent.h"
#include "brush/mrunner.h"

#include <QColor>

class MBrush;

// Sets stroke index up: the stroke's own copy of the brush with the colours
// in its settings, the settings' starting values, the stroke layer's eraser
// mode and opacity, and the press as the last stamped event.
class MStartStrokeRunner : public MRunner
{
    Q_OBJECT

public:
    MStartStrokeRunner(MSharedData* sharedData, int layerIndex, int index, const MEvent& event,
                       const MBrush& brush, const QColor& color, const QColor& secondColor,
                       QObject* parent = nullptr);

public Q_SLOTS:
    void run() override;

private:
    int m_index;
    MEvent m_event;
};
