#include "app/mmainwindowform.h"

#include <QAction>
#include <QCoreApplication>
#include <QDockWidget>
#include <QFile>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>

namespace {

struct ActionEntry
{
    const char* name;
    const char* text;
    const char* shortcut;
};

// In the order of the form; the shortcuts are the defaults the user can change.
const ActionEntry actionTable[] = {
    {"actionFileOpen", QT_TRANSLATE_NOOP("MMainWindow", "Open file..."), "Ctrl+O"},
    {"actionFileSave", QT_TRANSLATE_NOOP("MMainWindow", "Save file"), "Ctrl+S"},
    {"actionFileSaveAs", QT_TRANSLATE_NOOP("MMainWindow", "Save file as..."), "Ctrl+Shift+S"},
    {"actionFileNew", QT_TRANSLATE_NOOP("MMainWindow", "New file"), "Ctrl+N"},
    {"actionFileExit", QT_TRANSLATE_NOOP("MMainWindow", "Exit"), "Ctrl+Q"},
    {"actionResetCanvasPosition", QT_TRANSLATE_NOOP("MMainWindow", "Reset canvas position"), "Ctrl+P"},
    {"actionAdjustToWidth", QT_TRANSLATE_NOOP("MMainWindow", "Adjust to width"), "Ctrl+W"},
    {"actionAdjustToHeight", QT_TRANSLATE_NOOP("MMainWindow", "Adjust to height"), "Ctrl+H"},
    {"actionViewAllCanvas", QT_TRANSLATE_NOOP("MMainWindow", "View all canvas"), "Ctrl+Shift+P"},
    {"actionWindowTransparency", QT_TRANSLATE_NOOP("MMainWindow", "Window transparency (on/off)"), "Ctrl+T"},
    {"actionIncreaseWindowTransparency", QT_TRANSLATE_NOOP("MMainWindow", "Increase window transparency"),
     "Ctrl++"},
    {"actionDecreaseWindowTransparency", QT_TRANSLATE_NOOP("MMainWindow", "Decrease window transparency"),
     "Ctrl+-"},
    {"actionUndo", QT_TRANSLATE_NOOP("MMainWindow", "Undo"), "Ctrl+Z"},
    {"actionRedo", QT_TRANSLATE_NOOP("MMainWindow", "Redo"), "Ctrl+Y"},
    {"actionExportAsImage", QT_TRANSLATE_NOOP("MMainWindow", "Export as image"), ""},
    {"actionEditShader", QT_TRANSLATE_NOOP("MMainWindow", "Edit effect"), "Ctrl+E"},
    {"actionEditSettings", QT_TRANSLATE_NOOP("MMainWindow", "Settings"), "Ctrl+O"},
    {"actionBrushTool", QT_TRANSLATE_NOOP("MMainWindow", "Brush"), "B"},
    {"actionSelectionTool", QT_TRANSLATE_NOOP("MMainWindow", "Selection"), "S"},
    {"actionColorPickerTool", QT_TRANSLATE_NOOP("MMainWindow", "Color picker"), "P"},
    {"actionShapeTool", QT_TRANSLATE_NOOP("MMainWindow", "Shape"), "A"},
    {"actionTextTool", QT_TRANSLATE_NOOP("MMainWindow", "Text"), "T"},
    {"actionSymmetryTool", QT_TRANSLATE_NOOP("MMainWindow", "Symmetry"), "Y"},
    {"actionGridTool", QT_TRANSLATE_NOOP("MMainWindow", "Grid"), "G"},
    {"actionLineTool", QT_TRANSLATE_NOOP("MMainWindow", "Line"), "L"},
    {"actionImageTool", QT_TRANSLATE_NOOP("MMainWindow", "Image"), "I"},
    {"actionFillSelection", QT_TRANSLATE_NOOP("MMainWindow", "Fill selection"), "Ctrl+F"},
    {"actionStrokeSelection", QT_TRANSLATE_NOOP("MMainWindow", "Stroke selection"), "Ctrl+Shift+F"},
    {"actionResetSelection", QT_TRANSLATE_NOOP("MMainWindow", "Reset selection"), "Ctrl+D"},
    {"actionInvertSelection", QT_TRANSLATE_NOOP("MMainWindow", "Invert selection"), "Ctrl+Shift+A"},
    {"actionResetBrushSettings", QT_TRANSLATE_NOOP("MMainWindow", "Reset brush settings"), ""},
    {"actionSortBrushes", QT_TRANSLATE_NOOP("MMainWindow", "Sort brushes"), ""},
    {"actionLockBrushControlPoints", QT_TRANSLATE_NOOP("MMainWindow", "Lock brush control points"), ""},
    {"actionNewLayer", QT_TRANSLATE_NOOP("MMainWindow", "Add layer at top"), "Ctrl+Shift+N"},
    {"actionEditLayer", QT_TRANSLATE_NOOP("MMainWindow", "Edit layer"), ""},
    {"actionRemoveLayer", QT_TRANSLATE_NOOP("MMainWindow", "Remove layer"), ""},
    {"actionDuplicateLayer", QT_TRANSLATE_NOOP("MMainWindow", "Duplicate layer"), "Ctrl+Shift+C"},
    {"actionShowLayer", QT_TRANSLATE_NOOP("MMainWindow", "Show/Hide layer"), "Ctrl+Space"},
    {"actionLockLayer", QT_TRANSLATE_NOOP("MMainWindow", "Lock/Unlock layer"), "Ctrl+Return"},
    {"actionShowAllLayers", QT_TRANSLATE_NOOP("MMainWindow", "Show all layers"), ""},
    {"actionHideAllLayers", QT_TRANSLATE_NOOP("MMainWindow", "Hide all layers"), ""},
    {"actionLockAllLayers", QT_TRANSLATE_NOOP("MMainWindow", "Lock all layers"), ""},
    {"actionUnlockAllLayers", QT_TRANSLATE_NOOP("MMainWindow", "Unlock all layers"), ""},
    {"actionNextLayer", QT_TRANSLATE_NOOP("MMainWindow", "Next layer"), "Ctrl+L"},
    {"actionPreviousLayer", QT_TRANSLATE_NOOP("MMainWindow", "Previous layer"), "Ctrl+Shift+L"},
    {"actionMergeLayerWithLower", QT_TRANSLATE_NOOP("MMainWindow", "Merge with lower"), ""},
    {"actionMoveLayerUp", QT_TRANSLATE_NOOP("MMainWindow", "Move up"), "Ctrl+Up"},
    {"actionMoveLayerDown", QT_TRANSLATE_NOOP("MMainWindow", "Move down"), "Ctrl+Down"},
    {"actionPrependLayer", QT_TRANSLATE_NOOP("MMainWindow", "Add a layer at bottom"), "Ctrl+Alt+N"},
    {"actionRemoveEmptyLayers", QT_TRANSLATE_NOOP("MMainWindow", "Remove empty layers"), ""},
    {"actionShowHideShaderPreview", QT_TRANSLATE_NOOP("MMainWindow", "Show/hide preview"), "Ctrl+J"},
    {"actionRemoveShaderPreview", QT_TRANSLATE_NOOP("MMainWindow", "Remove preview"), "Ctrl+Shift+J"},
    {"actionCopy", QT_TRANSLATE_NOOP("MMainWindow", "Copy"), "Ctrl+C"},
    {"actionCut", QT_TRANSLATE_NOOP("MMainWindow", "Cut"), "Ctrl+X"},
    {"actionPaste", QT_TRANSLATE_NOOP("MMainWindow", "Paste"), "Ctrl+V"},
    {"actionPasteInNewLayer", QT_TRANSLATE_NOOP("MMainWindow", "Paste in new layer"), "Ctrl+Shift+V"},
    {"actionChangePaper", QT_TRANSLATE_NOOP("MMainWindow", "Change paper"), ""},
    {"actionIncreasePaperSize", QT_TRANSLATE_NOOP("MMainWindow", "Increase paper size"), "Alt++"},
    {"actionDecreasePaperSize", QT_TRANSLATE_NOOP("MMainWindow", "Decrease paper size"), "Alt+-"},
    {"actionAdjustPaperToSelection", QT_TRANSLATE_NOOP("MMainWindow", "Adjust paper to selection"), ""},
    {"actionRestoreDefaultLayout", QT_TRANSLATE_NOOP("MMainWindow", "Restore default layout"), ""},
    {"actionEdit_brush_quick_settings", QT_TRANSLATE_NOOP("MMainWindow", "Edit brush quick settings"), ""},
    {"actionSelectAll", QT_TRANSLATE_NOOP("MMainWindow", "Select all"), "Ctrl+A"},
    {"actionNextSelection", QT_TRANSLATE_NOOP("MMainWindow", "Next selection"), ""},
    {"actionPreviousSelection", QT_TRANSLATE_NOOP("MMainWindow", "Previous selection"), ""},
    {"actionPerspectiveTool", QT_TRANSLATE_NOOP("MMainWindow", "Perspective"), "K"},
    {"actionFullScreen", QT_TRANSLATE_NOOP("MMainWindow", "Full screen"), "F12"},
    {"actionEraserMode", QT_TRANSLATE_NOOP("MMainWindow", "Eraser mode"), "E"},
    {"actionFillTool", QT_TRANSLATE_NOOP("MMainWindow", "Fill"), "F"},
    {"actionFlipHorizontal", QT_TRANSLATE_NOOP("MMainWindow", "Flip horizontal"), ""},
    {"actionFlipVertical", QT_TRANSLATE_NOOP("MMainWindow", "Flip vertical"), ""},
    {"actionHelp_index", QT_TRANSLATE_NOOP("MMainWindow", "Help index"), "F1"},
    {"actionOnline_help", QT_TRANSLATE_NOOP("MMainWindow", "Online help"), ""},
    {"actionContact_us", QT_TRANSLATE_NOOP("MMainWindow", "Contact us"), ""},
    {"actionAbout_Quillmere", QT_TRANSLATE_NOOP("MMainWindow", "About Quillmere"), ""},
    {"actionCheck_updates", QT_TRANSLATE_NOOP("MMainWindow", "Check updates"), ""},
    {"actionPrint", QT_TRANSLATE_NOOP("MMainWindow", "Print"), ""},
    {"actionProperties", QT_TRANSLATE_NOOP("MMainWindow", "Properties"), ""},
    {"actionImport_image_file", QT_TRANSLATE_NOOP("MMainWindow", "Import image file..."), ""},
    {"actionNewShader", QT_TRANSLATE_NOOP("MMainWindow", "New effect"), ""},
    {"actionRemoveShader", QT_TRANSLATE_NOOP("MMainWindow", "Delete effect"), "Shift+E"},
    {"actionDuplicateShader", QT_TRANSLATE_NOOP("MMainWindow", "Duplicate effect"), ""},
    {"actionPreviewShader", QT_TRANSLATE_NOOP("MMainWindow", "Preview effect"), "Ctrl+Shift+E"},
    {"actionRasterizeShader", QT_TRANSLATE_NOOP("MMainWindow", "Apply effect"), ""},
    {"actionFillSelectionTool", QT_TRANSLATE_NOOP("MMainWindow", "Magic wand"), "W"},
    {"actionGradientTool", QT_TRANSLATE_NOOP("MMainWindow", "Gradient"), "H"},
    {"actionRestartApplication", QT_TRANSLATE_NOOP("MMainWindow", "Restart application"), ""},
    {"actionIncrease_brush_radius", QT_TRANSLATE_NOOP("MMainWindow", "Increase brush radius"), "+"},
    {"actionDecrease_brush_radius", QT_TRANSLATE_NOOP("MMainWindow", "Decrease brush radius"), "-"},
    {"actionTimeLine", QT_TRANSLATE_NOOP("MMainWindow", "Time line"), ""},
    {"actionClearColorHisto", QT_TRANSLATE_NOOP("MMainWindow", "Clear color history"), ""},
    {"actionNew_brush", QT_TRANSLATE_NOOP("MMainWindow", "New brush"), ""},
    {"actionDelete_brush", QT_TRANSLATE_NOOP("MMainWindow", "Delete brush"), ""},
    {"actionDuplicate_brush", QT_TRANSLATE_NOOP("MMainWindow", "Duplicate brush"), ""},
    {"actionEdit_brush_settings", QT_TRANSLATE_NOOP("MMainWindow", "Edit brush settings"), ""},
    {"actionImport_brush_file", QT_TRANSLATE_NOOP("MMainWindow", "Import brush file"), ""},
    {"actionRestore_brush", QT_TRANSLATE_NOOP("MMainWindow", "Restore brush to system default"), ""},
    {"actionCopy_brush_to_system_directory",
     QT_TRANSLATE_NOOP("MMainWindow", "Copy brush to system directory"), ""},
    {"actionRemove_brush_from_system_directory",
     QT_TRANSLATE_NOOP("MMainWindow", "Remove brush from system directory"), ""},
    {"actionRename_brush", QT_TRANSLATE_NOOP("MMainWindow", "Rename brush"), ""},
    {"actionSet_brush_engine", QT_TRANSLATE_NOOP("MMainWindow", "Set brush engine"), ""},
    {"actionReset_brush_engine", QT_TRANSLATE_NOOP("MMainWindow", "Reset brush engine"), ""},
    {"actionNew_brush_engine", QT_TRANSLATE_NOOP("MMainWindow", "New brush engine"), ""},
    {"actionEdit_brush_engine", QT_TRANSLATE_NOOP("MMainWindow", "Edit brush engine"), ""},
    {"actionDuplicate_brush_engine", QT_TRANSLATE_NOOP("MMainWindow", "Duplicate brush engine"), ""},
    {"actionDelete_brush_engine", QT_TRANSLATE_NOOP("MMainWindow", "Delete brush engine"), ""},
    {"actionTexture_generator", QT_TRANSLATE_NOOP("MMainWindow", "Texture generator"), ""},
    {"actionLoad_brush_texture", QT_TRANSLATE_NOOP("MMainWindow", "Load brush texture"), ""},
    {"actionEdit_layer_effect_settings", QT_TRANSLATE_NOOP("MMainWindow", "Edit layer effect"), ""},
    {"actionGenerate_help", QT_TRANSLATE_NOOP("MMainWindow", "Generate help"), ""},
    {"actionRename_effect", QT_TRANSLATE_NOOP("MMainWindow", "Rename effect"), ""},
    {"actionRename_brush_engine", QT_TRANSLATE_NOOP("MMainWindow", "Rename brush engine"), ""},
    {"actionImport_effect", QT_TRANSLATE_NOOP("MMainWindow", "Import effect"), ""},
    {"actionColor_converter", QT_TRANSLATE_NOOP("MMainWindow", "Color converter"), ""},
    {"actionComicStripTool", QT_TRANSLATE_NOOP("MMainWindow", "Comic strip"), "C"},
    {"actionPanTool", QT_TRANSLATE_NOOP("MMainWindow", "Pan"), "X"},
    {"actionRotateTool", QT_TRANSLATE_NOOP("MMainWindow", "Rotate"), "R"},
    {"actionZoomTool", QT_TRANSLATE_NOOP("MMainWindow", "Zoom"), "Z"},
    {"actionRullerTool", QT_TRANSLATE_NOOP("MMainWindow", "Ruler"), "J"},
    {"actionImageToPath", QT_TRANSLATE_NOOP("MMainWindow", "ImageToPath"), ""},
    {"actionHideLayersExcept", QT_TRANSLATE_NOOP("MMainWindow", "Hide all layers except current"), ""},
    {"actionMergeLayerWithUpper", QT_TRANSLATE_NOOP("MMainWindow", "Merge with upper"), ""},
    {"actionSet_effect_thumbnail", QT_TRANSLATE_NOOP("MMainWindow", "Set effect thumbnail"), ""},
    {"actionOpen_default_thumbnail", QT_TRANSLATE_NOOP("MMainWindow", "Open default thumbnail"), ""},
};

const char* const checkableActions[] = {"actionBrushTool",
                                        "actionSelectionTool",
                                        "actionColorPickerTool",
                                        "actionShapeTool",
                                        "actionTextTool",
                                        "actionSymmetryTool",
                                        "actionGridTool",
                                        "actionLineTool",
                                        "actionImageTool",
                                        "actionPerspectiveTool",
                                        "actionFillTool",
                                        "actionFillSelectionTool",
                                        "actionGradientTool",
                                        "actionComicStripTool",
                                        "actionPanTool",
                                        "actionRotateTool",
                                        "actionZoomTool",
                                        "actionRullerTool",
                                        "actionLockBrushControlPoints",
                                        "actionFullScreen",
                                        "actionEraserMode"};

// The first eighteen checkable actions choose the tool.
constexpr int toolActionCount = 18;

struct DockEntry
{
    const char* name;
    const char* title;
    const char* toolTip;
};

const DockEntry dockTable[] = {
    {"colorDockWidget", QT_TRANSLATE_NOOP("MMainWindow", "Colors"),
     QT_TRANSLATE_NOOP("MMainWindow", "Colors panel")},
    {"shaderDockWidget", QT_TRANSLATE_NOOP("MMainWindow", "Effects"),
     QT_TRANSLATE_NOOP("MMainWindow", "Effects panel")},
    {"brushDockWidget", QT_TRANSLATE_NOOP("MMainWindow", "Brushes"),
     QT_TRANSLATE_NOOP("MMainWindow", "Brushes panel")},
    {"brushSettingsDockWidget", QT_TRANSLATE_NOOP("MMainWindow", "Brush settings"),
     QT_TRANSLATE_NOOP("MMainWindow", "Brush settings panel")},
    {"colorPaletteDockWidget", QT_TRANSLATE_NOOP("MMainWindow", "Palettes"),
     QT_TRANSLATE_NOOP("MMainWindow", "Color palettes panel")},
    {"undoDockWidget", QT_TRANSLATE_NOOP("MMainWindow", "Undo"),
     QT_TRANSLATE_NOOP("MMainWindow", "Undo/redo panel")},
    {"thumbnailDockWidget", QT_TRANSLATE_NOOP("MMainWindow", "Layer"),
     QT_TRANSLATE_NOOP("MMainWindow", "Layer thumbnail panel")},
    {"gradientDockWidget", QT_TRANSLATE_NOOP("MMainWindow", "Gradient"), ""},
};

struct ToolBarEntry
{
    const char* name;
    const char* title;
};

const ToolBarEntry toolBarTable[] = {
    {"mainToolBar", QT_TRANSLATE_NOOP("MMainWindow", "Main tool bar")},
    {"toolsToolBar", QT_TRANSLATE_NOOP("MMainWindow", "Tools toolbar")},
    {"brushToolBar", QT_TRANSLATE_NOOP("MMainWindow", "Brushes toolbar")},
    {"selectionToolBar", QT_TRANSLATE_NOOP("MMainWindow", "Selection toolbar")},
    {"shapeToolBar", QT_TRANSLATE_NOOP("MMainWindow", "Shapes toolbar")},
    {"gridToolBar", QT_TRANSLATE_NOOP("MMainWindow", "Grid toolbar")},
    {"symmetryToolBar", QT_TRANSLATE_NOOP("MMainWindow", "Symmetry toolbar")},
    {"textToolBar", QT_TRANSLATE_NOOP("MMainWindow", "Text toolbar")},
    {"lineToolBar", QT_TRANSLATE_NOOP("MMainWindow", "Line toolbar")},
    {"imageToolBar", QT_TRANSLATE_NOOP("MMainWindow", "Image toolbar")},
    {"perspectiveToolBar", QT_TRANSLATE_NOOP("MMainWindow", "Perspective toolbar")},
    {"fillToolBar", QT_TRANSLATE_NOOP("MMainWindow", "Fill toolbar")},
    {"fillSelectionToolBar", QT_TRANSLATE_NOOP("MMainWindow", "Fill selection toolbar")},
    {"layerToolBar", QT_TRANSLATE_NOOP("MMainWindow", "Layer toolbar")},
    {"gradientToolBar", QT_TRANSLATE_NOOP("MMainWindow", "Gradient toolbar")},
    {"comicStripToolBar", QT_TRANSLATE_NOOP("MMainWindow", "Comic strip toolbar")},
    {"rullerToolBar", QT_TRANSLATE_NOOP("MMainWindow", "Ruller toolbar")},
};

QString translated(const char* text)
{
    return QCoreApplication::translate("MMainWindow", text);
}

// The tools, in the order of the Tools menu and of the tools bar.
QList<const char*> toolEntries()
{
    return {"actionBrushTool",
            "actionLineTool",
            "actionShapeTool",
            "actionTextTool",
            "actionFillTool",
            "actionGradientTool",
            "actionImageTool",
            "actionComicStripTool",
            "-",
            "actionSelectionTool",
            "actionFillSelectionTool",
            "actionColorPickerTool",
            "-",
            "actionSymmetryTool",
            "actionGridTool",
            "actionPerspectiveTool",
            "actionRullerTool",
            "-",
            "actionPanTool",
            "actionRotateTool",
            "actionZoomTool",
            "-",
            "actionEraserMode"};
}

} // namespace

QString MMainWindowForm::iconPath(const QString& objectName)
{
    for (const QString& folder : {QStringLiteral("actions"), QStringLiteral("docks")}) {
        const QString path = QStringLiteral(":/icons/%1/%2.svg").arg(folder, objectName);
        if (QFile::exists(path))
            return path;
    }
    return QString();
}

void MMainWindowForm::setupUi(QMainWindow* window)
{
    createActions(window);
    createMenus(window);
    createToolBars(window);
    createDocks(window);
    window->setStatusBar(new QStatusBar(window));
    applyDefaultLayout(window);
}

void MMainWindowForm::createActions(QMainWindow* window)
{
    for (const ActionEntry& entry : actionTable) {
        auto* action = new QAction(translated(entry.text), window);
        action->setObjectName(QString::fromLatin1(entry.name));
        if (*entry.shortcut)
            action->setShortcut(QKeySequence(QString::fromLatin1(entry.shortcut)));
        const QString icon = iconPath(action->objectName());
        if (!icon.isEmpty())
            action->setIcon(QIcon(icon));
        m_actions.insert(action->objectName(), action);
        m_actionOrder.append(action);
    }
    int index = 0;
    for (const char* name : checkableActions) {
        QAction* checkable = action(QString::fromLatin1(name));
        checkable->setCheckable(true);
        if (index++ < toolActionCount)
            m_toolActions.append(checkable);
    }
    // Shortcuts act wherever the focus is in the window, docks included.
    for (QAction* each : m_actionOrder)
        window->addAction(each);
}

QMenu* MMainWindowForm::addMenu(QWidget* parent, const char* objectName, const char* title,
                                const QList<const char*>& entries)
{
    auto* menu = new QMenu(translated(title), parent);
    menu->setObjectName(QString::fromLatin1(objectName));
    for (const char* entry : entries) {
        const QString name = QString::fromLatin1(entry);
        if (name == QLatin1String("-"))
            menu->addSeparator();
        else if (QMenu* sub = m_menus.value(name))
            menu->addMenu(sub);
        else if (QAction* each = action(name))
            menu->addAction(each);
    }
    m_menus.insert(menu->objectName(), menu);
    return menu;
}

void MMainWindowForm::createMenus(QMainWindow* window)
{
    QMenuBar* bar = new QMenuBar(window);
    bar->setObjectName(QStringLiteral("menuBar"));
    window->setMenuBar(bar);

    // Sub-menus first, so that their parents can take them by name.
    addMenu(window, "menuRecentFiles", QT_TRANSLATE_NOOP("MMainWindow", "Recent files"), {});
    addMenu(window, "menuPanels", QT_TRANSLATE_NOOP("MMainWindow", "Panels"), {});
    addMenu(window, "menuToolBars", QT_TRANSLATE_NOOP("MMainWindow", "Tool bars"), {});
    addMenu(window, "menuLayerVisibility", QT_TRANSLATE_NOOP("MMainWindow", "Layer visibility"),
            {"actionShowLayer", "actionLockLayer", "-", "actionShowAllLayers", "actionHideAllLayers",
             "actionHideLayersExcept", "-", "actionLockAllLayers", "actionUnlockAllLayers"});
    addMenu(window, "menuThumbnail", QT_TRANSLATE_NOOP("MMainWindow", "Thumbnail"),
            {"actionSet_effect_thumbnail", "actionOpen_default_thumbnail"});
    addMenu(window, "menuEffects_development", QT_TRANSLATE_NOOP("MMainWindow", "Effects development"),
            {"actionGenerate_help", "menuThumbnail"});
    addMenu(window, "menuSelectBrush", QT_TRANSLATE_NOOP("MMainWindow", "Select brush"), {});
    addMenu(window, "menuBrush_engine", QT_TRANSLATE_NOOP("MMainWindow", "Brush engine"),
            {"actionSet_brush_engine", "actionReset_brush_engine", "-", "actionNew_brush_engine",
             "actionEdit_brush_engine", "actionDuplicate_brush_engine", "actionRename_brush_engine",
             "actionDelete_brush_engine"});

    QMenu* top[] = {
        addMenu(window, "menuFile", QT_TRANSLATE_NOOP("MMainWindow", "File"),
                {"actionFileNew", "actionFileOpen", "menuRecentFiles", "-", "actionFileSave",
                 "actionFileSaveAs", "-", "actionImport_image_file", "actionExportAsImage", "actionPrint",
                 "actionProperties", "-", "actionRestartApplication", "actionFileExit"}),
        addMenu(window, "menuEdit", QT_TRANSLATE_NOOP("MMainWindow", "Edit"),
                {"actionUndo", "actionRedo", "-", "actionCut", "actionCopy", "actionPaste",
                 "actionPasteInNewLayer", "-", "actionChangePaper", "actionIncreasePaperSize",
                 "actionDecreasePaperSize", "actionAdjustPaperToSelection", "-", "actionColor_converter",
                 "actionTexture_generator", "actionImageToPath", "-", "actionEditSettings"}),
        addMenu(window, "menuLayers", QT_TRANSLATE_NOOP("MMainWindow", "Layers"),
                {"actionNewLayer", "actionPrependLayer", "actionDuplicateLayer", "actionRemoveLayer",
                 "actionRemoveEmptyLayers", "-", "actionEditLayer", "actionEdit_layer_effect_settings",
                 "menuLayerVisibility", "-", "actionNextLayer", "actionPreviousLayer", "actionMoveLayerUp",
                 "actionMoveLayerDown", "-", "actionMergeLayerWithLower", "actionMergeLayerWithUpper", "-",
                 "actionTimeLine"}),
        addMenu(window, "menuSelection", QT_TRANSLATE_NOOP("MMainWindow", "Selection"),
                {"actionSelectAll", "actionResetSelection", "actionInvertSelection", "-",
                 "actionNextSelection", "actionPreviousSelection", "-", "actionFillSelection",
                 "actionStrokeSelection"}),
        addMenu(window, "menuTools", QT_TRANSLATE_NOOP("MMainWindow", "Tools"), toolEntries()),
        addMenu(window, "menuBrush", QT_TRANSLATE_NOOP("MMainWindow", "Brush"),
                {"menuSelectBrush",
                 "-",
                 "actionNew_brush",
                 "actionDuplicate_brush",
                 "actionRename_brush",
                 "actionDelete_brush",
                 "actionImport_brush_file",
                 "-",
                 "actionEdit_brush_settings",
                 "actionEdit_brush_quick_settings",
                 "actionResetBrushSettings",
                 "actionRestore_brush",
                 "actionLockBrushControlPoints",
                 "-",
                 "actionIncrease_brush_radius",
                 "actionDecrease_brush_radius",
                 "actionLoad_brush_texture",
                 "actionClearColorHisto",
                 "-",
                 "actionCopy_brush_to_system_directory",
                 "actionRemove_brush_from_system_directory",
                 "actionSortBrushes",
                 "-",
                 "menuBrush_engine"}),
        addMenu(window, "menuEffects", QT_TRANSLATE_NOOP("MMainWindow", "Effects"),
                {"actionNewShader", "actionDuplicateShader", "actionRename_effect", "actionRemoveShader",
                 "actionImport_effect", "-", "actionEditShader", "actionPreviewShader",
                 "actionShowHideShaderPreview", "actionRemoveShaderPreview", "actionRasterizeShader", "-",
                 "menuEffects_development"}),
        addMenu(window, "menuWindow", QT_TRANSLATE_NOOP("MMainWindow", "Window"),
                {"actionResetCanvasPosition", "actionViewAllCanvas", "actionAdjustToWidth",
                 "actionAdjustToHeight", "actionFlipHorizontal", "actionFlipVertical", "-",
                 "actionFullScreen", "actionWindowTransparency", "actionIncreaseWindowTransparency",
                 "actionDecreaseWindowTransparency", "-", "menuPanels", "menuToolBars",
                 "actionRestoreDefaultLayout"}),
        addMenu(window, "menuHelp", QT_TRANSLATE_NOOP("MMainWindow", "Help"),
                {"actionHelp_index", "actionOnline_help", "actionContact_us", "-", "actionCheck_updates",
                 "actionAbout_Quillmere"}),
    };
    for (QMenu* menu : top)
        bar->addMenu(menu);
}

void MMainWindowForm::createToolBars(QMainWindow* window)
{
    const QHash<QString, QList<const char*>> content = {
        {QStringLiteral("mainToolBar"),
         {"actionFileNew", "actionFileOpen", "actionFileSave", "-", "actionUndo", "actionRedo", "-",
          "actionResetCanvasPosition", "actionViewAllCanvas", "actionFlipHorizontal"}},
        {QStringLiteral("toolsToolBar"), toolEntries()},
        {QStringLiteral("layerToolBar"),
         {"actionNewLayer", "actionDuplicateLayer", "actionRemoveLayer", "-", "actionShowLayer",
          "actionLockLayer", "-", "actionMoveLayerUp", "actionMoveLayerDown", "actionMergeLayerWithLower",
          "-", "actionEditLayer"}},
    };
    for (const ToolBarEntry& entry : toolBarTable) {
        auto* toolBar = new QToolBar(translated(entry.title), window);
        toolBar->setObjectName(QString::fromLatin1(entry.name));
        for (const char* name : content.value(toolBar->objectName())) {
            if (QLatin1String(name) == QLatin1String("-"))
                toolBar->addSeparator();
            else
                toolBar->addAction(action(QString::fromLatin1(name)));
        }
        m_toolBars.insert(toolBar->objectName(), toolBar);
        m_toolBarOrder.append(toolBar);
    }
}

void MMainWindowForm::createDocks(QMainWindow* window)
{
    window->setDockOptions(QMainWindow::AnimatedDocks | QMainWindow::AllowTabbedDocks |
                           QMainWindow::AllowNestedDocks);
    for (const DockEntry& entry : dockTable) {
        auto* dock = new QDockWidget(translated(entry.title), window);
        dock->setObjectName(QString::fromLatin1(entry.name));
        if (*entry.toolTip)
            dock->setToolTip(translated(entry.toolTip));
        const QString icon = iconPath(dock->objectName());
        if (!icon.isEmpty())
            dock->toggleViewAction()->setIcon(QIcon(icon));
        // An empty panel until its content is given.
        auto* placeholder = new QWidget(dock);
        placeholder->setObjectName(dock->objectName() + QStringLiteral("Contents"));
        dock->setWidget(placeholder);
        m_docks.insert(dock->objectName(), dock);
        m_dockOrder.append(dock);
    }
}

void MMainWindowForm::setDockContent(const QString& dockName, QWidget* content)
{
    QDockWidget* target = dock(dockName);
    if (!target || !content)
        return;
    QWidget* previous = target->widget();
    target->setWidget(content);
    delete previous;
}

void MMainWindowForm::applyDefaultLayout(QMainWindow* window)
{
    // Tool bars: the main one, the tools and the layers on top; those of the
    // tools' own controls appear when their tool is chosen.
    for (QToolBar* toolBar : m_toolBarOrder) {
        window->removeToolBar(toolBar);
        window->addToolBar(Qt::TopToolBarArea, toolBar);
        toolBar->setVisible(!toolBar->actions().isEmpty());
    }
    for (QDockWidget* each : m_dockOrder) {
        window->removeDockWidget(each);
        each->setFloating(false);
    }
    // Right: colours above, brushes and effects below; left: the layer
    // overview above the undo history.
    window->addDockWidget(Qt::RightDockWidgetArea, dock(QStringLiteral("colorDockWidget")));
    window->addDockWidget(Qt::RightDockWidgetArea, dock(QStringLiteral("brushDockWidget")));
    window->tabifyDockWidget(dock(QStringLiteral("colorDockWidget")),
                             dock(QStringLiteral("colorPaletteDockWidget")));
    window->tabifyDockWidget(dock(QStringLiteral("colorPaletteDockWidget")),
                             dock(QStringLiteral("gradientDockWidget")));
    window->tabifyDockWidget(dock(QStringLiteral("brushDockWidget")),
                             dock(QStringLiteral("brushSettingsDockWidget")));
    window->tabifyDockWidget(dock(QStringLiteral("brushSettingsDockWidget")),
                             dock(QStringLiteral("shaderDockWidget")));
    window->addDockWidget(Qt::LeftDockWidgetArea, dock(QStringLiteral("thumbnailDockWidget")));
    window->addDockWidget(Qt::LeftDockWidgetArea, dock(QStringLiteral("undoDockWidget")));
    for (QDockWidget* each : m_dockOrder)
        each->show();
    dock(QStringLiteral("colorDockWidget"))->raise();
    dock(QStringLiteral("brushDockWidget"))->raise();
}
