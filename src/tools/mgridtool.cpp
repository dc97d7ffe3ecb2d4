#include "tools/mgridtool.h"

MGridTool::MGridTool(QObject* parent) : MTool(GridTool, parent) {}
