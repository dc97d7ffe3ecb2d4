#include "support/testenvironment.h"

#include "app/menum.h"
#include "brush/dcurveeditor.h"
#include "brush/mbrush.h"
#include "brush/mcurve.h"
#include "brush/mcurvewidget.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>

#include <cmath>

namespace {

// The editor with the question on closing answered in advance.
class AnsweredEditor : public DCurveEditor
{
public:
    using DCurveEditor::DCurveEditor;
    CloseAnswer answer = CancelAnswer;
    int asked = 0;

protected:
    CloseAnswer askToSave() override
    {
        ++asked;
        return answer;
    }
};

template <typename T> T* child(QObject* parent, const char* name)
{
    return parent->findChild<T*>(QString::fromLatin1(name));
}

} // namespace

class TestCurveEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qRegisterMetaType<MCurve*>(); }
    void widgetMapsBothWays();
    void draggingAPointMovesIt();
    void addingAndRemovingPoints();
    void editorAddsAndEditsACurveOnTheCopy();
    void editorRemovesACurve();
    void closingWithChangesAsks();
};

void TestCurveEditor::widgetMapsBothWays()
{
    MCurveWidget widget;
    widget.resize(216, 136);
    QCOMPARE(widget.toWidget(QPointF(0, 0)), QPointF(8, 128));
    QCOMPARE(widget.toWidget(QPointF(1, 1)), QPointF(208, 8));
    QCOMPARE(widget.toWidget(QPointF(0.25, 0.75)), QPointF(58, 38));
    QCOMPARE(widget.fromWidget(QPointF(58, 38)), QPointF(0.25, 0.75));
    // Outside the margin box the position is clamped into it.
    QCOMPARE(widget.fromWidget(QPointF(-40, 500)), QPointF(0, 0));
    QCOMPARE(widget.fromWidget(QPointF(400, 2)), QPointF(1, 1));
    // A box with no room gives 0.
    widget.setMinimumSize(0, 0);
    widget.resize(16, 10);
    QCOMPARE(widget.fromWidget(QPointF(12, 5)), QPointF(0, 0));
}

void TestCurveEditor::draggingAPointMovesIt()
{
    MCurve curve;
    curve.setInitType(MCurve::LineAscending3);
    MCurveWidget widget;
    widget.setCurve(&curve);
    widget.resize(216, 216);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    QSignalSpy moved(&widget, &MCurveWidget::pointMoved);
    QSignalSpy changed(&widget, &MCurveWidget::curveChanged);

    // A press beside the point, within twice its radius, takes it.
    const QPoint origin = widget.toWidget(QPointF(0.0, 0.0)).toPoint();
    QTest::mousePress(&widget, Qt::LeftButton, Qt::NoModifier, origin + QPoint(6, -3));
    QCOMPARE(widget.selectedIndex(), 0);
    QVERIFY(!widget.isModified());

    // Dragged past its right neighbour, the point keeps its index until the release.
    const QPoint target = widget.toWidget(QPointF(0.7, 0.2)).toPoint();
    QMouseEvent move(QEvent::MouseMove, target, widget.mapToGlobal(target), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(&widget, &move);
    QCOMPARE(moved.count(), 1);
    QCOMPARE(moved.at(0).at(0).toInt(), 0);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).value<MCurve*>(), &curve);
    QVERIFY(widget.isModified());
    QCOMPARE(curve.points(), (QVector<QPointF>{{0.7, 0.2}, {0.5, 0.5}, {1, 1}}));

    // Beyond the margin box the point stops at the border.
    const QPoint outside(widget.width() + 40, -25);
    QMouseEvent far(QEvent::MouseMove, outside, widget.mapToGlobal(outside), Qt::NoButton, Qt::LeftButton,
                    Qt::NoModifier);
    QApplication::sendEvent(&widget, &far);
    QCOMPARE(curve.pointAt(0), QPointF(1.0, 1.0));
    QApplication::sendEvent(&widget, &move);
    QCOMPARE(moved.count(), 3);

    QTest::mouseRelease(&widget, Qt::LeftButton, Qt::NoModifier, target);
    QCOMPARE(curve.points(), (QVector<QPointF>{{0.5, 0.5}, {0.7, 0.2}, {1, 1}}));
    QCOMPARE(widget.selectedIndex(), 1);
    QVERIFY(std::abs(curve.normalized(0.7) - 0.2) < 1e-9);

    // A press on empty space selects nothing, and moves change nothing.
    const int before = changed.count();
    QTest::mousePress(&widget, Qt::LeftButton, Qt::NoModifier, widget.toWidget(QPointF(0.3, 0.8)).toPoint());
    QCOMPARE(widget.selectedIndex(), -1);
    QTest::mouseMove(&widget, widget.toWidget(QPointF(0.6, 0.6)).toPoint());
    QTest::mouseRelease(&widget, Qt::LeftButton, Qt::NoModifier,
                        widget.toWidget(QPointF(0.6, 0.6)).toPoint());
    QCOMPARE(changed.count(), before);
    QCOMPARE(curve.pointCount(), 3);
}

void TestCurveEditor::addingAndRemovingPoints()
{
    MCurve curve;
    MCurveWidget widget;
    widget.resize(200, 200);
    widget.addPoint();
    widget.setCurve(&curve);
    QSignalSpy changed(&widget, &MCurveWidget::curveChanged);

    curve.setRange(0.0, 1.0, 0.0, 1.0);
    widget.addPoint();
    QCOMPARE(curve.points(), QVector<QPointF>{QPointF(0.5, 0.5)});
    curve.movePoint(0, QPointF(0.1, 0.9), true);
    widget.addPoint();
    QCOMPARE(curve.points(), (QVector<QPointF>{{0.1, 0.9}, {0.3, 0.7}}));
    widget.addPoint();
    QCOMPARE(curve.points().at(1), QPointF(0.2, 0.8));
    widget.addPoint();
    widget.addPoint();
    widget.addPoint();
    QCOMPARE(curve.pointCount(), 6);
    // Six is as many as the widget adds.
    widget.addPoint();
    QCOMPARE(curve.pointCount(), 6);
    QCOMPARE(changed.count(), 6);

    // Remove acts on the selection, through the curve's rule.
    widget.removePoint();
    QCOMPARE(curve.pointCount(), 6);
    widget.setInitType(MCurve::GaussianCurve);
    QCOMPARE(curve.pointCount(), 5);
    QCOMPARE(changed.count(), 7);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    QTest::mouseClick(&widget, Qt::LeftButton, Qt::NoModifier, widget.toWidget(QPointF(0.5, 1.0)).toPoint());
    QCOMPARE(widget.selectedIndex(), 2);
    widget.removePoint();
    QCOMPARE(widget.selectedIndex(), -1);
    QCOMPARE(curve.points(), (QVector<QPointF>{{0, 0}, {0.25, 0.25}, {0.75, 0.25}, {1, 0}}));

    widget.setInitType(MCurve::LineDescending2);
    QCOMPARE(curve.points(), (QVector<QPointF>{{0, 1}, {1, 0}}));
    QTest::mouseClick(&widget, Qt::LeftButton, Qt::NoModifier, widget.toWidget(QPointF(1, 0)).toPoint());
    QCOMPARE(widget.selectedIndex(), 1);
    widget.removePoint();
    QCOMPARE(curve.pointCount(), 2);
}

void TestCurveEditor::editorAddsAndEditsACurveOnTheCopy()
{
    MBrush brush;
    brush.curve(MEnum::bsHardness, MEnum::biSpeed)->setInitType(MCurve::CurveAscending3);
    AnsweredEditor editor(&brush, MEnum::bsHardness);
    QCOMPARE(editor.windowTitle(), QStringLiteral("bsHardness"));
    QVERIFY(editor.workingBrush() != &brush);

    auto* inputs = child<QListWidget>(&editor, "inputList");
    QCOMPARE(inputs->count(), int(MEnum::biCount));
    QCOMPARE(inputs->item(MEnum::biTotalTime)->text(), QStringLiteral("Total time"));
    QCOMPARE(inputs->item(MEnum::biTotalTime)->data(Qt::UserRole).toInt(), int(MEnum::biTotalTime));
    // The editor opens on the input that drives the setting, marked.
    QCOMPARE(editor.currentBrushInput(), int(MEnum::biSpeed));
    QCOMPARE(inputs->item(MEnum::biSpeed)->background().color(), DCurveEditor::curveMark());
    QCOMPARE(inputs->item(MEnum::biPressure)->background().style(), Qt::NoBrush);
    QVERIFY(!editor.isModified());

    auto* add = child<QPushButton>(&editor, "addCurveBtn");
    auto* remove = child<QPushButton>(&editor, "removeCurveBtn");
    auto* yMax = child<QDoubleSpinBox>(&editor, "yMaxSpinBox");
    auto* yMin = child<QDoubleSpinBox>(&editor, "yMinSpinBox");
    auto* modulo = child<QDoubleSpinBox>(&editor, "moduloSpinBox");
    auto* xMax = child<QDoubleSpinBox>(&editor, "xMaxSpinBox");
    QVERIFY(!add->isEnabled());
    QVERIFY(remove->isEnabled());
    QCOMPARE(xMax->value(), 100.0);
    QVERIFY(!xMax->isEnabled());

    // An input without a curve: controls off until one is added.
    inputs->setCurrentRow(MEnum::biXTilt);
    QCOMPARE(editor.currentBrushInput(), int(MEnum::biXTilt));
    QVERIFY(add->isEnabled());
    QVERIFY(!remove->isEnabled());
    QVERIFY(!yMax->isEnabled());
    QVERIFY(!editor.curveWidget()->curve());
    QCOMPARE(child<QComboBox>(&editor, "formulaComboBox")->currentData().toInt(), int(MCurve::Multiply));
    add->click();
    MCurve* curve = editor.workingBrush()->curveOrNull(MEnum::bsHardness, MEnum::biXTilt);
    QVERIFY(curve);
    QCOMPARE(editor.curveWidget()->curve(), curve);
    QVERIFY(yMax->isEnabled());
    QVERIFY(!add->isEnabled());
    QCOMPARE(inputs->item(MEnum::biXTilt)->background().color(), DCurveEditor::curveMark());
    QCOMPARE(child<QDoubleSpinBox>(&editor, "xMinSpinBox")->value(), -60.0);
    QVERIFY(editor.isModified());
    QVERIFY(!brush.hasCurve(MEnum::bsHardness, MEnum::biXTilt));

    // The range follows the curve's rule, and the spin box shows the result.
    yMax->setValue(4.0);
    yMin->setValue(4.0);
    QCOMPARE(curve->yMin(), 4.0);
    QCOMPARE(curve->yMax(), 4.01);
    QCOMPARE(yMax->value(), 4.01);
    modulo->setValue(30.0);
    QCOMPARE(curve->modulo(), 30.0);

    auto* formula = child<QComboBox>(&editor, "formulaComboBox");
    const int sinus = formula->findData(int(MCurve::Sinus));
    QCOMPARE(formula->itemText(sinus), QStringLiteral("Sinus"));
    formula->setCurrentIndex(sinus);
    editor.on_formulaComboBox_activated(sinus);
    QCOMPARE(curve->interpolationType(), int(MCurve::Sinus));

    auto* presets = child<QComboBox>(&editor, "initTypeComboBox");
    const int gaussian = presets->findText(QStringLiteral("GaussianCurve"));
    QVERIFY(gaussian >= 0);
    presets->setCurrentIndex(gaussian);
    editor.on_initTypeComboBox_activated(gaussian);
    QCOMPARE(curve->pointCount(), 5);
    child<QPushButton>(&editor, "invertYBtn")->click();
    QCOMPARE(curve->pointAt(2), QPointF(0.5, 0.0));
    child<QPushButton>(&editor, "btnAddPoint")->click();
    QCOMPARE(curve->pointCount(), 6);
    child<QPushButton>(&editor, "btnReset")->click();
    QCOMPARE(curve->pointAt(2), QPointF(0.5, 1.0));
    QCOMPARE(curve->pointCount(), 5);

    // Ok writes the copy back.
    child<QPushButton>(&editor, "btnOk")->click();
    QCOMPARE(editor.result(), int(QDialog::Accepted));
    QCOMPARE(editor.asked, 0);
    MCurve* written = brush.curveOrNull(MEnum::bsHardness, MEnum::biXTilt);
    QVERIFY(written);
    QVERIFY(written != curve);
    QCOMPARE(written->points(), curve->points());
    QCOMPARE(written->interpolationType(), int(MCurve::Sinus));
    QCOMPARE(written->modulo(), 30.0);
    QVERIFY(brush.hasCurve(MEnum::bsHardness, MEnum::biSpeed));
}

void TestCurveEditor::editorRemovesACurve()
{
    MBrush brush;
    brush.curve(MEnum::bsAngle, MEnum::biDirectionX);
    brush.curve(MEnum::bsAngle, MEnum::biDirectionY);
    AnsweredEditor editor(&brush, MEnum::bsAngle);
    QCOMPARE(editor.currentBrushInput(), int(MEnum::biDirectionX));
    child<QPushButton>(&editor, "removeCurveBtn")->click();
    QVERIFY(!editor.workingBrush()->hasCurve(MEnum::bsAngle, MEnum::biDirectionX));
    QVERIFY(!editor.curveWidget()->curve());
    auto* inputs = child<QListWidget>(&editor, "inputList");
    QCOMPARE(inputs->item(MEnum::biDirectionX)->background().style(), Qt::NoBrush);
    QVERIFY(brush.hasCurve(MEnum::bsAngle, MEnum::biDirectionX));
    child<QPushButton>(&editor, "btnOk")->click();
    QVERIFY(!brush.hasCurve(MEnum::bsAngle, MEnum::biDirectionX));
    QVERIFY(brush.hasCurve(MEnum::bsAngle, MEnum::biDirectionY));
}

void TestCurveEditor::closingWithChangesAsks()
{
    MBrush brush;
    {
        // Nothing changed: no question.
        AnsweredEditor editor(&brush, MEnum::bsRadius);
        editor.show();
        editor.close();
        QCOMPARE(editor.asked, 0);
        QVERIFY(!editor.isVisible());
    }
    AnsweredEditor editor(&brush, MEnum::bsRadius);
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    child<QPushButton>(&editor, "addCurveBtn")->click();

    editor.answer = AnsweredEditor::CancelAnswer;
    editor.close();
    QCOMPARE(editor.asked, 1);
    QVERIFY(editor.isVisible());
    QVERIFY(!brush.hasCurve(MEnum::bsRadius));

    editor.answer = AnsweredEditor::DiscardAnswer;
    QTest::keyClick(&editor, Qt::Key_Escape);
    QCOMPARE(editor.asked, 2);
    QVERIFY(!editor.isVisible());
    QVERIFY(!brush.hasCurve(MEnum::bsRadius));

    AnsweredEditor saving(&brush, MEnum::bsRadius);
    saving.show();
    QVERIFY(QTest::qWaitForWindowExposed(&saving));
    child<QPushButton>(&saving, "addCurveBtn")->click();
    saving.answer = AnsweredEditor::SaveAnswer;
    saving.close();
    QCOMPARE(saving.asked, 1);
    QVERIFY(!saving.isVisible());
    QCOMPARE(saving.result(), int(QDialog::Rejected));
    QVERIFY(brush.hasCurve(MEnum::bsRadius, MEnum::biPressure));
}

QUILLMERE_TEST_MAIN(TestCurveEditor)
#include "tst_curveeditor.moc"
