#include "support/testenvironment.h"

#include "app/dsettings.h"
#include "app/menum.h"
#include "app/msettings.h"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFontComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMetaProperty>
#include <QPushButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTableWidget>
#include <QTimer>
#include <QTreeWidget>

#include <limits>
#include <map>
#include <memory>

namespace {

// The same names and defaults in every test: the store records the default of
// a name once per process.
const char* const actionDefinitions[][3] = {{"actionSave", "&Save", "Ctrl+S"},
                                            {"actionOpen", "&Open...", "Ctrl+O"},
                                            {"actionUndo", "Undo", "Ctrl+Z"},
                                            {"actionBrush", "Brush && pen", "B"},
                                            {"actionZoomIn", "Zoom in", ""}};

std::unique_ptr<QWidget> makeActionsWidget()
{
    auto widget = std::make_unique<QWidget>();
    for (const auto& entry : actionDefinitions) {
        auto* action = new QAction(QString::fromLatin1(entry[1]), widget.get());
        action->setObjectName(QString::fromLatin1(entry[0]));
        action->setShortcut(QKeySequence(QString::fromLatin1(entry[2])));
    }
    // Without a name an action can't be stored, and without a text it can't
    // be described: neither is listed.
    auto* unnamed = new QAction(QStringLiteral("Unnamed"), widget.get());
    unnamed->setShortcut(QKeySequence(QStringLiteral("Ctrl+U")));
    auto* blank = new QAction(QStringLiteral("  "), widget.get());
    blank->setObjectName(QStringLiteral("actionBlank"));
    return widget;
}

QKeySequence key(const char* portable)
{
    return QKeySequence(QString::fromLatin1(portable));
}

QString native(const char* portable)
{
    return key(portable).toString(QKeySequence::NativeText);
}

QKeySequence shortcutOf(QWidget* widget, const char* name)
{
    return widget->findChild<QAction*>(QString::fromLatin1(name))->shortcut();
}

// The dialog with its questions answered by the test instead of a modal loop.
class ScriptedSettings : public DSettings
{
public:
    using DSettings::DSettings;

    QList<bool> replaceAnswers;
    QStringList replaceQuestions;
    QColor colorAnswer;
    int colorQuestions = 0;
    bool shortcutAccepted = true;
    QKeySequence shortcutAnswer;

protected:
    bool askReplace(const QKeySequence& sequence, const QString& description) override
    {
        replaceQuestions << sequence.toString(QKeySequence::PortableText) + QLatin1Char('|') + description;
        return !replaceAnswers.isEmpty() && replaceAnswers.takeFirst();
    }
    QColor askColor(const QColor&, const QString&) override
    {
        ++colorQuestions;
        return colorAnswer;
    }
    bool askShortcut(const QString&, QKeySequence& sequence) override
    {
        if (shortcutAccepted)
            sequence = shortcutAnswer;
        return shortcutAccepted;
    }
};

// A spy on every change signal of the store, by property name.
class StoreSpies
{
public:
    StoreSpies()
    {
        MSettings* settings = MSettings::instance();
        const QMetaObject* meta = settings->metaObject();
        for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i)
            m_spies[QString::fromLatin1(meta->property(i).name())] =
                std::make_unique<QSignalSpy>(settings, meta->property(i).notifySignal());
    }
    QSignalSpy& operator[](const QString& key) const { return *m_spies.at(key); }
    QStringList fired() const
    {
        QStringList keys;
        for (const auto& entry : m_spies)
            if (!entry.second->isEmpty())
                keys << entry.first;
        return keys;
    }

private:
    std::map<QString, std::unique_ptr<QSignalSpy>> m_spies;
};

// Everything the store holds, raw and through its getters.
QHash<QString, QVariant> storeSnapshot()
{
    MSettings* settings = MSettings::instance();
    QHash<QString, QVariant> result;
    for (const QString& name : settings->allKeys())
        result.insert(name, settings->value(name));
    const QMetaObject* meta = settings->metaObject();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i)
        result.insert(QStringLiteral("getter ") + QString::fromLatin1(meta->property(i).name()),
                      meta->property(i).read(settings));
    return result;
}

void compareSnapshots(const QHash<QString, QVariant>& after, const QHash<QString, QVariant>& before)
{
    QStringList names = after.keys() + before.keys();
    names.removeDuplicates();
    for (const QString& name : qAsConst(names))
        QVERIFY2(after.contains(name) && before.contains(name) && after.value(name) == before.value(name),
                 qPrintable(name));
}

template <typename T> T* child(DSettings& dialog, const char* name)
{
    return dialog.findChild<T*>(QString::fromLatin1(name));
}

QVariant stored(const QString& name)
{
    return MSettings::instance()->property(name.toLatin1().constData());
}

// Gives an editor a value other than the one it shows, as a user would.
void changeEditor(ScriptedSettings& dialog, const QString& name)
{
    QWidget* widget = dialog.findChild<QWidget*>(name);
    QVERIFY2(widget, qPrintable(name));
    if (auto* box = qobject_cast<QCheckBox*>(widget)) {
        box->setChecked(!box->isChecked());
    } else if (auto* fonts = qobject_cast<QFontComboBox*>(widget)) {
        const QString shown = fonts->currentFont().family();
        for (int i = 0; i < fonts->count(); ++i)
            if (fonts->itemText(i) != shown && fonts->itemText(i) != stored(name).toString()) {
                fonts->setCurrentIndex(i);
                break;
            }
    } else if (auto* combo = qobject_cast<QComboBox*>(widget)) {
        if (combo->isEditable())
            combo->setEditText(combo->currentText() + QStringLiteral("-b.png"));
        else
            combo->setCurrentIndex((combo->currentIndex() + 1) % combo->count());
    } else if (auto* spin = qobject_cast<QSpinBox*>(widget)) {
        spin->setValue(spin->value() < spin->maximum() ? spin->value() + 1 : spin->value() - 1);
    } else if (auto* real = qobject_cast<QDoubleSpinBox*>(widget)) {
        const double step = real->value() + real->singleStep() <= real->maximum() ? 1 : -1;
        real->setValue(real->value() + step * real->singleStep());
    } else if (auto* line = qobject_cast<QLineEdit*>(widget)) {
        line->setText(line->text() + QStringLiteral("/edited"));
    } else if (auto* button = qobject_cast<QPushButton*>(widget)) {
        const QColor shown = button->property("TarnbeckValue").value<QColor>();
        dialog.colorAnswer = QColor(255 - shown.red(), 255 - shown.green(), 128);
        button->click();
    }
}

void changeEveryEditor(ScriptedSettings& dialog)
{
    for (const MSettingItem& item : MSettings::instance()->items())
        changeEditor(dialog, item.key);
}

} // namespace

class TestDSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    // Pages and editors
    void pagesFollowTheCategoriesInOrder();
    void eachSettingHasOneEditorOfItsType();
    void editorsShowTheStoredValues();

    // Cancel and Ok
    void cancelLeavesStoreAndActionsUntouched();
    void okWritesEveryEditedSettingOnce();
    void okWritesOnlyWhatChanged();
    void okKeepsValuesTheEditorsCannotShow();
    void colourIsHeldInTheButtonUntilOk();
    void restartIsNeededForLanguageAndCompositionNames_data();
    void restartIsNeededForLanguageAndCompositionNames();
    void thumbnailSizeIsEditedAsDoubleAndStoredAsInt();

    // Shortcuts
    void shortcutTableListsAndFiltersTheNamedActions();
    void editedShortcutReachesTheActionsOnlyOnOk();
    void takenShortcutMovesOnlyWhenAllowed();
    void replaceQuestionIsAskedInWords();
    void resetRestoresTheDefaults();
    void copyPutsOneLinePerActionOnTheClipboard();
};

void TestDSettings::init()
{
    MSettings::instance()->clear();
}

void TestDSettings::pagesFollowTheCategoriesInOrder()
{
    ScriptedSettings dialog(nullptr);
    auto* tree = dialog.findChild<QTreeWidget*>();
    auto* pages = child<QStackedWidget>(dialog, "stackPages");
    QVERIFY(tree && pages);
    const QStringList categories = MSettings::categories();
    QCOMPARE(tree->topLevelItemCount(), categories.size());
    QCOMPARE(pages->count(), categories.size());
    for (int i = 0; i < categories.size(); ++i)
        QCOMPARE(tree->topLevelItem(i)->text(0), MSettings::categoryLabel(categories.at(i)));
    QCOMPARE(pages->currentIndex(), 0);

    // Both the slot and a click in the tree switch pages.
    dialog.openPage(tree->topLevelItem(3));
    QCOMPARE(pages->currentIndex(), 3);
    tree->setCurrentItem(tree->topLevelItem(5));
    QCOMPARE(pages->currentIndex(), 5);
    QVERIFY(pages->currentWidget()->findChild<QTableWidget*>());
}

void TestDSettings::eachSettingHasOneEditorOfItsType()
{
    ScriptedSettings dialog(nullptr);
    auto* pages = child<QStackedWidget>(dialog, "stackPages");
    QHash<QString, QStringList> labelsByPage;
    for (const MSettingItem& item : MSettings::instance()->items()) {
        QWidget* page = pages->widget(MSettings::categories().indexOf(item.category));
        const QList<QWidget*> found = dialog.findChildren<QWidget*>(item.key);
        QVERIFY2(found.size() == 1 && page->isAncestorOf(found.first()), qPrintable(item.key));
        QWidget* widget = found.first();
        labelsByPage[item.category] << item.label();

        const bool special =
            item.key == QLatin1String("userLangId") || item.key == QLatin1String("paperName");
        const QHash<int, QString> classes = {
            {QMetaType::Bool, "QCheckBox"},
            {QMetaType::Int, item.enumName.isEmpty() ? "QSpinBox" : "QComboBox"},
            {QMetaType::Double, "QDoubleSpinBox"},
            {QMetaType::QString, special ? "QComboBox" : "QLineEdit"},
            {QMetaType::QFont, "QFontComboBox"},
            {QMetaType::QColor, "QPushButton"}};
        QCOMPARE(QString::fromLatin1(widget->metaObject()->className()), classes.value(item.type));
        if (item.type == QMetaType::QColor)
            QCOMPARE(widget->property("TarnbeckName").toString(), item.key);

        // Without a range the editor must still hold any reasonable value.
        if (auto* spin = qobject_cast<QSpinBox*>(widget)) {
            QCOMPARE(spin->minimum(),
                     item.hasMinimum() ? int(item.minimum) : std::numeric_limits<int>::min());
            QCOMPARE(spin->maximum(),
                     item.hasMaximum() ? int(item.maximum) : std::numeric_limits<int>::max());
        }
        if (auto* real = qobject_cast<QDoubleSpinBox*>(widget)) {
            QCOMPARE(real->minimum(), item.minimum);
            QCOMPARE(real->maximum(), item.maximum);
        }
    }

    // One label per editor, in table order.
    for (auto entry = labelsByPage.cbegin(); entry != labelsByPage.cend(); ++entry) {
        QStringList shown;
        QWidget* page = pages->widget(MSettings::categories().indexOf(entry.key()));
        for (QLabel* label : page->findChildren<QLabel*>(QStringLiteral("label")))
            shown << label->text();
        QCOMPARE(shown, entry.value());
    }

    auto* language = child<QComboBox>(dialog, "userLangId");
    QCOMPARE(language->count(), 2);
    QCOMPARE(language->itemData(0).toString(), QStringLiteral("EN"));
    QCOMPARE(language->itemData(1).toString(), QStringLiteral("FR"));
    auto* edges = child<QComboBox>(dialog, "thumbnailPosition");
    QCOMPARE(edges->count(), 4);
    QCOMPARE(edges->itemData(3).toInt(), int(MEnum::BottomEdge));
}

void TestDSettings::editorsShowTheStoredValues()
{
    MSettings* settings = MSettings::instance();
    settings->set_showGrid(true);
    settings->set_defaultWidth(2400);
    settings->set_resolutionUnit(MEnum::PixelsPerCentimeter);
    settings->set_thumbnailPosition(MEnum::BottomEdge);
    settings->set_smoothMaxScale(12.5);
    settings->set_gridColor(QColor(1, 2, 3));
    settings->set_openGlSdkUrl(QStringLiteral("https://example.org/gl/"));
    settings->set_paperName(QStringLiteral("linen.png"));
    settings->set_userLangId(QStringLiteral("fr"));

    ScriptedSettings dialog(nullptr);
    QVERIFY(child<QCheckBox>(dialog, "showGrid")->isChecked());
    QVERIFY(!child<QCheckBox>(dialog, "showTiling")->isChecked());
    QCOMPARE(child<QSpinBox>(dialog, "defaultWidth")->value(), 2400);
    QCOMPARE(child<QComboBox>(dialog, "paperType")->currentData().toInt(), int(MEnum::Colored));
    QCOMPARE(child<QComboBox>(dialog, "resolutionUnit")->currentData().toInt(),
             int(MEnum::PixelsPerCentimeter));
    QCOMPARE(child<QComboBox>(dialog, "thumbnailPosition")->currentData().toInt(), int(MEnum::BottomEdge));
    QCOMPARE(child<QDoubleSpinBox>(dialog, "smoothMaxScale")->value(), 12.5);
    QCOMPARE(child<QPushButton>(dialog, "gridColor")->property("TarnbeckValue").value<QColor>(),
             QColor(1, 2, 3));
    QCOMPARE(child<QLineEdit>(dialog, "openGlSdkUrl")->text(), QStringLiteral("https://example.org/gl/"));
    QCOMPARE(child<QComboBox>(dialog, "paperName")->currentText(), QStringLiteral("linen.png"));
    // The language id is matched whatever its case.
    QCOMPARE(child<QComboBox>(dialog, "userLangId")->currentData().toString(), QStringLiteral("FR"));
}

void TestDSettings::cancelLeavesStoreAndActionsUntouched()
{
    auto actions = makeActionsWidget();
    MSettings::instance()->loadShortcuts(actions.get());
    MSettings::instance()->set_swatchSize(33);
    const QHash<QString, QVariant> before = storeSnapshot();
    StoreSpies spies;

    ScriptedSettings dialog(actions.get());
    QSignalSpy changed(&dialog, &DSettings::settingsChanged);
    changeEveryEditor(dialog);
    QVERIFY(dialog.assignShortcut(QStringLiteral("actionZoomIn"), key("F7")));
    QVERIFY(dialog.assignShortcut(QStringLiteral("actionSave"), key("F8")));
    child<QPushButton>(dialog, "BtnCancel")->click();

    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    compareSnapshots(storeSnapshot(), before);
    QCOMPARE(spies.fired(), QStringList());
    QCOMPARE(changed.count(), 0);
    QCOMPARE(shortcutOf(actions.get(), "actionSave"), key("Ctrl+S"));
    QCOMPARE(shortcutOf(actions.get(), "actionZoomIn"), QKeySequence());
}

void TestDSettings::okWritesEveryEditedSettingOnce()
{
    const QHash<QString, QVariant> before = storeSnapshot();
    StoreSpies spies;
    ScriptedSettings dialog(nullptr);
    QSignalSpy changed(&dialog, &DSettings::settingsChanged);
    changeEveryEditor(dialog);
    child<QPushButton>(dialog, "btnOk")->click();

    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(changed.count(), 1);
    QStringList keys;
    for (const MSettingItem& item : MSettings::instance()->items()) {
        keys << item.key;
        QVERIFY2(spies[item.key].count() == 1, qPrintable(item.key));
        QVERIFY2(stored(item.key) != before.value(QStringLiteral("getter ") + item.key),
                 qPrintable(item.key));
    }
    keys.sort();
    QCOMPARE(spies.fired(), keys);
}

void TestDSettings::okWritesOnlyWhatChanged()
{
    StoreSpies spies;
    ScriptedSettings dialog(nullptr);
    QSignalSpy changed(&dialog, &DSettings::settingsChanged);
    child<QCheckBox>(dialog, "showGrid")->setChecked(true);
    child<QSpinBox>(dialog, "swatchSize")->setValue(42);
    child<QComboBox>(dialog, "paperType")->setCurrentIndex(0);
    child<QComboBox>(dialog, "paperName")->setEditText(QStringLiteral("canvas.png"));
    // An edit taken back is no change.
    child<QSpinBox>(dialog, "gridSize")->setValue(31);
    child<QSpinBox>(dialog, "gridSize")->setValue(30);
    dialog.on_btnOk_clicked();

    QCOMPARE(changed.count(), 1);
    QCOMPARE(spies.fired(), QStringList({"paperName", "paperType", "showGrid", "swatchSize"}));
    QVERIFY(MSettings::instance()->showGrid());
    QCOMPARE(MSettings::instance()->swatchSize(), 42);
    QCOMPARE(MSettings::instance()->paperType(), int(MEnum::Transparent));
    QCOMPARE(MSettings::instance()->paperName(), QStringLiteral("canvas.png"));
    QVERIFY(!MSettings::instance()->contains(QStringLiteral("gridSize")));
    QVERIFY(!dialog.needRestart());
}

void TestDSettings::okKeepsValuesTheEditorsCannotShow()
{
    // Out of range, finer than the decimals, an unknown enumeration value, a
    // font that doesn't exist, and the lower-case default language id.
    MSettings* settings = MSettings::instance();
    settings->set_undoLimit(100);
    settings->set_paintMargin(-5);
    settings->set_thumbnailOpacity(0.123);
    settings->set_paperType(7);
    settings->set_editorFontName(QStringLiteral("No Such Family Anywhere"));
    const QHash<QString, QVariant> before = storeSnapshot();
    StoreSpies spies;

    ScriptedSettings dialog(nullptr);
    dialog.on_btnOk_clicked();
    QCOMPARE(spies.fired(), QStringList());
    compareSnapshots(storeSnapshot(), before);
    QVERIFY(!dialog.needRestart());
}

void TestDSettings::colourIsHeldInTheButtonUntilOk()
{
    StoreSpies spies;
    ScriptedSettings dialog(nullptr);
    auto* button = child<QPushButton>(dialog, "paperColor");
    dialog.colorAnswer = QColor(10, 20, 30);
    button->click();
    QCOMPARE(button->property("TarnbeckValue").value<QColor>(), QColor(10, 20, 30));
    QVERIFY(!MSettings::instance()->contains(QStringLiteral("paperColor")));

    // A cancelled colour dialog keeps the colour chosen before.
    dialog.colorAnswer = QColor();
    button->click();
    QCOMPARE(dialog.colorQuestions, 2);
    QCOMPARE(button->property("TarnbeckValue").value<QColor>(), QColor(10, 20, 30));
    QCOMPARE(spies.fired(), QStringList());

    dialog.on_btnOk_clicked();
    QCOMPARE(MSettings::instance()->paperColor(), QColor(10, 20, 30));
    QCOMPARE(spies.fired(), QStringList({"paperColor"}));
    QCOMPARE(spies[QStringLiteral("paperColor")].count(), 1);
}

void TestDSettings::restartIsNeededForLanguageAndCompositionNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("restart");
    QTest::newRow("language") << QStringLiteral("userLangId") << true;
    QTest::newRow("composition names") << QStringLiteral("translateCompositionModes") << true;
    QTest::newRow("grid") << QStringLiteral("showGrid") << false;
}

void TestDSettings::restartIsNeededForLanguageAndCompositionNames()
{
    QFETCH(QString, name);
    QFETCH(bool, restart);
    ScriptedSettings dialog(nullptr);
    changeEditor(dialog, name);
    QVERIFY(!dialog.needRestart());
    dialog.on_btnOk_clicked();
    QCOMPARE(dialog.needRestart(), restart);
    if (name == QLatin1String("userLangId"))
        QCOMPARE(MSettings::instance()->userLangId(), QStringLiteral("FR"));
}

void TestDSettings::thumbnailSizeIsEditedAsDoubleAndStoredAsInt()
{
    MSettings::instance()->set_thumbnailSize(90);
    StoreSpies spies;
    ScriptedSettings dialog(nullptr);
    auto* spin = child<QDoubleSpinBox>(dialog, "thumbnailSize");
    QVERIFY(spin);
    QCOMPARE(spin->value(), 90.0);
    spin->setValue(47.6);
    dialog.on_btnOk_clicked();

    QCOMPARE(MSettings::instance()->value(QStringLiteral("thumbnailSize")).toString(), QStringLiteral("48"));
    QCOMPARE(spies[QStringLiteral("thumbnailSize")].count(), 1);
    QCOMPARE(spies[QStringLiteral("thumbnailSize")].last().value(0), QVariant(48));
}

void TestDSettings::shortcutTableListsAndFiltersTheNamedActions()
{
    auto actions = makeActionsWidget();
    ScriptedSettings dialog(actions.get());
    auto* table = child<QTableWidget>(dialog, "tableShortcuts");
    QCOMPARE(table->rowCount(), 5);
    // Descriptions as the action list words them: no mnemonic, no trailing "...".
    const QStringList descriptions = {"Save", "Open", "Undo", "Brush & pen", "Zoom in"};
    for (int row = 0; row < table->rowCount(); ++row) {
        QCOMPARE(table->item(row, 0)->text(), descriptions.at(row));
        QCOMPARE(table->item(row, 1)->text(), native(actionDefinitions[row][2]));
    }

    auto* search = child<QLineEdit>(dialog, "editSearch");
    const auto shownRows = [table] {
        QList<int> rows;
        for (int row = 0; row < table->rowCount(); ++row)
            if (!table->isRowHidden(row))
                rows << row;
        return rows;
    };
    search->setText(QStringLiteral("zOO"));
    QCOMPARE(shownRows(), QList<int>({4}));
    search->setText(native("Ctrl+O"));
    QCOMPARE(shownRows(), QList<int>({1}));
    // A hidden row is no target for the buttons.
    table->setCurrentCell(0, 0);
    dialog.shortcutAnswer = key("F2");
    dialog.editShortcut();
    QCOMPARE(dialog.pendingShortcut(QStringLiteral("actionSave")), key("Ctrl+S"));
    search->clear();
    QCOMPARE(shownRows(), QList<int>({0, 1, 2, 3, 4}));
}

void TestDSettings::editedShortcutReachesTheActionsOnlyOnOk()
{
    auto actions = makeActionsWidget();
    MSettings::instance()->loadShortcuts(actions.get());
    {
        ScriptedSettings dialog(actions.get());
        auto* table = child<QTableWidget>(dialog, "tableShortcuts");
        table->setCurrentCell(4, 0);
        dialog.shortcutAnswer = key("Ctrl+=");
        child<QPushButton>(dialog, "btnEdit")->click();
        QCOMPARE(dialog.pendingShortcut(QStringLiteral("actionZoomIn")), key("Ctrl+="));
        QCOMPARE(table->item(4, 1)->text(), native("Ctrl+="));

        // A cancelled capture changes nothing.
        table->setCurrentCell(0, 0);
        dialog.shortcutAccepted = false;
        dialog.editShortcut();
        QCOMPARE(dialog.pendingShortcut(QStringLiteral("actionSave")), key("Ctrl+S"));
        dialog.on_BtnCancel_clicked();
    }
    QCOMPARE(shortcutOf(actions.get(), "actionZoomIn"), QKeySequence());
    QVERIFY(!MSettings::instance()->contains(QStringLiteral("action/actionZoomIn")));

    ScriptedSettings dialog(actions.get());
    QVERIFY(dialog.assignShortcut(QStringLiteral("actionZoomIn"), key("Ctrl+=")));
    QVERIFY(dialog.assignShortcut(QStringLiteral("actionSave"), QKeySequence()));
    QVERIFY(!dialog.assignShortcut(QStringLiteral("actionNowhere"), key("F9")));
    QVERIFY(dialog.replaceQuestions.isEmpty());
    dialog.on_btnOk_clicked();
    QCOMPARE(shortcutOf(actions.get(), "actionZoomIn"), key("Ctrl+="));
    QCOMPARE(shortcutOf(actions.get(), "actionSave"), QKeySequence());
    QCOMPARE(MSettings::instance()->value(QStringLiteral("action/actionZoomIn")).toString(),
             QStringLiteral("Ctrl+="));
}

void TestDSettings::takenShortcutMovesOnlyWhenAllowed()
{
    auto actions = makeActionsWidget();
    MSettings::instance()->loadShortcuts(actions.get());
    ScriptedSettings dialog(actions.get());
    const QString zoomIn = QStringLiteral("actionZoomIn");
    const QString save = QStringLiteral("actionSave");

    dialog.replaceAnswers = {false};
    QVERIFY(!dialog.assignShortcut(zoomIn, key("Ctrl+S")));
    QCOMPARE(dialog.replaceQuestions, QStringList({"Ctrl+S|Save"}));
    QCOMPARE(dialog.pendingShortcut(zoomIn), QKeySequence());
    QCOMPARE(dialog.pendingShortcut(save), key("Ctrl+S"));

    dialog.replaceAnswers = {true};
    QVERIFY(dialog.assignShortcut(zoomIn, key("Ctrl+S")));
    QCOMPARE(dialog.pendingShortcut(zoomIn), key("Ctrl+S"));
    QCOMPARE(dialog.pendingShortcut(save), QKeySequence());
    QCOMPARE(child<QTableWidget>(dialog, "tableShortcuts")->item(0, 1)->text(), QString());

    // Resetting to a default that another action now holds asks too.
    child<QTableWidget>(dialog, "tableShortcuts")->setCurrentCell(0, 0);
    dialog.replaceAnswers = {false};
    dialog.resetShortcut();
    QCOMPARE(dialog.replaceQuestions.size(), 3);
    QCOMPARE(dialog.replaceQuestions.last(), QStringLiteral("Ctrl+S|Zoom in"));
    QCOMPARE(dialog.pendingShortcut(save), QKeySequence());

    dialog.on_btnOk_clicked();
    QCOMPARE(shortcutOf(actions.get(), "actionZoomIn"), key("Ctrl+S"));
    QCOMPARE(shortcutOf(actions.get(), "actionSave"), QKeySequence());
}

void TestDSettings::replaceQuestionIsAskedInWords()
{
    auto actions = makeActionsWidget();
    DSettings dialog(actions.get());
    QString title;
    QString text;
    // The question is modal: answer it from inside its own loop.
    QTimer answer;
    int attempts = 0;
    connect(&answer, &QTimer::timeout, this, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box) {
            title = box->windowTitle();
            text = box->text();
            box->button(QMessageBox::No)->click();
        }
        if (box || ++attempts > 250)
            answer.stop();
    });
    answer.start(20);
    QVERIFY(!dialog.assignShortcut(QStringLiteral("actionUndo"), key("B")));
    QCOMPARE(title, QStringLiteral("Shortcut"));
    QCOMPARE(text, QStringLiteral(
                       "The shortcut %1 already exists for action 'Brush & pen'. Do you want to replace it?")
                       .arg(native("B")));
    QCOMPARE(dialog.pendingShortcut(QStringLiteral("actionUndo")), key("Ctrl+Z"));
}

void TestDSettings::resetRestoresTheDefaults()
{
    auto actions = makeActionsWidget();
    MSettings::instance()->loadShortcuts(actions.get());
    // The user's own shortcuts, as a stored set would have given them.
    actions->findChild<QAction*>(QStringLiteral("actionSave"))->setShortcut(key("Ctrl+Shift+S"));
    actions->findChild<QAction*>(QStringLiteral("actionUndo"))->setShortcut(key("Alt+Z"));
    actions->findChild<QAction*>(QStringLiteral("actionZoomIn"))->setShortcut(key("F5"));

    ScriptedSettings dialog(actions.get());
    child<QTableWidget>(dialog, "tableShortcuts")->setCurrentCell(0, 1);
    child<QPushButton>(dialog, "btnReset")->click();
    QCOMPARE(dialog.pendingShortcut(QStringLiteral("actionSave")), key("Ctrl+S"));
    QCOMPARE(dialog.pendingShortcut(QStringLiteral("actionUndo")), key("Alt+Z"));

    child<QPushButton>(dialog, "btnResetAll")->click();
    for (const auto& entry : actionDefinitions)
        QCOMPARE(dialog.pendingShortcut(QString::fromLatin1(entry[0])), key(entry[2]));
    QVERIFY(dialog.replaceQuestions.isEmpty());
    QCOMPARE(shortcutOf(actions.get(), "actionUndo"), key("Alt+Z"));

    dialog.on_btnOk_clicked();
    for (const auto& entry : actionDefinitions) {
        QCOMPARE(shortcutOf(actions.get(), entry[0]), key(entry[2]));
        QCOMPARE(MSettings::instance()
                     ->value(QStringLiteral("action/") + QString::fromLatin1(entry[0]))
                     .toString(),
                 QString::fromLatin1(entry[2]));
    }
}

void TestDSettings::copyPutsOneLinePerActionOnTheClipboard()
{
    auto actions = makeActionsWidget();
    ScriptedSettings dialog(actions.get());
    QVERIFY(dialog.assignShortcut(QStringLiteral("actionZoomIn"), key("F11")));
    // A filter doesn't shorten the sheet.
    child<QLineEdit>(dialog, "editSearch")->setText(QStringLiteral("undo"));
    QApplication::clipboard()->clear();
    child<QPushButton>(dialog, "btnCopy")->click();

    const QStringList expected = {
        QStringLiteral("Save\t") + native("Ctrl+S"), QStringLiteral("Open\t") + native("Ctrl+O"),
        QStringLiteral("Undo\t") + native("Ctrl+Z"), QStringLiteral("Brush & pen\t") + native("B"),
        QStringLiteral("Zoom in\t") + native("F11")};
    QCOMPARE(QApplication::clipboard()->text().split(QLatin1Char('\n'), Qt::SkipEmptyParts), expected);
}

QUILLMERE_TEST_MAIN(TestDSettings)

#include "tst_dsettings.moc"
