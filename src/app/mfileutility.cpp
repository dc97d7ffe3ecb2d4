#include "app/mfileutility.h"

#include "app/mlogger.h"
#include "app/mutility.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QImageReader>
#include <QProgressDialog>
#include <QThread>

#include <climits>

QStringList MFileUtility::documentFilters()
{
    return {QCoreApplication::translate("MFileUtility", "%1 files").arg(QStringLiteral("Quillmere")) +
                QStringLiteral(" (*.%1)").arg(QStringLiteral("qmd")),
            QCoreApplication::translate("MFileUtility", "All files (*.*)")};
}

QStringList MFileUtility::modelFilters()
{
    return {QCoreApplication::translate("MFileUtility", "WaveFront object files (*.obj)"),
            QCoreApplication::translate("MFileUtility", "All files (*.*)")};
}

QStringList MFileUtility::imageFormats()
{
    QStringList formats;
    const QList<QByteArray> supported = QImageReader::supportedImageFormats();
    for (const QByteArray& format : supported) {
        const QString name = QString::fromLatin1(format).toLower();
        if (!formats.contains(name))
            formats << name;
    }
    return formats;
}

QString MFileUtility::formatDescription(const QString& format)
{
    static const QHash<QString, const char*> descriptions = {
        {QStringLiteral("bw"), QT_TRANSLATE_NOOP("MFileUtility", "Black & White")},
        {QStringLiteral("eps"), QT_TRANSLATE_NOOP("MFileUtility", "Encapsulated Postscript")},
        {QStringLiteral("epsf"), QT_TRANSLATE_NOOP("MFileUtility", "Encapsulated Postscript")},
        {QStringLiteral("epsi"), QT_TRANSLATE_NOOP("MFileUtility", "Encapsulated PostScript Interchange")},
        {QStringLiteral("exr"), QT_TRANSLATE_NOOP("MFileUtility", "OpenEXR")},
        {QStringLiteral("pcx"), QT_TRANSLATE_NOOP("MFileUtility", "PC Paintbrush Exchange")},
        {QStringLiteral("psd"), QT_TRANSLATE_NOOP("MFileUtility", "Photoshop Document")},
        {QStringLiteral("rgb"), QT_TRANSLATE_NOOP("MFileUtility", "Raw red, green, and blue samples")},
        {QStringLiteral("rgba"), QT_TRANSLATE_NOOP("MFileUtility", "Raw red, green, blue, and alpha samples")},
        {QStringLiteral("sgi"), QT_TRANSLATE_NOOP("MFileUtility", "Irix RGB")},
        {QStringLiteral("tga"), QT_TRANSLATE_NOOP("MFileUtility", "Truevision Targa")},
        {QStringLiteral("xcf"), QT_TRANSLATE_NOOP("MFileUtility", "eXperimental Computing Facility (GIMP)")},
        {QStringLiteral("dds"), QT_TRANSLATE_NOOP("MFileUtility", "DirectDraw Surface")},
        {QStringLiteral("xv"), QT_TRANSLATE_NOOP("MFileUtility", "Khoros Visualization")},
        {QStringLiteral("bmp"), QT_TRANSLATE_NOOP("MFileUtility", "Windows Bitmap")},
        {QStringLiteral("gif"), QT_TRANSLATE_NOOP("MFileUtility", "Graphic Interchange Format")},
        {QStringLiteral("jpg"), QT_TRANSLATE_NOOP("MFileUtility", "Joint Photographic Experts Group")},
        {QStringLiteral("jpeg"), QT_TRANSLATE_NOOP("MFileUtility", "Joint Photographic Experts Group")},
        {QStringLiteral("jp2"), QT_TRANSLATE_NOOP("MFileUtility", "Joint Photographic Experts Group 2000")},
        {QStringLiteral("mng"), QT_TRANSLATE_NOOP("MFileUtility", "Multiple-image Network Graphics")},
        {QStringLiteral("png"), QT_TRANSLATE_NOOP("MFileUtility", "Portable Network Graphics")},
        {QStringLiteral("pbm"), QT_TRANSLATE_NOOP("MFileUtility", "Portable Bitmap")},
        {QStringLiteral("pgm"), QT_TRANSLATE_NOOP("MFileUtility", "Portable Graymap")},
        {QStringLiteral("ppm"), QT_TRANSLATE_NOOP("MFileUtility", "Portable Pixmap")},
        {QStringLiteral("tiff"), QT_TRANSLATE_NOOP("MFileUtility", "Tagged Image File Format")},
        {QStringLiteral("tif"), QT_TRANSLATE_NOOP("MFileUtility", "Tagged Image File Format")},
        {QStringLiteral("xbm"), QT_TRANSLATE_NOOP("MFileUtility", "X11 Bitmap")},
        {QStringLiteral("xpm"), QT_TRANSLATE_NOOP("MFileUtility", "X11 Pixmap")},
        {QStringLiteral("ico"), QT_TRANSLATE_NOOP("MFileUtility", "Icon Image")},
        {QStringLiteral("svg"), QT_TRANSLATE_NOOP("MFileUtility", "Scalable Vector Graphics")},
        {QStringLiteral("wbmp"), QT_TRANSLATE_NOOP("MFileUtility", "Wireless Application Protocol Bitmap")},
        {QStringLiteral("webp"), QT_TRANSLATE_NOOP("MFileUtility", "WebP")},
    };
    const auto found = descriptions.constFind(format.toLower());
    if (found != descriptions.constEnd())
        return QCoreApplication::translate("MFileUtility", found.value());
    return QCoreApplication::translate("MFileUtility", "%1 files").arg(format);
}

QStringList MFileUtility::imageFilters(bool extensionsOnly)
{
    const QStringList formats = imageFormats();
    QStringList extensions;
    for (const QString& format : formats)
        extensions << QStringLiteral("*.") + format;
    if (extensionsOnly)
        return extensions;

    QStringList filters;
    filters << QCoreApplication::translate("MFileUtility", "All image files") + QStringLiteral(" (") +
                   extensions.join(QLatin1Char(' ')) + QStringLiteral(")");
    for (const QString& format : formats)
        filters << formatDescription(format) + QStringLiteral(" (*.") + format + QStringLiteral(")");
    return filters;
}

void MFileUtility::installData()
{
    QProgressDialog progress;
    progress.setCancelButton(nullptr);
    progress.setWindowModality(Qt::WindowModal);
    progress.setRange(0, 100);
    progress.setValue(0);
    progress.setWindowTitle(QCoreApplication::translate("MFileUtility", "First %1 execution.").arg(QStringLiteral("Quillmere")));
    progress.setLabelText(QCoreApplication::translate("MFileUtility", "%1 is configuring installation, please wait.")
                              .arg(QStringLiteral("Quillmere")));
    // The dialog would pop up on its own after a while; it is shown only when a file is copied.
    progress.setMinimumDuration(INT_MAX);

    QThread::sleep(1);

    const MEnum::Directory installed[] = {MEnum::BrushDir,   MEnum::ShaderDir,   MEnum::PaperDir,
                                          MEnum::ShapeDir,   MEnum::SnippetDir,  MEnum::SwatchDir,
                                          MEnum::TemplateDir, MEnum::TextureDir};
    for (MEnum::Directory dir : installed) {
        const QString target = MUtility::directory(MEnum::UserPath, dir);
        if (!QDir(target).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot))
            continue;
        const QString source = MUtility::directory(MEnum::SystemPath, dir);
        QStringList files;
        QDirIterator it(source, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext())
            files << it.next();
        files.sort();
        progress.setMaximum(files.size());
        const QDir sourceDir(source);
        for (int i = 0; i < files.size(); ++i) {
            progress.setValue(i);
            progress.setLabelText(QCoreApplication::translate("MFileUtility", "Processing %3: file %1 of %2 ")
                                      .arg(i + 1)
                                      .arg(files.size())
                                      .arg(MUtility::directoryName(dir)));
            progress.show();
            QCoreApplication::processEvents();
            const QString relative = sourceDir.relativeFilePath(files.at(i));
            QDir().mkpath(QFileInfo(target + relative).path());
            // A file that can't be copied is skipped; the others still arrive.
            if (!QFile::copy(files.at(i), target + relative))
                MLogger::systemError(QStringLiteral("MFileUtility::installData"),
                                     QStringLiteral("Cannot copy %1 to %2").arg(files.at(i), target + relative));
        }
    }
}
