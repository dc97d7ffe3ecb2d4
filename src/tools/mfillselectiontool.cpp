#include "tools/mfillselectiontool.h"

MFillSelectionTool::MFillSelectionTool(QObject* parent) : MTool(FillSelectionTool, parent) {}

void MFillSelectionTool::selectAt(MEvent* event)
{
    Q_UNUSED(event)
}
