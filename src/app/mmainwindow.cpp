#include "app/mmainwindow.h"

#include "app/dsettings.h"
#include "app/mfileutility.h"
#include "app/mmainwindowform.h"
#include "app/mrecentfiles.h"
#include "app/msettings.h"
#include "app/mutility.h"
#include "brush/mbrush.h"
#include "brush/mbrushlist.h"
#include "brush/mbrushlistwidget.h"
#include "colour/mcolorlist.h"
#include "document/mcanvas.h"
#include "document/mtexturelayer.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "gpu/mtransform.h"
#include "gpu/mwidget.h"
#include "panels/mbrushsettingswidget.h"
#include "panels/mshaderwidget.h"
#include "tools/mtools.h"

#include <QAction>
#include <QColorDialog>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDebug>
#include <QDesktopWidget>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QImage>
#include <QInputDialog>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QProgressBar>
#include <QScreen>
#include <QStatusBar>
#include <QToolBar>
#include <QUndoStack>
#include <QUndoView>

namespace {

// The exit code that asks the start-up loop to go round again.
constexpr int restartCode = -123456789;
constexpr int recentFilesMaximum = 10;

} // namespace

MMainWindow::MMainWindow(QWidget* parent) : QMainWindow(parent), m_form(std::make_unique<MMainWindowForm>())
{
    setObjectName(QStringLiteral("MMainWindow"));
    m_view = new MWidget(this);
    m_view->setObjectName(QStringLiteral("canvasView"));
    m_undoView = new QUndoView(canvas()->undoStack());
    m_undoView->setObjectName(QStringLiteral("undoView"));
    m_undoView->setEmptyLabel(tr("<empty>"));

    m_form->setupUi(this);
    m_form->action(QStringLiteral("actionFullScreen"))->setShortcut(QKeySequence(QStringLiteral("F12")));
    m_form->setDockContent(QStringLiteral("undoDockWidget"), m_undoView);
    makeResourcePanels();

    m_recentFiles =
        new MRecentFiles(m_form->menu(QStringLiteral("menuRecentFiles")), recentFilesMaximum, this);
    setCentralWidget(m_view);

    m_progressBar = new QProgressBar(this);
    m_progressBar->setObjectName(QStringLiteral("progressBar"));
    m_progressBar->setMaximumWidth(200);
    m_statusLabel = new QLabel(this);
    m_statusLabel->setObjectName(QStringLiteral("statusLabel"));
    statusBar()->addPermanentWidget(m_statusLabel);
    statusBar()->addPermanentWidget(m_progressBar);
    m_progressBar->hide();

    updateTitle();
    makeConnections();
    QMetaObject::connectSlotsByName(this);
    enableWiredActions();
    validateBrushActions();
    validateShaderActions();
    MTools* tools = MTools::instance();
    tools->set_widget(m_view);
    connect(tools, &MTools::showPanel, this, QOverload<QDockWidget*>::of(&MMainWindow::showPanel));
    tools->init(this);
    MSettings::instance()->loadShortcuts(this);
    // The layout the form makes, for "Restore default layout".
    m_defaultLayout = QMainWindow::saveState();
}

MMainWindow::~MMainWindow()
{
    // The canvas signals while it is destroyed: it is cut off from this
    // window, and goes first, while the form still exists.
    if (MCanvas* document = canvas()) {
        document->disconnect(this);
        document->undoStack()->disconnect(this);
    }
    qApp->disconnect(this);
    m_view = nullptr;
    delete takeCentralWidget();
}

MCanvas* MMainWindow::canvas() const
{
    return m_view ? m_view->canvas() : nullptr;
}

void MMainWindow::makeConnections()
{
    MCanvas* document = canvas();
    QUndoStack* stack = document->undoStack();
    connect(m_form->action(QStringLiteral("actionFileExit")), &QAction::triggered, this, &QWidget::close);
    connect(m_form->action(QStringLiteral("actionRestartApplication")), &QAction::triggered, this,
            &MMainWindow::applicationReboot);
    connect(m_form->menu(QStringLiteral("menuToolBars")), &QMenu::aboutToShow, this,
            &MMainWindow::onMenuToolBarsAboutToShow);
    connect(m_form->menu(QStringLiteral("menuPanels")), &QMenu::aboutToShow, this,
            &MMainWindow::onMenuPanelsAboutToShow);
    connect(m_form->menu(QStringLiteral("menuBrush")), &QMenu::aboutToShow, this,
            &MMainWindow::validateBrushActions);
    connect(m_form->menu(QStringLiteral("menuEffects")), &QMenu::aboutToShow, this,
            &MMainWindow::validateShaderActions);
    connect(qApp, &QApplication::focusChanged, this, &MMainWindow::validateClipboardActions);
    connect(m_form->menu(QStringLiteral("menuEdit")), &QMenu::aboutToShow, this,
            &MMainWindow::validateClipboardActions);
    connect(document, &MCanvas::selectionChanged, this, &MMainWindow::validateClipboardActions);
    connect(m_recentFiles, &MRecentFiles::openRecentFile, this, &MMainWindow::openFile);

    connect(stack, &QUndoStack::cleanChanged, this, &MMainWindow::updateTitle);
    connect(document, &MCanvas::fileNameChanged, this, &MMainWindow::updateTitle);
    connect(stack, &QUndoStack::canUndoChanged, m_form->action(QStringLiteral("actionUndo")),
            &QAction::setEnabled);
    connect(stack, &QUndoStack::canRedoChanged, m_form->action(QStringLiteral("actionRedo")),
            &QAction::setEnabled);
    connect(document, &MCanvas::currentRowChanged, this, &MMainWindow::validateLayerActions);
    connect(document, &MCanvas::rowsInserted, this, &MMainWindow::validateLayerActions);
    connect(document, &MCanvas::rowsRemoved, this, &MMainWindow::validateLayerActions);
    connect(document, &MCanvas::layerListReset, this, &MMainWindow::validateLayerActions);
}

void MMainWindow::enableWiredActions()
{
    // An action does something once a slot of this window or a connection
    // serves it; the others wait, disabled, for their part of the program.
    const QStringList connected = {QStringLiteral("actionFileExit"),
                                   QStringLiteral("actionRestartApplication")};
    for (QAction* action : m_form->actions()) {
        const QByteArray slot = "on_" + action->objectName().toLatin1() + "_triggered";
        const bool wired = connected.contains(action->objectName()) ||
                           metaObject()->indexOfSlot(slot + "()") >= 0 ||
                           metaObject()->indexOfSlot(slot + "(bool)") >= 0;
        action->setEnabled(wired);
    }
    QUndoStack* stack = canvas()->undoStack();
    m_form->action(QStringLiteral("actionUndo"))->setEnabled(stack->canUndo());
    m_form->action(QStringLiteral("actionRedo"))->setEnabled(stack->canRedo());
    validateClipboardActions();
    validateLayerActions();
}

QString MMainWindow::documentTitle() const
{
    const QString fileName = canvas()->fileName();
    const QString name = fileName.isEmpty() ? tr("new-document") : QFileInfo(fileName).completeBaseName();
    QString title = tr("%1 - ").arg(QStringLiteral("Quillmere")) + name;
    if (!canvas()->undoStack()->isClean())
        title += QStringLiteral(" - ") + tr("Modified");
    return title;
}

void MMainWindow::updateTitle()
{
    setWindowTitle(documentTitle());
}

QMessageBox::StandardButton MMainWindow::askSave()
{
    QMessageBox box(QMessageBox::Question, tr("Close"), tr("Do you want to save modifications?"),
                    QMessageBox::NoButton, this);
    QPushButton* saveButton = box.addButton(tr("Save"), QMessageBox::AcceptRole);
    QPushButton* discardButton = box.addButton(tr("Dont' save"), QMessageBox::DestructiveRole);
    QPushButton* cancelButton = box.addButton(tr("Cancel"), QMessageBox::RejectRole);
    box.setDefaultButton(saveButton);
    box.setEscapeButton(cancelButton);
    box.exec();
    if (box.clickedButton() == saveButton)
        return QMessageBox::Save;
    if (box.clickedButton() == discardButton)
        return QMessageBox::Discard;
    return QMessageBox::Cancel;
}

void MMainWindow::showError(const QString& title, const QString& text, bool critical)
{
    if (critical)
        QMessageBox::critical(this, title, text);
    else
        QMessageBox::warning(this, title, text);
}

QString MMainWindow::askSaveFileName(const QString& startPath)
{
    QFileDialog dialog(this, tr("%1 files").arg(QStringLiteral("Quillmere")));
    dialog.setNameFilters(MFileUtility::documentFilters());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("qmd"));
    dialog.setDirectory(QFileInfo(startPath).absolutePath());
    dialog.selectFile(QFileInfo(startPath).fileName());
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return QString();
    return dialog.selectedFiles().constFirst();
}

bool MMainWindow::confirmSave()
{
    if (canvas()->undoStack()->isClean())
        return true;
    switch (askSave()) {
    case QMessageBox::Save:
        return save() != QMessageBox::Cancel;
    case QMessageBox::Discard:
        return true;
    default:
        return false;
    }
}

int MMainWindow::save()
{
    MCanvas* document = canvas();
    if (document->isNew())
        return saveAs();
    const QString fileName = document->fileName();
    if (fileName.isEmpty()) {
        showError(tr("File Error"), tr("Error saving to the file: file name is empty"), false);
        return QMessageBox::Cancel;
    }
    if (!writeDocument(fileName))
        return QMessageBox::Cancel;
    m_recentFiles->addFile(fileName);
    updateTitle();
    return QMessageBox::Ok;
}

int MMainWindow::saveAs()
{
    MCanvas* document = canvas();
    QString start = document->fileName();
    if (start.isEmpty() || (document->isNew() && !QFileInfo(start).isAbsolute()))
        start =
            QDir(MSettings::instance()->lastFilesDir()).filePath(tr("new-document") + QStringLiteral(".qmd"));
    const QString fileName = askSaveFileName(start);
    if (fileName.isEmpty())
        return QMessageBox::Cancel;
    MSettings::instance()->set_lastFilesDir(QFileInfo(fileName).absolutePath());
    if (!writeDocument(fileName))
        return QMessageBox::Cancel;
    m_recentFiles->addFile(fileName);
    updateTitle();
    return QMessageBox::Ok;
}

bool MMainWindow::writeDocument(const QString& fileName)
{
    MUtility::beginWait();
    const bool saved = canvas()->save(fileName);
    MUtility::endWait();
    // The previous file is intact when a save fails; the painter must know
    // the document isn't on disk.
    if (!saved)
        showError(tr("File Error"), tr("Cannot save file %1.").arg(QDir::toNativeSeparators(fileName)),
                  false);
    return saved;
}

bool MMainWindow::openFile(const QString& fileName)
{
    const QString message = tr("Cannot open file %1.").arg(QDir::toNativeSeparators(fileName));
    if (!QFileInfo(fileName).isFile()) {
        showError(tr("Open file"), message, true);
        return false;
    }
    if (!confirmSave())
        return false;
    MCanvas* document = canvas();
    MUtility::beginWait();
    const bool opened = QFileInfo(fileName).suffix().toLower() == QLatin1String("qmd")
                            ? document->load(fileName)
                            : document->loadImage(fileName);
    MUtility::endWait();
    if (!opened) {
        showError(tr("Open file"), message, true);
        return false;
    }
    m_recentFiles->addFile(fileName);
    MSettings::instance()->set_lastFile(QFileInfo(fileName).absoluteFilePath());
    updateTitle();
    m_view->fitToView();
    return true;
}

void MMainWindow::newFile()
{
    if (!confirmSave())
        return;
    MCanvas* document = canvas();
    document->clear();
    document->setFileName(QString());
    document->setIsNew(true);
    updateTitle();
    m_view->fitToView();
}

bool MMainWindow::saveState()
{
    if (!confirmSave())
        return false;
    // Tool bars of the present tool leave the layout, so that the stored
    // state doesn't bring them back without their tool.
    MSettings* settings = MSettings::instance();
    settings->set_geometry(saveGeometry());
    settings->set_windowState(QMainWindow::saveState());
    settings->saveShortcuts(this);
    const QString fileName = canvas()->fileName();
    if (!canvas()->isNew() && QFileInfo(fileName).isFile())
        settings->set_lastFile(fileName);
    return true;
}

void MMainWindow::closeEvent(QCloseEvent* event)
{
    if (!saveState()) {
        event->ignore();
        return;
    }
    event->accept();
}

void MMainWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    if (!m_layoutRestored) {
        m_layoutRestored = true;
        restoreLayout();
        // The document named on the command line, once, at the first show.
        MSettings* settings = MSettings::instance();
        const QString startupFile = settings->startupFile();
        if (!startupFile.isEmpty()) {
            settings->set_startupFile(QString());
            openFile(startupFile);
        }
    }
}

void MMainWindow::restoreLayout()
{
    MSettings* settings = MSettings::instance();
    if (settings->firstUse() || !settings->saveLayout()) {
        QScreen* screen = this->screen() ? this->screen() : QGuiApplication::primaryScreen();
        if (screen)
            setGeometry(screen->availableGeometry().adjusted(50, 50, -50, -50));
    } else {
        restoreGeometry(settings->geometry());
        QMainWindow::restoreState(settings->windowState());
    }
    settings->set_firstUse(false);
}

void MMainWindow::showPanel(QDockWidget* dockWidget)
{
    if (!dockWidget)
        return;
    dockWidget->show();
    dockWidget->raise();
}

void MMainWindow::showPanel(bool value)
{
    auto* action = qobject_cast<QAction*>(sender());
    QDockWidget* dockWidget = action ? action->data().value<QDockWidget*>() : nullptr;
    if (!dockWidget)
        return;
    if (value)
        showPanel(dockWidget);
    else
        dockWidget->hide();
}

void MMainWindow::undo()
{
    canvas()->undo();
}

void MMainWindow::redo()
{
    canvas()->redo();
}

void MMainWindow::setScale(int percent)
{
    m_view->setScale(percent / 100.0);
}

void MMainWindow::switchLayoutDirection()
{
    QApplication::setLayoutDirection(QApplication::layoutDirection() == Qt::LeftToRight ? Qt::RightToLeft
                                                                                        : Qt::LeftToRight);
}

void MMainWindow::onMenuToolBarsAboutToShow()
{
    QMenu* menu = m_form->menu(QStringLiteral("menuToolBars"));
    menu->clear();
    for (QToolBar* toolBar : m_form->toolBars())
        menu->addAction(toolBar->toggleViewAction());
}

void MMainWindow::onMenuPanelsAboutToShow()
{
    QMenu* menu = m_form->menu(QStringLiteral("menuPanels"));
    menu->clear();
    for (QDockWidget* dock : m_form->docks())
        menu->addAction(dock->toggleViewAction());
}

void MMainWindow::applicationReboot()
{
    qDebug() << "Performing application reboot...";
    if (saveState())
        QCoreApplication::exit(restartCode);
}

void MMainWindow::validateBrushActions()
{
    const MBrushList* list = MBrushList::instance();
    const MBrush* brush = list->currentBrush();
    const bool system = brush && brush->exists();
    const auto enable = [this](const char* name, bool on) {
        m_form->action(QString::fromLatin1(name))->setEnabled(on);
    };
    for (const char* name : {"actionDuplicate_brush", "actionRename_brush", "actionEdit_brush_settings",
                             "actionCopy_brush_to_system_directory"})
        enable(name, brush != nullptr);
    // The list keeps at least one brush.
    enable("actionDelete_brush", brush && list->count() > 1);
    enable("actionRestore_brush", system);
    enable("actionRemove_brush_from_system_directory", system);
    enable("actionSet_brush_engine", brush && panelShader(MShader::BrushShader));
    enable("actionReset_brush_engine", brush && !brush->shaderId().isEmpty());
    enable("actionEraserMode", brush != nullptr);
    if (QAction* eraser = m_form->action(QStringLiteral("actionEraserMode"))) {
        const QSignalBlocker blocker(eraser);
        eraser->setChecked(brush && brush->eraser());
    }
    validateShaderActions();
}

void MMainWindow::validateShaderActions()
{
    const bool effect = panelShader(MShader::EffectShader) != nullptr;
    const bool engine = panelShader(MShader::BrushShader) != nullptr;
    const MTextureLayer* layer = canvas() ? canvas()->current() : nullptr;
    for (const char* name : {"actionRemoveShader", "actionDuplicateShader", "actionRename_effect"})
        m_form->action(QString::fromLatin1(name))->setEnabled(effect);
    m_form->action(QStringLiteral("actionPreviewShader"))->setEnabled(effect && layer);
    for (const char* name :
         {"actionDuplicate_brush_engine", "actionDelete_brush_engine", "actionRename_brush_engine"})
        m_form->action(QString::fromLatin1(name))->setEnabled(engine);
    const bool layerEffect = layer && !layer->shaderId().isEmpty();
    m_form->action(QStringLiteral("actionRasterizeShader"))
        ->setEnabled(layerEffect && layer->isShaderActive());
    m_form->action(QStringLiteral("actionEdit_layer_effect_settings"))->setEnabled(layerEffect);
}

void MMainWindow::validateClipboardActions()
{
    const bool hasLayer = canvas() && canvas()->current();
    const QMimeData* clipboard = QApplication::clipboard()->mimeData();
    const bool hasImage = clipboard && clipboard->hasImage();
    m_form->action(QStringLiteral("actionCopy"))->setEnabled(hasLayer);
    m_form->action(QStringLiteral("actionCut"))->setEnabled(hasLayer);
    m_form->action(QStringLiteral("actionPaste"))->setEnabled(hasLayer && hasImage);
    m_form->action(QStringLiteral("actionPasteInNewLayer"))->setEnabled(hasImage);
}

void MMainWindow::validateLayerActions()
{
    MCanvas* document = canvas();
    const int count = document->count();
    const int row = document->currentRow();
    const bool hasLayer = document->current() != nullptr;
    for (const char* name : {"actionEditLayer", "actionRemoveLayer", "actionDuplicateLayer",
                             "actionShowLayer", "actionLockLayer", "actionHideLayersExcept"})
        m_form->action(QString::fromLatin1(name))->setEnabled(hasLayer);
    m_form->action(QStringLiteral("actionMergeLayerWithLower"))->setEnabled(hasLayer && row > 0);
    m_form->action(QStringLiteral("actionMoveLayerDown"))->setEnabled(hasLayer && row > 0);
    m_form->action(QStringLiteral("actionMergeLayerWithUpper"))->setEnabled(hasLayer && row < count - 1);
    m_form->action(QStringLiteral("actionMoveLayerUp"))->setEnabled(hasLayer && row < count - 1);
    validateClipboardActions();
}

void MMainWindow::windowTransparency()
{
    setWindowOpacity(windowOpacity() < 1.0 ? 1.0 : m_transparency);
}

void MMainWindow::increaseWindowTransparency()
{
    m_transparency = qMax(0.2, m_transparency - 0.1);
    setWindowOpacity(m_transparency);
}

void MMainWindow::decreaseWindowTransparency()
{
    m_transparency = qMin(1.0, m_transparency + 0.1);
    setWindowOpacity(m_transparency);
}

void MMainWindow::setLayerIndex(int layerIndex)
{
    canvas()->setCurrentRow(layerIndex);
}

void MMainWindow::on_actionFileNew_triggered()
{
    newFile();
}

void MMainWindow::on_actionFileOpen_triggered()
{
    QStringList filters = MFileUtility::documentFilters();
    filters.insert(1, MFileUtility::imageFilters().value(0));
    const QString fileName = QFileDialog::getOpenFileName(
        this, tr("Open file"), MSettings::instance()->lastFilesDir(), filters.join(QStringLiteral(";;")));
    if (fileName.isEmpty())
        return;
    MSettings::instance()->set_lastFilesDir(QFileInfo(fileName).absolutePath());
    openFile(fileName);
}

void MMainWindow::on_actionFileSave_triggered()
{
    save();
}

void MMainWindow::on_actionFileSaveAs_triggered()
{
    saveAs();
}

void MMainWindow::on_actionImport_image_file_triggered()
{
    const QString fileName =
        QFileDialog::getOpenFileName(this, tr("Import image file"), MSettings::instance()->lastFilesDir(),
                                     MFileUtility::imageFilters().join(QStringLiteral(";;")));
    if (fileName.isEmpty())
        return;
    MSettings::instance()->set_lastFilesDir(QFileInfo(fileName).absolutePath());
    const QImage image(fileName);
    if (image.isNull()) {
        showError(tr("Open file"), tr("Cannot open file %1.").arg(QDir::toNativeSeparators(fileName)), true);
        return;
    }
    canvas()->appendImage(canvas()->paintedRect().center(), image);
}

void MMainWindow::on_actionUndo_triggered()
{
    undo();
}

void MMainWindow::on_actionRedo_triggered()
{
    redo();
}

void MMainWindow::on_actionResetCanvasPosition_triggered()
{
    m_view->resetCanvas();
}

void MMainWindow::on_actionAdjustToWidth_triggered()
{
    m_view->adjustToWidth();
}

void MMainWindow::on_actionAdjustToHeight_triggered()
{
    m_view->adjustToHeight();
}

void MMainWindow::on_actionViewAllCanvas_triggered()
{
    m_view->fitToView();
}

void MMainWindow::on_actionFlipHorizontal_triggered()
{
    m_view->transform()->flipHorizontal();
}

void MMainWindow::on_actionFlipVertical_triggered()
{
    m_view->transform()->flipVertical();
}

void MMainWindow::on_actionFullScreen_triggered(bool checked)
{
    if (checked)
        showFullScreen();
    else
        showNormal();
}

void MMainWindow::on_actionWindowTransparency_triggered()
{
    windowTransparency();
}

void MMainWindow::on_actionIncreaseWindowTransparency_triggered()
{
    increaseWindowTransparency();
}

void MMainWindow::on_actionDecreaseWindowTransparency_triggered()
{
    decreaseWindowTransparency();
}

void MMainWindow::on_actionRestoreDefaultLayout_triggered()
{
    m_form->applyDefaultLayout(this);
    MTools::instance()->hideInterface();
}

void MMainWindow::on_actionEditSettings_triggered()
{
    DSettings dialog(this, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    if (dialog.needRestart() &&
        QMessageBox::question(this, tr("Settings"),
                              tr("Some changes take effect after a restart. Restart now?")) ==
            QMessageBox::Yes)
        applicationReboot();
}

void MMainWindow::on_actionCopy_triggered()
{
    canvas()->copyToClipboard(canvas()->hasSelection());
}

void MMainWindow::on_actionCut_triggered()
{
    canvas()->copyToClipboard(canvas()->hasSelection());
    canvas()->erase();
}

void MMainWindow::on_actionPaste_triggered()
{
    const QImage image = QApplication::clipboard()->image();
    if (image.isNull())
        return;
    canvas()->pasteImage(m_view->transform()->mapToCanvas(QRectF(m_view->rect()).center()), image, false,
                         tr("Paste"));
}

void MMainWindow::on_actionPasteInNewLayer_triggered()
{
    const QImage image = QApplication::clipboard()->image();
    if (image.isNull())
        return;
    canvas()->appendImage(m_view->transform()->mapToCanvas(QRectF(m_view->rect()).center()), image);
}

void MMainWindow::on_actionNewLayer_triggered()
{
    canvas()->appendLayer();
}

void MMainWindow::on_actionPrependLayer_triggered()
{
    canvas()->prependLayer();
}

void MMainWindow::on_actionEditLayer_triggered()
{
    canvas()->editLayer();
}

void MMainWindow::on_actionRemoveLayer_triggered()
{
    canvas()->removeLayer();
}

void MMainWindow::on_actionDuplicateLayer_triggered()
{
    canvas()->duplicateLayer();
}

void MMainWindow::on_actionShowLayer_triggered()
{
    canvas()->showLayer();
}

void MMainWindow::on_actionLockLayer_triggered()
{
    canvas()->lockLayer();
}

void MMainWindow::on_actionShowAllLayers_triggered()
{
    canvas()->showAllLayers();
}

void MMainWindow::on_actionHideAllLayers_triggered()
{
    canvas()->hideAllLayers();
}

void MMainWindow::on_actionHideLayersExcept_triggered()
{
    canvas()->hideAllLayersExcept(canvas()->currentRow());
}

void MMainWindow::on_actionLockAllLayers_triggered()
{
    canvas()->lockAllLayers();
}

void MMainWindow::on_actionUnlockAllLayers_triggered()
{
    canvas()->unlockAllLayers();
}

void MMainWindow::on_actionNextLayer_triggered()
{
    canvas()->nextLayer();
}

void MMainWindow::on_actionPreviousLayer_triggered()
{
    canvas()->previousLayer();
}

void MMainWindow::on_actionMergeLayerWithLower_triggered()
{
    canvas()->mergeLayerWithLower();
}

void MMainWindow::on_actionMergeLayerWithUpper_triggered()
{
    canvas()->mergeLayerWithUpper();
}

void MMainWindow::on_actionMoveLayerUp_triggered()
{
    canvas()->moveUpLayer();
}

void MMainWindow::on_actionMoveLayerDown_triggered()
{
    canvas()->moveDownLayer();
}

void MMainWindow::on_actionRemoveEmptyLayers_triggered()
{
    canvas()->removeEmptyLayers();
}

void MMainWindow::on_actionSelectAll_triggered()
{
    QPainterPath page;
    page.addRect(canvas()->paintedRect());
    canvas()->setClipPath(page);
}

void MMainWindow::on_actionResetSelection_triggered()
{
    canvas()->resetClipPath();
}

void MMainWindow::on_actionInvertSelection_triggered()
{
    canvas()->invertClipPath();
}

void MMainWindow::on_actionAbout_Quillmere_triggered()
{
    QMessageBox::about(this, tr("About Quillmere"),
                       tr("<h3>Quillmere %1</h3><p>A painting program for a stylus or a mouse, where every "
                          "pixel lives on the graphics card and brushes and effects are programs you can "
                          "write.</p>")
                           .arg(QCoreApplication::applicationVersion()));
}

void MMainWindow::makeResourcePanels()
{
    m_shaderWidget = new MShaderWidget;
    m_shaderWidget->setObjectName(QStringLiteral("shaderWidget"));
    m_shaderWidget->setContextActions({m_form->action(QStringLiteral("actionPreviewShader")),
                                       m_form->action(QStringLiteral("actionDuplicateShader")),
                                       m_form->action(QStringLiteral("actionRename_effect")),
                                       m_form->action(QStringLiteral("actionRemoveShader")),
                                       m_form->action(QStringLiteral("actionImport_effect")),
                                       m_form->action(QStringLiteral("actionSet_brush_engine"))});
    m_form->setDockContent(QStringLiteral("shaderDockWidget"), m_shaderWidget);
    connect(m_shaderWidget, &MShaderWidget::effectActivated, this, &MMainWindow::setLayerEffect);
    connect(m_shaderWidget, &MShaderWidget::engineActivated, this, &MMainWindow::setBrushEngine);

    m_brushWidget = new MBrushListWidget;
    m_brushWidget->setObjectName(QStringLiteral("brushWidget"));
    m_brushWidget->setExtraActions(m_form->action(QStringLiteral("actionDuplicate_brush")),
                                   m_form->action(QStringLiteral("actionDelete_brush")));
    m_form->setDockContent(QStringLiteral("brushDockWidget"), m_brushWidget);

    m_brushSettingsWidget = new MBrushSettingsWidget;
    m_brushSettingsWidget->setObjectName(QStringLiteral("brushSettingsWidget"));
    m_form->setDockContent(QStringLiteral("brushSettingsDockWidget"), m_brushSettingsWidget);

    // The colour of strokes, until the colour panels come: the standard
    // chooser, without its buttons, kept in step with the colour list.
    auto* colors = new QColorDialog;
    colors->setObjectName(QStringLiteral("colorChooser"));
    colors->setWindowFlags(Qt::Widget);
    colors->setOptions(QColorDialog::NoButtons | QColorDialog::DontUseNativeDialog);
    colors->setCurrentColor(MColorList::instance()->foregroundColor());
    connect(colors, &QColorDialog::currentColorChanged, MColorList::instance(),
            QOverload<const QColor&>::of(&MColorList::setColor));
    connect(MColorList::instance(), &MColorList::colorChanged, colors,
            [colors](const QColor& color, Qt::KeyboardModifiers modifiers) {
                if (!modifiers.testFlag(Qt::ControlModifier) && color != colors->currentColor())
                    colors->setCurrentColor(color);
            });
    m_form->setDockContent(QStringLiteral("colorDockWidget"), colors);

    connect(MBrushList::instance(), &MBrushList::currentRowChanged, this, &MMainWindow::validateBrushActions);
    connect(MShaderList::instance(), &MShaderList::currentRowChanged, this,
            &MMainWindow::validateShaderActions);
}

bool MMainWindow::askQuestion(const QString& title, const QString& text)
{
    return QMessageBox::question(this, title, text, QMessageBox::Yes | QMessageBox::No, QMessageBox::No) ==
           QMessageBox::Yes;
}

QString MMainWindow::askText(const QString& title, const QString& label, const QString& text)
{
    bool ok = false;
    const QString answer = QInputDialog::getText(this, title, label, QLineEdit::Normal, text, &ok).trimmed();
    return ok && !answer.isEmpty() ? answer : QString();
}

QString MMainWindow::askOpenFileName(const QString& title, const QString& filter)
{
    const QString fileName =
        QFileDialog::getOpenFileName(this, title, MSettings::instance()->lastFilesDir(), filter);
    if (!fileName.isEmpty())
        MSettings::instance()->set_lastFilesDir(QFileInfo(fileName).absolutePath());
    return fileName;
}

MShader* MMainWindow::panelShader(int type) const
{
    MShader* shader = m_shaderWidget ? m_shaderWidget->currentShader() : nullptr;
    return shader && shader->type() == type ? shader : nullptr;
}

void MMainWindow::on_actionNew_brush_triggered()
{
    const MBrush* current = MBrushList::instance()->currentBrush();
    const QString description = askText(tr("New brush"), tr("Description:"), tr("new brush"));
    if (description.isEmpty())
        return;
    if (!MBrushList::instance()->addBrush(current ? current->group() : QString(), description))
        showError(tr("Brush"), tr("An error occured while saving the file."), true);
}

void MMainWindow::on_actionDelete_brush_triggered()
{
    MBrushList* list = MBrushList::instance();
    const MBrush* brush = list->currentBrush();
    if (!brush || list->count() < 2 ||
        !askQuestion(tr("Delete brush"),
                     tr("Do you want to delete the brush \"%1\"?").arg(brush->description())))
        return;
    list->removeRow(list->currentRow());
}

void MMainWindow::on_actionEraserMode_toggled(bool checked)
{
    MBrush* brush = MBrushList::instance()->currentBrush();
    if (!brush)
        return;
    brush->setEraser(checked);
    if (m_view)
        m_view->update();
}

void MMainWindow::on_actionDuplicate_brush_triggered()
{
    MBrushList* list = MBrushList::instance();
    const MBrush* brush = list->currentBrush();
    if (!brush)
        return;
    const QString description =
        askText(tr("Duplicate brush"), tr("Description:"), tr("%1 copy").arg(brush->description()));
    if (!description.isEmpty() && !list->duplicateBrush(brush, brush->group(), description))
        showError(tr("Brush"), tr("An error occured while saving the file."), true);
}

void MMainWindow::on_actionRename_brush_triggered()
{
    MBrushList* list = MBrushList::instance();
    MBrush* brush = list->currentBrush();
    if (!brush)
        return;
    const QString description = askText(tr("Rename brush"), tr("Description:"), brush->description());
    if (!description.isEmpty() && !list->renameItem(brush, description))
        showError(tr("Brush"), tr("An error occured while saving the file."), true);
}

void MMainWindow::on_actionEdit_brush_settings_triggered()
{
    m_brushWidget->editSettings();
    m_brushSettingsWidget->showCurrentBrush();
}

void MMainWindow::on_actionImport_brush_file_triggered()
{
    const QString fileName = askOpenFileName(tr("Import brush file"), tr("Brush files (*.qmb)"));
    if (!fileName.isEmpty() && !MBrushList::instance()->importFile(fileName))
        showError(tr("Import brush file"), tr("Unable to import the brush file %1.").arg(fileName), true);
}

void MMainWindow::on_actionRestore_brush_triggered()
{
    MBrushList* list = MBrushList::instance();
    MBrush* brush = list->currentBrush();
    if (!brush || !brush->exists() ||
        !askQuestion(tr("Restore brush to system default"),
                     tr("Do you want to replace the brush \"%1\" by the one installed with the program?")
                         .arg(brush->description())))
        return;
    if (!list->restoreToSystem(brush))
        showError(tr("Brush"), tr("An error occured while loading the file."), true);
    m_brushSettingsWidget->showCurrentBrush();
}

void MMainWindow::on_actionCopy_brush_to_system_directory_triggered()
{
    MBrushList* list = MBrushList::instance();
    MBrush* brush = list->currentBrush();
    if (brush && !list->copyToSystem(brush))
        showError(tr("Brush"), tr("Cannot write %1.").arg(list->systemFileName(brush)), true);
    validateBrushActions();
}

void MMainWindow::on_actionRemove_brush_from_system_directory_triggered()
{
    MBrushList* list = MBrushList::instance();
    MBrush* brush = list->currentBrush();
    if (!brush ||
        !askQuestion(tr("Remove brush from system directory"),
                     tr("Do you want to remove the brush \"%1\" from the system directory? It stays "
                        "yours in the user directory.")
                         .arg(brush->description())))
        return;
    if (!list->removeFromSystem(brush))
        showError(tr("Brush"), tr("Cannot remove %1.").arg(list->systemFileName(brush)), true);
    validateBrushActions();
}

void MMainWindow::setBrushEngine(const QString& id)
{
    MBrush* brush = MBrushList::instance()->currentBrush();
    if (!brush)
        return;
    brush->set_shaderId(id);
    brush->refreshPreview();
    validateBrushActions();
}

void MMainWindow::on_actionSet_brush_engine_triggered()
{
    if (const MShader* engine = panelShader(MShader::BrushShader))
        setBrushEngine(engine->id());
}

void MMainWindow::on_actionReset_brush_engine_triggered()
{
    setBrushEngine(QString());
}

void MMainWindow::duplicateShader(int type)
{
    const MShader* shader = panelShader(type);
    if (!shader)
        return;
    const QString description =
        askText(type == MShader::BrushShader ? tr("Duplicate brush engine") : tr("Duplicate effect"),
                tr("Description:"), tr("%1 copy").arg(shader->description()));
    if (!description.isEmpty() && !MShaderList::instance()->duplicateShader(shader, description))
        showError(tr("Effect"), tr("An error occured while saving the file."), true);
}

void MMainWindow::deleteShader(int type)
{
    MShaderList* list = MShaderList::instance();
    const MShader* shader = panelShader(type);
    if (!shader ||
        !askQuestion(type == MShader::BrushShader ? tr("Delete brush engine") : tr("Delete effect"),
                     tr("Do you want to delete \"%1\"?").arg(shader->description())))
        return;
    list->removeRow(list->indexOf(shader));
}

void MMainWindow::renameShader(int type)
{
    MShader* shader = panelShader(type);
    if (!shader)
        return;
    const QString description =
        askText(type == MShader::BrushShader ? tr("Rename brush engine") : tr("Rename effect"),
                tr("Description:"), shader->description());
    if (!description.isEmpty() && !MShaderList::instance()->renameItem(shader, description))
        showError(tr("Effect"), tr("An error occured while saving the file."), true);
}

void MMainWindow::on_actionDuplicate_brush_engine_triggered()
{
    duplicateShader(MShader::BrushShader);
}

void MMainWindow::on_actionDelete_brush_engine_triggered()
{
    deleteShader(MShader::BrushShader);
}

void MMainWindow::on_actionRename_brush_engine_triggered()
{
    renameShader(MShader::BrushShader);
}

void MMainWindow::on_actionRemoveShader_triggered()
{
    deleteShader(MShader::EffectShader);
}

void MMainWindow::on_actionDuplicateShader_triggered()
{
    duplicateShader(MShader::EffectShader);
}

void MMainWindow::on_actionRename_effect_triggered()
{
    renameShader(MShader::EffectShader);
}

void MMainWindow::on_actionImport_effect_triggered()
{
    const QString fileName = askOpenFileName(tr("Import effect"), tr("Effect files (*.qsh)"));
    if (!fileName.isEmpty() && !MShaderList::instance()->importFile(fileName))
        showError(tr("Import effect"), tr("Unable to import the effect file %1.").arg(fileName), true);
}

void MMainWindow::setLayerEffect(const QString& id)
{
    MCanvas* document = canvas();
    const int row = document->currentRow();
    const MTextureLayer* layer = document->current();
    if (!layer || layer->shaderId() == id)
        return;
    document->setLayerProperties(row, {{"shaderId", layer->shaderId()}}, {{"shaderId", id}});
    validateShaderActions();
}

void MMainWindow::on_actionPreviewShader_triggered()
{
    if (const MShader* effect = panelShader(MShader::EffectShader))
        setLayerEffect(effect->id());
}

void MMainWindow::on_actionRasterizeShader_triggered()
{
    canvas()->applyEffect();
    validateShaderActions();
}

void MMainWindow::on_actionEdit_layer_effect_settings_triggered()
{
    canvas()->editLayer();
}
