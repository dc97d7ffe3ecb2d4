#pragma once

#include <QByteArray>
#include <QMainWindow>
#include <QMessageBox>

#include <memory>

class MBrushListWidget;
class MBrushSettingsWidget;
class MCanvas;
class MMainWindowForm;
class MShader;
class MShaderWidget;
class MRecentFiles;
class MWidget;
class QDockWidget;
class QLabel;
class QProgressBar;
class QUndoView;

// The application's window: the canvas view in the middle, panels in docks,
// tool bars, menus and actions. It runs the document commands and forwards
// everything else to the canvas or the view.
class MMainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MMainWindow(QWidget* parent = nullptr);
    ~MMainWindow() override;

    MWidget* view() const { return m_view; }
    MCanvas* canvas() const;
    MMainWindowForm* form() const { return m_form.get(); }
    MRecentFiles* recentFiles() const { return m_recentFiles; }
    MShaderWidget* shaderWidget() const { return m_shaderWidget; }
    MBrushListWidget* brushWidget() const { return m_brushWidget; }
    MBrushSettingsWidget* brushSettingsWidget() const { return m_brushSettingsWidget; }

    // False when the user cancels; true when the document may be dropped.
    bool confirmSave();
    // QMessageBox::Ok when the document went out, QMessageBox::Cancel otherwise.
    int save();
    int saveAs();
    // The window title the present document calls for.
    QString documentTitle() const;

public Q_SLOTS:
    void showPanel(QDockWidget* dockWidget);
    void showPanel(bool value);
    bool openFile(const QString& fileName);
    void newFile();

protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;

    // Message boxes go through these, so that tests can answer them.
    virtual QMessageBox::StandardButton askSave();
    virtual void showError(const QString& title, const QString& text, bool critical);
    virtual QString askSaveFileName(const QString& startPath);
    virtual bool askQuestion(const QString& title, const QString& text);
    // A line of text from the user; null when cancelled.
    virtual QString askText(const QString& title, const QString& label, const QString& text);
    virtual QString askOpenFileName(const QString& title, const QString& filter);

private Q_SLOTS:
    void undo();
    void redo();
    void setScale(int percent);
    void switchLayoutDirection();
    void onMenuToolBarsAboutToShow();
    void onMenuPanelsAboutToShow();
    void applicationReboot();
    void validateBrushActions();
    void validateClipboardActions();
    void validateShaderActions();
    void validateLayerActions();
    void windowTransparency();
    void increaseWindowTransparency();
    void decreaseWindowTransparency();
    void setLayerIndex(int layerIndex);
    void updateTitle();

    void on_actionFileNew_triggered();
    void on_actionFileOpen_triggered();
    void on_actionFileSave_triggered();
    void on_actionFileSaveAs_triggered();
    void on_actionImport_image_file_triggered();
    void on_actionUndo_triggered();
    void on_actionRedo_triggered();
    void on_actionResetCanvasPosition_triggered();
    void on_actionAdjustToWidth_triggered();
    void on_actionAdjustToHeight_triggered();
    void on_actionViewAllCanvas_triggered();
    void on_actionFlipHorizontal_triggered();
    void on_actionFlipVertical_triggered();
    void on_actionFullScreen_triggered(bool checked);
    void on_actionWindowTransparency_triggered();
    void on_actionIncreaseWindowTransparency_triggered();
    void on_actionDecreaseWindowTransparency_triggered();
    void on_actionRestoreDefaultLayout_triggered();
    void on_actionEditSettings_triggered();
    void on_actionCopy_triggered();
    void on_actionCut_triggered();
    void on_actionPaste_triggered();
    void on_actionPasteInNewLayer_triggered();
    void on_actionNewLayer_triggered();
    void on_actionPrependLayer_triggered();
    void on_actionEditLayer_triggered();
    void on_actionRemoveLayer_triggered();
    void on_actionDuplicateLayer_triggered();
    void on_actionShowLayer_triggered();
    void on_actionLockLayer_triggered();
    void on_actionShowAllLayers_triggered();
    void on_actionHideAllLayers_triggered();
    void on_actionHideLayersExcept_triggered();
    void on_actionLockAllLayers_triggered();
    void on_actionUnlockAllLayers_triggered();
    void on_actionNextLayer_triggered();
    void on_actionPreviousLayer_triggered();
    void on_actionMergeLayerWithLower_triggered();
    void on_actionMergeLayerWithUpper_triggered();
    void on_actionMoveLayerUp_triggered();
    void on_actionMoveLayerDown_triggered();
    void on_actionRemoveEmptyLayers_triggered();
    void on_actionSelectAll_triggered();
    void on_actionResetSelection_triggered();
    void on_actionInvertSelection_triggered();
    void on_actionAbout_Quillmere_triggered();

    void on_actionNew_brush_triggered();
    void on_actionDelete_brush_triggered();
    void on_actionDuplicate_brush_triggered();
    // The current brush's eraser setting.
    void on_actionEraserMode_toggled(bool checked);
    void on_actionRename_brush_triggered();
    void on_actionEdit_brush_settings_triggered();
    void on_actionImport_brush_file_triggered();
    void on_actionRestore_brush_triggered();
    void on_actionCopy_brush_to_system_directory_triggered();
    void on_actionRemove_brush_from_system_directory_triggered();
    void on_actionSet_brush_engine_triggered();
    void on_actionReset_brush_engine_triggered();
    void on_actionDuplicate_brush_engine_triggered();
    void on_actionDelete_brush_engine_triggered();
    void on_actionRename_brush_engine_triggered();
    void on_actionRemoveShader_triggered();
    void on_actionDuplicateShader_triggered();
    void on_actionRename_effect_triggered();
    void on_actionImport_effect_triggered();
    void on_actionPreviewShader_triggered();
    void on_actionRasterizeShader_triggered();
    void on_actionEdit_layer_effect_settings_triggered();
    // The effects panel's double clicks.
    void setLayerEffect(const QString& id);
    void setBrushEngine(const QString& id);

private:
    void makeConnections();
    // Everything close and restart keep: false when the user cancels.
    bool saveState();
    bool writeDocument(const QString& fileName);
    void restoreLayout();
    void enableWiredActions();
    void makeResourcePanels();
    // The effect of the effects panel's current row when it has that type, else null.
    MShader* panelShader(int type) const;
    void duplicateShader(int type);
    void deleteShader(int type);
    void renameShader(int type);

    std::unique_ptr<MMainWindowForm> m_form;
    MWidget* m_view = nullptr;
    QProgressBar* m_progressBar = nullptr;
    QLabel* m_statusLabel = nullptr;
    QUndoView* m_undoView = nullptr;
    MShaderWidget* m_shaderWidget = nullptr;
    MBrushListWidget* m_brushWidget = nullptr;
    MBrushSettingsWidget* m_brushSettingsWidget = nullptr;
    MRecentFiles* m_recentFiles = nullptr;
    QByteArray m_defaultLayout;
    bool m_layoutRestored = false;
    double m_transparency = 0.8;
};
