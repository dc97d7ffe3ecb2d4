// Precompiled header of the core library: the Qt headers nearly every file includes.
#pragma once
#include <QtCore>
#include <QtGui>
#include <QtWidgets>
#include <QtNetwork>
