#include "tools/mcomicstriptool.h"

MComicStripTool::MComicStripTool(QObject* parent) : MTool(ComicStripTool, parent) {}
