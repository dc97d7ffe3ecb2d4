#include "support/testenvironment.h"

#include "app/mpathvar.h"
#include "app/mpathvarlist.h"
#include "effects/dshaderparams.h"
#include "effects/dtextureparam.h"
#include "effects/mcoloredit.h"
#include "effects/mfield.h"
#include "effects/mfieldpanel.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "effects/mshaderobject.h"
#include "effects/msliderspinbox.h"
#include "effects/mtexture.h"
#include "effects/mvalues.h"
#include "effects/params/paramsparser.h"
#include "effects/params/paramsscanner.h"

#include <memory>

namespace {

// A texture dialog whose warnings are recorded instead of shown.
class QuietTextureParam : public DTextureParam
{
public:
    QStringList warnings;

protected:
    void showWarning(const QString& text) override { warnings << text; }
};

const char* const effectSource = "@params\n"
                                 "float strength = 0.5 \"Strength\" min = 0.0 max = 2.0 increment = 0.1;\n"
                                 "bool inverted = false \"Inverted\";\n"
                                 "enum mode = 1 \"Mode\" enum values = 0 \"Soft\" 1 \"Hard\";\n"
                                 "color tint = rgb(255, 0, 0) \"Tint\";\n"
                                 "@main\n"
                                 "f_color = vec4(strength);\n";

} // namespace

class TestEffectDialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void textureDialogOffersTheLanguagesOptions();
    void textureDeclarationWithDefaults();
    void textureDeclarationWithChangedOptions();
    void textureDeclarationQuotesAwkwardFileNames();
    void textureDialogRefusesBadNames_data();
    void textureDialogRefusesBadNames();
    void textureDialogInsertsPathVariables();

    void shaderDialogBuildsThePanelOnTheObjectsValues();
    void shaderDialogKeepsValuesOfTheSameEffect();
    void shaderDialogRemoveTakesTheEffectAway();
    void shaderDialogApplyAndPreviewOnlySignal();

private:
    // Parses "@params" text; returns the textures, with the error lines in errors.
    static std::vector<std::unique_ptr<MTexture>> parse(const QString& text, QStringList* errors);
    static MShader* addEffect(const QString& source);
};

void TestEffectDialogs::cleanup()
{
    while (MShaderList::instance()->count() > 0)
        MShaderList::instance()->removeShader(MShaderList::instance()->shaderAt(0)->id());
}

std::vector<std::unique_ptr<MTexture>> TestEffectDialogs::parse(const QString& text, QStringList* errors)
{
    params::Scanner scanner(text);
    params::Parser parser(scanner);
    parser.parse();
    *errors = parser.errors().lines();
    return parser.takeTextures();
}

MShader* TestEffectDialogs::addEffect(const QString& source)
{
    auto shader = std::make_unique<MShader>();
    shader->setSource(source);
    shader->setDescription(QStringLiteral("Test effect"));
    return MShaderList::instance()->addShader(std::move(shader));
}

void TestEffectDialogs::textureDialogOffersTheLanguagesOptions()
{
    DTextureParam dialog;
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Texture shader parameter"));
    const QStringList filters = {
        "Nearest",           "Linear", "NearestMipMapNearest", "NearestMipMapLinear", "LinearMipMapNearest",
        "LinearMipMapLinear"};
    const QStringList wraps = {"Repeat", "MirroredRepeat", "ClampToEdge", "ClampToBorder",
                               "MirrorClampToEdge"};
    auto items = [](QComboBox* combo) {
        QStringList texts;
        for (int i = 0; i < combo->count(); ++i)
            texts << combo->itemText(i);
        return texts;
    };
    auto* minFilter = dialog.findChild<QComboBox*>(QStringLiteral("minFilterCombo"));
    auto* magFilter = dialog.findChild<QComboBox*>(QStringLiteral("magFilterCombo"));
    auto* wrapS = dialog.findChild<QComboBox*>(QStringLiteral("wrapSCombo"));
    auto* wrapT = dialog.findChild<QComboBox*>(QStringLiteral("wrapTCombo"));
    QVERIFY(minFilter && magFilter && wrapS && wrapT);
    QCOMPARE(items(minFilter), filters);
    QCOMPARE(items(magFilter), filters);
    QCOMPARE(items(wrapS), wraps);
    QCOMPARE(items(wrapT), wraps);
    QCOMPARE(minFilter->currentText(), QStringLiteral("LinearMipMapLinear"));
    QCOMPARE(magFilter->currentText(), QStringLiteral("Linear"));
    QCOMPARE(wrapS->currentText(), QStringLiteral("ClampToEdge"));
    QCOMPARE(wrapT->currentText(), QStringLiteral("ClampToEdge"));
    QVERIFY(dialog.declaration().isEmpty());
}

void TestEffectDialogs::textureDeclarationWithDefaults()
{
    QuietTextureParam dialog;
    QSignalSpy spy(&dialog, &DTextureParam::declarationReady);
    dialog.findChild<QLineEdit*>(QStringLiteral("varNameEdit"))->setText(QStringLiteral("grain"));
    dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
        ->setText(QStringLiteral("$ImagesPath$/grain.png"));
    dialog.findChild<QPushButton*>(QStringLiteral("okBtn"))->click();

    const QString expected =
        QStringLiteral("texture grain \"$ImagesPath$/grain.png\" min filter = linearmipmaplinear "
                       "mag filter = linear wraps = clamptoedge wrapt = clamptoedge;");
    QCOMPARE(dialog.declaration(), expected);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toString(), expected);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QVERIFY(dialog.warnings.isEmpty());

    QStringList errors;
    const auto textures = parse(dialog.declaration(), &errors);
    QVERIFY2(errors.isEmpty(), qPrintable(errors.join(QLatin1Char('\n'))));
    QCOMPARE(int(textures.size()), 1);
    QCOMPARE(textures[0]->name, QByteArray("grain"));
    QCOMPARE(textures[0]->fileName, QStringLiteral("$ImagesPath$/grain.png"));
    QCOMPARE(textures[0]->minFilter, 5);
    QCOMPARE(textures[0]->magFilter, 1);
    QCOMPARE(textures[0]->wrapS, 2);
    QCOMPARE(textures[0]->wrapT, 2);
}

void TestEffectDialogs::textureDeclarationWithChangedOptions()
{
    QuietTextureParam dialog;
    dialog.findChild<QLineEdit*>(QStringLiteral("varNameEdit"))->setText(QStringLiteral("  _Tex2 "));
    dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
        ->setText(QStringLiteral("/data/my paper.jpg"));
    dialog.findChild<QComboBox*>(QStringLiteral("minFilterCombo"))->setCurrentIndex(0);
    dialog.findChild<QComboBox*>(QStringLiteral("magFilterCombo"))->setCurrentIndex(3);
    dialog.findChild<QComboBox*>(QStringLiteral("wrapSCombo"))->setCurrentIndex(0);
    dialog.findChild<QComboBox*>(QStringLiteral("wrapTCombo"))->setCurrentIndex(4);
    dialog.on_okBtn_clicked();

    QCOMPARE(dialog.declaration(),
             QStringLiteral(
                 "texture _Tex2 \"/data/my paper.jpg\" min filter = nearest mag filter = nearestmipmaplinear "
                 "wraps = repeat wrapt = mirrorclamptoedge;"));
    QStringList errors;
    const auto textures = parse(dialog.declaration(), &errors);
    QVERIFY2(errors.isEmpty(), qPrintable(errors.join(QLatin1Char('\n'))));
    QCOMPARE(int(textures.size()), 1);
    QCOMPARE(textures[0]->name, QByteArray("_Tex2"));
    QCOMPARE(textures[0]->fileName, QStringLiteral("/data/my paper.jpg"));
    QCOMPARE(textures[0]->minFilter, 0);
    QCOMPARE(textures[0]->magFilter, 3);
    QCOMPARE(textures[0]->wrapS, 0);
    QCOMPARE(textures[0]->wrapT, 4);

    // Every option word the combos offer parses back to its index.
    for (int filter = 0; filter < 6; ++filter) {
        for (int wrap = 0; wrap < 5; ++wrap) {
            dialog.findChild<QComboBox*>(QStringLiteral("minFilterCombo"))->setCurrentIndex(filter);
            dialog.findChild<QComboBox*>(QStringLiteral("magFilterCombo"))->setCurrentIndex(5 - filter);
            dialog.findChild<QComboBox*>(QStringLiteral("wrapSCombo"))->setCurrentIndex(wrap);
            dialog.findChild<QComboBox*>(QStringLiteral("wrapTCombo"))->setCurrentIndex(4 - wrap);
            const auto parsed = parse(dialog.buildDeclaration(), &errors);
            QVERIFY(errors.isEmpty());
            QCOMPARE(int(parsed.size()), 1);
            QCOMPARE(parsed[0]->minFilter, filter);
            QCOMPARE(parsed[0]->magFilter, 5 - filter);
            QCOMPARE(parsed[0]->wrapS, wrap);
            QCOMPARE(parsed[0]->wrapT, 4 - wrap);
        }
    }
}

void TestEffectDialogs::textureDeclarationQuotesAwkwardFileNames()
{
    QuietTextureParam dialog;
    dialog.findChild<QLineEdit*>(QStringLiteral("varNameEdit"))->setText(QStringLiteral("t"));
    auto* fileName = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    // A path with double quotes goes between single ones.
    fileName->setText(QStringLiteral("/data/\"odd\".png"));
    QStringList errors;
    const auto textures = parse(dialog.buildDeclaration(), &errors);
    QVERIFY2(errors.isEmpty(), qPrintable(errors.join(QLatin1Char('\n'))));
    QCOMPARE(textures[0]->fileName, QStringLiteral("/data/\"odd\".png"));

    // Both kinds can't be written at all.
    fileName->setText(QStringLiteral("/data/\"it's\".png"));
    QSignalSpy spy(&dialog, &DTextureParam::declarationReady);
    dialog.on_okBtn_clicked();
    QCOMPARE(dialog.warnings.size(), 1);
    QCOMPARE(spy.count(), 0);
    QVERIFY(dialog.declaration().isEmpty());
}

void TestEffectDialogs::textureDialogRefusesBadNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << QString();
    QTest::newRow("digit first") << QStringLiteral("2tex");
    QTest::newRow("blank inside") << QStringLiteral("my tex");
    QTest::newRow("keyword") << QStringLiteral("texture");
    QTest::newRow("keyword in capitals") << QStringLiteral("WrapS");
    QTest::newRow("reserved by GL") << QStringLiteral("gl_tex");
}

void TestEffectDialogs::textureDialogRefusesBadNames()
{
    QFETCH(QString, name);
    QuietTextureParam dialog;
    QSignalSpy spy(&dialog, &DTextureParam::declarationReady);
    dialog.findChild<QLineEdit*>(QStringLiteral("varNameEdit"))->setText(name);
    dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(QStringLiteral("a.png"));
    dialog.on_okBtn_clicked();
    QCOMPARE(dialog.warnings.size(), 1);
    QCOMPARE(spy.count(), 0);
    QVERIFY(dialog.declaration().isEmpty());
    QCOMPARE(dialog.result(), int(QDialog::Rejected));

    // What the dialog refuses, the language refuses too.
    if (!name.startsWith(QStringLiteral("gl_"))) {
        QStringList errors;
        parse(dialog.buildDeclaration(), &errors);
        QVERIFY(!errors.isEmpty());
    }
}

void TestEffectDialogs::textureDialogInsertsPathVariables()
{
    DTextureParam dialog;
    auto* fileName = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    auto* button = dialog.findChild<QToolButton*>(QStringLiteral("varBtn"));
    QVERIFY(button && button->menu());
    const QList<QAction*> actions = button->menu()->actions();
    QCOMPARE(actions.size(), MPathVarList::instance()->count());

    fileName->setText(QStringLiteral("/grain.png"));
    fileName->setCursorPosition(0);
    actions.at(1)->trigger();
    QCOMPARE(fileName->text(), MPathVarList::instance()->at(1)->variable() + QStringLiteral("/grain.png"));
}

void TestEffectDialogs::shaderDialogBuildsThePanelOnTheObjectsValues()
{
    MShader* shader = addEffect(QString::fromLatin1(effectSource));
    if (!shader->parseParams())
        QSKIP("The effect's parameters don't compile yet in this build.");
    MShaderObject object;
    DShaderParams dialog(shader, &object);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Effect settings"));

    // Opening puts the effect on the object with its defaults.
    QCOMPARE(object.shaderId(), shader->id());
    QVERIFY(object.isShaderActive());
    QCOMPARE(object.shaderValues()->value("strength"), QVariant(0.5));
    QCOMPARE(object.shaderValues()->value("mode"), QVariant(1));

    MFieldPanel* panel = dialog.panel();
    QCOMPARE(panel->object(), object.shaderValues());
    QCOMPARE(panel->fieldCount(), 4);
    auto* strength = qobject_cast<MSliderSpinbox*>(panel->editor("strength"));
    QVERIFY(strength);
    QCOMPARE(strength->value(), 0.5);
    QCOMPARE(strength->maximum(), 2.0);
    QVERIFY(qobject_cast<QCheckBox*>(panel->editor("inverted")));
    auto* mode = qobject_cast<QComboBox*>(panel->editor("mode"));
    QVERIFY(mode);
    QCOMPARE(mode->currentText(), QStringLiteral("Hard"));
    QCOMPARE(qobject_cast<MColorEdit*>(panel->editor("tint"))->color(), QColor(255, 0, 0));
    QCOMPARE(panel->label("strength")->text(), QStringLiteral("Strength"));

    QSignalSpy changed(&dialog, &DShaderParams::shaderValuesChanged);
    mode->setCurrentIndex(0);
    QCOMPARE(object.shaderValues()->value("mode"), QVariant(0));
    strength->spinBox()->setValue(1.5);
    QCOMPARE(object.shaderValues()->value("strength"), QVariant(1.5));
    QCOMPARE(changed.count(), 2);
}

void TestEffectDialogs::shaderDialogKeepsValuesOfTheSameEffect()
{
    MShader* shader = addEffect(QString::fromLatin1(effectSource));
    if (!shader->parseParams())
        QSKIP("The effect's parameters don't compile yet in this build.");
    MShaderObject object;
    object.set_shaderId(shader->id());
    object.shaderValues()->setValue("strength", 1.25);
    DShaderParams dialog(shader, &object);
    // The same effect again merges: the user's value stays.
    QCOMPARE(object.shaderValues()->value("strength"), QVariant(1.25));
    QCOMPARE(qobject_cast<MSliderSpinbox*>(dialog.panel()->editor("strength"))->value(), 1.25);
}

void TestEffectDialogs::shaderDialogRemoveTakesTheEffectAway()
{
    MShader* shader = addEffect(QStringLiteral("@main\n"));
    MShaderObject object;
    DShaderParams dialog(shader, &object);
    QCOMPARE(object.shaderId(), shader->id());
    QCOMPARE(dialog.findChild<QPushButton*>(QStringLiteral("removeButton"))->text(),
             QStringLiteral("Remove"));

    QSignalSpy applied(&dialog, &DShaderParams::applyShader);
    QSignalSpy idChanged(&object, &MShaderObject::shaderIdChanged);
    dialog.findChild<QPushButton*>(QStringLiteral("removeButton"))->click();
    QVERIFY(object.shaderId().isEmpty());
    QCOMPARE(object.shaderValues()->count(), 0);
    QCOMPARE(idChanged.count(), 1);
    QCOMPARE(applied.count(), 1);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

void TestEffectDialogs::shaderDialogApplyAndPreviewOnlySignal()
{
    MShader* shader = addEffect(QStringLiteral("@main\n"));
    MShaderObject object;
    DShaderParams dialog(shader, &object);
    auto* apply = dialog.findChild<QPushButton*>(QStringLiteral("applyButton"));
    auto* preview = dialog.findChild<QPushButton*>(QStringLiteral("previewButton"));
    QVERIFY(apply && preview);
    QCOMPARE(apply->text(), QStringLiteral("Apply"));
    QCOMPARE(apply->toolTip(), QStringLiteral("Apply the effect to layer. You can remove the effect later."));

    QSignalSpy applied(&dialog, &DShaderParams::applyShader);
    QSignalSpy changed(&dialog, &DShaderParams::shaderValuesChanged);
    preview->click();
    QCOMPARE(changed.count(), 1);
    QCOMPARE(applied.count(), 0);
    apply->click();
    QCOMPARE(applied.count(), 1);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(object.shaderId(), shader->id());

    // A dialog over nothing stands and signals all the same.
    DShaderParams empty(nullptr, nullptr);
    QSignalSpy emptyApplied(&empty, &DShaderParams::applyShader);
    empty.on_removeButton_clicked();
    QCOMPARE(emptyApplied.count(), 1);
}

QUILLMERE_TEST_MAIN(TestEffectDialogs)
#include "tst_effectdialogs.moc"
