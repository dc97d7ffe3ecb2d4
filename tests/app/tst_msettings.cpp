#include "support/testenvironment.h"

#include "app/mlogger.h"
#include "app/msettings.h"

#include <QAction>

class TestSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void everyKeyReadsItsDefaultFromAnEmptyStore();
    void settersEmitOnlyOnARealChange();
    void mipmapsAreForcedBackOnAtEachStart();
    void wrongTypesReadAsDefaultsAndAreLoggedOnce();
    void dialogTableFollowsThePages();
    void shortcutsSaveAndReload();
    void mangledStoreFileNeverBreaksReading();
};

void TestSettings::init()
{
    QSettings().clear();
    MSettings::destroy();
}

void TestSettings::cleanup()
{
    MSettings::destroy();
}

void TestSettings::everyKeyReadsItsDefaultFromAnEmptyStore()
{
    MSettings* settings = MSettings::instance();
    const QHash<QString, QVariant> expected = {
        {"saveLayout", true},
        {"userLangId", "en"},
        {"translateCompositionModes", true},
        {"showInstructions", true},
        {"textDuration", 5},
        {"openGlSdkUrl", "https://www.opengl.org/sdk/docs/man/html/"},
        {"colorListLength", 10},
        {"swatchSize", 16},
        {"pointSize", 12},
        {"defaultWidth", 1000},
        {"defaultHeight", 1000},
        {"paperType", 1},
        {"paperColor", QColor(Qt::white)},
        {"paperName", "paper-01.jpg"},
        {"showEmptyPaper", true},
        {"resolutionUnit", 0},
        {"undoLimit", 32},
        {"autoExtent", true},
        {"paintMargin", 20},
        {"widgetBackgroundColor", QColor(Qt::darkGray)},
        {"gridSize", 30},
        {"showGrid", false},
        {"gridColor", QColor(200, 200, 200)},
        {"alignToGrid", true},
        {"alignToGridSize", 10},
        {"smoothPixels", true},
        {"smoothMaxScale", 6.0},
        {"showThumbnails", true},
        {"showThumbnailsNamesOnly", false},
        {"thumbnailSize", 70},
        {"thumbnailOpacity", 0.8},
        {"thumbnailColor", QColor("#eeeeee")},
        {"thumbnailSelectionColor", QColor("#ffffff")},
        {"thumbnailPosition", 0},
        {"showTiling", false},
        {"editorTabSize", 4},
        {"editorFontName", "Courier new"},
        {"editorFontSize", 11},
        {"editorSmartTab", true},
        {"tableSelectionColor", QColor("#CCDDFF")},
        {"textSelectionColor", QColor(Qt::white)},
        {"generateMipmaps", true},
        {"lastFilesDir", QString()},
        {"lastFile", QString()},
        {"startupFile", QString()},
        {"recentFiles", QStringList()},
        {"firstUse", true},
        {"openGL", true},
        {"autoHidePanels", true},
        {"gradientPanelIndex", 0},
        {"paletteIndex", 0},
        {"geometry", QByteArray()},
        {"windowState", QByteArray()},
    };
    const QMetaObject* meta = settings->metaObject();
    QCOMPARE(meta->propertyCount() - meta->propertyOffset(), expected.size());
    for (auto it = expected.constBegin(); it != expected.constEnd(); ++it) {
        const int index = meta->indexOfProperty(it.key().toLatin1().constData());
        QVERIFY2(index >= 0, qPrintable(it.key()));
        const QMetaProperty property = meta->property(index);
        QVERIFY2(property.hasNotifySignal(), qPrintable(it.key()));
        QCOMPARE(QString::fromLatin1(property.notifySignal().name()), it.key() + QStringLiteral("Changed"));
        QVERIFY2(meta->indexOfSlot(QMetaObject::normalizedSignature(
                     QStringLiteral("set_%1(%2)").arg(it.key(), property.typeName()).toLatin1().constData())) >= 0,
                 qPrintable(it.key()));
        QCOMPARE(property.read(settings), it.value());
    }
}

void TestSettings::settersEmitOnlyOnARealChange()
{
    MSettings* settings = MSettings::instance();
    QSignalSpy duration(settings, &MSettings::textDurationChanged);
    QSignalSpy grid(settings, &MSettings::gridColorChanged);
    QSignalSpy recent(settings, &MSettings::recentFilesChanged);

    settings->set_textDuration(5); // the default, though nothing is stored
    settings->set_gridColor(QColor(200, 200, 200));
    settings->set_recentFiles({});
    QCOMPARE(duration.count() + grid.count() + recent.count(), 0);
    QVERIFY(!settings->contains(QStringLiteral("textDuration")));

    settings->set_textDuration(12);
    settings->set_textDuration(12);
    settings->set_gridColor(Qt::red);
    settings->set_recentFiles({QStringLiteral("/a.qmd"), QStringLiteral("/b.qmd")});
    settings->set_recentFiles({QStringLiteral("/a.qmd"), QStringLiteral("/b.qmd")});
    QCOMPARE(duration.count(), 1);
    QCOMPARE(duration.at(0).at(0).toInt(), 12);
    QCOMPARE(grid.count(), 1);
    QCOMPARE(recent.count(), 1);

    // Values survive the store object: a new one reads them back.
    MSettings::destroy();
    QCOMPARE(MSettings::instance()->textDuration(), 12);
    QCOMPARE(MSettings::instance()->gridColor(), QColor(Qt::red));
    QCOMPARE(MSettings::instance()->recentFiles(), QStringList({"/a.qmd", "/b.qmd"}));
}

void TestSettings::mipmapsAreForcedBackOnAtEachStart()
{
    MSettings::instance()->set_generateMipmaps(false);
    QCOMPARE(MSettings::instance()->generateMipmaps(), false);
    MSettings::destroy();
    QCOMPARE(QSettings().value(QStringLiteral("generateMipmaps")).toBool(), false);
    QCOMPARE(MSettings::instance()->generateMipmaps(), true);
}

void TestSettings::wrongTypesReadAsDefaultsAndAreLoggedOnce()
{
    {
        QSettings raw;
        raw.setValue(QStringLiteral("textDuration"), QStringLiteral("five"));
        raw.setValue(QStringLiteral("showGrid"), QStringLiteral("perhaps"));
        raw.setValue(QStringLiteral("gridColor"), QStringLiteral("not a colour"));
        raw.setValue(QStringLiteral("smoothMaxScale"), QStringLiteral("inf"));
        raw.setValue(QStringLiteral("userLangId"), QStringList({"fr", "en"}));
        raw.setValue(QStringLiteral("geometry"), 42);
        raw.setValue(QStringLiteral("recentFiles"), QVariantList({QStringLiteral("/a.qmd"), QColor(Qt::red)}));
        // Readable forms of the right type are accepted.
        raw.setValue(QStringLiteral("defaultWidth"), QStringLiteral("640"));
        raw.setValue(QStringLiteral("alignToGrid"), QStringLiteral("false"));
        raw.setValue(QStringLiteral("paperColor"), QStringLiteral("#102030"));
    }
    MSettings* settings = MSettings::instance();
    for (int pass = 0; pass < 2; ++pass) {
        QCOMPARE(settings->textDuration(), 5);
        QCOMPARE(settings->showGrid(), false);
        QCOMPARE(settings->gridColor(), QColor(200, 200, 200));
        QCOMPARE(settings->smoothMaxScale(), 6.0);
        QCOMPARE(settings->userLangId(), QStringLiteral("en"));
        QCOMPARE(settings->geometry(), QByteArray());
        QCOMPARE(settings->recentFiles(), QStringList());
        QCOMPARE(settings->defaultWidth(), 640);
        QCOMPARE(settings->alignToGrid(), false);
        QCOMPARE(settings->paperColor(), QColor(0x10, 0x20, 0x30));
    }
    QFile log(MLogger::logFilePath());
    QVERIFY(log.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(log.readAll());
    for (const char* key : {"textDuration", "showGrid", "gridColor", "smoothMaxScale", "userLangId", "geometry",
                            "recentFiles"}) {
        const QString line = QStringLiteral("MSettings::value: System error: The stored value of %1 has").arg(key);
        QCOMPARE(text.count(line, Qt::CaseInsensitive), 1);
    }
    QVERIFY(!text.contains(QStringLiteral("value of defaultWidth")));
}

void TestSettings::dialogTableFollowsThePages()
{
    MSettings* settings = MSettings::instance();
    QCOMPARE(MSettings::categories(),
             QStringList({"User", "Document", "Grid", "Display", "Editor", "Shortcuts"}));
    const QVector<MSettingItem>& items = settings->items();
    QCOMPARE(items.size(), 39);

    // Pages come in order, and every key of the table is a property of the store.
    int page = 0;
    for (const MSettingItem& item : items) {
        const int itemPage = MSettings::categories().indexOf(item.category);
        QVERIFY2(itemPage >= page, qPrintable(item.key));
        page = itemPage;
        QVERIFY2(settings->metaObject()->indexOfProperty(item.key.toLatin1().constData()) >= 0,
                 qPrintable(item.key));
        QVERIFY(!item.label().isEmpty());
        QVERIFY(item.isVisible);
    }
    QCOMPARE(items.first().key, QStringLiteral("saveLayout"));
    QCOMPARE(items.last().key, QStringLiteral("editorSmartTab"));

    const MSettingItem* undo = settings->item(QStringLiteral("undoLimit"));
    QVERIFY(undo);
    QCOMPARE(undo->label(), QStringLiteral("Undo/redo limit (8 to 64)"));
    QCOMPARE(undo->type, int(QVariant::Int));
    QCOMPARE(undo->minimum, 8.0);
    QCOMPARE(undo->maximum, 64.0);
    const MSettingItem* thumbnail = settings->item(QStringLiteral("thumbnailSize"));
    QCOMPARE(thumbnail->type, int(QVariant::Double));
    QCOMPARE(settings->item(QStringLiteral("paperType"))->enumName, QStringLiteral("PaperType"));
    QCOMPARE(settings->item(QStringLiteral("thumbnailPosition"))->enumName, QStringLiteral("Edge"));
    QCOMPARE(settings->item(QStringLiteral("editorFontName"))->type, int(QVariant::Font));
    QCOMPARE(settings->item(QStringLiteral("gridColor"))->type, int(QVariant::Color));
    QVERIFY(!settings->item(QStringLiteral("defaultWidth"))->hasMinimum());
    QVERIFY(!settings->item(QStringLiteral("generateMipmaps"))); // outside the dialog
}

void TestSettings::shortcutsSaveAndReload()
{
    MSettings* settings = MSettings::instance();
    auto makeWindow = [] {
        auto* window = new QWidget;
        auto* open = new QAction(QStringLiteral("Open"), window);
        open->setObjectName(QStringLiteral("actionOpen"));
        open->setShortcut(QKeySequence(QStringLiteral("Ctrl+O")));
        auto* save = new QAction(QStringLiteral("Save"), window);
        save->setObjectName(QStringLiteral("actionSave"));
        save->setShortcut(QKeySequence(QStringLiteral("Ctrl+S")));
        auto* anonymous = new QAction(QStringLiteral("Nameless"), window);
        anonymous->setShortcut(QKeySequence(QStringLiteral("Ctrl+N")));
        return window;
    };

    std::unique_ptr<QWidget> first(makeWindow());
    settings->loadShortcuts(first.get());
    QCOMPARE(settings->defaultShortcut(QStringLiteral("actionOpen")), QStringLiteral("Ctrl+O"));
    auto* open = first->findChild<QAction*>(QStringLiteral("actionOpen"));
    open->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+F2")));
    settings->saveShortcuts(first.get());
    QCOMPARE(settings->value(QStringLiteral("action/actionOpen")).toString(), QStringLiteral("Ctrl+Shift+F2"));
    QCOMPARE(settings->value(QStringLiteral("action/actionSave")).toString(), QStringLiteral("Ctrl+S"));
    QCOMPARE(settings->childGroups().contains(QStringLiteral("action")), true);

    // A new window with the same actions gets the saved shortcut, and the
    // default stays the one the program gave, not the user's.
    std::unique_ptr<QWidget> second(makeWindow());
    settings->loadShortcuts(second.get());
    QCOMPARE(second->findChild<QAction*>(QStringLiteral("actionOpen"))->shortcut(),
             QKeySequence(QStringLiteral("Ctrl+Shift+F2")));
    QCOMPARE(settings->defaultShortcut(QStringLiteral("actionOpen")), QStringLiteral("Ctrl+O"));
    settings->loadShortcuts(second.get());
    QCOMPARE(settings->defaultShortcut(QStringLiteral("actionOpen")), QStringLiteral("Ctrl+O"));
}

void TestSettings::mangledStoreFileNeverBreaksReading()
{
    // A store written by the program, then damaged byte by byte: every getter
    // still answers, with a value of its own type.
    MSettings* settings = MSettings::instance();
    // Colours go in as names: a damaged binary colour makes Qt's own reader
    // load an invalid enumeration value, which the sanitizer build stops on.
    settings->setValue(QStringLiteral("gridColor"), QStringLiteral("#010203"));
    settings->set_recentFiles({QStringLiteral("/a.qmd"), QStringLiteral("/b, c.qmd")});
    settings->set_geometry(QByteArray("\x00\x01" "binary" "\xff", 9));
    settings->set_thumbnailOpacity(0.25);
    settings->set_userLangId(QStringLiteral("fr"));
    const QString path = settings->fileName();
    MSettings::destroy();

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray original = file.readAll();
    file.close();
    QVERIFY(original.contains("gridColor"));

    QRandomGenerator random(20261122);
    const QByteArray noise = "=@,\"()[]\n\r\t\\0xVariantByteArray ";
    for (int round = 0; round < 150; ++round) {
        QByteArray mangled = original;
        const int edits = 1 + random.bounded(6);
        for (int e = 0; e < edits && !mangled.isEmpty(); ++e) {
            const int at = random.bounded(mangled.size());
            switch (random.bounded(3)) {
            case 0:
                mangled[at] = noise.at(random.bounded(noise.size()));
                break;
            case 1:
                mangled.remove(at, 1 + random.bounded(8));
                break;
            default:
                mangled.truncate(at);
                break;
            }
        }
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(mangled);
        file.close();

        MSettings* reread = MSettings::instance();
        const QMetaObject* meta = reread->metaObject();
        for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
            const QMetaProperty property = meta->property(i);
            const QVariant value = property.read(reread);
            QVERIFY2(value.userType() == property.userType(), property.name());
        }
        QVERIFY(reread->gridColor().isValid());
        MSettings::destroy();
    }
}

QUILLMERE_TEST_MAIN(TestSettings)
#include "tst_msettings.moc"
