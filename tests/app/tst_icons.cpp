#include "support/testenvironment.h"

#include "app/mmainwindowform.h"

#include <QAction>
#include <QDockWidget>
#include <QIcon>
#include <QMainWindow>
#include <QPainter>
#include <QSvgRenderer>
#include <QXmlStreamReader>

#include <map>

namespace {

// Backgrounds of a light and a dark palette: the icons must stand out on both.
const QRgb lightBackground = qRgb(0xef, 0xef, 0xef);
const QRgb darkBackground = qRgb(0x31, 0x36, 0x3b);

// Every icon the main window's form looks up, as "actions/<name>.svg" or
// "docks/<name>.svg".
QStringList formIcons()
{
    QMainWindow window;
    MMainWindowForm form;
    form.setupUi(&window);
    QStringList icons;
    for (const QAction* action : form.actions())
        icons << QStringLiteral("actions/%1.svg").arg(action->objectName());
    for (const QDockWidget* dock : form.docks())
        icons << QStringLiteral("docks/%1.svg").arg(dock->objectName());
    return icons;
}

QString sourcePath(const QString& relative)
{
    return QStringLiteral(QUILLMERE_SOURCE_DIR "/") + relative;
}

QImage render(QSvgRenderer& renderer, int size)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    painter.end();
    return image.convertToFormat(QImage::Format_ARGB32);
}

int visiblePixels(const QImage& icon, QRgb background)
{
    QImage composed(icon.size(), QImage::Format_RGB32);
    composed.fill(background);
    QPainter(&composed).drawImage(0, 0, icon);
    int count = 0;
    for (int y = 0; y < composed.height(); ++y)
        for (int x = 0; x < composed.width(); ++x)
            count += qAbs(qGray(composed.pixel(x, y)) - qGray(background)) >= 64 ? 1 : 0;
    return count;
}

struct DesktopEntry
{
    std::map<QString, QString> keys;
    QStringList errors;
};

DesktopEntry readDesktopEntry(const QString& path)
{
    DesktopEntry entry;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        entry.errors << QStringLiteral("cannot open");
        return entry;
    }
    const QRegularExpression keyPattern(
        QStringLiteral("^([A-Za-z0-9-]+(\\[[A-Za-z_@.]+\\])?)\\s*=\\s*(.*)$"));
    QString group;
    int lineNumber = 0;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (const QString& raw : lines) {
        ++lineNumber;
        const QString line = raw.trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        if (line.startsWith(QLatin1Char('[')) && line.endsWith(QLatin1Char(']'))) {
            group = line.mid(1, line.size() - 2);
            continue;
        }
        const QRegularExpressionMatch match = keyPattern.match(line);
        if (!match.hasMatch() || group.isEmpty()) {
            entry.errors << QStringLiteral("line %1: %2").arg(lineNumber).arg(line);
            continue;
        }
        if (group != QLatin1String("Desktop Entry"))
            continue;
        if (!entry.keys.emplace(match.captured(1), match.captured(3)).second)
            entry.errors << QStringLiteral("line %1: duplicate %2").arg(lineNumber).arg(match.captured(1));
    }
    return entry;
}

} // namespace

// The icons the main window looks up by object name, the application icon and
// the desktop integration files that the install rules ship.
class TestIcons : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyActionAndDockHasADrawing_data();
    void everyActionAndDockHasADrawing();
    void noIconIsLeftWithoutItsAction();
    void applicationIconComesAtEverySize();
    void desktopEntryHasTheRequiredKeys();
    void documentTypeIsDeclared();
};

void TestIcons::everyActionAndDockHasADrawing_data()
{
    QTest::addColumn<QString>("path");
    for (const QString& icon : formIcons())
        QTest::newRow(qPrintable(icon)) << QStringLiteral(":/icons/") + icon;
}

void TestIcons::everyActionAndDockHasADrawing()
{
    QFETCH(QString, path);
    QVERIFY2(QFile::exists(path), qPrintable(path));
    QSvgRenderer renderer(path);
    QVERIFY(renderer.isValid());
    QCOMPARE(renderer.viewBoxF(), QRectF(0, 0, 24, 24));

    const QImage image = render(renderer, 24);
    int opaque = 0, clear = 0;
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            colours.insert(pixel);
            clear += qAlpha(pixel) == 0 ? 1 : 0;
            opaque += qAlpha(pixel) == 255 ? 1 : 0;
        }
    }
    // A drawing, not a blank or a filled square: strokes, a transparent
    // background, and more than one colour.
    QVERIFY2(opaque >= 12, qPrintable(QString::number(opaque)));
    QVERIFY2(clear >= 16, qPrintable(QString::number(clear)));
    QVERIFY(colours.size() > 2);
    for (const QPoint corner : {QPoint(0, 0), QPoint(23, 0), QPoint(0, 23), QPoint(23, 23)})
        QCOMPARE(qAlpha(image.pixel(corner)), 0);

    // Readable on both palettes at tool bar and menu size: dark strokes alone
    // vanish on a dark palette, their light halo must not.
    for (int size : {24, 16}) {
        const QImage sized = render(renderer, size);
        const int onLight = visiblePixels(sized, lightBackground);
        const int onDark = visiblePixels(sized, darkBackground);
        QVERIFY2(
            onLight >= size && onDark >= size,
            qPrintable(QStringLiteral("%1 px: %2 on light, %3 on dark").arg(size).arg(onLight).arg(onDark)));
    }

    // The way the main window loads it: through QIcon and its SVG engine.
    const QImage fromIcon = QIcon(path).pixmap(QSize(16, 16)).toImage();
    QCOMPARE(fromIcon.size(), QSize(16, 16));
    QVERIFY(visiblePixels(fromIcon.convertToFormat(QImage::Format_ARGB32), lightBackground) >= 16);
}

void TestIcons::noIconIsLeftWithoutItsAction()
{
    const QStringList icons = formIcons();
    const QSet<QString> known(icons.begin(), icons.end());
    QCOMPARE(known.size(), icons.size());
    int found = 0;
    for (const QString& folder : {QStringLiteral("actions"), QStringLiteral("docks")}) {
        const QStringList files = QDir(QStringLiteral(":/icons/") + folder).entryList(QDir::Files);
        for (const QString& file : files) {
            QVERIFY2(known.contains(folder + QLatin1Char('/') + file), qPrintable(file));
            ++found;
        }
    }
    QCOMPARE(found, known.size());
}

void TestIcons::applicationIconComesAtEverySize()
{
    QSvgRenderer logo(QStringLiteral(":/icons/logo/quillmere.svg"));
    QVERIFY(logo.isValid());
    QVERIFY(QSvgRenderer(sourcePath(QStringLiteral("resources/icons/logo/quillmere.svg"))).isValid());

    for (int size : {16, 32, 48, 64, 128, 256}) {
        const QString path =
            sourcePath(QStringLiteral("resources/icons/logo/hicolor/%1x%1/apps/quillmere.png").arg(size));
        QImage png(path);
        QVERIFY2(!png.isNull(), qPrintable(path));
        QCOMPARE(png.size(), QSize(size, size));
        png = png.convertToFormat(QImage::Format_ARGB32);
        // Rounded corners over transparency, an opaque middle.
        QCOMPARE(qAlpha(png.pixel(0, 0)), 0);
        QCOMPARE(qAlpha(png.pixel(size / 2, size / 2)), 255);
        // The render is of the current drawing: it matches a fresh render closely.
        const QImage fresh = render(logo, size);
        int far = 0;
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x)
                if (qAbs(qGray(png.pixel(x, y)) - qGray(fresh.pixel(x, y))) > 48 ||
                    qAbs(qAlpha(png.pixel(x, y)) - qAlpha(fresh.pixel(x, y))) > 48)
                    ++far;
        QVERIFY2(far <= size * size / 50, qPrintable(QStringLiteral("%1: %2").arg(size).arg(far)));
    }
}

void TestIcons::desktopEntryHasTheRequiredKeys()
{
    const DesktopEntry entry = readDesktopEntry(sourcePath(QStringLiteral("resources/quillmere.desktop")));
    QVERIFY2(entry.errors.isEmpty(), qPrintable(entry.errors.join(QLatin1Char('\n'))));
    const auto value = [&entry](const char* key) {
        const auto found = entry.keys.find(QLatin1String(key));
        return found == entry.keys.end() ? QString() : found->second;
    };
    QCOMPARE(value("Type"), QStringLiteral("Application"));
    QCOMPARE(value("Name"), QStringLiteral("Quillmere"));
    QCOMPARE(value("GenericName"), QStringLiteral("Painting program"));
    QVERIFY(!value("Comment").isEmpty());
    QCOMPARE(value("Icon"), QStringLiteral("quillmere"));
    QCOMPARE(value("Terminal"), QStringLiteral("false"));

    // The program takes one optional file path.
    const QStringList exec = value("Exec").split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QCOMPARE(exec.size(), 2);
    QCOMPARE(exec.at(0), QStringLiteral("quillmere"));
    QVERIFY(exec.at(1) == QLatin1String("%F") || exec.at(1) == QLatin1String("%f"));

    // Lists end with a semicolon and name what menus and file managers look for.
    for (const char* key : {"Categories", "MimeType", "Keywords"})
        QVERIFY2(value(key).endsWith(QLatin1Char(';')), key);
    const QStringList categories = value("Categories").split(QLatin1Char(';'), Qt::SkipEmptyParts);
    for (const char* category : {"Graphics", "2DGraphics", "RasterGraphics", "Qt"})
        QVERIFY2(categories.contains(QLatin1String(category)), category);
    const QStringList types = value("MimeType").split(QLatin1Char(';'), Qt::SkipEmptyParts);
    for (const char* type : {"application/x-quillmere-document", "image/png", "image/jpeg"})
        QVERIFY2(types.contains(QLatin1String(type)), type);
}

void TestIcons::documentTypeIsDeclared()
{
    QFile file(sourcePath(QStringLiteral("resources/quillmere-mime.xml")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    QString type;
    QStringList globs;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("mime-type"))
            type = xml.attributes().value(QLatin1String("type")).toString();
        else if (xml.name() == QLatin1String("glob"))
            globs << xml.attributes().value(QLatin1String("pattern")).toString();
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    QCOMPARE(type, QStringLiteral("application/x-quillmere-document"));
    QCOMPARE(globs, QStringList{QStringLiteral("*.qmd")});
}

QUILLMERE_TEST_MAIN(TestIcons)
#include "tst_icons.moc"
