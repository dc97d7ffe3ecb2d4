#pragma once

#include <QByteArray>
#include <QDialog>
#include <QImage>
#include <QVariant>

class MBrush;
class MFieldPanel;
class QComboBox;
class QLabel;
class QPushButton;
class QToolButton;

// The brush editor. It edits a private copy of the brush; the copy goes back
// to the brush on saving, or on closing when the user keeps the changes.
class DBrushSettings : public QDialog
{
    Q_OBJECT

public:
    // Item data of the category entries that are no category of settings.
    static constexpr int quickSettingsCategory = 9998;
    static constexpr int engineParamsCategory = 9999;
    // Wider textures are scaled down to this width on import.
    static constexpr int maxTextureWidth = 1000;

    explicit DBrushSettings(MBrush* brush, QWidget* parent = nullptr);
    ~DBrushSettings() override;

    MBrush* sourceBrush() const { return m_source; }
    MBrush* workingBrush() const { return m_brush; }
    bool isModified() const { return m_modified; }
    int currentCategory() const { return m_category; }
    MFieldPanel* panel() const { return m_panel; }

    // The steps of a texture import once the image is chosen: a tall image is
    // turned upright and the angle set to 90, an opaque corner is either keyed
    // out (transparentBackground) or the texture's colours are kept, a wide
    // image is scaled down, and radius and ratio follow the image.
    static void applyTextureImage(MBrush* brush, QImage image, bool transparentBackground);
    // Whether an import of the image asks about its background: its corner
    // pixel is not transparent.
    static bool hasOpaqueCorner(const QImage& image);

    // Imports the image file into the working copy, asking about an opaque
    // background; false, after a message, when it can't be read.
    bool loadTextureFile(const QString& fileName);
    // Writes the working copy's texture as PNG; false, after a message, on failure.
    bool exportTextureFile(const QString& fileName);
    // The text beside the texture.
    QString textureText() const;

public Q_SLOTS:
    void onEditCurve(QToolButton* button, int setting);
    void refreshPreview();
    // Builds the panel from a category entry's item data.
    void setCurrentCategory(int category);
    void loadBrushTexture();
    void resetBrushTexture();
    void exportBrushTexture();
    void onBrushValueChanged(const QByteArray& propertyName, const QVariant& value);
    void on_saveButton_clicked();
    // With modifications, asks what becomes of them first.
    void reject() override;

private:
    void onCategoryActivated(int index);
    void setModified();
    void refreshTexture();
    // The working copy to the brush, whose views then hear of every setting.
    void writeBack();

    MBrush* m_source;
    MBrush* m_brush;
    bool m_modified = false;
    int m_category = -1;
    MFieldPanel* m_panel;
    QComboBox* m_categoryCombo;
    QLabel* m_previewLabel;
    QLabel* m_textureLabel;
    QLabel* m_textureInfo;
    QPushButton* m_saveButton;
};
