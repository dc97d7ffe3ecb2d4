#include "app/msettings.h"

#include "app/mlogger.h"

#include <QAction>
#include <QCoreApplication>
#include <QKeySequence>
#include <QWidget>

namespace {

const char* const categoryNames[] = {QT_TRANSLATE_NOOP("MSettings", "User"),
                                     QT_TRANSLATE_NOOP("MSettings", "Document"),
                                     QT_TRANSLATE_NOOP("MSettings", "Grid"),
                                     QT_TRANSLATE_NOOP("MSettings", "Display"),
                                     QT_TRANSLATE_NOOP("MSettings", "Editor"),
                                     QT_TRANSLATE_NOOP("MSettings", "Shortcuts")};

struct ItemRow
{
    const char* category;
    const char* key;
    const char* label;
    int type;
    const char* enumName;
    double minimum;
    double maximum;
};

} // namespace

MSettings::MSettings()
{
    static const ItemRow rows[] = {
        {"User", "saveLayout", QT_TRANSLATE_NOOP("MSettings", "Save layout"), QVariant::Bool, "", -1, -1},
        {"User", "userLangId", QT_TRANSLATE_NOOP("MSettings", "User language"), QVariant::String, "", -1, -1},
        {"User", "translateCompositionModes", QT_TRANSLATE_NOOP("MSettings", "Translate composition modes"), QVariant::Bool, "", -1, -1},
        {"User", "showInstructions", QT_TRANSLATE_NOOP("MSettings", "Show instructions"), QVariant::Bool, "", -1, -1},
        {"User", "textDuration", QT_TRANSLATE_NOOP("MSettings", "Texts duration"), QVariant::Int, "", 1, 30},
        {"User", "openGlSdkUrl", QT_TRANSLATE_NOOP("MSettings", "OpenGL SDK documentation url"), QVariant::String, "", -1, -1},
        {"User", "colorListLength", QT_TRANSLATE_NOOP("MSettings", "Color history length"), QVariant::Int, "", -1, -1},
        {"User", "swatchSize", QT_TRANSLATE_NOOP("MSettings", "Palette swatch size"), QVariant::Int, "", 10, 60},
        {"User", "pointSize", QT_TRANSLATE_NOOP("MSettings", "Control point size"), QVariant::Int, "", 5, 25},
        {"Document", "defaultWidth", QT_TRANSLATE_NOOP("MSettings", "Default width"), QVariant::Int, "", -1, -1},
        {"Document", "defaultHeight", QT_TRANSLATE_NOOP("MSettings", "Default height"), QVariant::Int, "", -1, -1},
        {"Document", "paperType", QT_TRANSLATE_NOOP("MSettings", "Paper type"), QVariant::Int, "PaperType", -1, -1},
        {"Document", "paperColor", QT_TRANSLATE_NOOP("MSettings", "Paper color"), QVariant::Color, "", -1, -1},
        {"Document", "paperName", QT_TRANSLATE_NOOP("MSettings", "Paper name"), QVariant::String, "", -1, -1},
        {"Document", "showEmptyPaper", QT_TRANSLATE_NOOP("MSettings", "Show empty paper background"), QVariant::Bool, "", -1, -1},
        {"Document", "resolutionUnit", QT_TRANSLATE_NOOP("MSettings", "Resolution unit"), QVariant::Int, "ResolutionUnit", -1, -1},
        {"Document", "undoLimit", QT_TRANSLATE_NOOP("MSettings", "Undo/redo limit (8 to 64)"), QVariant::Int, "", 8, 64},
        {"Document", "autoExtent", QT_TRANSLATE_NOOP("MSettings", "Auto extent document"), QVariant::Bool, "", -1, -1},
        {"Document", "paintMargin", QT_TRANSLATE_NOOP("MSettings", "Paint margin"), QVariant::Int, "", 0, 1000},
        {"Document", "widgetBackgroundColor", QT_TRANSLATE_NOOP("MSettings", "Document background color"), QVariant::Color, "", -1, -1},
        {"Grid", "gridSize", QT_TRANSLATE_NOOP("MSettings", "Grid size"), QVariant::Int, "", -1, -1},
        {"Grid", "showGrid", QT_TRANSLATE_NOOP("MSettings", "Show grid"), QVariant::Bool, "", -1, -1},
        {"Grid", "gridColor", QT_TRANSLATE_NOOP("MSettings", "Grid color"), QVariant::Color, "", -1, -1},
        {"Grid", "alignToGrid", QT_TRANSLATE_NOOP("MSettings", "Align to grid"), QVariant::Bool, "", -1, -1},
        {"Grid", "alignToGridSize", QT_TRANSLATE_NOOP("MSettings", "Align to grid size"), QVariant::Int, "", -1, -1},
        {"Display", "smoothPixels", QT_TRANSLATE_NOOP("MSettings", "Smooth pixels"), QVariant::Bool, "", -1, -1},
        {"Display", "smoothMaxScale", QT_TRANSLATE_NOOP("MSettings", "Smooth until zoom reaches X"), QVariant::Double, "", 1, 100},
        {"Display", "showThumbnails", QT_TRANSLATE_NOOP("MSettings", "Show thumbnails"), QVariant::Bool, "", -1, -1},
        {"Display", "showThumbnailsNamesOnly", QT_TRANSLATE_NOOP("MSettings", "Show thumbnails names only"), QVariant::Bool, "", -1, -1},
        {"Display", "thumbnailSize", QT_TRANSLATE_NOOP("MSettings", "Thumbnail size"), QVariant::Double, "", 16, 128},
        {"Display", "thumbnailOpacity", QT_TRANSLATE_NOOP("MSettings", "Thumbnail opacity"), QVariant::Double, "", 0.1, 1},
        {"Display", "thumbnailColor", QT_TRANSLATE_NOOP("MSettings", "Thumbnail color"), QVariant::Color, "", -1, -1},
        {"Display", "thumbnailSelectionColor", QT_TRANSLATE_NOOP("MSettings", "Thumbnail selection color"), QVariant::Color, "", -1, -1},
        {"Display", "thumbnailPosition", QT_TRANSLATE_NOOP("MSettings", "Thumbnail position"), QVariant::Int, "Edge", -1, -1},
        {"Display", "showTiling", QT_TRANSLATE_NOOP("MSettings", "Show tiling"), QVariant::Bool, "", -1, -1},
        {"Editor", "editorTabSize", QT_TRANSLATE_NOOP("MSettings", "Tab size"), QVariant::Int, "", 2, 10},
        {"Editor", "editorFontName", QT_TRANSLATE_NOOP("MSettings", "Font name"), QVariant::Font, "", -1, -1},
        {"Editor", "editorFontSize", QT_TRANSLATE_NOOP("MSettings", "Font size"), QVariant::Int, "", 5, 60},
        {"Editor", "editorSmartTab", QT_TRANSLATE_NOOP("MSettings", "Smart tab"), QVariant::Bool, "", -1, -1},
    };
    for (const ItemRow& row : rows)
        m_items.append(MSettingItem(QString::fromLatin1(row.category), QString::fromLatin1(row.key), row.label,
                                    row.type, QString::fromLatin1(row.enumName), row.minimum, row.maximum));

    MLogger::instance()->write(QStringLiteral("Settings loaded"));
    // Mipmaps can be switched off for a session only; every start turns them on.
    setValue(QStringLiteral("generateMipmaps"), true);
}

QStringList MSettings::categories()
{
    QStringList names;
    for (const char* name : categoryNames)
        names << QString::fromLatin1(name);
    return names;
}

QString MSettings::categoryLabel(const QString& category)
{
    return QCoreApplication::translate("MSettings", category.toUtf8().constData());
}

const MSettingItem* MSettings::item(const QString& key) const
{
    for (const MSettingItem& entry : m_items)
        if (entry.key == key)
            return &entry;
    return nullptr;
}

void MSettings::reportWrongType(const QString& key) const
{
    if (m_reportedKeys.contains(key))
        return;
    m_reportedKeys.insert(key);
    MLogger::systemError(QStringLiteral("MSettings::value"),
                         QStringLiteral("the stored value of %1 has the wrong type, its default is used").arg(key));
}

bool MSettings::boolValue(const QString& key, bool defaultValue) const
{
    const QVariant stored = value(key);
    if (!stored.isValid())
        return defaultValue;
    if (stored.type() == QVariant::Bool)
        return stored.toBool();
    const QString text = stored.toString().trimmed().toLower();
    if (text == QLatin1String("true") || text == QLatin1String("1"))
        return true;
    if (text == QLatin1String("false") || text == QLatin1String("0"))
        return false;
    reportWrongType(key);
    return defaultValue;
}

int MSettings::intValue(const QString& key, int defaultValue) const
{
    const QVariant stored = value(key);
    if (!stored.isValid())
        return defaultValue;
    bool ok = false;
    const int result = stored.toInt(&ok);
    if (ok)
        return result;
    reportWrongType(key);
    return defaultValue;
}

double MSettings::doubleValue(const QString& key, double defaultValue) const
{
    const QVariant stored = value(key);
    if (!stored.isValid())
        return defaultValue;
    bool ok = false;
    const double result = stored.toDouble(&ok);
    if (ok && qIsFinite(result))
        return result;
    reportWrongType(key);
    return defaultValue;
}

QString MSettings::stringValue(const QString& key, const QString& defaultValue) const
{
    const QVariant stored = value(key);
    if (!stored.isValid())
        return defaultValue;
    if (stored.canConvert<QString>() && stored.type() != QVariant::StringList)
        return stored.toString();
    reportWrongType(key);
    return defaultValue;
}

QColor MSettings::colorValue(const QString& key, const QColor& defaultValue) const
{
    const QVariant stored = value(key);
    if (!stored.isValid())
        return defaultValue;
    QColor result;
    if (stored.type() == QVariant::Color)
        result = stored.value<QColor>();
    else if (stored.type() == QVariant::String)
        result = QColor(stored.toString());
    if (result.isValid() && result.spec() <= QColor::ExtendedRgb)
        return result;
    reportWrongType(key);
    return defaultValue;
}

QStringList MSettings::stringListValue(const QString& key, const QStringList& defaultValue) const
{
    const QVariant stored = value(key);
    if (!stored.isValid())
        return defaultValue;
    if (stored.type() == QVariant::StringList || stored.type() == QVariant::String)
        return stored.toStringList();
    if (stored.type() == QVariant::List) {
        QStringList result;
        for (const QVariant& entry : stored.toList()) {
            if (entry.type() != QVariant::String) {
                reportWrongType(key);
                return defaultValue;
            }
            result << entry.toString();
        }
        return result;
    }
    reportWrongType(key);
    return defaultValue;
}

QByteArray MSettings::byteArrayValue(const QString& key, const QByteArray& defaultValue) const
{
    const QVariant stored = value(key);
    if (!stored.isValid())
        return defaultValue;
    if (stored.type() == QVariant::ByteArray)
        return stored.toByteArray();
    reportWrongType(key);
    return defaultValue;
}

void MSettings::loadShortcuts(QWidget* widget)
{
    if (!widget)
        return;
    beginGroup(QString::fromLatin1(actionGroup));
    const QList<QAction*> actions = widget->findChildren<QAction*>();
    for (QAction* action : actions) {
        const QString name = action->objectName();
        if (name.isEmpty())
            continue;
        // A second load must not take the user's shortcut for the default.
        if (!m_defaultShortcuts.contains(name))
            m_defaultShortcuts.insert(name, action->shortcut().toString(QKeySequence::PortableText));
        const QString stored = value(name).toString();
        if (!stored.isEmpty())
            action->setShortcut(QKeySequence::fromString(stored, QKeySequence::PortableText));
    }
    endGroup();
}

void MSettings::saveShortcuts(QWidget* widget)
{
    if (!widget)
        return;
    beginGroup(QString::fromLatin1(actionGroup));
    const QList<QAction*> actions = widget->findChildren<QAction*>();
    for (QAction* action : actions) {
        if (!action->objectName().isEmpty())
            setValue(action->objectName(), action->shortcut().toString(QKeySequence::PortableText));
    }
    endGroup();
}

void MSettings::set_saveLayout(bool value)
{
    if (value == saveLayout())
        return;
    setValue(QStringLiteral("saveLayout"), value);
    Q_EMIT saveLayoutChanged(value);
}

void MSettings::set_userLangId(const QString& value)
{
    if (value == userLangId())
        return;
    setValue(QStringLiteral("userLangId"), value);
    Q_EMIT userLangIdChanged(value);
}

void MSettings::set_translateCompositionModes(bool value)
{
    if (value == translateCompositionModes())
        return;
    setValue(QStringLiteral("translateCompositionModes"), value);
    Q_EMIT translateCompositionModesChanged(value);
}

void MSettings::set_showInstructions(bool value)
{
    if (value == showInstructions())
        return;
    setValue(QStringLiteral("showInstructions"), value);
    Q_EMIT showInstructionsChanged(value);
}

void MSettings::set_textDuration(int value)
{
    if (value == textDuration())
        return;
    setValue(QStringLiteral("textDuration"), value);
    Q_EMIT textDurationChanged(value);
}

void MSettings::set_openGlSdkUrl(const QString& value)
{
    if (value == openGlSdkUrl())
        return;
    setValue(QStringLiteral("openGlSdkUrl"), value);
    Q_EMIT openGlSdkUrlChanged(value);
}

void MSettings::set_colorListLength(int value)
{
    if (value == colorListLength())
        return;
    setValue(QStringLiteral("colorListLength"), value);
    Q_EMIT colorListLengthChanged(value);
}

void MSettings::set_swatchSize(int value)
{
    if (value == swatchSize())
        return;
    setValue(QStringLiteral("swatchSize"), value);
    Q_EMIT swatchSizeChanged(value);
}

void MSettings::set_pointSize(int value)
{
    if (value == pointSize())
        return;
    setValue(QStringLiteral("pointSize"), value);
    Q_EMIT pointSizeChanged(value);
}

void MSettings::set_defaultWidth(int value)
{
    if (value == defaultWidth())
        return;
    setValue(QStringLiteral("defaultWidth"), value);
    Q_EMIT defaultWidthChanged(value);
}

void MSettings::set_defaultHeight(int value)
{
    if (value == defaultHeight())
        return;
    setValue(QStringLiteral("defaultHeight"), value);
    Q_EMIT defaultHeightChanged(value);
}

void MSettings::set_paperType(int value)
{
    if (value == paperType())
        return;
    setValue(QStringLiteral("paperType"), value);
    Q_EMIT paperTypeChanged(value);
}

void MSettings::set_paperColor(const QColor& value)
{
    if (value == paperColor())
        return;
    setValue(QStringLiteral("paperColor"), value);
    Q_EMIT paperColorChanged(value);
}

void MSettings::set_paperName(const QString& value)
{
    if (value == paperName())
        return;
    setValue(QStringLiteral("paperName"), value);
    Q_EMIT paperNameChanged(value);
}

void MSettings::set_showEmptyPaper(bool value)
{
    if (value == showEmptyPaper())
        return;
    setValue(QStringLiteral("showEmptyPaper"), value);
    Q_EMIT showEmptyPaperChanged(value);
}

void MSettings::set_resolutionUnit(int value)
{
    if (value == resolutionUnit())
        return;
    setValue(QStringLiteral("resolutionUnit"), value);
    Q_EMIT resolutionUnitChanged(value);
}

void MSettings::set_undoLimit(int value)
{
    if (value == undoLimit())
        return;
    setValue(QStringLiteral("undoLimit"), value);
    Q_EMIT undoLimitChanged(value);
}

void MSettings::set_autoExtent(bool value)
{
    if (value == autoExtent())
        return;
    setValue(QStringLiteral("autoExtent"), value);
    Q_EMIT autoExtentChanged(value);
}

void MSettings::set_paintMargin(int value)
{
    if (value == paintMargin())
        return;
    setValue(QStringLiteral("paintMargin"), value);
    Q_EMIT paintMarginChanged(value);
}

void MSettings::set_widgetBackgroundColor(const QColor& value)
{
    if (value == widgetBackgroundColor())
        return;
    setValue(QStringLiteral("widgetBackgroundColor"), value);
    Q_EMIT widgetBackgroundColorChanged(value);
}

void MSettings::set_gridSize(int value)
{
    if (value == gridSize())
        return;
    setValue(QStringLiteral("gridSize"), value);
    Q_EMIT gridSizeChanged(value);
}

void MSettings::set_showGrid(bool value)
{
    if (value == showGrid())
        return;
    setValue(QStringLiteral("showGrid"), value);
    Q_EMIT showGridChanged(value);
}

void MSettings::set_gridColor(const QColor& value)
{
    if (value == gridColor())
        return;
    setValue(QStringLiteral("gridColor"), value);
    Q_EMIT gridColorChanged(value);
}

void MSettings::set_alignToGrid(bool value)
{
    if (value == alignToGrid())
        return;
    setValue(QStringLiteral("alignToGrid"), value);
    Q_EMIT alignToGridChanged(value);
}

void MSettings::set_alignToGridSize(int value)
{
    if (value == alignToGridSize())
        return;
    setValue(QStringLiteral("alignToGridSize"), value);
    Q_EMIT alignToGridSizeChanged(value);
}

void MSettings::set_smoothPixels(bool value)
{
    if (value == smoothPixels())
        return;
    setValue(QStringLiteral("smoothPixels"), value);
    Q_EMIT smoothPixelsChanged(value);
}

void MSettings::set_smoothMaxScale(double value)
{
    if (value == smoothMaxScale())
        return;
    setValue(QStringLiteral("smoothMaxScale"), value);
    Q_EMIT smoothMaxScaleChanged(value);
}

void MSettings::set_showThumbnails(bool value)
{
    if (value == showThumbnails())
        return;
    setValue(QStringLiteral("showThumbnails"), value);
    Q_EMIT showThumbnailsChanged(value);
}

void MSettings::set_showThumbnailsNamesOnly(bool value)
{
    if (value == showThumbnailsNamesOnly())
        return;
    setValue(QStringLiteral("showThumbnailsNamesOnly"), value);
    Q_EMIT showThumbnailsNamesOnlyChanged(value);
}

void MSettings::set_thumbnailSize(int value)
{
    if (value == thumbnailSize())
        return;
    setValue(QStringLiteral("thumbnailSize"), value);
    Q_EMIT thumbnailSizeChanged(value);
}

void MSettings::set_thumbnailOpacity(double value)
{
    if (value == thumbnailOpacity())
        return;
    setValue(QStringLiteral("thumbnailOpacity"), value);
    Q_EMIT thumbnailOpacityChanged(value);
}

void MSettings::set_thumbnailColor(const QColor& value)
{
    if (value == thumbnailColor())
        return;
    setValue(QStringLiteral("thumbnailColor"), value);
    Q_EMIT thumbnailColorChanged(value);
}

void MSettings::set_thumbnailSelectionColor(const QColor& value)
{
    if (value == thumbnailSelectionColor())
        return;
    setValue(QStringLiteral("thumbnailSelectionColor"), value);
    Q_EMIT thumbnailSelectionColorChanged(value);
}

void MSettings::set_thumbnailPosition(int value)
{
    if (value == thumbnailPosition())
        return;
    setValue(QStringLiteral("thumbnailPosition"), value);
    Q_EMIT thumbnailPositionChanged(value);
}

void MSettings::set_showTiling(bool value)
{
    if (value == showTiling())
        return;
    setValue(QStringLiteral("showTiling"), value);
    Q_EMIT showTilingChanged(value);
}

void MSettings::set_editorTabSize(int value)
{
    if (value == editorTabSize())
        return;
    setValue(QStringLiteral("editorTabSize"), value);
    Q_EMIT editorTabSizeChanged(value);
}

void MSettings::set_editorFontName(const QString& value)
{
    if (value == editorFontName())
        return;
    setValue(QStringLiteral("editorFontName"), value);
    Q_EMIT editorFontNameChanged(value);
}

void MSettings::set_editorFontSize(int value)
{
    if (value == editorFontSize())
        return;
    setValue(QStringLiteral("editorFontSize"), value);
    Q_EMIT editorFontSizeChanged(value);
}

void MSettings::set_editorSmartTab(bool value)
{
    if (value == editorSmartTab())
        return;
    setValue(QStringLiteral("editorSmartTab"), value);
    Q_EMIT editorSmartTabChanged(value);
}

void MSettings::set_tableSelectionColor(const QColor& value)
{
    if (value == tableSelectionColor())
        return;
    setValue(QStringLiteral("tableSelectionColor"), value);
    Q_EMIT tableSelectionColorChanged(value);
}

void MSettings::set_textSelectionColor(const QColor& value)
{
    if (value == textSelectionColor())
        return;
    setValue(QStringLiteral("textSelectionColor"), value);
    Q_EMIT textSelectionColorChanged(value);
}

void MSettings::set_generateMipmaps(bool value)
{
    if (value == generateMipmaps())
        return;
    setValue(QStringLiteral("generateMipmaps"), value);
    Q_EMIT generateMipmapsChanged(value);
}

void MSettings::set_lastFilesDir(const QString& value)
{
    if (value == lastFilesDir())
        return;
    setValue(QStringLiteral("lastFilesDir"), value);
    Q_EMIT lastFilesDirChanged(value);
}

void MSettings::set_lastFile(const QString& value)
{
    if (value == lastFile())
        return;
    setValue(QStringLiteral("lastFile"), value);
    Q_EMIT lastFileChanged(value);
}

void MSettings::set_startupFile(const QString& value)
{
    if (value == startupFile())
        return;
    setValue(QStringLiteral("startupFile"), value);
    Q_EMIT startupFileChanged(value);
}

void MSettings::set_recentFiles(const QStringList& value)
{
    if (value == recentFiles())
        return;
    setValue(QStringLiteral("recentFiles"), value);
    Q_EMIT recentFilesChanged(value);
}

void MSettings::set_firstUse(bool value)
{
    if (value == firstUse())
        return;
    setValue(QStringLiteral("firstUse"), value);
    Q_EMIT firstUseChanged(value);
}

void MSettings::set_openGL(bool value)
{
    if (value == openGL())
        return;
    setValue(QStringLiteral("openGL"), value);
    Q_EMIT openGLChanged(value);
}

void MSettings::set_autoHidePanels(bool value)
{
    if (value == autoHidePanels())
        return;
    setValue(QStringLiteral("autoHidePanels"), value);
    Q_EMIT autoHidePanelsChanged(value);
}

void MSettings::set_gradientPanelIndex(int value)
{
    if (value == gradientPanelIndex())
        return;
    setValue(QStringLiteral("gradientPanelIndex"), value);
    Q_EMIT gradientPanelIndexChanged(value);
}

void MSettings::set_paletteIndex(int value)
{
    if (value == paletteIndex())
        return;
    setValue(QStringLiteral("paletteIndex"), value);
    Q_EMIT paletteIndexChanged(value);
}

void MSettings::set_geometry(const QByteArray& value)
{
    if (value == geometry())
        return;
    setValue(QStringLiteral("geometry"), value);
    Q_EMIT geometryChanged(value);
}

void MSettings::set_windowState(const QByteArray& value)
{
    if (value == windowState())
        return;
    setValue(QStringLiteral("windowState"), value);
    Q_EMIT windowStateChanged(value);
}
