#include "tools/mfilltool.h"

MFillTool::MFillTool(QObject* parent) : MTool(FillTool, parent) {}
