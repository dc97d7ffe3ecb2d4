#include "support/glcontext.h"
#include "support/testenvironment.h"

#include "app/menum.h"
#include "app/mutility.h"
#include "brush/dbrushsettings.h"
#include "brush/dcurveeditor.h"
#include "brush/mbrush.h"
#include "brush/mbrushsettinginfolist.h"
#include "brush/msettingcategory.h"
#include "effects/mfield.h"
#include "effects/mfieldpanel.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "effects/msliderspinbox.h"
#include "effects/mvalues.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>

namespace {

// The formula of the colour-to-alpha step on one premultiplied pixel, in doubles.
QRgb expectedColorToAlpha(QRgb premultiplied, QRgb key)
{
    const QRgb source = qUnpremultiply(premultiplied);
    double channels[3] = {double(qRed(source)), double(qGreen(source)), double(qBlue(source))};
    const double keys[3] = {double(qRed(key)), double(qGreen(key)), double(qBlue(key))};
    double alpha = 0.0;
    for (int i = 0; i < 3; ++i) {
        double share = 0.0;
        if (channels[i] > keys[i])
            share = (channels[i] - keys[i]) / (255.0 - keys[i]);
        else if (keys[i] > channels[i])
            share = (keys[i] - channels[i]) / keys[i];
        alpha = std::max(alpha, share);
    }
    const double scaled = alpha * 255.0;
    if (scaled < 1.0)
        return qPremultiply(qRgba(qRed(source), qGreen(source), qBlue(source), 0));
    int out[3];
    for (int i = 0; i < 3; ++i)
        out[i] = std::clamp(int(std::lround((channels[i] - keys[i]) * 255.0 / scaled + keys[i])), 0, 255);
    const int outAlpha = int(std::lround(qAlpha(source) / 255.0 * scaled));
    return qPremultiply(qRgba(out[0], out[1], out[2], outAlpha));
}

bool near(QRgb a, QRgb b, int tolerance)
{
    return std::abs(qRed(a) - qRed(b)) <= tolerance && std::abs(qGreen(a) - qGreen(b)) <= tolerance &&
           std::abs(qBlue(a) - qBlue(b)) <= tolerance && std::abs(qAlpha(a) - qAlpha(b)) <= tolerance;
}

QImage filled(int width, int height, const QColor& colour)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(colour);
    return image;
}

QByteArrayList panelNames(const MFieldPanel* panel)
{
    QByteArrayList names;
    for (int i = 0; i < panel->fieldCount(); ++i)
        names << panel->field(i)->name;
    return names;
}

QByteArrayList settingNames(const QVector<int>& settings)
{
    QByteArrayList names;
    for (int setting : settings)
        names << MBrushSettingInfoList::instance()->propertyName(setting);
    return names;
}

// Runs action, which opens a modal message box, and answers the box by
// pressing the button of that text (without its mnemonic mark); the box's
// texts come back.
struct Answered
{
    QString title;
    QString text;
    QString informative;
    QStringList buttons;
};

Answered answerBox(const QString& buttonText, const std::function<void()>& action)
{
    Answered seen;
    QTimer timer;
    int attempts = 0;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box) {
            seen.title = box->windowTitle();
            seen.text = box->text();
            seen.informative = box->informativeText();
            QAbstractButton* chosen = nullptr;
            for (QAbstractButton* button : box->buttons()) {
                // Without the mnemonic marks, which depend on the platform.
                const QString text = button->text().remove(QLatin1Char('&'));
                seen.buttons << text;
                if (text == buttonText)
                    chosen = button;
            }
            if (chosen)
                chosen->click();
            else
                box->reject();
        }
        if (box || ++attempts > 250)
            timer.stop();
    });
    timer.start(20);
    action();
    timer.stop();
    return seen;
}

MShader* addEngine()
{
    auto shader = std::make_unique<MShader>();
    shader->setType(MShader::BrushShader);
    shader->setDescription(QStringLiteral("Grain engine"));
    shader->setSource(QStringLiteral("@params\n"
                                     "float grain = 0.25 \"Grain\" min = 0.0 max = 1.0 increment = 0.05;\n"
                                     "bool coarse = false \"Coarse\";\n"
                                     "@main\n"
                                     "f_color = vec4(grain);\n"));
    return MShaderList::instance()->addShader(std::move(shader));
}

} // namespace

class TestDBrushSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void colorToAlphaFollowsTheFormula();
    void textureImportSteps();
    void categoriesBuildTheirRows();
    void textureLabelAndReset();
    void curveButtonRunsTheCurveEditor();
    void editMarksModifiedAndSaveWritesTheUserFile();
    void closingWithModificationsAsks();

private:
    QuillmereTest::GLContext m_gl;
};

void TestDBrushSettings::initTestCase()
{
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
}

void TestDBrushSettings::colorToAlphaFollowsTheFormula()
{
    const QRgb key = qRgb(200, 100, 50);
    const QRgb pixels[] = {
        qPremultiply(qRgba(200, 100, 50, 255)), // the key itself goes
        qPremultiply(qRgba(250, 20, 50, 255)),  // above and below the key
        qPremultiply(qRgba(0, 0, 0, 255)),      // black keeps black, at the share of the far channel
        qPremultiply(qRgba(10, 100, 200, 128)), // half transparent in the source
        qPremultiply(qRgba(255, 255, 255, 255)),
        qPremultiply(qRgba(201, 100, 50, 255)), // a step from the key: faint but not gone
        qRgba(0, 0, 0, 0),
    };
    const int count = int(sizeof(pixels) / sizeof(pixels[0]));
    QImage image(count, 1, QImage::Format_ARGB32_Premultiplied);
    for (int x = 0; x < count; ++x)
        image.setPixel(x, 0, pixels[x]);

    const QImage result = MUtility::colorToAlpha(image, key);
    QCOMPARE(result.format(), QImage::Format_ARGB32_Premultiplied);
    QCOMPARE(result.size(), image.size());
    const auto* line = reinterpret_cast<const QRgb*>(result.constScanLine(0));
    for (int x = 0; x < count; ++x) {
        const QRgb expected = expectedColorToAlpha(pixels[x], key);
        QVERIFY2(near(line[x], expected, 1), qPrintable(QStringLiteral("pixel %1: %2 against %3")
                                                            .arg(x)
                                                            .arg(line[x], 8, 16, QLatin1Char('0'))
                                                            .arg(expected, 8, 16, QLatin1Char('0'))));
    }
    QCOMPARE(qAlpha(line[0]), 0);
    QCOMPARE(qAlpha(line[6]), 0);
    // Black against that key: the blue channel goes furthest, all the way.
    QCOMPARE(qAlpha(line[2]), 255);
    QVERIFY(qAlpha(line[5]) > 0 && qAlpha(line[5]) < 10);

    // Any source format is taken; a null image stays null.
    const QImage rgb = MUtility::colorToAlpha(
        filled(3, 2, QColor(200, 100, 50)).convertToFormat(QImage::Format_RGB888), key);
    QCOMPARE(rgb.size(), QSize(3, 2));
    QCOMPARE(qAlpha(rgb.pixel(2, 1)), 0);
    QVERIFY(MUtility::colorToAlpha(QImage(), key).isNull());
}

void TestDBrushSettings::textureImportSteps()
{
    // A tall image with a transparent corner: turned upright, angle 90, no question.
    {
        MBrush brush;
        QImage tall = filled(40, 100, Qt::transparent);
        tall.setPixel(5, 0, qRgba(255, 0, 0, 255));
        QVERIFY(!DBrushSettings::hasOpaqueCorner(tall));
        DBrushSettings::applyTextureImage(&brush, tall, true);
        QCOMPARE(brush.texture().size(), QSize(100, 40));
        QCOMPARE(brush.angle(), 90.0);
        QCOMPARE(brush.radius(), 50.0);
        QCOMPARE(brush.ratio(), 0.4);
        QVERIFY(!brush.preserveTextureColor());
        // A quarter turn clockwise: the top row becomes the right column.
        QCOMPARE(QColor(brush.texture().pixel(99, 5)), QColor(255, 0, 0));
        QCOMPARE(qAlpha(brush.texture().pixel(5, 0)), 0);
    }
    // An opaque corner keyed out: the background goes, the drawing stays.
    QImage opaque = filled(300, 120, Qt::white);
    for (int y = 40; y < 80; ++y)
        for (int x = 100; x < 200; ++x)
            opaque.setPixel(x, y, qRgb(0, 0, 0));
    opaque.setPixel(20, 20, qRgb(128, 128, 128));
    QVERIFY(DBrushSettings::hasOpaqueCorner(opaque));
    {
        MBrush brush;
        brush.setAngle(45.0);
        DBrushSettings::applyTextureImage(&brush, opaque, true);
        const QImage texture = brush.texture();
        QCOMPARE(texture.size(), QSize(300, 120));
        QCOMPARE(texture.format(), QImage::Format_RGBA8888_Premultiplied);
        QCOMPARE(qAlpha(texture.pixel(0, 0)), 0);
        QCOMPARE(qAlpha(texture.pixel(299, 119)), 0);
        QCOMPARE(texture.pixel(150, 60), qRgba(0, 0, 0, 255));
        // Mid grey against white: black at half opacity.
        QVERIFY(near(texture.pixel(20, 20), qRgba(0, 0, 0, 127), 1));
        QVERIFY(!brush.preserveTextureColor());
        QCOMPARE(brush.angle(), 0.0);
        QCOMPARE(brush.radius(), 150.0);
        QCOMPARE(brush.ratio(), 0.4);
    }
    // The same image with its colours kept.
    {
        MBrush brush;
        DBrushSettings::applyTextureImage(&brush, opaque, false);
        QVERIFY(brush.preserveTextureColor());
        QCOMPARE(brush.texture(), opaque.convertToFormat(QImage::Format_RGBA8888_Premultiplied));
    }
    // Wider than 1000: scaled down; the ratio is that of the image as given.
    {
        MBrush brush;
        DBrushSettings::applyTextureImage(&brush, filled(2400, 1000, Qt::transparent), true);
        QCOMPARE(brush.texture().size(), QSize(1000, 417));
        QCOMPARE(brush.radius(), 500.0);
        QCOMPARE(brush.ratio(), 1000.0 / 2400.0);
    }
    // A tall and wide image is turned first, then scaled.
    {
        MBrush brush;
        DBrushSettings::applyTextureImage(&brush, filled(600, 3000, Qt::transparent), true);
        QCOMPARE(brush.texture().size(), QSize(1000, 200));
        QCOMPARE(brush.angle(), 90.0);
        QCOMPARE(brush.ratio(), 0.2);
    }
    // Nothing happens without an image or a brush.
    MBrush untouched;
    const double radius = untouched.radius();
    DBrushSettings::applyTextureImage(&untouched, QImage(), true);
    DBrushSettings::applyTextureImage(nullptr, opaque, true);
    QVERIFY(untouched.texture().isNull());
    QCOMPARE(untouched.radius(), radius);
}

void TestDBrushSettings::categoriesBuildTheirRows()
{
    MBrush plain;
    {
        DBrushSettings dialog(&plain);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Brush settings"));
        auto* combo = dialog.findChild<QComboBox*>(QStringLiteral("categoryCombo"));
        QVERIFY(combo);
        const QVector<MSettingCategory*>& categories = MBrushSettingInfoList::instance()->categories();
        QCOMPARE(categories.size(), 5);
        QCOMPARE(combo->count(), 6);
        QCOMPARE(combo->itemText(0), QStringLiteral("Prefered settings"));
        QCOMPARE(combo->itemData(0).toInt(), 9998);
        for (int i = 0; i < categories.size(); ++i) {
            QCOMPARE(combo->itemText(i + 1), categories.at(i)->description());
            QCOMPARE(combo->itemData(i + 1).toInt(), i);
        }
        QCOMPARE(combo->findData(9999), -1);

        // The quick settings first, bound to the working copy with curve buttons.
        QCOMPARE(dialog.currentCategory(), 9998);
        QCOMPARE(panelNames(dialog.panel()), settingNames(plain.quickSettings()));
        QCOMPARE(dialog.panel()->object(), dialog.workingBrush());
        QVERIFY(dialog.workingBrush() != &plain);
        QVERIFY(dialog.panel()->curveButton("radius"));
        QVERIFY(!dialog.panel()->labelsOnTop());
        QVERIFY(!dialog.panel()->slidersTracking());

        // Choosing a category in the combo builds its rows.
        Q_EMIT combo->activated(2);
        QCOMPARE(dialog.currentCategory(), 1);
        QCOMPARE(panelNames(dialog.panel()), settingNames(categories.at(1)->settings()));

        // No engine: its entry is refused and the panel stays.
        dialog.setCurrentCategory(9999);
        QCOMPARE(dialog.currentCategory(), 1);
        QCOMPARE(panelNames(dialog.panel()), settingNames(categories.at(1)->settings()));
        QCOMPARE(combo->currentIndex(), 2);
    }

    // A brush with an engine that has parameters offers them, bound to its values.
    MShader* engine = addEngine();
    QVERIFY(engine);
    MBrush withEngine;
    withEngine.set_shaderId(engine->id());
    QCOMPARE(withEngine.shaderId(), engine->id());
    withEngine.shaderValues()->setValue("grain", 0.75);
    DBrushSettings dialog(&withEngine);
    auto* combo = dialog.findChild<QComboBox*>(QStringLiteral("categoryCombo"));
    QCOMPARE(combo->count(), 7);
    QCOMPARE(combo->itemText(6), QStringLiteral("Engine parameters"));
    QCOMPARE(combo->itemData(6).toInt(), 9999);
    Q_EMIT combo->activated(6);
    QCOMPARE(dialog.currentCategory(), 9999);
    QCOMPARE(panelNames(dialog.panel()), (QByteArrayList{"grain", "coarse"}));
    QCOMPARE(dialog.panel()->object(), dialog.workingBrush()->shaderValues());
    QCOMPARE(dialog.panel()->value("grain").toDouble(), 0.75);
    QVERIFY(!dialog.panel()->curveButton("grain"));
    // Editing a parameter edits the copy's value, not the brush's.
    auto* grain = qobject_cast<MSliderSpinbox*>(dialog.panel()->editor("grain"));
    QVERIFY(grain);
    grain->set_value(0.5);
    QVERIFY(dialog.isModified());
    QCOMPARE(dialog.workingBrush()->shaderValues()->value("grain").toDouble(), 0.5);
    QCOMPARE(withEngine.shaderValues()->value("grain").toDouble(), 0.75);
    QVERIFY(dialog.textureText().endsWith(QStringLiteral(" - engine: Grain engine")));

    // Back to a category of settings: bound to the brush again.
    Q_EMIT combo->activated(1);
    QCOMPARE(dialog.currentCategory(), 0);
    QCOMPARE(dialog.panel()->object(), dialog.workingBrush());
    MShaderList::instance()->removeShader(engine->id());
}

void TestDBrushSettings::textureLabelAndReset()
{
    MBrush brush;
    DBrushSettings dialog(&brush);
    auto* info = dialog.findChild<QLabel*>(QStringLiteral("textureInfoLabel"));
    QVERIFY(info);
    QCOMPARE(info->text(), QStringLiteral("no texture"));

    // Resetting without a texture only says so.
    Answered seen = answerBox(QStringLiteral("OK"), [&] { dialog.resetBrushTexture(); });
    QCOMPARE(seen.title, QStringLiteral("Reset texture"));
    QCOMPARE(seen.text, QStringLiteral("This brush has no texture."));
    QVERIFY(!dialog.isModified());
    seen = answerBox(QStringLiteral("OK"), [&] { dialog.exportBrushTexture(); });
    QCOMPARE(seen.text, QStringLiteral("No texture to save!"));

    // A texture file with a transparent corner loads without a question.
    QImage image = filled(64, 32, Qt::transparent);
    image.setPixel(10, 10, qRgba(0, 0, 255, 255));
    const QString fileName = QuillmereTest::temporaryHome() + QStringLiteral("/stamp.png");
    QVERIFY(image.save(fileName));
    QVERIFY(dialog.loadTextureFile(fileName));
    QVERIFY(dialog.isModified());
    QCOMPARE(info->text(), QStringLiteral("width: 64 - height: 32"));
    QCOMPARE(dialog.workingBrush()->radius(), 32.0);
    QVERIFY(brush.texture().isNull());

    // Exported as it is held.
    const QString exported = QuillmereTest::temporaryHome() + QStringLiteral("/exported.png");
    QVERIFY(dialog.exportTextureFile(exported));
    QCOMPARE(QImage(exported).convertToFormat(QImage::Format_ARGB32).pixel(10, 10), qRgba(0, 0, 255, 255));

    // An opaque file asks, and the answer No keeps the colours.
    const QString opaqueName = QuillmereTest::temporaryHome() + QStringLiteral("/opaque.png");
    QVERIFY(filled(20, 10, Qt::yellow).save(opaqueName));
    seen = answerBox(QStringLiteral("No"), [&] { QVERIFY(dialog.loadTextureFile(opaqueName)); });
    QCOMPARE(seen.text, QStringLiteral("The image background seems to be opaque. Do you want a transparent "
                                       "background? If no texure color will be preserved."));
    QVERIFY(dialog.workingBrush()->preserveTextureColor());
    QCOMPARE(QColor(dialog.workingBrush()->texture().pixel(0, 0)), QColor(Qt::yellow));

    // A file that is no image.
    const QString broken = QuillmereTest::temporaryHome() + QStringLiteral("/broken.png");
    QFile file(broken);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("not a picture");
    file.close();
    seen = answerBox(QStringLiteral("OK"), [&] { QVERIFY(!dialog.loadTextureFile(broken)); });
    QCOMPARE(seen.title, QStringLiteral("Brush texture"));
    QCOMPARE(seen.text, QStringLiteral("An error occured while loading the file."));
    QCOMPARE(info->text(), QStringLiteral("width: 20 - height: 10"));

    // Reset asks; No keeps, Yes removes.
    seen = answerBox(QStringLiteral("No"), [&] { dialog.resetBrushTexture(); });
    QCOMPARE(seen.text, QStringLiteral("Are you sure you want to remove brush texture?"));
    QVERIFY(!dialog.workingBrush()->texture().isNull());
    answerBox(QStringLiteral("Yes"), [&] { dialog.resetBrushTexture(); });
    QVERIFY(dialog.workingBrush()->texture().isNull());
    QCOMPARE(info->text(), QStringLiteral("no texture"));
}

void TestDBrushSettings::curveButtonRunsTheCurveEditor()
{
    MBrush brush;
    DBrushSettings dialog(&brush);
    QToolButton* button = dialog.panel()->curveButton("radius");
    QVERIFY(button);
    const auto shows = [&dialog](const char* icon) {
        const QImage expected = QIcon(QString::fromLatin1(icon)).pixmap(16).toImage();
        return !expected.isNull() &&
               dialog.panel()->curveButton("radius")->icon().pixmap(16).toImage() == expected;
    };
    QVERIFY(shows(":/icons/plus.ico"));

    // The editor adds a pressure curve and is left with Ok.
    int editorSetting = -1;
    QTimer timer;
    int attempts = 0;
    connect(&timer, &QTimer::timeout, this, [&] {
        auto* editor = qobject_cast<DCurveEditor*>(QApplication::activeModalWidget());
        if (editor) {
            editorSetting = editor->setting();
            editor->on_addCurveBtn_clicked();
            editor->on_btnOk_clicked();
        }
        if (editor || ++attempts > 250)
            timer.stop();
    });
    timer.start(20);
    button->click();
    QCOMPARE(editorSetting, int(MEnum::bsRadius));
    QVERIFY(dialog.workingBrush()->hasCurve(MEnum::bsRadius, MEnum::biPressure));
    QVERIFY(!brush.hasCurve(MEnum::bsRadius));
    QVERIFY(dialog.isModified());
    QVERIFY(shows(":/icons/check.ico"));
}

void TestDBrushSettings::editMarksModifiedAndSaveWritesTheUserFile()
{
    MBrush brush;
    brush.setRadius(4.0);
    brush.set_description(QStringLiteral("saved brush"));
    DBrushSettings dialog(&brush);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    auto* preview = dialog.findChild<QLabel*>(QStringLiteral("previewLabel"));
    QVERIFY(preview);
    const QImage before = preview->pixmap(Qt::ReturnByValue).toImage();
    QVERIFY(!before.isNull());
    QVERIFY(!dialog.isModified());

    auto* radius = qobject_cast<MSliderSpinbox*>(dialog.panel()->editor("radius"));
    QVERIFY(radius);
    radius->set_value(20.0);
    QVERIFY(dialog.isModified());
    QCOMPARE(dialog.workingBrush()->radius(), 20.0);
    QCOMPARE(brush.radius(), 4.0);
    // The preview shows the thicker stroke.
    const QImage after = preview->pixmap(Qt::ReturnByValue).toImage();
    QVERIFY(after != before);
    auto inked = [](const QImage& image) {
        int count = 0;
        const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
        for (int y = 0; y < argb.height(); ++y)
            for (int x = 0; x < argb.width(); ++x)
                count += qAlpha(argb.pixel(x, y)) > 128 ? 1 : 0;
        return count;
    };
    QVERIFY2(inked(after) > 2 * inked(before),
             qPrintable(QStringLiteral("%1 against %2").arg(inked(after)).arg(inked(before))));

    QVERIFY(!QFile::exists(brush.userFileName()));
    auto* save = dialog.findChild<QPushButton*>(QStringLiteral("saveButton"));
    QVERIFY(save);
    const Answered seen = answerBox(QStringLiteral("OK"), [&] { save->click(); });
    QCOMPARE(seen.title, QStringLiteral("Brush"));
    QCOMPARE(seen.text, QStringLiteral("File saved."));
    QVERIFY(!dialog.isModified());
    QCOMPARE(brush.radius(), 20.0);

    // The file holds the edit, under the brush's own id.
    MBrush reread;
    QVERIFY(reread.load(brush.userFileName()));
    QCOMPARE(reread.radius(), 20.0);
    QCOMPARE(reread.id(), brush.id());
    QCOMPARE(reread.description(), QStringLiteral("saved brush"));
    // Nothing modified: closing asks nothing.
    dialog.reject();
    QVERIFY(!dialog.isVisible());
}

void TestDBrushSettings::closingWithModificationsAsks()
{
    struct Case
    {
        const char* answer;
        bool closes;
        bool written;
        bool saved;
    };
    const Case cases[] = {
        {"Save", true, true, true},
        {"Keep changes but do not save", true, true, false},
        {"Discard and close", true, false, false},
        {"Don't close", false, false, false},
    };
    for (const Case& c : cases) {
        MBrush brush;
        brush.setHardness(0.5);
        DBrushSettings dialog(&brush);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        auto* hardness = qobject_cast<MSliderSpinbox*>(dialog.panel()->editor("hardness"));
        QVERIFY(hardness);
        hardness->set_value(0.9);
        QVERIFY(dialog.isModified());

        const Answered seen = answerBox(QString::fromLatin1(c.answer), [&] { dialog.reject(); });
        QCOMPARE(seen.text, QStringLiteral("The brush has been modified."));
        QCOMPARE(
            seen.informative,
            QStringLiteral("If you do not save, the changes will be discarded at next application startup."));
        QVERIFY2(seen.buttons.contains(QString::fromLatin1(c.answer)), qPrintable(seen.buttons.join('|')));
        QCOMPARE(seen.buttons.size(), 4);
        QCOMPARE(dialog.isVisible(), !c.closes);
        QCOMPARE(brush.hardness(), c.written ? 0.9 : 0.5);
        QCOMPARE(QFile::exists(brush.userFileName()), c.saved);
        if (c.saved) {
            MBrush reread;
            QVERIFY(reread.load(brush.userFileName()));
            QCOMPARE(reread.hardness(), 0.9);
        }
        QCOMPARE(dialog.isModified(), !c.closes);
        if (!c.closes)
            answerBox(QStringLiteral("Discard and close"), [&] { dialog.reject(); });
        QVERIFY(!dialog.isVisible());
    }
}

QUILLMERE_TEST_MAIN(TestDBrushSettings)
#include "tst_dbrushsettings.moc"
