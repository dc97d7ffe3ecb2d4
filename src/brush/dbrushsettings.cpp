#include "brush/dbrushsettings.h"

#include "app/mfileutility.h"
#include "app/msettings.h"
#include "app/mutility.h"
#include "brush/dcurveeditor.h"
#include "brush/mbrush.h"
#include "brush/mbrushsettinginfolist.h"
#include "brush/mcurve.h"
#include "brush/msettingcategory.h"
#include "effects/mfield.h"
#include "effects/mfieldpanel.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"

#include <QComboBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QStyle>
#include <QToolButton>
#include <QTransform>
#include <QVBoxLayout>

#include <algorithm>

namespace {

const QSize previewSize(360, 90);
const QSize textureThumbnailSize(48, 48);

// The field of a setting in the dictionary, null when unknown.
MField* settingField(int setting)
{
    for (MField* field : MBrushSettingInfoList::instance()->fields())
        if (field->id == setting)
            return field;
    return nullptr;
}

// What the curve editor may change on one setting, to tell afterwards whether it did.
QVariantList curveState(const MBrush& brush, int setting)
{
    QVariantList state;
    for (const MCurve* curve : brush.curves(setting)) {
        state << curve->input() << curve->interpolationType() << curve->modulo() << curve->yMin()
              << curve->yMax();
        for (const QPointF& point : curve->points())
            state << point;
    }
    return state;
}

// The engine of a brush, null when it has none or an unknown one.
MShader* engineOf(const MBrush& brush)
{
    return brush.shaderId().isEmpty() ? nullptr : MShaderList::instance()->shaderById(brush.shaderId());
}

QToolButton* textureButton(const QIcon& icon, const QString& toolTip, const QString& name, QWidget* parent)
{
    auto* button = new QToolButton(parent);
    button->setObjectName(name);
    button->setIcon(icon);
    button->setIconSize(QSize(16, 16));
    button->setToolTip(toolTip);
    return button;
}

} // namespace

DBrushSettings::DBrushSettings(MBrush* brush, QWidget* parent)
    : QDialog(parent), m_source(brush), m_brush(new MBrush(this)), m_panel(new MFieldPanel),
      m_categoryCombo(new QComboBox(this)), m_previewLabel(new QLabel(this)),
      m_textureLabel(new QLabel(this)), m_textureInfo(new QLabel(this)),
      m_saveButton(new QPushButton(tr("Save"), this))
{
    setWindowTitle(tr("Brush settings"));
    if (brush)
        m_brush->assign(*brush);

    m_panel->set_showCurveButtons(true);
    m_panel->set_labelsOnTop(false);
    m_panel->set_slidersTracking(false);
    m_panel->setObject(m_brush);
    connect(m_panel, &MFieldPanel::valueChanged, this, &DBrushSettings::onBrushValueChanged);
    connect(m_panel, &MFieldPanel::editCurve, this, &DBrushSettings::onEditCurve);
    auto* scrollArea = new QScrollArea(this);
    scrollArea->setWidgetResizable(true);
    scrollArea->setFrameShape(QFrame::NoFrame);
    scrollArea->setWidget(m_panel);
    scrollArea->setMinimumSize(420, 260);

    m_categoryCombo->setObjectName(QStringLiteral("categoryCombo"));
    m_categoryCombo->addItem(tr("Prefered settings"), quickSettingsCategory);
    const QVector<MSettingCategory*>& categories = MBrushSettingInfoList::instance()->categories();
    for (int i = 0; i < categories.size(); ++i)
        m_categoryCombo->addItem(categories.at(i)->description(), i);
    const MShader* engine = engineOf(*m_brush);
    if (engine && const_cast<MShader*>(engine)->parseParams() && engine->paramCount() > 0)
        m_categoryCombo->addItem(tr("Engine parameters"), engineParamsCategory);
    connect(m_categoryCombo, QOverload<int>::of(&QComboBox::activated), this,
            &DBrushSettings::onCategoryActivated);

    m_previewLabel->setObjectName(QStringLiteral("previewLabel"));
    m_previewLabel->setFixedSize(previewSize);
    m_previewLabel->setAutoFillBackground(true);
    QPalette palette = m_previewLabel->palette();
    palette.setColor(QPalette::Window, Qt::white);
    m_previewLabel->setPalette(palette);
    m_previewLabel->setFrameShape(QFrame::StyledPanel);

    m_textureLabel->setObjectName(QStringLiteral("textureLabel"));
    m_textureLabel->setFixedSize(textureThumbnailSize);
    m_textureLabel->setAlignment(Qt::AlignCenter);
    m_textureInfo->setObjectName(QStringLiteral("textureInfoLabel"));
    auto* load = textureButton(QIcon(QStringLiteral(":/icons/image.ico")), tr("Load brush texture"),
                               QStringLiteral("loadTextureButton"), this);
    auto* reset = textureButton(style()->standardIcon(QStyle::SP_DialogResetButton),
                                tr("Reset brush texture"), QStringLiteral("resetTextureButton"), this);
    auto* exportButton =
        textureButton(style()->standardIcon(QStyle::SP_DialogSaveButton), tr("Export brush texture"),
                      QStringLiteral("exportTextureButton"), this);
    connect(load, &QToolButton::clicked, this, &DBrushSettings::loadBrushTexture);
    connect(reset, &QToolButton::clicked, this, &DBrushSettings::resetBrushTexture);
    connect(exportButton, &QToolButton::clicked, this, &DBrushSettings::exportBrushTexture);

    m_saveButton->setObjectName(QStringLiteral("saveButton"));
    m_saveButton->setAutoDefault(false);
    connect(m_saveButton, &QPushButton::clicked, this, &DBrushSettings::on_saveButton_clicked);
    auto* closeButton = new QPushButton(tr("Close"), this);
    closeButton->setObjectName(QStringLiteral("closeButton"));
    closeButton->setAutoDefault(false);
    connect(closeButton, &QPushButton::clicked, this, &DBrushSettings::reject);

    auto* categoryRow = new QHBoxLayout;
    categoryRow->addWidget(new QLabel(tr("Category"), this));
    categoryRow->addWidget(m_categoryCombo, 1);

    auto* textureRow = new QHBoxLayout;
    textureRow->addWidget(m_textureLabel);
    textureRow->addWidget(m_textureInfo, 1);
    textureRow->addWidget(load);
    textureRow->addWidget(reset);
    textureRow->addWidget(exportButton);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_saveButton);
    buttons->addWidget(closeButton);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(categoryRow);
    layout->addWidget(scrollArea, 1);
    layout->addWidget(m_previewLabel, 0, Qt::AlignHCenter);
    layout->addLayout(textureRow);
    layout->addLayout(buttons);

    setCurrentCategory(quickSettingsCategory);
    refreshTexture();
    refreshPreview();
}

DBrushSettings::~DBrushSettings() = default;

void DBrushSettings::setCurrentCategory(int category)
{
    QVector<MField*> fields;
    QObject* object = m_brush;
    if (category == quickSettingsCategory) {
        for (int setting : m_brush->quickSettings())
            if (MField* field = settingField(setting))
                fields << field;
    } else if (category == engineParamsCategory) {
        MShader* engine = engineOf(*m_brush);
        if (!engine || !engine->parseParams())
            return;
        for (int i = 0; i < engine->paramCount(); ++i)
            fields << engine->param(i);
        object = m_brush->shaderValues();
    } else {
        const QVector<MSettingCategory*>& categories = MBrushSettingInfoList::instance()->categories();
        if (category < 0 || category >= categories.size())
            return;
        for (int setting : categories.at(category)->settings())
            if (MField* field = settingField(setting))
                fields << field;
    }
    m_category = category;
    m_panel->setFields(fields);
    m_panel->setObject(object);
    const QSignalBlocker blocker(m_categoryCombo);
    m_categoryCombo->setCurrentIndex(m_categoryCombo->findData(category));
}

void DBrushSettings::onCategoryActivated(int index)
{
    setCurrentCategory(m_categoryCombo->itemData(index).toInt());
}

void DBrushSettings::onBrushValueChanged(const QByteArray& propertyName, const QVariant& value)
{
    Q_UNUSED(propertyName)
    Q_UNUSED(value)
    setModified();
    refreshPreview();
}

void DBrushSettings::onEditCurve(QToolButton* button, int setting)
{
    Q_UNUSED(button)
    const QVariantList before = curveState(*m_brush, setting);
    DCurveEditor editor(m_brush, setting, this);
    editor.exec();
    if (curveState(*m_brush, setting) != before)
        setModified();
    m_panel->valuesToWidgets();
    refreshPreview();
}

void DBrushSettings::refreshPreview()
{
    const QImage preview =
        m_brush->renderPreview(m_previewLabel->contentsRect().size(), Qt::black, Qt::white);
    m_previewLabel->setPixmap(QPixmap::fromImage(preview));
}

void DBrushSettings::setModified()
{
    m_modified = true;
}

QString DBrushSettings::textureText() const
{
    const QImage texture = m_brush->texture();
    QString text = texture.isNull() ? tr("no texture")
                                    : tr("width: %1 - height: %2").arg(texture.width()).arg(texture.height());
    if (!m_brush->shaderId().isEmpty()) {
        const MShader* engine = engineOf(*m_brush);
        text += tr(" - engine: %1").arg(engine ? engine->description() : m_brush->shaderId());
    }
    return text;
}

void DBrushSettings::refreshTexture()
{
    const QImage texture = m_brush->texture();
    if (texture.isNull())
        m_textureLabel->clear();
    else
        m_textureLabel->setPixmap(QPixmap::fromImage(
            texture.scaled(textureThumbnailSize, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
    m_textureInfo->setText(textureText());
}

bool DBrushSettings::hasOpaqueCorner(const QImage& image)
{
    return !image.isNull() && qAlpha(image.pixel(0, 0)) > 0;
}

void DBrushSettings::applyTextureImage(MBrush* brush, QImage image, bool transparentBackground)
{
    if (!brush || image.isNull())
        return;
    const QRgb keyColor = image.pixel(0, 0);
    // Stamps are laid lengthwise along the stroke.
    if (image.height() > image.width()) {
        image = image.transformed(QTransform().rotate(90.0));
        brush->setAngle(90.0);
    } else {
        brush->setAngle(0.0);
    }
    if (qAlpha(keyColor) > 0) {
        if (transparentBackground)
            image = MUtility::colorToAlpha(image, keyColor);
        else
            brush->setPreserveTextureColor(true);
    }
    const double ratio = double(image.height()) / double(image.width());
    if (image.width() > maxTextureWidth) {
        const int height = std::max(1, qRound(ratio * maxTextureWidth));
        image = image.scaled(maxTextureWidth, height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    brush->setTexture(image);
    brush->setRadius(std::min(image.width() / 2.0, 500.0));
    brush->setRatio(ratio);
}

bool DBrushSettings::loadTextureFile(const QString& fileName)
{
    QImage image;
    if (!image.load(fileName)) {
        QMessageBox::critical(this, tr("Brush texture"), tr("An error occured while loading the file."));
        return false;
    }
    if (image.isNull()) {
        QMessageBox::critical(this, tr("Brush texture"), tr("Invalid image."));
        return false;
    }
    bool transparent = false;
    if (hasOpaqueCorner(image)) {
        transparent =
            QMessageBox::question(this, tr("Brush texture"),
                                  tr("The image background seems to be opaque. Do you want a "
                                     "transparent background? If no texure color will be preserved."),
                                  QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes) == QMessageBox::Yes;
    }
    applyTextureImage(m_brush, image, transparent);
    m_panel->valuesToWidgets();
    setModified();
    refreshTexture();
    refreshPreview();
    return true;
}

void DBrushSettings::loadBrushTexture()
{
    const QString fileName =
        QFileDialog::getOpenFileName(this, tr("Brush texture"), MSettings::instance()->lastFilesDir(),
                                     MFileUtility::imageFilters().join(QStringLiteral(";;")));
    if (fileName.isEmpty())
        return;
    MSettings::instance()->set_lastFilesDir(QFileInfo(fileName).absolutePath());
    loadTextureFile(fileName);
}

void DBrushSettings::resetBrushTexture()
{
    if (m_brush->texture().isNull()) {
        QMessageBox::information(this, tr("Reset texture"), tr("This brush has no texture."));
        return;
    }
    if (QMessageBox::question(this, tr("Reset texture"), tr("Are you sure you want to remove brush texture?"),
                              QMessageBox::Yes | QMessageBox::No) != QMessageBox::Yes)
        return;
    m_brush->setTexture(QImage());
    setModified();
    refreshTexture();
    refreshPreview();
}

bool DBrushSettings::exportTextureFile(const QString& fileName)
{
    if (!m_brush->texture().save(fileName, "PNG")) {
        QMessageBox::critical(this, tr("Save texture"), tr("An error occured while saving the file."));
        return false;
    }
    return true;
}

void DBrushSettings::exportBrushTexture()
{
    if (m_brush->texture().isNull()) {
        QMessageBox::warning(this, tr("Save texture"), tr("No texture to save!"));
        return;
    }
    QFileDialog dialog(this, tr("Save texture"), MSettings::instance()->lastFilesDir(),
                       tr("PNG image (*.png)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("png"));
    // The question about an existing file is ours.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return;
    const QString fileName = dialog.selectedFiles().constFirst();
    MSettings::instance()->set_lastFilesDir(QFileInfo(fileName).absolutePath());
    if (QFileInfo::exists(fileName) &&
        QMessageBox::question(this, tr("Save texture"), tr("This file exists. Do you want to replace it?"),
                              QMessageBox::Yes | QMessageBox::No) != QMessageBox::Yes)
        return;
    exportTextureFile(fileName);
}

void DBrushSettings::writeBack()
{
    if (!m_source)
        return;
    m_source->assign(*m_brush);
    // The copy carried the values silently; views of the brush hear of each.
    for (const MField* field : MBrushSettingInfoList::instance()->fields())
        m_source->emitNotification(field->id, m_source->baseValue(field->id));
    m_source->refreshPreview();
}

void DBrushSettings::on_saveButton_clicked()
{
    writeBack();
    if (m_source && m_source->save()) {
        m_modified = false;
        QMessageBox::information(this, tr("Brush"), tr("File saved."));
    } else {
        QMessageBox::critical(this, tr("Brush"), tr("An error occured while saving the file."));
    }
}

void DBrushSettings::reject()
{
    if (!m_modified) {
        QDialog::reject();
        return;
    }
    QMessageBox box(QMessageBox::Question, tr("Brush"), tr("The brush has been modified."), QMessageBox::Save,
                    this);
    box.setInformativeText(
        tr("If you do not save, the changes will be discarded at next application startup."));
    QPushButton* keep = box.addButton(tr("Keep changes but do not save"), QMessageBox::AcceptRole);
    QPushButton* discard = box.addButton(tr("Discard and close"), QMessageBox::DestructiveRole);
    QPushButton* stay = box.addButton(tr("Don't close"), QMessageBox::RejectRole);
    box.setDefaultButton(keep);
    box.setEscapeButton(stay);
    box.exec();
    const QAbstractButton* answer = box.clickedButton();
    if (answer == box.button(QMessageBox::Save)) {
        writeBack();
        if (!m_source || !m_source->save()) {
            QMessageBox::critical(this, tr("Brush"), tr("An error occured while saving the file."));
            return;
        }
    } else if (answer == keep) {
        writeBack();
    } else if (answer != discard) {
        return;
    }
    m_modified = false;
    QDialog::reject();
}
