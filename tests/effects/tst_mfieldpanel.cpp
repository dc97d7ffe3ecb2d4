#include "support/testenvironment.h"

#include "app/menum.h"
#include "effects/mcoloredit.h"
#include "effects/mcurveowner.h"
#include "effects/menumedit.h"
#include "effects/mfield.h"
#include "effects/mfieldpanel.h"
#include "effects/mfilenameedit.h"
#include "effects/mintspinbox.h"
#include "effects/msliderspinbox.h"
#include "effects/mvalues.h"

#include <QIcon>

#include <memory>
#include <vector>

// An object with one property of every kind a panel edits.
class Settings : public QObject
{
    Q_OBJECT
    Q_PROPERTY(double opacity MEMBER opacity)
    Q_PROPERTY(bool enabled MEMBER enabled)
    Q_PROPERTY(int count MEMBER count)
    Q_PROPERTY(int choice MEMBER choice)
    Q_PROPERTY(int edge MEMBER edge)
    Q_PROPERTY(QColor tint MEMBER tint)
    Q_PROPERTY(QString image MEMBER image)
    Q_PROPERTY(double hidden MEMBER hidden)

public:
    double opacity = 0.5;
    bool enabled = false;
    int count = 2;
    int choice = 20;
    int edge = MEnum::TopEdge;
    QColor tint = QColor(10, 20, 30);
    QString image = QStringLiteral("/data/paper.png");
    double hidden = 0.75;
};

// An object whose settings can carry curves, as a brush does.
class CurvedSettings : public Settings, public MCurveOwner
{
    Q_OBJECT

public:
    bool hasCurve(int setting) const override { return curves.contains(setting); }
    QSet<int> curves;
};

class TestFieldPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void oneEditorOfTheRightKindPerVisibleField();
    void editorsTakeTheFieldsRanges();
    void labelsOnTopSpanTheGrid();
    void labelsBesideShareTheRow();
    void layoutOptionsShapeTheGrid();
    void editingWritesThePropertyAndReportsOnce_data();
    void editingWritesThePropertyAndReportsOnce();
    void aNumberTypedInAPickListIsWritten();
    void loadingFromTheObjectIsSilent();
    void aValueOutsideThePickListShowsAsText();
    void valuesTableBothWays();
    void missingValuesShowAsDefaults();
    void widgetsToValuesWritesEverythingSilently();
    void fieldsAreCopied();
    void rebuildingKeepsTheValues();
    void curveButtonsOnlyForCurveOwners();
    void curveButtonFollowsTheCurveAndAsksForIt();

private:
    // The fields of the Settings properties, and a string field no editor takes.
    static std::vector<std::unique_ptr<MField>> makeFields();
    static QVector<MField*> pointers(const std::vector<std::unique_ptr<MField>>& fields);
    // Row, column, row span and column span of a widget in the panel's grid.
    static QVector<int> gridPosition(QWidget* widget);
    // The names of the fields with an editor, in order.
    static const QByteArrayList shownNames;

    std::vector<std::unique_ptr<MField>> m_fields;
    std::unique_ptr<Settings> m_settings;
    std::unique_ptr<MFieldPanel> m_panel;
};

std::vector<std::unique_ptr<MField>> TestFieldPanel::makeFields()
{
    std::vector<std::unique_ptr<MField>> fields;
    auto add = [&fields](const char* name, int type, const QString& label) {
        fields.push_back(std::make_unique<MField>());
        MField* field = fields.back().get();
        field->name = name;
        field->type = type;
        field->label = label;
        field->id = int(fields.size()) - 1;
        return field;
    };
    MField* opacity = add("opacity", QVariant::Double, QStringLiteral("Opacity"));
    opacity->unit = QStringLiteral("px");
    opacity->step = 0.01;
    add("enabled", QVariant::Bool, QStringLiteral("Enabled"));
    MField* count = add("count", QVariant::Int, QStringLiteral("Count"));
    count->setMinimum(-3.7);
    count->setMaximum(10.9);
    count->step = 2.5;
    count->unit = QStringLiteral("items");
    MField* choice = add("choice", QVariant::Int, QStringLiteral("Choice"));
    choice->enumName = "enum";
    choice->addPick(QStringLiteral("Small"), 10);
    choice->addPick(QStringLiteral("Medium"), 20);
    choice->addPick(QStringLiteral("Large"), 30);
    MField* edge = add("edge", QVariant::Int, QStringLiteral("Edge"));
    edge->enumName = "Edge";
    add("tint", QVariant::Color, QStringLiteral("Tint"));
    MField* image = add("image", QVariant::Image, QStringLiteral("Image"));
    image->unit = QStringLiteral("file");
    MField* hidden = add("hidden", QVariant::Double, QStringLiteral("Hidden"));
    hidden->visible = false;
    add("title", QVariant::String, QStringLiteral("Title"));
    return fields;
}

const QByteArrayList TestFieldPanel::shownNames = {"opacity", "enabled", "count", "choice",
                                                   "edge",    "tint",    "image"};

QVector<MField*> TestFieldPanel::pointers(const std::vector<std::unique_ptr<MField>>& fields)
{
    QVector<MField*> result;
    for (const auto& field : fields)
        result.append(field.get());
    return result;
}

QVector<int> TestFieldPanel::gridPosition(QWidget* widget)
{
    auto* grid = qobject_cast<QGridLayout*>(widget->parentWidget()->layout());
    if (!grid)
        return {};
    int row = -1, column = -1, rowSpan = -1, columnSpan = -1;
    grid->getItemPosition(grid->indexOf(widget), &row, &column, &rowSpan, &columnSpan);
    return {row, column, rowSpan, columnSpan};
}

void TestFieldPanel::init()
{
    m_fields = makeFields();
    m_settings = std::make_unique<Settings>();
    m_panel = std::make_unique<MFieldPanel>();
    m_panel->setFields(pointers(m_fields));
    m_panel->setObject(m_settings.get());
}

void TestFieldPanel::cleanup()
{
    m_panel.reset();
    m_settings.reset();
    m_fields.clear();
}

void TestFieldPanel::oneEditorOfTheRightKindPerVisibleField()
{
    QVERIFY(qobject_cast<MSliderSpinbox*>(m_panel->editor("opacity")));
    QVERIFY(qobject_cast<QCheckBox*>(m_panel->editor("enabled")));
    QVERIFY(qobject_cast<MIntSpinBox*>(m_panel->editor("count")));
    auto* choice = qobject_cast<QComboBox*>(m_panel->editor("choice"));
    QVERIFY(choice);
    QVERIFY(!qobject_cast<MEnumEdit*>(choice));
    QVERIFY(qobject_cast<MEnumEdit*>(m_panel->editor("edge")));
    QVERIFY(qobject_cast<MColorEdit*>(m_panel->editor("tint")));
    QVERIFY(qobject_cast<MFileNameEdit*>(m_panel->editor("image")));
    // Invisible fields and types without an editor leave nothing behind.
    QVERIFY(!m_panel->editor("hidden"));
    QVERIFY(!m_panel->editor("title"));
    QVERIFY(!m_panel->label("hidden"));
    QVERIFY(!m_panel->label("title"));

    QCOMPARE(m_panel->findChildren<MSliderSpinbox*>().size(), 1);
    QCOMPARE(m_panel->findChildren<QCheckBox*>().size(), 1);
    QCOMPARE(m_panel->findChildren<MIntSpinBox*>().size(), 1);
    QCOMPARE(m_panel->findChildren<MEnumEdit*>().size(), 1);
    QCOMPARE(m_panel->findChildren<MColorEdit*>().size(), 1);
    QCOMPARE(m_panel->findChildren<MFileNameEdit*>().size(), 1);
    // Seven labels, and no others.
    QCOMPARE(m_panel->findChildren<QLabel*>().size(), 7);

    for (const QByteArray& name : shownNames)
        QCOMPARE(m_panel->editor(name)->property(MFieldPanel::fieldProperty).toByteArray(), name);

    // The unit shows in the spin boxes that show numbers, else beside the label.
    QCOMPARE(m_panel->label("opacity")->text(), QStringLiteral("Opacity"));
    QCOMPARE(qobject_cast<MSliderSpinbox*>(m_panel->editor("opacity"))->suffix(), QStringLiteral(" px"));
    QCOMPARE(m_panel->label("count")->text(), QStringLiteral("Count"));
    QCOMPARE(qobject_cast<QSpinBox*>(m_panel->editor("count"))->suffix(), QStringLiteral(" items"));
    QCOMPARE(m_panel->label("image")->text(), QStringLiteral("Image file"));
    QCOMPARE(m_panel->label("enabled")->text(), QStringLiteral("Enabled"));

    m_panel->set_showSpinBoxes(false);
    QCOMPARE(m_panel->label("opacity")->text(), QStringLiteral("Opacity px"));
    QVERIFY(qobject_cast<MSliderSpinbox*>(m_panel->editor("opacity"))->spinBox()->isHidden());
}

void TestFieldPanel::editorsTakeTheFieldsRanges()
{
    auto* count = qobject_cast<QSpinBox*>(m_panel->editor("count"));
    QCOMPARE(count->minimum(), -3);
    QCOMPARE(count->maximum(), 10);
    QCOMPARE(count->singleStep(), 2);

    auto* opacity = qobject_cast<MSliderSpinbox*>(m_panel->editor("opacity"));
    QCOMPARE(opacity->minimum(), 0.0);
    QCOMPARE(opacity->maximum(), 1.0);
    QCOMPARE(opacity->singleStep(), 0.01);
    QVERIFY(opacity->sliderTracking());

    auto* choice = qobject_cast<QComboBox*>(m_panel->editor("choice"));
    QVERIFY(choice->isEditable());
    QCOMPARE(choice->count(), 3);
    QCOMPARE(choice->itemText(2), QStringLiteral("Large"));
    QCOMPARE(choice->itemData(2), QVariant(30));

    auto* edge = qobject_cast<MEnumEdit*>(m_panel->editor("edge"));
    QCOMPARE(edge->count(), 4);
    QCOMPARE(edge->itemData(3).toInt(), int(MEnum::BottomEdge));
    QCOMPARE(edge->maximumWidth(), 200);

    m_panel->set_slidersTracking(false);
    QVERIFY(!qobject_cast<MSliderSpinbox*>(m_panel->editor("opacity"))->sliderTracking());

    // An int field whose enumeration isn't in MEnum is edited by number; one
    // that names the composition modes picks among those brushes offer.
    MField unknown;
    unknown.name = "unknown";
    unknown.type = QVariant::Int;
    unknown.enumName = "NoSuchEnum";
    MField modes;
    modes.name = "mode";
    modes.type = QVariant::Int;
    modes.enumName = "CompositionMode";
    m_panel->setFields({&unknown, &modes});
    QVERIFY(qobject_cast<MIntSpinBox*>(m_panel->editor("unknown")));
    // A step below one still steps.
    QCOMPARE(qobject_cast<QSpinBox*>(m_panel->editor("unknown"))->singleStep(), 1);
    auto* modeEdit = qobject_cast<MEnumEdit*>(m_panel->editor("mode"));
    QVERIFY(modeEdit);
    QCOMPARE(modeEdit->count(), 29);
    QCOMPARE(modeEdit->itemData(3).toInt(), 12);
    QCOMPARE(modeEdit->findData(1000), -1);
}

void TestFieldPanel::labelsOnTopSpanTheGrid()
{
    QVERIFY(m_panel->labelsOnTop());
    int row = 0;
    for (const QByteArray& name : shownNames) {
        QCOMPARE(gridPosition(m_panel->label(name)), (QVector<int>{row, 0, 1, 2}));
        QCOMPARE(gridPosition(m_panel->editor(name)), (QVector<int>{row + 1, 0, 1, 2}));
        row += 2;
    }
    auto* grid = qobject_cast<QGridLayout*>(m_panel->editor("opacity")->parentWidget()->layout());
    QCOMPARE(grid->verticalSpacing(), 2);
    QCOMPARE(grid->contentsMargins(), QMargins());
    // The spacer takes the row after the last editor.
    QCOMPARE(grid->rowCount(), row + 1);
    QVERIFY(grid->itemAtPosition(row, 0)->spacerItem());
}

void TestFieldPanel::labelsBesideShareTheRow()
{
    m_panel->set_labelsOnTop(false);
    int row = 0;
    for (const QByteArray& name : shownNames) {
        QCOMPARE(gridPosition(m_panel->label(name)), (QVector<int>{row, 0, 1, 1}));
        QCOMPARE(gridPosition(m_panel->editor(name)), (QVector<int>{row, 1, 1, 1}));
        ++row;
    }
}

void TestFieldPanel::layoutOptionsShapeTheGrid()
{
    QSignalSpy linesSpy(m_panel.get(), &MFieldPanel::addLinesChanged);
    m_panel->set_addLines(true);
    m_panel->set_addLines(true);
    QCOMPARE(linesSpy.count(), 1);
    int lines = 0;
    for (QLabel* label : m_panel->findChildren<QLabel*>()) {
        if (label->frameShape() == QFrame::HLine) {
            ++lines;
            QCOMPARE(label->styleSheet(), QStringLiteral("QFrame {color: darkGray;}"));
            // A line has its row to itself.
            QCOMPARE(gridPosition(label).at(1), 0);
        }
    }
    QCOMPARE(lines, 7);
    QCOMPARE(gridPosition(m_panel->label("enabled")).at(0), 3);

    m_panel->set_boldLabels(true);
    QCOMPARE(m_panel->label("tint")->styleSheet(), QStringLiteral("QLabel{font-weight: bold;}"));

    m_panel->set_addSpacer(false);
    auto* grid = qobject_cast<QGridLayout*>(m_panel->editor("opacity")->parentWidget()->layout());
    for (int i = 0; i < grid->count(); ++i)
        QVERIFY(!grid->itemAt(i)->spacerItem());

    QVERIFY(m_panel->findChildren<QScrollArea*>().isEmpty());
    m_panel->set_addScrollBox(true);
    const auto areas = m_panel->findChildren<QScrollArea*>();
    QCOMPARE(areas.size(), 1);
    QVERIFY(areas.first()->widget()->isAncestorOf(m_panel->editor("tint")));
}

void TestFieldPanel::editingWritesThePropertyAndReportsOnce_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QVariant>("expected");
    QTest::newRow("double") << QByteArray("opacity") << QVariant(0.25);
    QTest::newRow("bool") << QByteArray("enabled") << QVariant(true);
    QTest::newRow("int") << QByteArray("count") << QVariant(6);
    QTest::newRow("pick list") << QByteArray("choice") << QVariant(30);
    QTest::newRow("enum") << QByteArray("edge") << QVariant(int(MEnum::BottomEdge));
    QTest::newRow("colour") << QByteArray("tint") << QVariant(QColor(Qt::red));
    QTest::newRow("image") << QByteArray("image") << QVariant(QStringLiteral("/data/grain.png"));
}

void TestFieldPanel::editingWritesThePropertyAndReportsOnce()
{
    QFETCH(QByteArray, name);
    QFETCH(QVariant, expected);
    QSignalSpy spy(m_panel.get(), &MFieldPanel::valueChanged);
    QWidget* editor = m_panel->editor(name);
    QVERIFY(editor);

    // Each editor is changed the way the user changes it.
    if (auto* slider = qobject_cast<MSliderSpinbox*>(editor)) {
        slider->spinBox()->setValue(0.25);
    } else if (auto* checkBox = qobject_cast<QCheckBox*>(editor)) {
        checkBox->click();
    } else if (auto* enumEdit = qobject_cast<MEnumEdit*>(editor)) {
        enumEdit->setCurrentIndex(3);
    } else if (auto* combo = qobject_cast<QComboBox*>(editor)) {
        combo->setCurrentIndex(2);
    } else if (auto* spinBox = qobject_cast<QSpinBox*>(editor)) {
        spinBox->stepBy(2);
    } else if (auto* colorEdit = qobject_cast<MColorEdit*>(editor)) {
        colorEdit->set_color(Qt::red);
    } else if (auto* fileNameEdit = qobject_cast<MFileNameEdit*>(editor)) {
        fileNameEdit->lineEdit()->setText(QStringLiteral("/data/grain.png"));
        Q_EMIT fileNameEdit->lineEdit()->editingFinished();
    }

    QCOMPARE(m_settings->property(name.constData()), expected);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toByteArray(), name);
    QCOMPARE(spy.at(0).at(1), expected);
}

void TestFieldPanel::aNumberTypedInAPickListIsWritten()
{
    QSignalSpy spy(m_panel.get(), &MFieldPanel::valueChanged);
    auto* combo = qobject_cast<QComboBox*>(m_panel->editor("choice"));
    combo->lineEdit()->selectAll();
    QTest::keyClicks(combo->lineEdit(), QStringLiteral("25"));
    QTest::keyClick(combo->lineEdit(), Qt::Key_Return);
    QCOMPARE(m_settings->choice, 25);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(1), QVariant(25));

    // Typing an item's text picks the item, and its value is written.
    combo->lineEdit()->selectAll();
    QTest::keyClicks(combo->lineEdit(), QStringLiteral("Small"));
    QTest::keyClick(combo->lineEdit(), Qt::Key_Return);
    QCOMPARE(m_settings->choice, 10);
}

void TestFieldPanel::loadingFromTheObjectIsSilent()
{
    // The editors show the object as bound.
    QCOMPARE(qobject_cast<MSliderSpinbox*>(m_panel->editor("opacity"))->value(), 0.5);
    QCOMPARE(qobject_cast<QComboBox*>(m_panel->editor("choice"))->currentText(), QStringLiteral("Medium"));
    QCOMPARE(qobject_cast<MEnumEdit*>(m_panel->editor("edge"))->value(), int(MEnum::TopEdge));

    m_settings->opacity = 0.125;
    m_settings->enabled = true;
    m_settings->count = 8;
    m_settings->choice = 10;
    m_settings->edge = MEnum::LeftEdge;
    m_settings->tint = QColor(1, 2, 3, 4);
    m_settings->image = QStringLiteral("/data/canvas.png");

    QSignalSpy spy(m_panel.get(), &MFieldPanel::valueChanged);
    m_panel->valuesToWidgets();
    QCOMPARE(spy.count(), 0);

    QCOMPARE(qobject_cast<MSliderSpinbox*>(m_panel->editor("opacity"))->value(), 0.125);
    QVERIFY(qobject_cast<QCheckBox*>(m_panel->editor("enabled"))->isChecked());
    QCOMPARE(qobject_cast<QSpinBox*>(m_panel->editor("count"))->value(), 8);
    QCOMPARE(qobject_cast<QComboBox*>(m_panel->editor("choice"))->currentText(), QStringLiteral("Small"));
    QCOMPARE(qobject_cast<MEnumEdit*>(m_panel->editor("edge"))->value(), int(MEnum::LeftEdge));
    QCOMPARE(qobject_cast<MEnumEdit*>(m_panel->editor("edge"))->currentIndex(), 0);
    QCOMPARE(qobject_cast<MColorEdit*>(m_panel->editor("tint"))->color(), QColor(1, 2, 3, 4));
    QCOMPARE(qobject_cast<MFileNameEdit*>(m_panel->editor("image"))->fileName(),
             QStringLiteral("/data/canvas.png"));
    // Nothing went back to the object: the finer value survives the spin box's decimals.
    QCOMPARE(m_settings->opacity, 0.125);

    // After loading, editing reports again.
    qobject_cast<QSpinBox*>(m_panel->editor("count"))->stepBy(-1);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(m_settings->count, 6);
}

void TestFieldPanel::aValueOutsideThePickListShowsAsText()
{
    m_settings->choice = 42;
    QSignalSpy spy(m_panel.get(), &MFieldPanel::valueChanged);
    m_panel->valuesToWidgets();
    auto* combo = qobject_cast<QComboBox*>(m_panel->editor("choice"));
    QCOMPARE(combo->currentIndex(), -1);
    QCOMPARE(combo->currentText(), QStringLiteral("42"));
    QCOMPARE(spy.count(), 0);
    QCOMPARE(m_settings->choice, 42);
}

void TestFieldPanel::valuesTableBothWays()
{
    MValues values;
    values.setValue("opacity", 0.75);
    values.setValue("enabled", true);
    values.setValue("count", 4);
    values.setValue("choice", 30);
    values.setValue("edge", int(MEnum::RightEdge));
    values.setValue("tint", QColor(Qt::blue));
    values.setValue("image", QStringLiteral("/data/a.png"));
    m_panel->setObject(&values);
    QCOMPARE(m_panel->object(), &values);

    QCOMPARE(qobject_cast<MSliderSpinbox*>(m_panel->editor("opacity"))->value(), 0.75);
    QVERIFY(qobject_cast<QCheckBox*>(m_panel->editor("enabled"))->isChecked());
    QCOMPARE(qobject_cast<QSpinBox*>(m_panel->editor("count"))->value(), 4);
    QCOMPARE(qobject_cast<QComboBox*>(m_panel->editor("choice"))->currentText(), QStringLiteral("Large"));
    QCOMPARE(qobject_cast<MEnumEdit*>(m_panel->editor("edge"))->value(), int(MEnum::RightEdge));
    QCOMPARE(qobject_cast<MColorEdit*>(m_panel->editor("tint"))->color(), QColor(Qt::blue));
    QCOMPARE(qobject_cast<MFileNameEdit*>(m_panel->editor("image"))->fileName(),
             QStringLiteral("/data/a.png"));

    QSignalSpy panelSpy(m_panel.get(), &MFieldPanel::valueChanged);
    QSignalSpy valuesSpy(&values, &MValues::valueChanged);
    qobject_cast<QComboBox*>(m_panel->editor("choice"))->setCurrentIndex(0);
    QCOMPARE(values.value("choice"), QVariant(10));
    qobject_cast<MEnumEdit*>(m_panel->editor("edge"))->set_value(MEnum::LeftEdge);
    QCOMPARE(values.value("edge"), QVariant(int(MEnum::LeftEdge)));
    QCOMPARE(panelSpy.count(), 2);
    QCOMPARE(valuesSpy.count(), 2);
    // The object the panel was first bound to is left alone.
    QCOMPARE(m_settings->choice, 20);

    values.setValue("count", 9);
    values.setValue("tint", QColor(Qt::green));
    panelSpy.clear();
    valuesSpy.clear();
    m_panel->valuesToWidgets();
    QCOMPARE(qobject_cast<QSpinBox*>(m_panel->editor("count"))->value(), 9);
    QCOMPARE(qobject_cast<MColorEdit*>(m_panel->editor("tint"))->color(), QColor(Qt::green));
    QCOMPARE(panelSpy.count(), 0);
    QCOMPARE(valuesSpy.count(), 0);
}

void TestFieldPanel::missingValuesShowAsDefaults()
{
    MValues values;
    values.setValue("count", 3);
    m_panel->setObject(&values);
    QCOMPARE(qobject_cast<QSpinBox*>(m_panel->editor("count"))->value(), 3);
    QCOMPARE(qobject_cast<MSliderSpinbox*>(m_panel->editor("opacity"))->value(), 0.0);
    QVERIFY(!qobject_cast<QCheckBox*>(m_panel->editor("enabled"))->isChecked());
    QVERIFY(!qobject_cast<MColorEdit*>(m_panel->editor("tint"))->color().isValid());
    QVERIFY(qobject_cast<MFileNameEdit*>(m_panel->editor("image"))->fileName().isEmpty());
    // Loading wrote nothing into the table.
    QCOMPARE(values.count(), 1);

    // With no object the panel still reports edits and writes nowhere.
    m_panel->setObject(nullptr);
    QSignalSpy spy(m_panel.get(), &MFieldPanel::valueChanged);
    qobject_cast<QSpinBox*>(m_panel->editor("count"))->setValue(5);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(values.value("count"), QVariant(3));
}

void TestFieldPanel::widgetsToValuesWritesEverythingSilently()
{
    // The object changes behind the panel's back; writing the editors out
    // brings back what they show.
    m_settings->opacity = 0.9;
    m_settings->enabled = true;
    m_settings->count = 0;
    m_settings->choice = 30;
    m_settings->edge = MEnum::BottomEdge;
    m_settings->tint = Qt::white;
    m_settings->image.clear();
    m_settings->hidden = 0.1;

    QSignalSpy spy(m_panel.get(), &MFieldPanel::valueChanged);
    m_panel->widgetsToValues();
    QCOMPARE(spy.count(), 0);
    const Settings original;
    QCOMPARE(m_settings->opacity, original.opacity);
    QCOMPARE(m_settings->enabled, original.enabled);
    QCOMPARE(m_settings->count, original.count);
    QCOMPARE(m_settings->choice, original.choice);
    QCOMPARE(m_settings->edge, original.edge);
    QCOMPARE(m_settings->tint, original.tint);
    QCOMPARE(m_settings->image, original.image);
    // A hidden field has no editor and writes nothing.
    QCOMPARE(m_settings->hidden, 0.1);

    MValues values;
    m_panel->setObject(&values);
    qobject_cast<MSliderSpinbox*>(m_panel->editor("opacity"))->set_value(0.3);
    values.clear();
    m_panel->widgetsToValues();
    QCOMPARE(values.value("opacity"), QVariant(0.3));
    QCOMPARE(values.value("choice").isValid(), false);
    QVERIFY(!values.contains("hidden"));
    QVERIFY(!values.contains("title"));
    QCOMPARE(values.count(), 6);
}

void TestFieldPanel::fieldsAreCopied()
{
    m_fields.front()->label = QStringLiteral("Changed later");
    QCOMPARE(m_panel->field(0)->label, QStringLiteral("Opacity"));
    QCOMPARE(m_panel->fieldCount(), 9);
    QVERIFY(!m_panel->field(9));

    QPointer<QWidget> old = m_panel->editor("opacity");
    MField only;
    only.name = "count";
    only.type = QVariant::Int;
    only.setMaximum(10.0);
    m_panel->setFields({&only});
    QCOMPARE(m_panel->fieldCount(), 1);
    QVERIFY(!m_panel->editor("opacity"));
    QVERIFY(!m_panel->findChildren<MSliderSpinbox*>().contains(qobject_cast<MSliderSpinbox*>(old.data())));
    QCOMPARE(m_panel->findChildren<MIntSpinBox*>().size(), 1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(old.isNull());
    // The new editor is loaded from the object at once.
    QCOMPARE(qobject_cast<QSpinBox*>(m_panel->editor("count"))->value(), 2);
}

void TestFieldPanel::rebuildingKeepsTheValues()
{
    m_settings->count = 9;
    QSignalSpy spy(m_panel.get(), &MFieldPanel::valueChanged);
    m_panel->set_labelsOnTop(false);
    QCOMPARE(qobject_cast<QSpinBox*>(m_panel->editor("count"))->value(), 9);
    QCOMPARE(qobject_cast<MSliderSpinbox*>(m_panel->editor("opacity"))->value(), 0.5);
    QCOMPARE(spy.count(), 0);
    // The new editors are connected, and only once.
    qobject_cast<QSpinBox*>(m_panel->editor("count"))->setValue(3);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(m_settings->count, 3);
}

void TestFieldPanel::curveButtonsOnlyForCurveOwners()
{
    m_panel->set_showCurveButtons(true);
    // A plain object has no curves to offer.
    auto curveButtons = [this] {
        int count = 0;
        for (QToolButton* button : m_panel->findChildren<QToolButton*>())
            count += button->property(MFieldPanel::settingProperty).isValid() ? 1 : 0;
        return count;
    };
    QCOMPARE(curveButtons(), 0);
    QVERIFY(!m_panel->curveButton("opacity"));

    CurvedSettings curved;
    m_panel->setObject(&curved);
    QToolButton* button = m_panel->curveButton("opacity");
    QVERIFY(button);
    QCOMPARE(button->toolTip(), QStringLiteral("Edit dynamic settings"));
    QCOMPARE(button->property(MFieldPanel::settingProperty).toInt(), m_fields.front()->id);
    QCOMPARE(gridPosition(button), (QVector<int>{1, 3, 1, 1}));
    // With curve buttons the editors span three columns.
    QCOMPARE(gridPosition(m_panel->editor("opacity")), (QVector<int>{1, 0, 1, 3}));
    // Only double fields get one.
    QVERIFY(!m_panel->curveButton("count"));
    QCOMPARE(curveButtons(), 1);

    // A field that says it takes no curve gets no button.
    m_fields.front()->hasCurve = false;
    m_panel->setFields(pointers(m_fields));
    QVERIFY(!m_panel->curveButton("opacity"));

    m_fields.front()->hasCurve = true;
    m_panel->setFields(pointers(m_fields));
    m_panel->set_showCurveButtons(false);
    QVERIFY(!m_panel->curveButton("opacity"));
    m_panel->setObject(nullptr);
}

void TestFieldPanel::curveButtonFollowsTheCurveAndAsksForIt()
{
    CurvedSettings curved;
    m_panel->set_showCurveButtons(true);
    m_panel->setObject(&curved);
    QToolButton* button = m_panel->curveButton("opacity");
    QVERIFY(button);
    const auto shows = [button](const char* icon) {
        const QImage expected = QIcon(QString::fromLatin1(icon)).pixmap(16).toImage();
        return !expected.isNull() && button->icon().pixmap(16).toImage() == expected;
    };
    QVERIFY(shows(":/icons/plus.ico"));

    QSignalSpy spy(m_panel.get(), &MFieldPanel::editCurve);
    button->click();
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).value<QToolButton*>(), button);
    QCOMPARE(spy.at(0).at(1).toInt(), m_fields.front()->id);

    curved.curves.insert(m_fields.front()->id);
    QVERIFY(shows(":/icons/plus.ico"));
    m_panel->valuesToWidgets();
    QVERIFY(shows(":/icons/check.ico"));
    QVERIFY(!shows(":/icons/plus.ico"));
    m_panel->setObject(nullptr);
}

QUILLMERE_TEST_MAIN(TestFieldPanel)
#include "tst_mfieldpanel.moc"
