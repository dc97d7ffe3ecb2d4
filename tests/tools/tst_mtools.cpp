// The tool framework on a real window and view: wiring by name, activation,
// the routing of the view's events to controls, overlays and the current tool,
// hit tests through the view's transform, and the symmetry tool.

#include "support/glcontext.h"
#include "support/testenvironment.h"
#include "support/toolwindow.h"

#include "app/mevent.h"
#include "app/mmainwindowform.h"
#include "document/mcanvas.h"
#include "gpu/mtransform.h"
#include "gpu/mwidget.h"
#include "tools/mcontrol.h"
#include "tools/minterfaceitem.h"
#include "tools/msymmetrytool.h"
#include "tools/mtool.h"
#include "tools/mtools.h"
#include "tools/mtoolvalues.h"

#include <QAction>
#include <QActionGroup>
#include <QLabel>
#include <QMainWindow>
#include <QSignalSpy>
#include <QSpinBox>
#include <QToolBar>

#include <cmath>
#include <memory>

namespace {

// The view maps a canvas point p to 2 p + (300, 200).
const QPointF viewOrigin(300, 200);
constexpr double viewScale = 2.0;

QPointF toWidget(const QPointF& canvasPoint)
{
    return canvasPoint * viewScale + viewOrigin;
}

bool near(const QPointF& a, const QPointF& b, double tolerance = 1e-9)
{
    return std::abs(a.x() - b.x()) <= tolerance && std::abs(a.y() - b.y()) <= tolerance;
}

QString text(const QPointF& p)
{
    return QStringLiteral("(%1, %2)").arg(p.x(), 0, 'g', 12).arg(p.y(), 0, 'g', 12);
}

QString text(const QPolygonF& points)
{
    QStringList parts;
    for (const QPointF& p : points)
        parts << text(p);
    return parts.join(QStringLiteral(" "));
}

void sendMouse(QWidget* widget, QEvent::Type type, const QPointF& position, Qt::MouseButton button,
               Qt::MouseButtons buttons)
{
    QMouseEvent event(type, position, position, widget->mapToGlobal(position.toPoint()), button, buttons,
                      Qt::NoModifier, Qt::MouseEventNotSynthesized);
    QApplication::sendEvent(widget, &event);
}

void drag(QWidget* widget, std::initializer_list<QPointF> path)
{
    sendMouse(widget, QEvent::MouseButtonPress, *path.begin(), Qt::LeftButton, Qt::LeftButton);
    for (auto point = path.begin() + 1; point != path.end(); ++point)
        sendMouse(widget, QEvent::MouseMove, *point, Qt::NoButton, Qt::LeftButton);
    sendMouse(widget, QEvent::MouseButtonRelease, *(path.end() - 1), Qt::LeftButton, Qt::NoButton);
}

void sendKey(QWidget* widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QKeyEvent event(QEvent::KeyPress, key, modifiers);
    QApplication::sendEvent(widget, &event);
}

// A tool that records what reaches it.
class SpyTool : public MTool
{
public:
    SpyTool(int id, QStringList* paintLog) : MTool(id), m_paintLog(paintLog) {}

    bool pressAnswer = false;
    bool keyAnswer = false;
    double accumulator = 0.0;
    QVector<MEvent> presses, moves, releases, hovers, doubleClicks;
    int keys = 0;
    int wheels = 0;

    void forget()
    {
        presses.clear();
        moves.clear();
        releases.clear();
        hovers.clear();
        doubleClicks.clear();
        keys = 0;
        wheels = 0;
    }
    int total() const
    {
        return presses.size() + moves.size() + releases.size() + hovers.size() + doubleClicks.size() + keys +
               wheels;
    }

    double accumulatorDistance() override { return accumulator; }
    bool mousePressEvent(MEvent* event) override
    {
        presses << *event;
        return pressAnswer;
    }
    void mouseMoveEvent(MEvent* event) override { moves << *event; }
    void mouseReleaseEvent(MEvent* event) override { releases << *event; }
    void hoverMoveEvent(MEvent* event) override { hovers << *event; }
    void mouseDoubleClickEvent(MEvent* event) override { doubleClicks << *event; }
    bool keyPressEvent(QKeyEvent*) override
    {
        ++keys;
        return keyAnswer;
    }
    void wheelEvent(QWheelEvent*) override { ++wheels; }
    void paint(QPainter*) override
    {
        if (m_paintLog)
            m_paintLog->append(QStringLiteral("tool %1").arg(toolId()));
    }

private:
    QStringList* m_paintLog;
};

// A control that takes every event inside a canvas rectangle.
class SpyControl : public MControl
{
public:
    SpyControl(const QRectF& area, QStringList* paintLog) : m_area(area), m_paintLog(paintLog) {}

    QStringList calls;

    QRectF boundingRect() override { return m_area; }
    void render() override { m_paintLog->append(QStringLiteral("control render")); }
    void paint(QPainter*) override { m_paintLog->append(QStringLiteral("control")); }
    bool mousePress(MEvent* event) override { return take("press", event); }
    bool mouseMove(MEvent* event) override { return take("move", event); }
    bool mouseRelease(MEvent* event) override { return take("release", event); }
    bool hoverMove(MEvent* event) override { return take("hover", event); }

private:
    bool take(const char* name, MEvent* event)
    {
        if (!m_area.contains(QPointF(event->positionX, event->positionY)))
            return false;
        calls << QString::fromLatin1(name);
        return true;
    }

    QRectF m_area;
    QStringList* m_paintLog;
};

// canDraw without a modal box.
class DrawProbe : public MTool
{
public:
    DrawProbe() : MTool(MTool::BrushTool) {}
    int messages = 0;

protected:
    void showCantDrawMessage() override { ++messages; }
};

} // namespace

class TestMTools : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void initWiresToolsByName();
    void activationSwitchesExactlyOneTool();
    void eventsGoToOverlaysThenCurrentTool();
    void pressHeldBackForAccumulator();
    void controlsComeFirst();
    void paintOrder();
    void hitTestThroughTheView();
    void valuesFollowTheView();
    void symmetryImages();
    void symmetryDrag();
    void symmetryToolBar();
    void canDrawTellsWhy();

private:
    void resetTransform();
    // Adds the spy tools: 100 of group 0, the current tool, and the overlays
    // 101 and 102; removed again by init().
    void addSpies();
    QList<QAction*> checkedGroupZeroActions() const;
    QImage grab() { return m_view->grabFramebuffer().convertToFormat(QImage::Format_RGB32); }

    QuillmereTest::GLContext m_context;
    std::unique_ptr<QMainWindow> m_window;
    MMainWindowForm m_form;
    MWidget* m_view = nullptr;
    QStringList m_paintLog;
    SpyTool* m_current = nullptr;
    SpyTool* m_first = nullptr;
    SpyTool* m_second = nullptr;
    QAction* m_spyAction = nullptr;
};

void TestMTools::initTestCase()
{
    QVERIFY2(m_context.create(), qPrintable(m_context.why()));
    qRegisterMetaType<MTool*>();
    m_window = std::make_unique<QMainWindow>();
    const QString why = QuillmereTest::openToolWindow(m_window.get(), &m_form, &m_view, QSize(1200, 900));
    QVERIFY2(why.isEmpty(), qPrintable(why));
    resetTransform();
    QVERIFY2(m_view->width() > 640 && m_view->height() > 480,
             qPrintable(QStringLiteral("%1 x %2").arg(m_view->width()).arg(m_view->height())));
}

void TestMTools::cleanupTestCase()
{
    MTools::instance()->removeTool(100);
    MTools::instance()->removeTool(101);
    MTools::instance()->removeTool(102);
    m_window.reset();
    QVERIFY(!MTools::instance()->widget());
}

void TestMTools::init()
{
    MTools* tools = MTools::instance();
    tools->removeTool(100);
    tools->removeTool(101);
    tools->removeTool(102);
    m_current = m_first = m_second = nullptr;
    delete m_spyAction;
    m_spyAction = nullptr;
    m_paintLog.clear();
    tools->set_widget(m_view);
    tools->activate(MTool::SymmetryTool, false);
    tools->activate(MTool::BrushTool, true);
    resetTransform();
}

void TestMTools::resetTransform()
{
    MTransform* transform = m_view->transform();
    transform->reset();
    transform->setTranslation(viewOrigin);
    transform->zoom(viewScale, viewOrigin);
}

void TestMTools::addSpies()
{
    MTools* tools = MTools::instance();
    m_current = new SpyTool(100, &m_paintLog);
    m_first = new SpyTool(101, &m_paintLog);
    m_second = new SpyTool(102, &m_paintLog);
    QVERIFY(tools->addTool(m_current, 0, QStringLiteral("Spy"), QString()));
    QVERIFY(tools->addTool(m_first, 1, QStringLiteral("First overlay"), QString()));
    QVERIFY(tools->addTool(m_second, 1, QStringLiteral("Second overlay"), QString()));
    // The same id twice is refused, and the tool stays the caller's.
    SpyTool duplicate(100, nullptr);
    QVERIFY(!tools->addTool(&duplicate, 0, QString(), QString()));
    m_spyAction = new QAction(QStringLiteral("Spy"), m_window.get());
    tools->bindAction(100, m_spyAction);
    tools->activate(100, true);
    QCOMPARE(tools->currentTool(), m_current);
}

QList<QAction*> TestMTools::checkedGroupZeroActions() const
{
    QList<QAction*> checked;
    for (QAction* action : MTools::instance()->actionGroup(0)->actions()) {
        if (action->isChecked())
            checked << action;
    }
    return checked;
}

// ---------------------------------------------------------------------------

void TestMTools::initWiresToolsByName()
{
    MTools* tools = MTools::instance();
    const struct
    {
        int id;
        const char* key;
        int group;
        const char* description;
        const char* icon;
        int pointId;
    } table[] = {
        {MTool::BrushTool, "BrushTool", 0, "Brush tool", "brush", -1},
        {MTool::SelectionTool, "SelectionTool", 0, "Selection tool", "selection",
         MToolValues::SelectionPoints},
        {MTool::LineTool, "LineTool", 0, "Line tool", "line", MToolValues::LinePoints},
        {MTool::FillTool, "FillTool", 0, "Fill tool", "fill", -1},
        {MTool::FillSelectionTool, "FillSelectionTool", 0, "Fill selection tool", "fillselection", -1},
        {MTool::ShapeTool, "ShapeTool", 0, "Shape tool", "shape", MToolValues::ShapePoints},
        {MTool::TextTool, "TextTool", 0, "Text tool", "text", MToolValues::TextPoints},
        {MTool::ImageTool, "ImageTool", 0, "Image tool", "image", MToolValues::ImagePoints},
        {MTool::GradientTool, "GradientTool", 0, "Gradient tool", "gradient", MToolValues::GradientPoints},
        {MTool::PanTool, "PanTool", 0, "Pan tool", "pan", -1},
        {MTool::RotateTool, "RotateTool", 0, "Rotate tool", "rotate", -1},
        {MTool::ZoomTool, "ZoomTool", 0, "Zoom tool", "zoom", -1},
        {MTool::GridTool, "GridTool", 1, "Grid tool", "grid", -1},
        {MTool::PerspectiveTool, "PerspectiveTool", 1, "Perspective tool", "perspective",
         MToolValues::PerspectivePoints},
        {MTool::SymmetryTool, "SymmetryTool", 1, "Symmetry tool", "symmetry", MToolValues::SymmetryPoints},
        {MTool::ComicStripTool, "ComicStripTool", 1, "Comic strip tool", "comicstrip", -1},
        {MTool::RullerTool, "RullerTool", 1, "Ruller tool", "ruller", MToolValues::RullerPoints},
    };
    QCOMPARE(tools->toolIds().size(), int(std::size(table)));
    for (const auto& row : table) {
        const QString key = QString::fromLatin1(row.key);
        const MTool* tool = tools->tool(row.id);
        const MInterfaceItem* item = tools->item(row.id);
        QVERIFY2(tool && item, row.key);
        QCOMPARE(tool->toolId(), row.id);
        QCOMPARE(tool->pointId(), row.pointId);
        QCOMPARE(item->toolId(), row.id);
        QCOMPARE(item->group(), row.group);
        QCOMPARE(tools->group(row.id), row.group);
        QCOMPARE(item->description(), QString::fromLatin1(row.description));
        const QString icon = QStringLiteral(":/icons/tools/%1-tool.ico").arg(QString::fromLatin1(row.icon));
        QVERIFY2(QFile::exists(icon), qPrintable(icon));
        QVERIFY2(!item->icon().pixmap(16, 16).isNull(), qPrintable(icon));
        QCOMPARE(tools->toolName(row.id), QStringLiteral("m%1").arg(key.toLower()).mid(1));
        QCOMPARE(QString::fromLatin1(tool->metaObject()->className()), QStringLiteral("M") + key);

        QAction* action = m_form.action(QStringLiteral("action") + key);
        QVERIFY(action);
        QCOMPARE(item->toolAction(), action);
        QCOMPARE(action->property("TBK_TOOLID").toInt(), row.id);
        QVERIFY(action->isEnabled() && action->isCheckable());
        QCOMPARE(action->actionGroup(), tools->actionGroup(row.group));

        QString barName = key + QStringLiteral("Bar");
        barName[0] = barName.at(0).toLower();
        QToolBar* bar = m_form.toolBar(barName);
        QCOMPARE(item->toolBars(), bar ? QList<QToolBar*>{bar} : QList<QToolBar*>());
        QVERIFY(item->dockWidgets().isEmpty());
    }
    // The mesh has a name and an icon, and nothing else.
    QVERIFY(!tools->tool(MTool::MeshTool) && !tools->item(MTool::MeshTool));
    QVERIFY(tools->toolName(MTool::MeshTool).isEmpty());
    QVERIFY(QFile::exists(QStringLiteral(":/icons/tools/mesh-tool.ico")));
    QVERIFY(QFile::exists(QStringLiteral(":/icons/tools/eraser-tool.ico")));
    // The overlays' group lets any number of actions be on.
    QVERIFY(tools->actionGroup(0)->isExclusive());
    QVERIFY(!tools->actionGroup(1)->isExclusive());

    // After init the brush is the one tool of group 0 on.
    QCOMPARE(tools->currentToolId(), int(MTool::BrushTool));
    QCOMPARE(checkedGroupZeroActions(), QList<QAction*>{m_form.action(QStringLiteral("actionBrushTool"))});
    for (int id : tools->toolIds())
        QCOMPARE(tools->tool(id)->visible(), id == MTool::BrushTool);
}

void TestMTools::activationSwitchesExactlyOneTool()
{
    MTools* tools = MTools::instance();
    MTool* brush = tools->tool(MTool::BrushTool);
    MTool* line = tools->tool(MTool::LineTool);
    MTool* selection = tools->tool(MTool::SelectionTool);
    QToolBar* brushBar = m_form.toolBar(QStringLiteral("brushToolBar"));
    QToolBar* selectionBar = m_form.toolBar(QStringLiteral("selectionToolBar"));
    QVERIFY(!brushBar->isHidden());

    // By the user's click on the action.
    QSignalSpy brushVisible(brush, &MTool::visibleChanged);
    QSignalSpy toolChanged(tools, &MTools::toolChanged);
    m_form.action(QStringLiteral("actionLineTool"))->trigger();
    QCOMPARE(tools->currentToolId(), int(MTool::LineTool));
    QCOMPARE(brushVisible.size(), 1);
    QCOMPARE(brushVisible.at(0).at(0).toBool(), false);
    QVERIFY(!brush->visible() && line->visible());
    QVERIFY(!tools->item(MTool::BrushTool)->active() && tools->item(MTool::LineTool)->active());
    QCOMPARE(checkedGroupZeroActions(), QList<QAction*>{m_form.action(QStringLiteral("actionLineTool"))});
    QVERIFY(brushBar->isHidden());
    QCOMPARE(toolChanged.size(), 1);
    QCOMPARE(toolChanged.at(0).at(0).value<MTool*>(), line);

    // By a call: the old tool is off before activate returns.
    QSignalSpy lineVisible(line, &MTool::visibleChanged);
    tools->activate(MTool::SelectionTool, true);
    QCOMPARE(lineVisible.size(), 1);
    QVERIFY(!line->visible() && selection->visible());
    QCOMPARE(tools->currentTool(), selection);
    QCOMPARE(checkedGroupZeroActions(),
             QList<QAction*>{m_form.action(QStringLiteral("actionSelectionTool"))});
    QVERIFY(!selectionBar->isHidden());

    // Again: nothing at all.
    QSignalSpy again(tools, &MTools::toolChanged);
    QSignalSpy itemActive(tools->item(MTool::SelectionTool), &MInterfaceItem::activeChanged);
    QSignalSpy selectionChanged(selection, &MTool::toolChanged);
    QSignalSpy selectionVisible(selection, &MTool::visibleChanged);
    tools->activate(MTool::SelectionTool, true);
    m_form.action(QStringLiteral("actionSelectionTool"))->trigger();
    QCOMPARE(again.size(), 0);
    QCOMPARE(itemActive.size(), 0);
    QCOMPARE(selectionChanged.size(), 0);
    QCOMPARE(selectionVisible.size(), 0);
    QVERIFY(!selectionBar->isHidden());
    QCOMPARE(checkedGroupZeroActions().size(), 1);

    // An overlay goes on beside the current tool, and off by its action.
    MTool* symmetry = tools->tool(MTool::SymmetryTool);
    QToolBar* symmetryBar = m_form.toolBar(QStringLiteral("symmetryToolBar"));
    m_form.action(QStringLiteral("actionSymmetryTool"))->trigger();
    QVERIFY(symmetry->visible() && selection->visible());
    QCOMPARE(tools->currentToolId(), int(MTool::SelectionTool));
    QVERIFY(m_form.action(QStringLiteral("actionSymmetryTool"))->isChecked());
    QVERIFY(!symmetryBar->isHidden());
    tools->activate(MTool::GridTool, true);
    QVERIFY(symmetry->visible() && tools->tool(MTool::GridTool)->visible());
    QCOMPARE(checkedGroupZeroActions().size(), 1);
    m_form.action(QStringLiteral("actionSymmetryTool"))->trigger();
    QVERIFY(!symmetry->visible());
    QVERIFY(symmetryBar->isHidden());
    tools->activate(MTool::GridTool, false);
    QVERIFY(!m_form.action(QStringLiteral("actionGridTool"))->isChecked());

    // hideInterface hides the tool bars of every tool, active or not.
    tools->hideInterface();
    QVERIFY(selectionBar->isHidden());
}

void TestMTools::eventsGoToOverlaysThenCurrentTool()
{
    addSpies();
    MTools* tools = MTools::instance();
    QVERIFY(!tools->tool(MTool::BrushTool)->visible());

    // An overlay that takes the press takes the drag and the release; the
    // current tool sees none of them.
    m_first->set_visible(true);
    m_first->pressAnswer = true;
    m_second->pressAnswer = true;
    drag(m_view,
         {QPointF(100, 100), QPointF(120, 110), QPointF(140, 120), QPointF(160, 130), QPointF(180, 140)});
    QCOMPARE(m_first->presses.size(), 1);
    QVERIFY(!m_first->moves.isEmpty());
    QCOMPARE(m_first->releases.size(), 1);
    QCOMPARE(m_current->total(), 0);
    QCOMPARE(m_second->total(), 0);
    QCOMPARE(tools->mouseTool(), m_first);
    const MEvent& press = m_first->presses.constFirst();
    QCOMPARE(press.type, 0);
    QCOMPARE(press.widgetPosition, QPointF(100, 100));
    QVERIFY(near(QPointF(press.positionX, press.positionY), QPointF(-100, -50)));
    // The stroke smoothing decides where the drags lie; their kind is the tools'.
    for (const MEvent& move : qAsConst(m_first->moves))
        QCOMPARE(move.type, 2);
    QCOMPARE(m_first->releases.constFirst().type, 3);

    // Two overlays that both take it: one wins and the other isn't asked.
    m_first->forget();
    m_second->set_visible(true);
    drag(m_view, {QPointF(100, 100), QPointF(150, 150)});
    SpyTool* winner = m_first->presses.isEmpty() ? m_second : m_first;
    SpyTool* loser = winner == m_first ? m_second : m_first;
    QCOMPARE(winner->presses.size(), 1);
    QCOMPARE(winner->releases.size(), 1);
    QCOMPARE(loser->total(), 0);
    QCOMPARE(m_current->total(), 0);

    // Overlays that decline are asked, and the current tool gets it all.
    m_first->forget();
    m_second->forget();
    m_first->pressAnswer = false;
    m_second->pressAnswer = false;
    drag(m_view,
         {QPointF(100, 100), QPointF(120, 120), QPointF(140, 140), QPointF(160, 160), QPointF(180, 180)});
    QCOMPARE(m_first->presses.size(), 1);
    QCOMPARE(m_second->presses.size(), 1);
    QCOMPARE(m_first->total(), 1);
    QCOMPARE(m_second->total(), 1);
    QCOMPARE(m_current->presses.size(), 1);
    QVERIFY(!m_current->moves.isEmpty());
    QCOMPARE(m_current->releases.size(), 1);
    QCOMPARE(tools->mouseTool(), m_current);

    // A hidden overlay is never asked, whatever it would answer.
    m_first->forget();
    m_second->forget();
    m_current->forget();
    m_second->set_visible(false);
    m_second->pressAnswer = true;
    drag(m_view, {QPointF(120, 100), QPointF(150, 150)});
    QCOMPARE(m_second->total(), 0);
    QCOMPARE(m_current->presses.size(), 1);

    // A release without its press is dropped.
    m_current->forget();
    m_first->forget();
    sendMouse(m_view, QEvent::MouseButtonRelease, QPointF(200, 200), Qt::LeftButton, Qt::NoButton);
    QCOMPARE(m_current->total(), 0);
    QCOMPARE(m_first->total(), 0);

    // Hover, double click and wheel reach the current tool alone.
    sendMouse(m_view, QEvent::MouseMove, QPointF(210, 220), Qt::NoButton, Qt::NoButton);
    QCOMPARE(m_current->hovers.size(), 1);
    QCOMPARE(m_current->hovers.constFirst().type, 1);
    sendMouse(m_view, QEvent::MouseButtonDblClick, QPointF(210, 220), Qt::LeftButton, Qt::LeftButton);
    QCOMPARE(m_current->doubleClicks.size(), 1);
    QCOMPARE(m_current->doubleClicks.constFirst().type, 5);
    // Alt alone turns the wheel over to the tools.
    QWheelEvent wheel(QPointF(210, 220), m_view->mapToGlobal(QPoint(210, 220)), QPoint(), QPoint(0, 120),
                      Qt::NoButton, Qt::AltModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(m_view, &wheel);
    QCOMPARE(m_current->wheels, 1);
    QCOMPARE(m_first->total(), 0);

    // Keys: a visible overlay that uses the key keeps it from the current tool.
    m_first->keyAnswer = true;
    sendKey(m_view, Qt::Key_Q);
    QCOMPARE(m_first->keys, 1);
    QCOMPARE(m_current->keys, 0);
    m_first->keyAnswer = false;
    sendKey(m_view, Qt::Key_Q);
    QCOMPARE(m_first->keys, 2);
    QCOMPARE(m_current->keys, 1);
    QCOMPARE(m_second->keys, 0);
    // The view's own keys go no further.
    sendKey(m_view, Qt::Key_Left);
    QCOMPARE(m_current->keys, 1);
    QCOMPARE(m_first->keys, 2);

    // The dispatcher answers for the keys.
    QKeyEvent key(QEvent::KeyPress, Qt::Key_Q, Qt::NoModifier);
    QVERIFY(!tools->dispatchKey(&key));
    m_current->keyAnswer = true;
    QVERIFY(tools->dispatchKey(&key));
}

void TestMTools::pressHeldBackForAccumulator()
{
    addSpies();
    m_current->accumulator = 5.0;

    // The press waits for the first move that reaches the tools, which
    // comes as the press.
    sendMouse(m_view, QEvent::MouseButtonPress, QPointF(100, 100), Qt::LeftButton, Qt::LeftButton);
    QCOMPARE(m_current->total(), 0);
    for (int x = 150; x <= 400; x += 50)
        sendMouse(m_view, QEvent::MouseMove, QPointF(x, 100), Qt::NoButton, Qt::LeftButton);
    QCOMPARE(m_current->presses.size(), 1);
    QCOMPARE(m_current->presses.constFirst().type, 0);
    QVERIFY(!m_current->moves.isEmpty());
    sendMouse(m_view, QEvent::MouseButtonRelease, QPointF(400, 100), Qt::LeftButton, Qt::NoButton);
    QCOMPARE(m_current->releases.size(), 1);
    QCOMPARE(m_current->presses.size(), 1);

    // A click without a move: the release stands in for the press, and
    // still ends what it began.
    m_current->forget();
    sendMouse(m_view, QEvent::MouseButtonPress, QPointF(300, 300), Qt::LeftButton, Qt::LeftButton);
    sendMouse(m_view, QEvent::MouseButtonRelease, QPointF(300, 300), Qt::LeftButton, Qt::NoButton);
    QCOMPARE(m_current->presses.size(), 1);
    QCOMPARE(m_current->releases.size(), 1);
    QCOMPARE(m_current->releases.constFirst().type, 3);

    // Without an accumulator distance the press comes at once.
    m_current->forget();
    m_current->accumulator = 0.0;
    sendMouse(m_view, QEvent::MouseButtonPress, QPointF(100, 100), Qt::LeftButton, Qt::LeftButton);
    QCOMPARE(m_current->presses.size(), 1);
    QCOMPARE(m_current->presses.constFirst().widgetPosition, QPointF(100, 100));
    sendMouse(m_view, QEvent::MouseButtonRelease, QPointF(100, 100), Qt::LeftButton, Qt::NoButton);
    QCOMPARE(m_current->releases.size(), 1);
}

void TestMTools::controlsComeFirst()
{
    addSpies();
    // Widget (100, 100) is canvas (-100, -50).
    auto* control = new SpyControl(QRectF(-120, -70, 40, 40), &m_paintLog);
    m_view->addControl(control);
    m_view->addControl(control);
    QCOMPARE(m_view->controls(), QVector<MControl*>{control});
    QCOMPARE(control->parent(), m_view);

    drag(m_view,
         {QPointF(100, 100), QPointF(105, 105), QPointF(110, 110), QPointF(115, 115), QPointF(120, 120)});
    QVERIFY(control->calls.size() >= 3);
    QCOMPARE(control->calls.constFirst(), QStringLiteral("press"));
    QVERIFY(control->calls.contains(QStringLiteral("move")));
    QCOMPARE(control->calls.constLast(), QStringLiteral("release"));
    QCOMPARE(m_current->total(), 0);

    // Outside its area the control declines and the tools go on.
    control->calls.clear();
    drag(m_view, {QPointF(400, 300), QPointF(450, 300)});
    QVERIFY(control->calls.isEmpty());
    QCOMPARE(m_current->presses.size(), 1);
    QCOMPARE(m_current->releases.size(), 1);

    // The control claims the cursor over it.
    m_view->setCursor(Qt::CrossCursor);
    m_view->updateCursor(QPointF(100, 100));
    QCOMPARE(m_view->cursor().shape(), Qt::ArrowCursor);

    delete control;
    QVERIFY(m_view->controls().isEmpty());
    m_current->forget();
    drag(m_view, {QPointF(100, 100), QPointF(110, 110)});
    QCOMPARE(m_current->presses.size(), 1);
}

void TestMTools::paintOrder()
{
    addSpies();
    auto* control = new SpyControl(QRectF(0, 0, 10, 10), &m_paintLog);
    m_view->addControl(control);
    m_paintLog.clear();
    grab();
    delete control;
    // Every tool is asked to paint, hidden or not, and the controls come after.
    const int controlAt = m_paintLog.indexOf(QStringLiteral("control"));
    QVERIFY2(controlAt >= 0, qPrintable(m_paintLog.join(QStringLiteral(", "))));
    for (const char* tool : {"tool 100", "tool 101", "tool 102"}) {
        const int at = m_paintLog.indexOf(QString::fromLatin1(tool));
        QVERIFY2(at >= 0 && at < controlAt, qPrintable(m_paintLog.join(QStringLiteral(", "))));
    }
    // The controls' GL pass comes with the layers, before any painter work.
    const int renderAt = m_paintLog.indexOf(QStringLiteral("control render"));
    QVERIFY2(renderAt >= 0 && renderAt < m_paintLog.indexOf(QStringLiteral("tool 100")),
             qPrintable(m_paintLog.join(QStringLiteral(", "))));
}

void TestMTools::hitTestThroughTheView()
{
    MTools* tools = MTools::instance();
    auto* symmetry = qobject_cast<MSymmetryTool*>(tools->tool(MTool::SymmetryTool));
    QVERIFY(symmetry);
    MToolValues* values = m_view->toolValues();
    QVERIFY(values->setPoints(MToolValues::SymmetryPoints, {QPointF(0, 0), QPointF(10, 5)}));
    const int half = symmetry->pointSize() / 2;
    QVERIFY(half >= 2);

    // Hidden: nothing is hit.
    QCOMPARE(symmetry->pointIndexAt(QPointF(300, 200)), -1);
    tools->activate(MTool::SymmetryTool, true);
    // (0, 0) lies at (300, 200) and (10, 5) at (320, 210) on screen.
    QCOMPARE(toWidget(QPointF(10, 5)), m_view->transform()->mapToWidget(QPointF(10, 5)));
    QCOMPARE(symmetry->pointIndexAt(QPointF(300, 200)), 0);
    QCOMPARE(symmetry->pointIndexAt(QPointF(300 + half - 1, 200 - half + 1)), 0);
    QCOMPARE(symmetry->pointIndexAt(QPointF(320, 210)), 1);
    QCOMPARE(symmetry->pointIndexAt(QPointF(320 - half + 1, 210 + half - 1)), 1);
    QCOMPARE(symmetry->pointIndexAt(QPointF(320 + half + 1, 210)), -1);
    QCOMPARE(symmetry->pointIndexAt(QPointF(10, 5)), -1);
    MEvent event;
    event.widgetPosition = QPointF(321, 211);
    QCOMPARE(symmetry->pointIndexAt(&event), 1);

    // Overlapping squares: the lower index wins where both hold the position.
    QVERIFY(values->setPoint(MToolValues::SymmetryPoints, 1, QPointF(1, 1)));
    QCOMPARE(symmetry->pointIndexAt(QPointF(301, 201)), 0);
    QCOMPARE(symmetry->pointIndexAt(QPointF(302 + half, 202)), 1);

    // The cursor: the overlay's over a point, the current tool's elsewhere.
    m_view->updateCursor(QPointF(300, 200));
    QCOMPARE(m_view->cursor().shape(), Qt::SizeAllCursor);
    QCOMPARE(symmetry->cursor().shape(), Qt::SizeAllCursor);
    m_view->updateCursor(QPointF(600, 400));
    QCOMPARE(m_view->cursor().shape(), tools->currentTool()->cursor().shape());
    QVERIFY(m_view->cursor().shape() != Qt::SizeAllCursor);
    QVERIFY(!symmetry->updateCursor(QPointF(600, 400), 1.0));
    QCOMPARE(symmetry->cursor().shape(), Qt::ArrowCursor);

    // Locked: nothing is hit, and the cursor stays the current tool's.
    symmetry->set_locked(true);
    QCOMPARE(symmetry->pointIndexAt(QPointF(300, 200)), -1);
    QVERIFY(!symmetry->updateCursor(QPointF(300, 200), 1.0));
    QCOMPARE(symmetry->cursor().shape(), Qt::ArrowCursor);
    symmetry->set_locked(false);

    // Without a view: no hit, and every accessor answers empty.
    tools->set_widget(nullptr);
    QCOMPARE(symmetry->pointIndexAt(QPointF(300, 200)), -1);
    QCOMPARE(symmetry->pointCount(), 0);
    QCOMPARE(symmetry->point(0), QPointF());
    QVERIFY(symmetry->pointList().isEmpty());
    QVERIFY(symmetry->polygon().isEmpty());
    QVERIFY(symmetry->value(MToolValues::SymmetryNumber).isNull());
    QCOMPARE(symmetry->intValue(MToolValues::GridSize), 0);
    QCOMPARE(symmetry->doubleValue(MToolValues::LeftDistance), 0.0);
    QVERIFY(!symmetry->canvas());
    symmetry->setPoint(0, QPointF(5, 5));
    symmetry->addPoint(QPointF(5, 5));
    symmetry->clearPoints();
    symmetry->setSymmetryNumber(4);
    QVERIFY(!tools->updateCursor(QPointF(300, 200), 1.0));
    tools->set_widget(m_view);
    QCOMPARE(values->points(MToolValues::SymmetryPoints), (QVector<QPointF>{{0, 0}, {1, 1}}));
    QCOMPARE(symmetry->symmetryNumber(), 1);
    QVERIFY(values->setPoints(MToolValues::SymmetryPoints, {QPointF(0, 0), QPointF(0, -200)}));
}

void TestMTools::valuesFollowTheView()
{
    MTools* tools = MTools::instance();
    MTool* ruler = tools->tool(MTool::RullerTool);
    ruler->setPoint(1, QPointF(7, 8));
    QCOMPARE(m_view->toolValues()->point(MToolValues::RullerPoints, 1), QPointF(7, 8));

    // Another document has its own values; this one keeps its own meanwhile.
    MWidget other;
    QSignalSpy widgetChanged(tools, &MTools::widgetChanged);
    tools->set_widget(&other);
    QCOMPARE(widgetChanged.size(), 1);
    QCOMPARE(ruler->point(1), QPointF(400, 0));
    QCOMPARE(ruler->polygon(), QPolygonF(QVector<QPointF>{QPointF(0, 0), QPointF(400, 0)}));
    ruler->setPoint(0, QPointF(-1, -2));
    tools->set_widget(m_view);
    QCOMPARE(ruler->point(0), QPointF(0, 0));
    QCOMPARE(ruler->point(1), QPointF(7, 8));
    QCOMPARE(other.toolValues()->point(MToolValues::RullerPoints, 0), QPointF(-1, -2));

    // A tool's setters signal a change only when there was one.
    QSignalSpy changed(ruler, &MTool::toolChanged);
    ruler->setPoint(1, QPointF(7, 8));
    ruler->setPoint(5, QPointF(1, 1));
    QCOMPARE(changed.size(), 0);
    ruler->setPoint(1, QPointF(400, 0));
    QCOMPARE(changed.size(), 1);
    ruler->removePoint(9);
    QCOMPARE(changed.size(), 1);
    ruler->setValue(MToolValues::GridSize, 40);
    QCOMPARE(changed.size(), 2);
    QCOMPARE(m_view->toolValues()->intValue(MToolValues::GridSize), 40);
    m_view->toolValues()->setValue(MToolValues::GridSize, 30);
}

void TestMTools::symmetryImages()
{
    MTools* tools = MTools::instance();
    auto* symmetry = qobject_cast<MSymmetryTool*>(tools->tool(MTool::SymmetryTool));
    // The axis y = x + 10 through the centre (10, 20).
    QVERIFY(
        m_view->toolValues()->setPoints(MToolValues::SymmetryPoints, {QPointF(10, 20), QPointF(110, 120)}));
    const QPointF pos(50, 20);

    // Hidden: the position alone, whatever the number.
    symmetry->setSymmetryNumber(3);
    QCOMPARE(symmetry->symmetryPoints(pos), QPolygonF(QVector<QPointF>{pos}));
    tools->activate(MTool::SymmetryTool, true);

    const auto check = [&](int n, const QVector<QPointF>& expected) {
        symmetry->setSymmetryNumber(n);
        const QPolygonF images = symmetry->symmetryPoints(pos);
        QVERIFY2(images.size() == expected.size(),
                 qPrintable(QStringLiteral("n = %1: %2").arg(n).arg(text(images))));
        for (int i = 0; i < expected.size(); ++i)
            QVERIFY2(near(images.at(i), expected.at(i), 1e-9),
                     qPrintable(QStringLiteral("n = %1, image %2: %3, expected %4")
                                    .arg(n)
                                    .arg(i)
                                    .arg(text(images.at(i)), text(expected.at(i)))));
    };
    // The mirror of (x, y) by y = x + 10 is (y - 10, x + 10).
    check(1, {pos, QPointF(10, 60)});
    // With the half turn about the centre of each: 2 c - p.
    check(2, {pos, QPointF(10, 60), QPointF(-30, 20), QPointF(10, -20)});
    // Three turns of 120 degrees, clockwise on screen, of (40, 0) about the centre.
    const double s = 40 * std::sqrt(3.0) / 2;
    check(3, {pos, QPointF(10 - 20, 20 + s), QPointF(10 - 20, 20 - s)});
    // 30: every 12 degrees; the half turn is image 15.
    symmetry->setSymmetryNumber(30);
    const QPolygonF thirty = symmetry->symmetryPoints(pos);
    QCOMPARE(thirty.size(), 30);
    QVERIFY(near(thirty.at(15), QPointF(-30, 20), 1e-9));
    const double a = 12.0 * M_PI / 180.0;
    QVERIFY2(near(thirty.at(1), QPointF(10 + 40 * std::cos(a), 20 + 40 * std::sin(a)), 1e-9),
             qPrintable(text(thirty.at(1))));
    QVERIFY(near(thirty.at(29), QPointF(10 + 40 * std::cos(a), 20 - 40 * std::sin(a)), 1e-9));

    // On the axis the mirror is the position itself: two equal entries.
    symmetry->setSymmetryNumber(1);
    const QPolygonF onAxis = symmetry->symmetryPoints(QPointF(60, 70));
    QCOMPARE(onAxis.size(), 2);
    QVERIFY(near(onAxis.at(0), onAxis.at(1), 1e-9));

    // An axis of no length mirrors through the origin.
    QVERIFY(m_view->toolValues()->setPoints(MToolValues::SymmetryPoints, {QPointF(10, 20), QPointF(10, 20)}));
    QCOMPARE(symmetry->symmetryPoints(pos), QPolygonF(QVector<QPointF>{pos, -pos}));

    // The number: stored in the view's values, signalled on a change only.
    QSignalSpy number(symmetry, &MSymmetryTool::symmetryNumberChanged);
    symmetry->setSymmetryNumber(1);
    QCOMPARE(number.size(), 0);
    symmetry->setSymmetryNumber(6);
    QCOMPARE(number.size(), 1);
    QCOMPARE(number.at(0).at(0).toInt(), 6);
    QCOMPARE(m_view->toolValues()->intValue(MToolValues::SymmetryNumber), 6);
    symmetry->setSymmetryNumber(1);
    QVERIFY(m_view->toolValues()->setPoints(MToolValues::SymmetryPoints, {QPointF(0, 0), QPointF(0, -200)}));
}

void TestMTools::symmetryDrag()
{
    MTools* tools = MTools::instance();
    auto* symmetry = qobject_cast<MSymmetryTool*>(tools->tool(MTool::SymmetryTool));
    MToolValues* values = m_view->toolValues();
    QVERIFY(values->setPoints(MToolValues::SymmetryPoints, {QPointF(10, 20), QPointF(110, 120)}));
    tools->activate(MTool::SymmetryTool, true);

    // The centre drawn as a point: the point's fill beside the axis.
    const QPointF centre = toWidget(QPointF(10, 20));
    const QPoint beside = (centre + QPointF(3, -3)).toPoint();
    const QColor pointFill(0x33, 0x99, 0xFF);
    const auto isPointFill = [&pointFill](QRgb pixel) {
        return qAbs(qRed(pixel) - pointFill.red()) <= 30 && qAbs(qGreen(pixel) - pointFill.green()) <= 30 &&
               qAbs(qBlue(pixel) - pointFill.blue()) <= 30;
    };
    QVERIFY2(isPointFill(grab().pixel(beside)), qPrintable(QString::number(grab().pixel(beside), 16)));

    // Events as the view makes them: the widget position for the hit test,
    // the canvas position for the move.
    const auto eventAt = [](int type, const QPointF& canvasPoint) {
        MEvent event;
        event.type = type;
        event.button = Qt::LeftButton;
        event.positionX = canvasPoint.x();
        event.positionY = canvasPoint.y();
        event.widgetPosition = toWidget(canvasPoint);
        return event;
    };
    const auto dragPoints = [&](const QPointF& from, const QPointF& to) {
        MEvent press = eventAt(0, from);
        tools->dispatchPress(&press);
        MEvent halfway = eventAt(2, (from + to) / 2);
        tools->dispatchMove(&halfway);
        MEvent move = eventAt(2, to);
        tools->dispatchMove(&move);
        MEvent release = eventAt(3, to);
        tools->dispatchRelease(&release);
    };

    // Dragging the centre moves the whole axis: same direction, same length.
    dragPoints(QPointF(11, 19), QPointF(31, 29));
    QCOMPARE(tools->mouseTool(), symmetry);
    QCOMPARE(values->points(MToolValues::SymmetryPoints), (QVector<QPointF>{{31, 29}, {131, 129}}));
    QVERIFY(isPointFill(grab().pixel((toWidget(QPointF(31, 29)) + QPointF(3, -3)).toPoint())));

    // Dragging the end turns and stretches the axis about the centre.
    dragPoints(QPointF(131, 129), QPointF(151, 109));
    QCOMPARE(values->points(MToolValues::SymmetryPoints), (QVector<QPointF>{{31, 29}, {151, 109}}));

    // Through the view's own input the centre follows the pointer too; the
    // stroke smoothing decides how closely.
    const QPointF onScreen = toWidget(QPointF(31, 29));
    drag(m_view, {onScreen, onScreen + QPointF(10, 10), onScreen + QPointF(20, 20),
                  onScreen + QPointF(30, 30), onScreen + QPointF(40, 40)});
    QCOMPARE(tools->mouseTool(), symmetry);
    const QVector<QPointF> followed = values->points(MToolValues::SymmetryPoints);
    QVERIFY2(followed.at(0).x() > 31 && followed.at(0).y() > 29, qPrintable(text(followed.at(0))));
    QVERIFY(near(followed.at(1) - followed.at(0), QPointF(120, 80), 1e-9));
    QVERIFY(values->setPoints(MToolValues::SymmetryPoints, {QPointF(31, 29), QPointF(151, 109)}));

    // Locked: no point is caught or drawn, and the images go on.
    symmetry->set_locked(true);
    const QPointF moved = toWidget(QPointF(31, 29));
    dragPoints(QPointF(31, 29), QPointF(60, 60));
    QVERIFY(tools->mouseTool() != symmetry);
    QCOMPARE(values->points(MToolValues::SymmetryPoints), (QVector<QPointF>{{31, 29}, {151, 109}}));
    QVERIFY(!isPointFill(grab().pixel((moved + QPointF(3, -3)).toPoint())));
    QCOMPARE(symmetry->symmetryPoints(QPointF(0, 0)).size(), 2);
    symmetry->set_locked(false);
    QVERIFY(values->setPoints(MToolValues::SymmetryPoints, {QPointF(0, 0), QPointF(0, -200)}));
}

void TestMTools::symmetryToolBar()
{
    MTools* tools = MTools::instance();
    auto* symmetry = qobject_cast<MSymmetryTool*>(tools->tool(MTool::SymmetryTool));
    QToolBar* bar = m_form.toolBar(QStringLiteral("symmetryToolBar"));
    auto* spin = bar->findChild<QSpinBox*>();
    QVERIFY(spin);
    QCOMPARE(spin->minimum(), 1);
    QCOMPARE(spin->maximum(), 30);
    bool labelled = false;
    for (const QLabel* label : bar->findChildren<QLabel*>())
        labelled = labelled || label->text() == QStringLiteral("Sym. number");
    QVERIFY(labelled);

    spin->setValue(5);
    QCOMPARE(symmetry->symmetryNumber(), 5);
    symmetry->setSymmetryNumber(7);
    QCOMPARE(spin->value(), 7);
    symmetry->setSymmetryNumber(1);
    QCOMPARE(spin->value(), 1);

    QAction* lock = nullptr;
    for (QAction* action : bar->actions()) {
        if (action->text() == QStringLiteral("Lock"))
            lock = action;
    }
    QVERIFY(lock);
    QVERIFY(lock->isCheckable());
    QCOMPARE(lock->toolTip(), QStringLiteral("Lock control points"));
    QVERIFY(!lock->icon().pixmap(16, 16).isNull());
    lock->trigger();
    QVERIFY(symmetry->locked());
    symmetry->set_locked(false);
    QVERIFY(!lock->isChecked());
}

void TestMTools::canDrawTellsWhy()
{
    DrawProbe probe;
    MCanvas* canvas = m_view->canvas();
    if (canvas->count() == 0)
        canvas->appendLayer();
    QVERIFY(canvas->canPaint());
    QVERIFY(probe.canDraw(true));
    QCOMPARE(probe.messages, 0);

    canvas->lockLayer();
    QVERIFY(!canvas->canPaint());
    QVERIFY(!probe.canDraw(false));
    QCOMPARE(probe.messages, 0);
    QVERIFY(!probe.canDraw(true));
    QCOMPARE(probe.messages, 1);
    canvas->lockLayer();
    QVERIFY(probe.canDraw(true));

    MTools::instance()->set_widget(nullptr);
    QVERIFY(!probe.canDraw(true));
    QCOMPARE(probe.messages, 2);
    MTools::instance()->set_widget(m_view);
}

QUILLMERE_TEST_MAIN(TestMTools)

#include "tst_mtools.moc"
