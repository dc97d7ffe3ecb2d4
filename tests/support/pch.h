// Precompiled header shared by every test executable.
#pragma once
#include <QtCore>
#include <QtGui>
#include <QtWidgets>
#include <QtNetwork>
#include <QtTest>
