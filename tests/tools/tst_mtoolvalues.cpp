// The parts of the tool framework that need no view: the per-view values, the
// frame resize and its cursors, the control's dispatch, the guide line's style
// and the action list.

#include "support/testenvironment.h"

#include "app/mevent.h"
#include "app/msettings.h"
#include "tools/maction.h"
#include "tools/mactionlist.h"
#include "tools/mcontrol.h"
#include "tools/mstrokestyle.h"
#include "tools/mtool.h"
#include "tools/mtoolvalues.h"

#include <QAction>
#include <QColor>
#include <QSignalSpy>
#include <QWidget>

namespace {

QString text(const QRectF& r)
{
    return QStringLiteral("(%1, %2, %3 x %4)").arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height());
}

bool sameRect(const QRectF& a, const QRectF& b)
{
    return qAbs(a.x() - b.x()) < 1e-9 && qAbs(a.y() - b.y()) < 1e-9 && qAbs(a.width() - b.width()) < 1e-9 &&
           qAbs(a.height() - b.height()) < 1e-9;
}

// Records which handler the dispatch reached.
class RecordingControl : public MControl
{
public:
    QStringList calls;
    bool answer = true;

    bool mousePress(MEvent*) override { return record("press"); }
    bool mouseMove(MEvent*) override { return record("move"); }
    bool mouseRelease(MEvent*) override { return record("release"); }
    bool hoverMove(MEvent*) override { return record("hover"); }
    bool wheel(MEvent*) override { return record("wheel"); }
    bool keyPress(MEvent*) override { return record("key"); }

private:
    bool record(const char* name)
    {
        calls << QString::fromLatin1(name);
        return answer;
    }
};

} // namespace

class TestMToolValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaults();
    void valueAnswers();
    void pointAnswers();
    void missingListIsTheSharedEmptyOne();
    void resizeRectByHandle();
    void handleCursors();
    void controlDispatch();
    void guideLineStyle();
    void actionListRows();
};

void TestMToolValues::defaults()
{
    MToolValues values;
    QCOMPARE(values.value(MToolValues::SymmetryNumber), QVariant(1));
    QCOMPARE(values.points(MToolValues::SymmetryPoints), (QVector<QPointF>{{0, 0}, {0, -200}}));
    QCOMPARE(values.value(MToolValues::GridShowGrid), QVariant(false));
    QCOMPARE(values.value(MToolValues::GridColor).value<QColor>(), QColor(Qt::black));
    QCOMPARE(values.intValue(MToolValues::GridSize), 30);
    QCOMPARE(values.points(MToolValues::PerspectivePoints),
             (QVector<QPointF>{{0, 0}, {-2000, 0}, {2000, 0}, {0, 2000}}));
    QCOMPARE(values.value(MToolValues::LeftVanishingPoint), QVariant(true));
    QCOMPARE(values.value(MToolValues::RightVanishingPoint), QVariant(true));
    QCOMPARE(values.value(MToolValues::VerticalVanishingPoint), QVariant(false));
    QCOMPARE(values.doubleValue(MToolValues::LeftDistance), 2000.0);
    QCOMPARE(values.doubleValue(MToolValues::RightDistance), 2000.0);
    QCOMPARE(values.doubleValue(MToolValues::VerticalDistance), 100000.0);
    QVERIFY(values.hasPoints(MToolValues::LinePoints));
    QCOMPARE(values.pointCount(MToolValues::LinePoints), 0);
    QCOMPARE(values.doubleValue(MToolValues::ShapeWidth), 100.0);
    QCOMPARE(values.doubleValue(MToolValues::ShapeHeight), 100.0);
    QCOMPARE(values.points(MToolValues::ShapePoints), QVector<QPointF>{QPointF(0, 0)});
    QCOMPARE(values.doubleValue(MToolValues::ShapeAngle), 0.0);
    QCOMPARE(values.value(MToolValues::TextString).toString(), QStringLiteral("Text"));
    QCOMPARE(values.points(MToolValues::TextPoints), QVector<QPointF>{QPointF(0, 0)});
    QCOMPARE(values.doubleValue(MToolValues::TextAngle), 0.0);
    QCOMPARE(values.doubleValue(MToolValues::ImageWidth), 100.0);
    QCOMPARE(values.doubleValue(MToolValues::ImageHeight), 100.0);
    QCOMPARE(values.points(MToolValues::ImagePoints), QVector<QPointF>{QPointF(0, 0)});
    QCOMPARE(values.doubleValue(MToolValues::ImageAngle), 0.0);
    QVERIFY(values.hasPoints(MToolValues::SelectionPoints));
    QVERIFY(values.hasPoints(MToolValues::GradientPoints));
    QCOMPARE(values.points(MToolValues::RullerPoints), (QVector<QPointF>{{0, 0}, {400, 0}}));
    // Point lists and numbers don't share ids.
    QVERIFY(!values.hasValue(MToolValues::SymmetryPoints));
    QVERIFY(!values.hasPoints(MToolValues::SymmetryNumber));
}

void TestMToolValues::valueAnswers()
{
    MToolValues values;
    QSignalSpy changed(&values, &MToolValues::valueChanged);

    // The same value again changes nothing and says nothing; a number equal
    // in value counts as the same.
    QVERIFY(!values.setValue(MToolValues::SymmetryNumber, 1));
    QVERIFY(!values.setValue(MToolValues::GridSize, 30.0));
    QCOMPARE(changed.size(), 0);

    QVERIFY(values.setValue(MToolValues::SymmetryNumber, 4));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).toInt(), int(MToolValues::SymmetryNumber));
    QCOMPARE(changed.at(0).at(1), QVariant(4));
    QCOMPARE(values.intValue(MToolValues::SymmetryNumber), 4);

    // An unknown id first gets a null entry: a null value is then no change.
    QVERIFY(!values.hasValue(500));
    QVERIFY(!values.setValue(500, QVariant()));
    QVERIFY(values.hasValue(500));
    QCOMPARE(changed.size(), 1);
    QVERIFY(values.setValue(501, QStringLiteral("x")));
    QCOMPARE(changed.size(), 2);
    QCOMPARE(values.value(501).toString(), QStringLiteral("x"));
    // Reads of what isn't there are zero and null, and make nothing.
    QCOMPARE(values.intValue(502), 0);
    QCOMPARE(values.doubleValue(502), 0.0);
    QVERIFY(values.value(502).isNull());
    QVERIFY(!values.hasValue(502));
}

void TestMToolValues::pointAnswers()
{
    MToolValues values;
    QSignalSpy changed(&values, &MToolValues::valueChanged);
    const int ruler = MToolValues::RullerPoints;
    const int line = MToolValues::LinePoints;

    // setPoint: unknown id, index out of either end, the same value: false.
    QVERIFY(!values.setPoint(700, 0, QPointF(1, 1)));
    QVERIFY(!values.setPoint(ruler, -1, QPointF(1, 1)));
    QVERIFY(!values.setPoint(ruler, 2, QPointF(1, 1)));
    QVERIFY(!values.setPoint(ruler, 1, QPointF(400, 0)));
    QVERIFY(values.setPoint(ruler, 1, QPointF(5, 6)));
    QCOMPARE(values.point(ruler, 1), QPointF(5, 6));
    QVERIFY(!values.hasPoints(700));

    // addPoint: false for an unknown id only, even onto an empty list.
    QVERIFY(!values.addPoint(700, QPointF(1, 2)));
    QVERIFY(values.addPoint(line, QPointF(1, 2)));
    QVERIFY(values.addPoint(line, QPointF(3, 4)));
    QVERIFY(values.addPoint(line, QPointF(5, 6)));
    QCOMPARE(values.points(line), (QVector<QPointF>{{1, 2}, {3, 4}, {5, 6}}));

    // removePoint at an index.
    QVERIFY(!values.removePoint(700, 0));
    QVERIFY(!values.removePoint(line, 3));
    QVERIFY(!values.removePoint(line, -1));
    QVERIFY(values.removePoint(line, 1));
    QCOMPARE(values.points(line), (QVector<QPointF>{{1, 2}, {5, 6}}));

    // removePoint of the last: false on an empty list.
    QVERIFY(values.removePoint(line));
    QCOMPARE(values.points(line), QVector<QPointF>{QPointF(1, 2)});
    QVERIFY(values.removePoint(line));
    QVERIFY(!values.removePoint(line));
    QVERIFY(!values.removePoint(700));

    // clearPoint and setPoints: false for an unknown id only.
    QVERIFY(values.clearPoint(line));
    QVERIFY(!values.clearPoint(700));
    QVERIFY(values.setPoints(line, {QPointF(9, 9)}));
    QVERIFY(values.setPoints(line, {QPointF(9, 9)}));
    QVERIFY(!values.setPoints(700, {QPointF(9, 9)}));
    QVERIFY(values.clearPoint(ruler));
    QCOMPARE(values.pointCount(ruler), 0);

    // None of the point operations signals.
    QCOMPARE(changed.size(), 0);
}

void TestMToolValues::missingListIsTheSharedEmptyOne()
{
    MToolValues values;
    const QVector<QPointF>& missing = values.points(1234);
    QVERIFY(missing.isEmpty());
    QCOMPARE(&values.points(4321), &missing);
    QVERIFY(!values.hasPoints(1234));
    QCOMPARE(values.pointCount(1234), 0);
    QCOMPARE(values.point(1234, 0), QPointF());
    QCOMPARE(values.point(MToolValues::RullerPoints, 7), QPointF());
    QCOMPARE(values.point(MToolValues::RullerPoints, -1), QPointF());
    // Asking made no entry: adding to it is still refused.
    QVERIFY(!values.addPoint(1234, QPointF(1, 1)));
    QVERIFY(values.points(1234).isEmpty());
    // A known empty list is its own.
    QVERIFY(&values.points(MToolValues::LinePoints) != &missing);
}

void TestMToolValues::resizeRectByHandle()
{
    // 40 wide, 20 high: ratio 0.5, centre (30, 20).
    const QRectF start(10, 10, 40, 20);
    const struct
    {
        int handle;
        QPointF delta;
        bool free;
        QRectF expected;
    } cases[] = {
        // Corners. Bottom right: top left stays.
        {MTool::BottomRightHandle, {6, 4}, true, {10, 10, 46, 24}},
        {MTool::BottomRightHandle, {6, 4}, false, {10, 10, 46, 23}},
        {MTool::BottomRightHandle, {-100, -100}, true, {10, 10, 10, 10}},
        // Bottom left: the right and top edges stay.
        {MTool::BottomLeftHandle, {-6, 4}, true, {4, 10, 46, 24}},
        {MTool::BottomLeftHandle, {-6, 4}, false, {4, 10, 46, 23}},
        {MTool::BottomLeftHandle, {100, -100}, true, {40, 10, 10, 10}},
        // Top right: the left and bottom edges stay.
        {MTool::TopRightHandle, {6, -4}, true, {10, 6, 46, 24}},
        {MTool::TopRightHandle, {6, 0}, false, {10, 7, 46, 23}},
        // Top left: the right and bottom edges stay.
        {MTool::TopLeftHandle, {-6, -4}, true, {4, 6, 46, 24}},
        {MTool::TopLeftHandle, {100, 100}, true, {40, 20, 10, 10}},
        // Edges, free: the opposite edge stays.
        {MTool::RightHandle, {7, 99}, true, {10, 10, 47, 20}},
        {MTool::RightHandle, {-50, 0}, true, {10, 10, 10, 20}},
        {MTool::LeftHandle, {-7, 99}, true, {3, 10, 47, 20}},
        {MTool::LeftHandle, {50, 0}, true, {40, 10, 10, 20}},
        {MTool::BottomHandle, {99, 5}, true, {10, 10, 40, 25}},
        {MTool::BottomHandle, {0, -50}, true, {10, 10, 40, 10}},
        {MTool::TopHandle, {99, -5}, true, {10, 5, 40, 25}},
        {MTool::TopHandle, {0, 50}, true, {10, 20, 40, 10}},
        // Edges keeping the ratio grow about the centre by twice the move.
        {MTool::RightHandle, {5, 0}, false, {5, 7.5, 50, 25}},
        {MTool::LeftHandle, {-5, 0}, false, {5, 7.5, 50, 25}},
        {MTool::LeftHandle, {100, 0}, false, {25, 17.5, 10, 5}},
        {MTool::BottomHandle, {0, 5}, false, {0, 5, 60, 30}},
        {MTool::TopHandle, {0, -5}, false, {0, 5, 60, 30}},
        {MTool::TopHandle, {0, 100}, false, {20, 15, 20, 10}},
        // Move, rotate and anything else leave the rectangle.
        {MTool::MoveHandle, {5, 5}, true, start},
        {MTool::RotateHandle, {5, 5}, false, start},
        {MTool::NoHandle, {5, 5}, false, start},
        {42, {5, 5}, true, start},
    };
    for (const auto& c : cases) {
        const QRectF result = MTool::resizeRect(c.handle, c.delta, start, c.free);
        QVERIFY2(sameRect(result, c.expected), qPrintable(QStringLiteral("handle %1 %2: %3, expected %4")
                                                              .arg(c.handle)
                                                              .arg(c.free ? "free" : "ratio")
                                                              .arg(text(result), text(c.expected))));
    }
}

void TestMToolValues::handleCursors()
{
    const QCursor rotation(Qt::PointingHandCursor);
    const struct
    {
        int handle;
        Qt::CursorShape shape;
    } cases[] = {
        {1, Qt::SizeAllCursor},       {2, Qt::SizeVerCursor},   {3, Qt::SizeVerCursor},
        {4, Qt::SizeHorCursor},       {5, Qt::SizeHorCursor},   {6, Qt::SizeFDiagCursor},
        {9, Qt::SizeFDiagCursor},     {7, Qt::SizeBDiagCursor}, {8, Qt::SizeBDiagCursor},
        {10, Qt::PointingHandCursor},
    };
    for (const auto& c : cases)
        QCOMPARE(MTool::handleCursor(c.handle, rotation, true).shape(), c.shape);
    QCOMPARE(MTool::handleCursor(0, rotation, false).shape(), Qt::CrossCursor);
    QCOMPARE(MTool::handleCursor(0, rotation, true).shape(), Qt::ArrowCursor);
    QCOMPARE(MTool::handleCursor(11, rotation, false).shape(), Qt::CrossCursor);
}

void TestMToolValues::controlDispatch()
{
    RecordingControl control;
    QVERIFY(control.enabled() && control.visible());
    MEvent event;
    const char* expected[] = {"press", "hover", "move", "release"};
    for (int kind = 0; kind < 4; ++kind) {
        control.calls.clear();
        event.type = kind;
        QVERIFY(control.handleEvent(&event));
        QCOMPARE(control.calls, QStringList{QString::fromLatin1(expected[kind])});
    }
    // The handler's answer is the answer.
    control.answer = false;
    control.calls.clear();
    event.type = 2;
    QVERIFY(!control.handleEvent(&event));
    QCOMPARE(control.calls, QStringList{QStringLiteral("move")});
    // Wheel, double click and anything else reach no handler.
    control.answer = true;
    control.calls.clear();
    for (int kind : {4, 5, -1, 6}) {
        event.type = kind;
        QVERIFY(!control.handleEvent(&event));
    }
    QVERIFY(!control.handleEvent(nullptr));
    QVERIFY(control.calls.isEmpty());
    // The base answers no, and has no area.
    MControl plain;
    event.type = 0;
    QVERIFY(!plain.handleEvent(&event));
    QVERIFY(plain.boundingRect().isNull());

    QSignalSpy enabled(&plain, &MControl::enabledChanged);
    plain.set_enabled(true);
    plain.set_enabled(false);
    plain.set_enabled(false);
    QCOMPARE(enabled.size(), 1);
}

void TestMToolValues::guideLineStyle()
{
    MTool tool(MTool::LineTool);
    QCOMPARE(tool.pointId(), -1);
    QVERIFY(!tool.visible() && !tool.locked() && tool.applyOnDeactivate());
    QCOMPARE(tool.cursor().shape(), Qt::ArrowCursor);
    QCOMPARE(tool.defaultPen().color(), QColor(Qt::black));
    QCOMPARE(tool.defaultPen().width(), 1);
    QCOMPARE(tool.defaultBrush().color(), QColor(QStringLiteral("#3399FF")));
    QCOMPARE(tool.defaultBrush().style(), Qt::SolidPattern);

    const QPen pen = tool.lineStyle()->pen();
    QCOMPARE(pen.color(), QColor(QStringLiteral("#FF6666")));
    QCOMPARE(pen.widthF(), 1.0);
    // A dashed style gets the dash pattern of the style on top.
    QCOMPARE(pen.dashPattern(), (QVector<qreal>{5.0, 5.0}));

    MStrokeStyle style;
    QCOMPARE(style.pen().style(), Qt::SolidLine);
    QCOMPARE(style.pen().color(), QColor(Qt::darkGray));
    style.set_strokeStyle(MStrokeStyle::DotLine);
    style.set_dashLength(0.0);
    QCOMPARE(style.pen().style(), Qt::DotLine);
    style.set_strokeStyle(MStrokeStyle::NoStyle);
    style.set_dashLength(3.0);
    QCOMPARE(style.pen().style(), Qt::NoPen);

    // The point size follows the setting.
    QSignalSpy pointSize(&tool, &MTool::pointSizeChanged);
    const int before = tool.pointSize();
    MSettings::instance()->set_pointSize(before + 5);
    QCOMPARE(tool.pointSize(), before + 5);
    QCOMPARE(pointSize.size(), 1);
    MSettings::instance()->set_pointSize(before);
}

void TestMToolValues::actionListRows()
{
    QWidget window;
    const auto make = [&window](const char* name, const QString& label, const QString& tip,
                                const QString& shortcut) {
        auto* action = new QAction(label, &window);
        action->setObjectName(QString::fromLatin1(name));
        // An action without a tip shows its text as tip: set it apart.
        action->setToolTip(tip);
        if (!shortcut.isEmpty())
            action->setShortcut(QKeySequence(shortcut));
        return action;
    };
    make("actionOpen", QStringLiteral("Open..."), QString(), QStringLiteral("Ctrl+O"));
    make("actionSave", QStringLiteral("Save"), QStringLiteral("  Save the document  "),
         QStringLiteral("Ctrl+S"));
    make("", QStringLiteral("Unnamed"), QString(), QString());
    make("actionBlank", QString(), QString(), QStringLiteral("F5"));
    make("actionDots", QStringLiteral("..."), QString(), QString());
    // Deeper children count too.
    auto* panel = new QWidget(&window);
    auto* nested = new QAction(QStringLiteral("Zoom in"), panel);
    nested->setObjectName(QStringLiteral("actionZoomIn"));

    MActionList list;
    QCOMPARE(list.rebuild(&window), 3);
    QMap<QString, QPair<QString, QAction*>> rows;
    for (QObject* item : list.items()) {
        auto* row = qobject_cast<MAction*>(item);
        QVERIFY(row);
        rows.insert(row->description(), qMakePair(row->shortCut(), row->action()));
    }
    QCOMPARE(rows.keys(), (QStringList{QStringLiteral("Open"), QStringLiteral("Save the document"),
                                       QStringLiteral("Zoom in")}));
    QCOMPARE(rows.value(QStringLiteral("Open")).first, QStringLiteral("Ctrl+O"));
    QCOMPARE(rows.value(QStringLiteral("Save the document")).first, QStringLiteral("Ctrl+S"));
    QCOMPARE(rows.value(QStringLiteral("Zoom in")).first, QString());
    QCOMPARE(rows.value(QStringLiteral("Zoom in")).second, nested);

    // The columns are the row's properties.
    QVERIFY(list.columnOf("description") >= 0 && list.columnOf("shortCut") >= 0 &&
            list.columnOf("action") >= 0);
    const int row = list.indexOf(list.items().constFirst());
    QCOMPARE(list.data(list.index(row, list.columnOf("description")), Qt::EditRole).toString(),
             qobject_cast<MAction*>(list.items().constFirst())->description());

    // A rebuild replaces the rows.
    delete nested;
    QCOMPARE(list.rebuild(&window), 2);
    QCOMPARE(list.count(), 2);
    QCOMPARE(list.rebuild(nullptr), 0);
}

QUILLMERE_TEST_MAIN(TestMToolValues)

#include "tst_mtoolvalues.moc"
