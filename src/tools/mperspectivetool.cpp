#include "tools/mperspectivetool.h"

#include "tools/mtoolvalues.h"

MPerspectiveTool::MPerspectiveTool(QObject* parent) : MTool(PerspectiveTool, parent)
{
    set_pointId(MToolValues::PerspectivePoints);
}

QPointF MPerspectiveTool::constrain(const QLineF& line) const
{
    return line.p2();
}
