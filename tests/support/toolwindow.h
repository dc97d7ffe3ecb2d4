#pragma once

#include "app/mmainwindowform.h"
#include "gpu/mwidget.h"
#include "tools/mtools.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QSize>
#include <QString>
#include <QTest>

namespace QuillmereTest {

// Fills window with the program's form and a view as its whole centre (the
// docks hidden, so that every point used lies on the view), shows it, waits
// for the view's GL and its opening animation, and wires the tool framework
// to both. An empty answer on success, otherwise why not.
inline QString openToolWindow(QMainWindow* window, MMainWindowForm* form, MWidget** view, const QSize& size)
{
    form->setupUi(window);
    for (QDockWidget* dock : form->docks())
        dock->hide();
    *view = new MWidget(window);
    window->setCentralWidget(*view);
    window->resize(size);
    window->show();
    if (!QTest::qWaitForWindowExposed(window))
        return QStringLiteral("the window was never shown");
    MWidget* shown = *view;
    if (!QTest::qWaitFor([shown]() { return shown->isGlReady(); }, 60000))
        return QStringLiteral("the view's GL never came up");
    QTest::qWait(800);
    MTools* tools = MTools::instance();
    tools->set_widget(*view);
    tools->init(window);
    return QString();
}

} // namespace QuillmereTest
