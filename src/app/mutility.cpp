#include "app/mutility.h"

#include "app/meventfilter.h"

#include <QApplication>
#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QPointer>
#include <QStandardPaths>

#include <algorithm>

namespace {

// Parented to the application, so that it goes with it.
QPointer<MEventFilter> waitFilter;

QString madePath(const QString& path)
{
    QDir().mkpath(path);
    return path.endsWith(QLatin1Char('/')) ? path : path + QLatin1Char('/');
}

} // namespace

QString MUtility::applicationDir()
{
    return QCoreApplication::applicationDirPath() + QLatin1Char('/');
}

namespace {

QString& systemDataRootOverride()
{
    static QString path;
    return path;
}

} // namespace

QString MUtility::systemDataRoot()
{
    const QString& path = systemDataRootOverride();
    if (path.isEmpty())
        return applicationDir();
    return path.endsWith(QLatin1Char('/')) ? path : path + QLatin1Char('/');
}

void MUtility::setSystemDataRoot(const QString& path)
{
    systemDataRootOverride() = path;
}

QString MUtility::userDataDir()
{
    return madePath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                    QStringLiteral("/Tarnbeck/Quillmere/"));
}

QString MUtility::directoryName(MEnum::Directory directory)
{
    switch (directory) {
    case MEnum::BrushDir:
        return QStringLiteral("brushes");
    case MEnum::CacheDir:
        return QStringLiteral("cache");
    case MEnum::ModelDir:
        return QStringLiteral("models");
    case MEnum::PaperDir:
        return QStringLiteral("papers");
    case MEnum::ShaderDir:
        return QStringLiteral("shaders");
    case MEnum::ShapeDir:
        return QStringLiteral("shapes");
    case MEnum::SnippetDir:
        return QStringLiteral("snippets");
    case MEnum::SwatchDir:
        return QStringLiteral("swatches");
    case MEnum::TemplateDir:
        return QStringLiteral("templates");
    case MEnum::TextureDir:
        return QStringLiteral("textures");
    }
    return QString();
}

QString MUtility::directory(MEnum::PathType pathType, MEnum::Directory directory)
{
    // The cache holds tile backups of the running session: always the user's.
    if (directory == MEnum::CacheDir)
        return madePath(userDataDir() + directoryName(directory));
    if (pathType == MEnum::UserPath)
        return madePath(userDataDir() + QStringLiteral("datas/") + directoryName(directory));
    return madePath(systemDataRoot() + QStringLiteral("datas/") + directoryName(directory));
}

QString MUtility::tempDir()
{
    return directory(MEnum::UserPath, MEnum::CacheDir);
}

QString MUtility::tileFilePath(const QString& id)
{
    return tempDir() + id.toLower().trimmed() + QStringLiteral(".data");
}

QString MUtility::translationsDir()
{
    return applicationDir() + QStringLiteral("translations/");
}

QString MUtility::translationFile(const QString& langId)
{
    return translationsDir() + QStringLiteral("quillmere_") + langId + QStringLiteral(".qm");
}

bool MUtility::clearDirectory(const QString& path, bool removeDir, bool recursive)
{
    QDir dir(path);
    if (!dir.exists())
        return true;
    const QFileInfoList entries =
        dir.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo& entry : entries) {
        if (entry.isDir() && !entry.isSymLink()) {
            if (recursive && !clearDirectory(entry.absoluteFilePath(), recursive, recursive))
                return false;
        } else if (!QFile::remove(entry.absoluteFilePath())) {
            return false;
        }
    }
    if (removeDir)
        return dir.rmdir(dir.absolutePath());
    return true;
}

void MUtility::beginWait()
{
    if (!waitFilter && qApp) {
        waitFilter = new MEventFilter(qApp);
        qApp->installEventFilter(waitFilter);
    }
    QApplication::setOverrideCursor(Qt::WaitCursor);
}

void MUtility::endWait()
{
    while (QApplication::overrideCursor())
        QApplication::restoreOverrideCursor();
    if (waitFilter) {
        qApp->removeEventFilter(waitFilter);
        waitFilter->deleteLater();
        waitFilter.clear();
    }
}

bool MUtility::isWaiting()
{
    return !waitFilter.isNull();
}

QString MUtility::imageToBase64Png(const QImage& image)
{
    if (image.isNull())
        return QString();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG"))
        return QString();
    return QString::fromLatin1(bytes.toBase64());
}

QImage MUtility::imageFromPng(const QByteArray& bytes, int maxSide, qint64 maxPixels)
{
    if (bytes.isEmpty())
        return QImage();
    QBuffer buffer;
    buffer.setData(bytes);
    if (!buffer.open(QIODevice::ReadOnly))
        return QImage();
    QImageReader reader(&buffer, "png");
    reader.setAutoDetectImageFormat(false);
    const QSize size = reader.size();
    if (!size.isValid() || size.width() > maxSide || size.height() > maxSide ||
        qint64(size.width()) * size.height() > maxPixels)
        return QImage();
    return reader.read();
}

QImage MUtility::colorToAlpha(const QImage& image, QRgb keyColor)
{
    if (image.isNull())
        return QImage();
    QImage result = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const float key[3] = {float(qRed(keyColor)), float(qGreen(keyColor)), float(qBlue(keyColor))};
    for (int y = 0; y < result.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(result.scanLine(y));
        for (int x = 0; x < result.width(); ++x) {
            const QRgb source = qUnpremultiply(line[x]);
            float channels[3] = {float(qRed(source)), float(qGreen(source)), float(qBlue(source))};
            // The share of each channel's way from the key to its far end.
            float alpha = 0.0f;
            for (int i = 0; i < 3; ++i) {
                const float c = channels[i];
                const float k = key[i];
                float share = 0.0f;
                if (c > k)
                    share = (c - k) / (255.0f - k);
                else if (k > c)
                    share = (k - c) / k;
                alpha = std::max(alpha, share);
            }
            const float scaled = alpha * 255.0f;
            int newAlpha = 0;
            if (scaled >= 1.0f) {
                for (int i = 0; i < 3; ++i)
                    channels[i] = (channels[i] - key[i]) * 255.0f / scaled + key[i];
                newAlpha = qRound(float(qAlpha(source)) / 255.0f * scaled);
            }
            auto channel = [](float value) { return qBound(0, qRound(value), 255); };
            line[x] = qPremultiply(qRgba(channel(channels[0]), channel(channels[1]), channel(channels[2]),
                                         qBound(0, newAlpha, 255)));
        }
    }
    return result;
}
