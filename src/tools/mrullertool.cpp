#include "tools/mrullertool.h"

#include "tools/mtoolvalues.h"

MRullerTool::MRullerTool(QObject* parent) : MTool(RullerTool, parent)
{
    set_pointId(MToolValues::RullerPoints);
}

QPointF MRullerTool::constrain(const QLineF& line) const
{
    return line.p2();
}
