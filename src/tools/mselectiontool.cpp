#include "tools/mselectiontool.h"

#include "tools/mtoolvalues.h"

MSelectionTool::MSelectionTool(QObject* parent) : MTool(SelectionTool, parent)
{
    set_pointId(MToolValues::SelectionPoints);
}
