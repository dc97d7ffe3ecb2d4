#include "tools/mzoomtool.h"

MZoomTool::MZoomTool(QObject* parent) : MTool(ZoomTool, parent) {}
