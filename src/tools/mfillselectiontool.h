#pragma once

#include "tools/mtool.h"

class MEvent;

// The magic wand: selects the area of similar colour under the click.
// For now the tool holds only its place in the framework, its id and its group;
// it reacts to no event yet.
class MFillSelectionTool : public MTool
{
    Q_OBJECT

public:
    explicit MFillSelectionTool(QObject* parent = nullptr);

    // The selection by a click at the event's position, whatever tool is
    // current; for now it selects nothing.
    void selectAt(MEvent* event);
};
