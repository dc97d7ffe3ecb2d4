#pragma once

#include "app/msettingitem.h"
#include "app/msingleton.h"

#include <QColor>
#include <QHash>
#include <QSet>
#include <QSettings>
#include <QStringList>
#include <QVector>

class QWidget;

// The store of user preferences. Getters read the store with the default they
// hold; setters write and emit only when the value really changes. A value of
// the wrong type in the store reads as the default and is reported once.
class MSettings : public QSettings, public MSingleton<MSettings>
{
    Q_OBJECT
    Q_PROPERTY(bool saveLayout READ saveLayout WRITE set_saveLayout NOTIFY saveLayoutChanged)
    Q_PROPERTY(QString userLangId READ userLangId WRITE set_userLangId NOTIFY userLangIdChanged)
    Q_PROPERTY(bool translateCompositionModes READ translateCompositionModes WRITE set_translateCompositionModes NOTIFY translateCompositionModesChanged)
    Q_PROPERTY(bool showInstructions READ showInstructions WRITE set_showInstructions NOTIFY showInstructionsChanged)
    Q_PROPERTY(int textDuration READ textDuration WRITE set_textDuration NOTIFY textDurationChanged)
    Q_PROPERTY(QString openGlSdkUrl READ openGlSdkUrl WRITE set_openGlSdkUrl NOTIFY openGlSdkUrlChanged)
    Q_PROPERTY(int colorListLength READ colorListLength WRITE set_colorListLength NOTIFY colorListLengthChanged)
    Q_PROPERTY(int swatchSize READ swatchSize WRITE set_swatchSize NOTIFY swatchSizeChanged)
    Q_PROPERTY(int pointSize READ pointSize WRITE set_pointSize NOTIFY pointSizeChanged)
    Q_PROPERTY(int defaultWidth READ defaultWidth WRITE set_defaultWidth NOTIFY defaultWidthChanged)
    Q_PROPERTY(int defaultHeight READ defaultHeight WRITE set_defaultHeight NOTIFY defaultHeightChanged)
    Q_PROPERTY(int paperType READ paperType WRITE set_paperType NOTIFY paperTypeChanged)
    Q_PROPERTY(QColor paperColor READ paperColor WRITE set_paperColor NOTIFY paperColorChanged)
    Q_PROPERTY(QString paperName READ paperName WRITE set_paperName NOTIFY paperNameChanged)
    Q_PROPERTY(bool showEmptyPaper READ showEmptyPaper WRITE set_showEmptyPaper NOTIFY showEmptyPaperChanged)
    Q_PROPERTY(int resolutionUnit READ resolutionUnit WRITE set_resolutionUnit NOTIFY resolutionUnitChanged)
    Q_PROPERTY(int undoLimit READ undoLimit WRITE set_undoLimit NOTIFY undoLimitChanged)
    Q_PROPERTY(bool autoExtent READ autoExtent WRITE set_autoExtent NOTIFY autoExtentChanged)
    Q_PROPERTY(int paintMargin READ paintMargin WRITE set_paintMargin NOTIFY paintMarginChanged)
    Q_PROPERTY(QColor widgetBackgroundColor READ widgetBackgroundColor WRITE set_widgetBackgroundColor NOTIFY widgetBackgroundColorChanged)
    Q_PROPERTY(int gridSize READ gridSize WRITE set_gridSize NOTIFY gridSizeChanged)
    Q_PROPERTY(bool showGrid READ showGrid WRITE set_showGrid NOTIFY showGridChanged)
    Q_PROPERTY(QColor gridColor READ gridColor WRITE set_gridColor NOTIFY gridColorChanged)
    Q_PROPERTY(bool alignToGrid READ alignToGrid WRITE set_alignToGrid NOTIFY alignToGridChanged)
    Q_PROPERTY(int alignToGridSize READ alignToGridSize WRITE set_alignToGridSize NOTIFY alignToGridSizeChanged)
    Q_PROPERTY(bool smoothPixels READ smoothPixels WRITE set_smoothPixels NOTIFY smoothPixelsChanged)
    Q_PROPERTY(double smoothMaxScale READ smoothMaxScale WRITE set_smoothMaxScale NOTIFY smoothMaxScaleChanged)
    Q_PROPERTY(bool showThumbnails READ showThumbnails WRITE set_showThumbnails NOTIFY showThumbnailsChanged)
    Q_PROPERTY(bool showThumbnailsNamesOnly READ showThumbnailsNamesOnly WRITE set_showThumbnailsNamesOnly NOTIFY showThumbnailsNamesOnlyChanged)
    Q_PROPERTY(int thumbnailSize READ thumbnailSize WRITE set_thumbnailSize NOTIFY thumbnailSizeChanged)
    Q_PROPERTY(double thumbnailOpacity READ thumbnailOpacity WRITE set_thumbnailOpacity NOTIFY thumbnailOpacityChanged)
    Q_PROPERTY(QColor thumbnailColor READ thumbnailColor WRITE set_thumbnailColor NOTIFY thumbnailColorChanged)
    Q_PROPERTY(QColor thumbnailSelectionColor READ thumbnailSelectionColor WRITE set_thumbnailSelectionColor NOTIFY thumbnailSelectionColorChanged)
    Q_PROPERTY(int thumbnailPosition READ thumbnailPosition WRITE set_thumbnailPosition NOTIFY thumbnailPositionChanged)
    Q_PROPERTY(bool showTiling READ showTiling WRITE set_showTiling NOTIFY showTilingChanged)
    Q_PROPERTY(int editorTabSize READ editorTabSize WRITE set_editorTabSize NOTIFY editorTabSizeChanged)
    Q_PROPERTY(QString editorFontName READ editorFontName WRITE set_editorFontName NOTIFY editorFontNameChanged)
    Q_PROPERTY(int editorFontSize READ editorFontSize WRITE set_editorFontSize NOTIFY editorFontSizeChanged)
    Q_PROPERTY(bool editorSmartTab READ editorSmartTab WRITE set_editorSmartTab NOTIFY editorSmartTabChanged)
    Q_PROPERTY(QColor tableSelectionColor READ tableSelectionColor WRITE set_tableSelectionColor NOTIFY tableSelectionColorChanged)
    Q_PROPERTY(QColor textSelectionColor READ textSelectionColor WRITE set_textSelectionColor NOTIFY textSelectionColorChanged)
    Q_PROPERTY(bool generateMipmaps READ generateMipmaps WRITE set_generateMipmaps NOTIFY generateMipmapsChanged)
    Q_PROPERTY(QString lastFilesDir READ lastFilesDir WRITE set_lastFilesDir NOTIFY lastFilesDirChanged)
    Q_PROPERTY(QString lastFile READ lastFile WRITE set_lastFile NOTIFY lastFileChanged)
    Q_PROPERTY(QString startupFile READ startupFile WRITE set_startupFile NOTIFY startupFileChanged)
    Q_PROPERTY(QStringList recentFiles READ recentFiles WRITE set_recentFiles NOTIFY recentFilesChanged)
    Q_PROPERTY(bool firstUse READ firstUse WRITE set_firstUse NOTIFY firstUseChanged)
    Q_PROPERTY(bool openGL READ openGL WRITE set_openGL NOTIFY openGLChanged)
    Q_PROPERTY(bool autoHidePanels READ autoHidePanels WRITE set_autoHidePanels NOTIFY autoHidePanelsChanged)
    Q_PROPERTY(int gradientPanelIndex READ gradientPanelIndex WRITE set_gradientPanelIndex NOTIFY gradientPanelIndexChanged)
    Q_PROPERTY(int paletteIndex READ paletteIndex WRITE set_paletteIndex NOTIFY paletteIndexChanged)
    Q_PROPERTY(QByteArray geometry READ geometry WRITE set_geometry NOTIFY geometryChanged)
    Q_PROPERTY(QByteArray windowState READ windowState WRITE set_windowState NOTIFY windowStateChanged)

public:
    MSettings();

    // Groups that their owners read and write themselves.
    static constexpr const char* fillToolGroup = "fillTool";
    static constexpr const char* fillSelectionToolGroup = "fillSelectionTool";
    static constexpr const char* rullerToolGroup = "rullerTool";
    static constexpr const char* shapeToolGroup = "shapeTool";
    static constexpr const char* contextDialogGroup = "contextDialog";
    static constexpr const char* paperSizeGroup = "paperSize";
    static constexpr const char* mouseFunctionsGroup = "mouseFunctions";
    static constexpr const char* actionGroup = "/action";

    // The dialog's pages in order, as keys; categoryLabel() translates one.
    static QStringList categories();
    static QString categoryLabel(const QString& category);
    const QVector<MSettingItem>& items() const { return m_items; }
    const MSettingItem* item(const QString& key) const;

    // Typed reads by key with a default.
    bool boolValue(const QString& key, bool defaultValue) const;
    int intValue(const QString& key, int defaultValue) const;
    double doubleValue(const QString& key, double defaultValue) const;
    QString stringValue(const QString& key, const QString& defaultValue) const;
    QColor colorValue(const QString& key, const QColor& defaultValue) const;
    QStringList stringListValue(const QString& key, const QStringList& defaultValue) const;
    QByteArray byteArrayValue(const QString& key, const QByteArray& defaultValue) const;

    // Shortcuts of a widget's named actions: the first load records each
    // action's own shortcut as its default, then applies the stored one.
    void loadShortcuts(QWidget* widget);
    void saveShortcuts(QWidget* widget);
    QString defaultShortcut(const QString& actionName) const { return m_defaultShortcuts.value(actionName); }

    bool saveLayout() const { return boolValue(QStringLiteral("saveLayout"), true); }
    QString userLangId() const { return stringValue(QStringLiteral("userLangId"), QStringLiteral("en")); }
    bool translateCompositionModes() const { return boolValue(QStringLiteral("translateCompositionModes"), true); }
    bool showInstructions() const { return boolValue(QStringLiteral("showInstructions"), true); }
    int textDuration() const { return intValue(QStringLiteral("textDuration"), 5); }
    QString openGlSdkUrl() const { return stringValue(QStringLiteral("openGlSdkUrl"), QStringLiteral("https://www.opengl.org/sdk/docs/man/html/")); }
    int colorListLength() const { return intValue(QStringLiteral("colorListLength"), 10); }
    int swatchSize() const { return intValue(QStringLiteral("swatchSize"), 16); }
    int pointSize() const { return intValue(QStringLiteral("pointSize"), 12); }
    int defaultWidth() const { return intValue(QStringLiteral("defaultWidth"), 1000); }
    int defaultHeight() const { return intValue(QStringLiteral("defaultHeight"), 1000); }
    int paperType() const { return intValue(QStringLiteral("paperType"), 1); }
    QColor paperColor() const { return colorValue(QStringLiteral("paperColor"), QColor(Qt::white)); }
    QString paperName() const { return stringValue(QStringLiteral("paperName"), QStringLiteral("paper-01.jpg")); }
    bool showEmptyPaper() const { return boolValue(QStringLiteral("showEmptyPaper"), true); }
    int resolutionUnit() const { return intValue(QStringLiteral("resolutionUnit"), 0); }
    int undoLimit() const { return intValue(QStringLiteral("undoLimit"), 32); }
    bool autoExtent() const { return boolValue(QStringLiteral("autoExtent"), true); }
    int paintMargin() const { return intValue(QStringLiteral("paintMargin"), 20); }
    QColor widgetBackgroundColor() const { return colorValue(QStringLiteral("widgetBackgroundColor"), QColor(Qt::darkGray)); }
    int gridSize() const { return intValue(QStringLiteral("gridSize"), 30); }
    bool showGrid() const { return boolValue(QStringLiteral("showGrid"), false); }
    QColor gridColor() const { return colorValue(QStringLiteral("gridColor"), QColor(200, 200, 200)); }
    bool alignToGrid() const { return boolValue(QStringLiteral("alignToGrid"), true); }
    int alignToGridSize() const { return intValue(QStringLiteral("alignToGridSize"), 10); }
    bool smoothPixels() const { return boolValue(QStringLiteral("smoothPixels"), true); }
    double smoothMaxScale() const { return doubleValue(QStringLiteral("smoothMaxScale"), 6.0); }
    bool showThumbnails() const { return boolValue(QStringLiteral("showThumbnails"), true); }
    bool showThumbnailsNamesOnly() const { return boolValue(QStringLiteral("showThumbnailsNamesOnly"), false); }
    int thumbnailSize() const { return intValue(QStringLiteral("thumbnailSize"), 70); }
    double thumbnailOpacity() const { return doubleValue(QStringLiteral("thumbnailOpacity"), 0.8); }
    QColor thumbnailColor() const { return colorValue(QStringLiteral("thumbnailColor"), QColor(QStringLiteral("#eeeeee"))); }
    QColor thumbnailSelectionColor() const { return colorValue(QStringLiteral("thumbnailSelectionColor"), QColor(QStringLiteral("#ffffff"))); }
    int thumbnailPosition() const { return intValue(QStringLiteral("thumbnailPosition"), 0); }
    bool showTiling() const { return boolValue(QStringLiteral("showTiling"), false); }
    int editorTabSize() const { return intValue(QStringLiteral("editorTabSize"), 4); }
    QString editorFontName() const { return stringValue(QStringLiteral("editorFontName"), QStringLiteral("Courier new")); }
    int editorFontSize() const { return intValue(QStringLiteral("editorFontSize"), 11); }
    bool editorSmartTab() const { return boolValue(QStringLiteral("editorSmartTab"), true); }
    QColor tableSelectionColor() const { return colorValue(QStringLiteral("tableSelectionColor"), QColor(QStringLiteral("#CCDDFF"))); }
    QColor textSelectionColor() const { return colorValue(QStringLiteral("textSelectionColor"), QColor(Qt::white)); }
    bool generateMipmaps() const { return boolValue(QStringLiteral("generateMipmaps"), true); }
    QString lastFilesDir() const { return stringValue(QStringLiteral("lastFilesDir"), QString()); }
    QString lastFile() const { return stringValue(QStringLiteral("lastFile"), QString()); }
    QString startupFile() const { return stringValue(QStringLiteral("startupFile"), QString()); }
    QStringList recentFiles() const { return stringListValue(QStringLiteral("recentFiles"), QStringList()); }
    bool firstUse() const { return boolValue(QStringLiteral("firstUse"), true); }
    bool openGL() const { return boolValue(QStringLiteral("openGL"), true); }
    bool autoHidePanels() const { return boolValue(QStringLiteral("autoHidePanels"), true); }
    int gradientPanelIndex() const { return intValue(QStringLiteral("gradientPanelIndex"), 0); }
    int paletteIndex() const { return intValue(QStringLiteral("paletteIndex"), 0); }
    QByteArray geometry() const { return byteArrayValue(QStringLiteral("geometry"), QByteArray()); }
    QByteArray windowState() const { return byteArrayValue(QStringLiteral("windowState"), QByteArray()); }

public Q_SLOTS:
    void set_saveLayout(bool value);
    void set_userLangId(const QString& value);
    void set_translateCompositionModes(bool value);
    void set_showInstructions(bool value);
    void set_textDuration(int value);
    void set_openGlSdkUrl(const QString& value);
    void set_colorListLength(int value);
    void set_swatchSize(int value);
    void set_pointSize(int value);
    void set_defaultWidth(int value);
    void set_defaultHeight(int value);
    void set_paperType(int value);
    void set_paperColor(const QColor& value);
    void set_paperName(const QString& value);
    void set_showEmptyPaper(bool value);
    void set_resolutionUnit(int value);
    void set_undoLimit(int value);
    void set_autoExtent(bool value);
    void set_paintMargin(int value);
    void set_widgetBackgroundColor(const QColor& value);
    void set_gridSize(int value);
    void set_showGrid(bool value);
    void set_gridColor(const QColor& value);
    void set_alignToGrid(bool value);
    void set_alignToGridSize(int value);
    void set_smoothPixels(bool value);
    void set_smoothMaxScale(double value);
    void set_showThumbnails(bool value);
    void set_showThumbnailsNamesOnly(bool value);
    void set_thumbnailSize(int value);
    void set_thumbnailOpacity(double value);
    void set_thumbnailColor(const QColor& value);
    void set_thumbnailSelectionColor(const QColor& value);
    void set_thumbnailPosition(int value);
    void set_showTiling(bool value);
    void set_editorTabSize(int value);
    void set_editorFontName(const QString& value);
    void set_editorFontSize(int value);
    void set_editorSmartTab(bool value);
    void set_tableSelectionColor(const QColor& value);
    void set_textSelectionColor(const QColor& value);
    void set_generateMipmaps(bool value);
    void set_lastFilesDir(const QString& value);
    void set_lastFile(const QString& value);
    void set_startupFile(const QString& value);
    void set_recentFiles(const QStringList& value);
    void set_firstUse(bool value);
    void set_openGL(bool value);
    void set_autoHidePanels(bool value);
    void set_gradientPanelIndex(int value);
    void set_paletteIndex(int value);
    void set_geometry(const QByteArray& value);
    void set_windowState(const QByteArray& value);

Q_SIGNALS:
    void saveLayoutChanged(bool value);
    void userLangIdChanged(const QString& value);
    void translateCompositionModesChanged(bool value);
    void showInstructionsChanged(bool value);
    void textDurationChanged(int value);
    void openGlSdkUrlChanged(const QString& value);
    void colorListLengthChanged(int value);
    void swatchSizeChanged(int value);
    void pointSizeChanged(int value);
    void defaultWidthChanged(int value);
    void defaultHeightChanged(int value);
    void paperTypeChanged(int value);
    void paperColorChanged(const QColor& value);
    void paperNameChanged(const QString& value);
    void showEmptyPaperChanged(bool value);
    void resolutionUnitChanged(int value);
    void undoLimitChanged(int value);
    void autoExtentChanged(bool value);
    void paintMarginChanged(int value);
    void widgetBackgroundColorChanged(const QColor& value);
    void gridSizeChanged(int value);
    void showGridChanged(bool value);
    void gridColorChanged(const QColor& value);
    void alignToGridChanged(bool value);
    void alignToGridSizeChanged(int value);
    void smoothPixelsChanged(bool value);
    void smoothMaxScaleChanged(double value);
    void showThumbnailsChanged(bool value);
    void showThumbnailsNamesOnlyChanged(bool value);
    void thumbnailSizeChanged(int value);
    void thumbnailOpacityChanged(double value);
    void thumbnailColorChanged(const QColor& value);
    void thumbnailSelectionColorChanged(const QColor& value);
    void thumbnailPositionChanged(int value);
    void showTilingChanged(bool value);
    void editorTabSizeChanged(int value);
    void editorFontNameChanged(const QString& value);
    void editorFontSizeChanged(int value);
    void editorSmartTabChanged(bool value);
    void tableSelectionColorChanged(const QColor& value);
    void textSelectionColorChanged(const QColor& value);
    void generateMipmapsChanged(bool value);
    void lastFilesDirChanged(const QString& value);
    void lastFileChanged(const QString& value);
    void startupFileChanged(const QString& value);
    void recentFilesChanged(const QStringList& value);
    void firstUseChanged(bool value);
    void openGLChanged(bool value);
    void autoHidePanelsChanged(bool value);
    void gradientPanelIndexChanged(int value);
    void paletteIndexChanged(int value);
    void geometryChanged(const QByteArray& value);
    void windowStateChanged(const QByteArray& value);

private:
    void reportWrongType(const QString& key) const;

    QVector<MSettingItem> m_items;
    QHash<QString, QString> m_defaultShortcuts;
    mutable QSet<QString> m_reportedKeys;
};
