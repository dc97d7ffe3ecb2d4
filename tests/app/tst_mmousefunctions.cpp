// The table of mouse functions: defaults, lookup order, the rule that a taken
// combination stays, and the settings array written and read back.

#include "support/testenvironment.h"

#include "app/mmousefunctions.h"
#include "app/msettings.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>

#include <climits>

class TestMMouseFunctions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void defaultsAndLookupOrder();
    void takenCombinationStays();
    void saveAndLoadRoundTrip();
    void badSettingsAreSkipped();
    void randomSettingsNeverBreakTheTable();

private:
    static void clearStoredArray();
};

void TestMMouseFunctions::clearStoredArray()
{
    MSettings::instance()->remove(QLatin1String(MSettings::mouseFunctionsGroup));
    MSettings::instance()->sync();
}

void TestMMouseFunctions::init()
{
    clearStoredArray();
}

void TestMMouseFunctions::cleanup()
{
    // The destructor writes the table; the next test starts from nothing.
    MMouseFunctions::destroy();
    clearStoredArray();
}

void TestMMouseFunctions::defaultsAndLookupOrder()
{
    MMouseFunctions functions;
    using F = MMouseFunctions;

    // Any tool: the right button drags, the wheel scales, rotates and pans.
    QCOMPARE(functions.function(-1, 2, Qt::NoModifier), int(F::CanvasDrag));
    QCOMPARE(functions.function(-1, -1, Qt::ControlModifier), int(F::CanvasRotate));
    QCOMPARE(functions.function(-1, -1, Qt::NoModifier), int(F::CanvasScale));
    QCOMPARE(functions.function(-1, -1, Qt::ShiftModifier), int(F::CanvasTranslateVertical));
    QCOMPARE(functions.function(-1, -1, Qt::ShiftModifier | Qt::ControlModifier),
             int(F::CanvasTranslateHorizontal));

    // The brush tool's own entries, and the shared ones beneath them.
    QCOMPARE(functions.function(0, 1, Qt::NoModifier), int(F::BrushStroke));
    QCOMPARE(functions.function(0, 1, Qt::ControlModifier), int(F::BrushLine));
    QCOMPARE(functions.function(0, -1, Qt::AltModifier), int(F::BrushRadius));
    QCOMPARE(functions.function(0, 2, Qt::NoModifier), int(F::CanvasDrag));
    QCOMPARE(functions.function(0, -1, Qt::NoModifier), int(F::CanvasScale));

    // Another tool doesn't see the brush tool's entries.
    QCOMPARE(functions.function(5, 1, Qt::NoModifier), int(F::NoFunction));
    QCOMPARE(functions.function(5, -1, Qt::AltModifier), int(F::NoFunction));
    QCOMPARE(functions.function(5, -1, Qt::NoModifier), int(F::CanvasScale));
    // Unknown combinations, and the keypad bit that isn't part of one.
    QCOMPARE(functions.function(-1, 2, Qt::AltModifier), int(F::NoFunction));
    QCOMPARE(functions.function(-1, -1, Qt::ControlModifier | Qt::KeypadModifier), int(F::CanvasRotate));

    // A tool's own entry wins over the shared one of the same combination.
    QVERIFY(functions.addFunction(F::UserTable, 4, -1, Qt::NoModifier, F::CanvasRotate));
    QCOMPARE(functions.function(4, -1, Qt::NoModifier), int(F::CanvasRotate));
    QCOMPARE(functions.function(3, -1, Qt::NoModifier), int(F::CanvasScale));

    // The user's table is what is looked up; the defaults stay apart.
    QCOMPARE(functions.function(F::DefaultTable, 4, -1, Qt::NoModifier), int(F::CanvasScale));
    functions.clear(F::UserTable);
    QCOMPARE(functions.function(-1, 2, Qt::NoModifier), int(F::NoFunction));
    functions.resetToDefaults();
    QCOMPARE(functions.function(-1, 2, Qt::NoModifier), int(F::CanvasDrag));
    QCOMPARE(functions.function(4, -1, Qt::NoModifier), int(F::CanvasScale));
}

void TestMMouseFunctions::takenCombinationStays()
{
    MMouseFunctions functions;
    using F = MMouseFunctions;

    QTest::ignoreMessage(QtDebugMsg, "combinaison déjà attribuée");
    QVERIFY(!functions.addFunction(F::UserTable, -1, 2, Qt::NoModifier, F::BrushLine));
    QCOMPARE(functions.function(-1, 2, Qt::NoModifier), int(F::CanvasDrag));

    // The same combination for another tool is free.
    QVERIFY(functions.addFunction(F::UserTable, 7, 2, Qt::NoModifier, F::BrushLine));
    QCOMPARE(functions.function(7, 2, Qt::NoModifier), int(F::BrushLine));
    QTest::ignoreMessage(QtDebugMsg, "combinaison déjà attribuée");
    QVERIFY(!functions.addFunction(F::UserTable, 7, 2, Qt::NoModifier, F::CanvasRotate));
    QCOMPARE(functions.function(7, 2, Qt::NoModifier), int(F::BrushLine));
    QCOMPARE(functions.table(F::UserTable).value(7).size(), 1);
}

void TestMMouseFunctions::saveAndLoadRoundTrip()
{
    using F = MMouseFunctions;
    MSettings* settings = MSettings::instance();
    {
        MMouseFunctions functions;
        functions.clear(F::UserTable);
        QVERIFY(
            functions.addFunction(F::UserTable, 3, 1, Qt::ShiftModifier | Qt::AltModifier, F::CanvasRotate));
        QVERIFY(functions.addFunction(F::UserTable, -1, 2, Qt::NoModifier, F::CanvasDrag));
        QVERIFY(functions.addFunction(F::UserTable, 0, -1, Qt::MetaModifier, F::BrushRadius));
        functions.save();
    }
    settings->sync();

    // The array as written: sorted by tool, button, modifiers.
    QCOMPARE(settings->beginReadArray(QStringLiteral("mouseFunctions")), 3);
    const int expected[3][4] = {{-1, 2, 0, F::CanvasDrag},
                                {0, -1, int(Qt::MetaModifier), F::BrushRadius},
                                {3, 1, int(Qt::ShiftModifier | Qt::AltModifier), F::CanvasRotate}};
    for (int i = 0; i < 3; ++i) {
        settings->setArrayIndex(i);
        QCOMPARE(settings->value(QStringLiteral("tool")).toInt(), expected[i][0]);
        QCOMPARE(settings->value(QStringLiteral("button")).toInt(), expected[i][1]);
        QCOMPARE(settings->value(QStringLiteral("modifiers")).toInt(), expected[i][2]);
        QCOMPARE(settings->value(QStringLiteral("function")).toInt(), expected[i][3]);
    }
    settings->endArray();
    QFile file(settings->fileName());
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(settings->fileName()));
    const QByteArray written = file.readAll();
    file.close();

    // A new object reads exactly that table, and writes the same bytes again.
    MMouseFunctions reread;
    QCOMPARE(reread.table(F::UserTable),
             (F::FunctionTable{
                 {-1, {{{2, 0}, int(F::CanvasDrag)}}},
                 {0, {{{-1, int(Qt::MetaModifier)}, int(F::BrushRadius)}}},
                 {3, {{{1, int(Qt::ShiftModifier | Qt::AltModifier)}, int(F::CanvasRotate)}}},
             }));
    QCOMPARE(reread.function(3, 1, Qt::ShiftModifier | Qt::AltModifier), int(F::CanvasRotate));
    // Nothing of the defaults came back: the stored table replaced them.
    QCOMPARE(reread.function(-1, -1, Qt::NoModifier), int(F::NoFunction));
    reread.save();
    settings->sync();
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), written);
    file.close();

    // load() into the default table replaces it by the stored one.
    QCOMPARE(reread.load(F::DefaultTable), 3);
    QCOMPARE(reread.table(F::DefaultTable), reread.table(F::UserTable));
}

void TestMMouseFunctions::badSettingsAreSkipped()
{
    using F = MMouseFunctions;
    MSettings* settings = MSettings::instance();
    settings->beginWriteArray(QStringLiteral("mouseFunctions"), 5);
    const QVariant rows[5][4] = {
        {QStringLiteral("x"), 1, 0, 6},          // tool isn't a number
        {0, 1, 0, 99},                           // no such function
        {0, 1, 0, -3},                           // no such function
        {QVariant(), QVariant(), QVariant(), 2}, // keys missing
        {-1, 1, int(Qt::ShiftModifier), F::CanvasTranslateHorizontal},
    };
    for (int i = 0; i < 5; ++i) {
        settings->setArrayIndex(i);
        const char* keys[4] = {"tool", "button", "modifiers", "function"};
        for (int k = 0; k < 4; ++k) {
            if (rows[i][k].isValid())
                settings->setValue(QLatin1String(keys[k]), rows[i][k]);
        }
    }
    settings->endArray();
    // A size that nothing backs is not believed.
    settings->setValue(QStringLiteral("mouseFunctions/size"), 2000000000);
    settings->sync();

    QElapsedTimer clock;
    clock.start();
    MMouseFunctions functions;
    QVERIFY2(clock.elapsed() < 5000, "reading a huge stored size took too long");
    QCOMPARE(functions.load(F::UserTable), 1);
    QCOMPARE(functions.function(-1, 1, Qt::ShiftModifier), int(F::CanvasTranslateHorizontal));
    QCOMPARE(functions.function(0, 1, Qt::NoModifier), int(F::NoFunction));
}

void TestMMouseFunctions::randomSettingsNeverBreakTheTable()
{
    using F = MMouseFunctions;
    QRandomGenerator random(20240611);
    MSettings* settings = MSettings::instance();
    const QVariant samples[] = {QVariant(),
                                QStringLiteral(""),
                                QStringLiteral("12"),
                                QStringLiteral("abc"),
                                QVariant(-1),
                                QVariant(0),
                                QVariant(1),
                                QVariant(2),
                                QVariant(8),
                                QVariant(9),
                                QVariant(1.5),
                                QVariant(QByteArray("\x00\xff", 2)),
                                QVariant(INT_MAX),
                                QVariant(INT_MIN),
                                QVariant(QStringList{"1", "2"})};
    const int sampleCount = int(sizeof(samples) / sizeof(samples[0]));
    for (int round = 0; round < 40; ++round) {
        clearStoredArray();
        const int size = random.bounded(12);
        settings->beginWriteArray(QStringLiteral("mouseFunctions"), size);
        for (int i = 0; i < size; ++i) {
            settings->setArrayIndex(i);
            for (const char* key : {"tool", "button", "modifiers", "function"})
                settings->setValue(QLatin1String(key), samples[random.bounded(sampleCount)]);
        }
        settings->endArray();
        if (random.bounded(4) == 0)
            settings->setValue(QStringLiteral("mouseFunctions/size"), samples[random.bounded(sampleCount)]);

        MMouseFunctions functions;
        const int count = functions.load(F::UserTable);
        QVERIFY(count >= 0 && count <= size);
        int entries = 0;
        for (const F::ToolTable& tool : functions.table(F::UserTable)) {
            for (int function : tool) {
                QVERIFY2(function >= F::NoFunction && function <= F::BrushLine,
                         qPrintable(QString::number(function)));
                ++entries;
            }
        }
        QCOMPARE(entries, count);
        functions.clear(F::UserTable);
    }
}

QUILLMERE_TEST_MAIN(TestMMouseFunctions)
#include "tst_mmousefunctions.moc"
