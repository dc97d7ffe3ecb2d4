#pragma once

#include "app/mevent.h"
#include "brush/mrunner.h"

class MTextureTile;

// Lays the stroke layer's changed tiles on the current layer as one undo
// step, and empties them.
class MEndStrokeRunner : public MRunner
{
    Q_OBJECT

public:
    MEndStrokeRunner(MSharedData* sharedData, int index, const MEvent& event, QObject* parent = nullptr);

public Q_SLOTS:
    void run() override;

private:
    void clear(MTextureTile* tile);

    int m_index;
    MEvent m_event;
};
