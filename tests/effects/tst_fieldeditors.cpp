#include "support/testenvironment.h"

#include "app/menum.h"
#include "effects/mcoloredit.h"
#include "effects/mconnector.h"
#include "effects/menumedit.h"
#include "effects/mfilenameedit.h"
#include "effects/mintspinbox.h"
#include "effects/msliderspinbox.h"

#include <memory>

namespace {

// A colour editor whose dialog answers by itself.
class AnsweringColorEdit : public MColorEdit
{
public:
    QColor answer;
    int asked = 0;

protected:
    QColor askColor(const QColor&) override
    {
        ++asked;
        return answer;
    }
};

// A file name editor whose dialog answers by itself.
class AnsweringFileNameEdit : public MFileNameEdit
{
public:
    QString answer;
    QString askedWith;

protected:
    QString askFileName(const QString& current) override
    {
        askedWith = current;
        return answer;
    }
};

// Translates one enumeration key in the context the enum editor uses.
class EnumTranslator : public QTranslator
{
public:
    QString translate(const char* context, const char* sourceText, const char* = nullptr,
                      int = -1) const override
    {
        if (qstrcmp(context, "Enum") == 0 && qstrcmp(sourceText, "TopEdge") == 0)
            return QStringLiteral("Haut");
        return QString();
    }
    bool isEmpty() const override { return false; }
};

// Counts the value changes of box through connector, in context.
void countChanges(MConnector& connector, QSpinBox* box, QObject* context, int& calls, int step = 1)
{
    connector.connect(box, QOverload<int>::of(&QSpinBox::valueChanged), context,
                      [&calls, step] { calls += step; });
}

} // namespace

class TestFieldEditors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void connectorCutsAndRestoresAll();
    void connectorForgetsWhatIsGone();
    void connectorPauseRestoresTheFormerState();

    void sliderShowsPercentages();
    void sliderLinearLandsOnSteps();
    void sliderKeepsValuesBeyondTheRange();
    void sliderLogMapping_data();
    void sliderLogMapping();
    void sliderRangeMovesTheHandleNotTheValue();
    void sliderWithoutTrackingWritesOnRelease();

    void intSpinBoxLeavesWheelToTheParentWithoutFocus();

    void enumEditShowsTranslatedKeysAndWritesValues();
    void colorEditAsksAndKeepsOnCancel();
    void fileNameEditReportsOnLeavingTheLine();
};

void TestFieldEditors::connectorCutsAndRestoresAll()
{
    QSpinBox first;
    QSpinBox second;
    int calls = 0;
    QObject context;
    MConnector connector;
    countChanges(connector, &first, &context, calls);
    countChanges(connector, &second, &context, calls);
    QCOMPARE(connector.count(), 2);

    first.setValue(1);
    second.setValue(1);
    QCOMPARE(calls, 2);

    connector.disconnectAll();
    QVERIFY(!connector.isConnected());
    first.setValue(2);
    second.setValue(2);
    QCOMPARE(calls, 2);

    // Added while cut: made with the others.
    QSpinBox third;
    countChanges(connector, &third, &context, calls);
    third.setValue(1);
    QCOMPARE(calls, 2);

    connector.connectAll();
    connector.connectAll();
    first.setValue(3);
    second.setValue(3);
    third.setValue(3);
    // Once each: connecting twice doesn't double a connection.
    QCOMPARE(calls, 5);

    connector.clear();
    QCOMPARE(connector.count(), 0);
    first.setValue(4);
    QCOMPARE(calls, 5);
}

void TestFieldEditors::connectorForgetsWhatIsGone()
{
    int calls = 0;
    QObject context;
    MConnector connector;
    auto sender = std::make_unique<QSpinBox>();
    QSpinBox kept;
    countChanges(connector, sender.get(), &context, calls);
    countChanges(connector, &kept, &context, calls);
    connector.disconnectAll();
    sender.reset();
    // Reconnecting with a sender gone is harmless and keeps the rest.
    connector.connectAll();
    kept.setValue(5);
    QCOMPARE(calls, 1);

    // A receiver gone takes its connections with it.
    auto receiver = std::make_unique<QObject>();
    countChanges(connector, &kept, receiver.get(), calls, 10);
    receiver.reset();
    connector.disconnectAll();
    connector.connectAll();
    kept.setValue(6);
    QCOMPARE(calls, 2);
}

void TestFieldEditors::connectorPauseRestoresTheFormerState()
{
    QSpinBox box;
    int calls = 0;
    MConnector connector;
    countChanges(connector, &box, &box, calls);
    {
        const MConnectorPause pause(connector);
        box.setValue(1);
        {
            const MConnectorPause inner(connector);
            box.setValue(2);
        }
        // The inner pause doesn't reconnect what the outer one cut.
        box.setValue(3);
    }
    QCOMPARE(calls, 0);
    box.setValue(4);
    QCOMPARE(calls, 1);
}

void TestFieldEditors::sliderShowsPercentages()
{
    MSliderSpinbox slider;
    slider.set_singleStep(0.01);
    slider.set_suffix(QStringLiteral(" %"));
    slider.set_isPercentage(true);
    slider.set_value(0.25);
    QCOMPARE(slider.spinBox()->value(), 25.0);
    QCOMPARE(slider.spinBox()->maximum(), 100.0);
    QCOMPARE(slider.spinBox()->singleStep(), 1.0);
    QCOMPARE(slider.spinBox()->decimals(), 0);
    QCOMPARE(slider.spinBox()->text(), QStringLiteral("25 %"));
    QCOMPARE(slider.slider()->value(), 250);

    QSignalSpy spy(&slider, &MSliderSpinbox::valueChanged);
    slider.spinBox()->setValue(40.0);
    QCOMPARE(slider.value(), 0.4);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toDouble(), 0.4);
    QCOMPARE(slider.slider()->value(), 400);

    // Turning percentage off shows the value itself.
    slider.set_isPercentage(false);
    QCOMPARE(slider.spinBox()->value(), 0.4);
    QCOMPARE(slider.spinBox()->decimals(), 2);
    QCOMPARE(slider.value(), 0.4);
}

void TestFieldEditors::sliderLinearLandsOnSteps()
{
    MSliderSpinbox slider;
    slider.set_minimum(10.0);
    slider.set_maximum(20.0);
    slider.set_singleStep(0.5);
    QSignalSpy spy(&slider, &MSliderSpinbox::valueChanged);
    slider.slider()->setValue(333);
    // 13.33 lands on the step at 13.5.
    QCOMPARE(slider.value(), 13.5);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(slider.spinBox()->value(), 13.5);
    QCOMPARE(slider.valueAt(0), 10.0);
    QCOMPARE(slider.valueAt(MSliderSpinbox::sliderResolution), 20.0);
    QCOMPARE(slider.positionOf(15.0), 500);
    // One step of the slider is one step of the value.
    QCOMPARE(slider.slider()->singleStep(), 50);
}

void TestFieldEditors::sliderKeepsValuesBeyondTheRange()
{
    MSliderSpinbox slider;
    QSignalSpy spy(&slider, &MSliderSpinbox::valueChanged);
    slider.set_value(5.0);
    QCOMPARE(slider.value(), 5.0);
    QCOMPARE(slider.slider()->value(), MSliderSpinbox::sliderResolution);
    QCOMPARE(slider.spinBox()->value(), 1.0);
    slider.set_value(-2.0);
    QCOMPARE(slider.value(), -2.0);
    QCOMPARE(slider.slider()->value(), 0);
    QCOMPARE(spy.count(), 2);
    // A value finer than the spin box shows survives.
    slider.set_value(0.123456);
    QCOMPARE(slider.value(), 0.123456);
}

void TestFieldEditors::sliderLogMapping_data()
{
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::newRow("positive range") << 0.1 << 100.0;
    QTest::newRow("range from zero") << 0.0 << 50.0;
    QTest::newRow("range across zero") << -5.0 << 5.0;
}

void TestFieldEditors::sliderLogMapping()
{
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    MSliderSpinbox slider;
    slider.set_isLogarithmic(true);
    slider.set_minimum(minimum);
    slider.set_maximum(maximum);
    slider.set_singleStep(0.01);

    QCOMPARE(slider.valueAt(0), minimum);
    QCOMPARE(slider.valueAt(MSliderSpinbox::sliderResolution), maximum);
    QCOMPARE(slider.positionOf(minimum), 0);
    QCOMPARE(slider.positionOf(maximum), MSliderSpinbox::sliderResolution);

    double previous = slider.valueAt(0);
    for (int position = 1; position <= MSliderSpinbox::sliderResolution; ++position) {
        const double value = slider.valueAt(position);
        QVERIFY2(value > previous, qPrintable(QStringLiteral("not rising at %1").arg(position)));
        QCOMPARE(slider.positionOf(value), position);
        previous = value;
    }
    // The lower end is spread: the middle of the slider is well below the middle of the range.
    QVERIFY(slider.valueAt(MSliderSpinbox::sliderResolution / 2) < (minimum + maximum) / 2);
    if (minimum > 0)
        QVERIFY(qAbs(slider.valueAt(MSliderSpinbox::sliderResolution / 2) - std::sqrt(minimum * maximum)) <
                1e-9);

    // Moving the slider writes the mapped value.
    QSignalSpy spy(&slider, &MSliderSpinbox::valueChanged);
    slider.slider()->setValue(250);
    QCOMPARE(slider.value(), slider.valueAt(250));
    QCOMPARE(spy.count(), 1);
}

void TestFieldEditors::sliderRangeMovesTheHandleNotTheValue()
{
    MSliderSpinbox slider;
    QSignalSpy value(&slider, &MSliderSpinbox::valueChanged);
    slider.set_minimum(-1.0);
    QCOMPARE(slider.spinBox()->minimum(), -1.0);
    QCOMPARE(value.count(), 0);
    QCOMPARE(slider.slider()->value(), 500);
    slider.set_showSpinBox(false);
    QVERIFY(slider.spinBox()->isHidden());
}

void TestFieldEditors::sliderWithoutTrackingWritesOnRelease()
{
    MSliderSpinbox slider;
    slider.set_sliderTracking(false);
    QVERIFY(!slider.slider()->hasTracking());
    QSignalSpy spy(&slider, &MSliderSpinbox::valueChanged);
    slider.slider()->setSliderDown(true);
    slider.slider()->setSliderPosition(700);
    // The number follows the handle, the value waits.
    QCOMPARE(slider.spinBox()->value(), 0.7);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(slider.value(), 0.0);
    slider.slider()->setSliderDown(false);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(slider.value(), 0.7);
}

void TestFieldEditors::intSpinBoxLeavesWheelToTheParentWithoutFocus()
{
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* spinBox = new MIntSpinBox(&window);
    auto* other = new QLineEdit(&window);
    layout->addWidget(spinBox);
    layout->addWidget(other);
    spinBox->setRange(0, 10);
    spinBox->setValue(5);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QApplication::setActiveWindow(&window);
    other->setFocus();

    const QPoint centre = spinBox->rect().center();
    QWheelEvent wheel(centre, spinBox->mapToGlobal(centre), QPoint(), QPoint(0, 120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(spinBox, &wheel);
    QCOMPARE(spinBox->value(), 5);
    QVERIFY(!wheel.isAccepted());

    spinBox->setFocus();
    QTRY_VERIFY(spinBox->hasFocus());
    QWheelEvent focused(centre, spinBox->mapToGlobal(centre), QPoint(), QPoint(0, 120), Qt::NoButton,
                        Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(spinBox, &focused);
    QCOMPARE(spinBox->value(), 6);
}

void TestFieldEditors::enumEditShowsTranslatedKeysAndWritesValues()
{
    EnumTranslator translator;
    QCoreApplication::installTranslator(&translator);
    MEnumEdit edit;
    edit.setEnum(MEnum::metaEnum(QStringLiteral("Edge")), {QStringLiteral(":/icons/logo/splash.png")});
    QCoreApplication::removeTranslator(&translator);

    QCOMPARE(edit.count(), 4);
    QCOMPARE(edit.itemText(0), QStringLiteral("LeftEdge"));
    QCOMPARE(edit.itemText(1), QStringLiteral("Haut"));
    QVERIFY(!edit.itemIcon(0).isNull());
    QVERIFY(edit.itemIcon(1).isNull());
    QCOMPARE(edit.value(), int(MEnum::LeftEdge));

    QSignalSpy spy(&edit, &MEnumEdit::valueChanged);
    edit.set_value(MEnum::BottomEdge);
    QCOMPARE(edit.currentIndex(), 3);
    edit.set_value(MEnum::BottomEdge);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toInt(), int(MEnum::BottomEdge));

    // Values needn't be rows: a gap in an enumeration is found by value.
    MEnumEdit sparse;
    sparse.addValue(QStringLiteral("Ten"), 10);
    sparse.addValue(QStringLiteral("Twenty"), 20);
    sparse.set_value(20);
    QCOMPARE(sparse.value(), 20);
    sparse.set_value(15);
    QCOMPARE(sparse.currentIndex(), -1);
    QCOMPARE(sparse.value(), -1);

    // An unknown enumeration fills nothing.
    MEnumEdit empty;
    empty.setEnum(MEnum::metaEnum(QStringLiteral("NoSuchEnum")));
    QCOMPARE(empty.count(), 0);
}

void TestFieldEditors::colorEditAsksAndKeepsOnCancel()
{
    AnsweringColorEdit edit;
    QSignalSpy spy(&edit, &MColorEdit::colorChanged);
    edit.answer = QColor(0, 128, 255, 100);
    edit.click();
    QCOMPARE(edit.asked, 1);
    QCOMPARE(edit.color(), QColor(0, 128, 255, 100));
    QCOMPARE(spy.count(), 1);

    // Cancelling the dialog changes nothing.
    edit.answer = QColor();
    edit.click();
    QCOMPARE(edit.asked, 2);
    QCOMPARE(edit.color(), QColor(0, 128, 255, 100));
    QCOMPARE(spy.count(), 1);

    // The swatch is painted in the colour.
    edit.set_color(QColor(0, 200, 0));
    edit.resize(80, 30);
    const QImage image = edit.grab().toImage();
    QCOMPARE(image.pixelColor(image.rect().center()), QColor(0, 200, 0));
}

void TestFieldEditors::fileNameEditReportsOnLeavingTheLine()
{
    AnsweringFileNameEdit edit;
    QSignalSpy spy(&edit, &MFileNameEdit::fileNameChanged);
    QTest::keyClicks(edit.lineEdit(), QStringLiteral("/a.png"));
    QCOMPARE(spy.count(), 0);
    QTest::keyClick(edit.lineEdit(), Qt::Key_Return);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(edit.fileName(), QStringLiteral("/a.png"));

    edit.answer = QStringLiteral("/b.png");
    edit.browseButton()->click();
    QCOMPARE(edit.askedWith, QStringLiteral("/a.png"));
    QCOMPARE(edit.fileName(), QStringLiteral("/b.png"));
    QCOMPARE(edit.lineEdit()->text(), QStringLiteral("/b.png"));
    QCOMPARE(spy.count(), 2);

    edit.answer.clear();
    edit.browseButton()->click();
    QCOMPARE(edit.fileName(), QStringLiteral("/b.png"));
    QCOMPARE(spy.count(), 2);
}

QUILLMERE_TEST_MAIN(TestFieldEditors)
#include "tst_fieldeditors.moc"
