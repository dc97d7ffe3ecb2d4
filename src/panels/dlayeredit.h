#pragma once

#include <QDialog>

class MCanvas;
class MFieldPanel;
class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QLineEdit;

// "Layer properties": the layer's name, opacity, visibility, lock and mask,
// and its effect's parameters. Ok makes the whole edit one undo step;
// Cancel changes nothing.
class DLayerEdit : public QDialog
{
    Q_OBJECT

public:
    DLayerEdit(MCanvas* canvas, int layerIndex, QWidget* parent = nullptr);

    MFieldPanel* effectPanel() const { return m_effectPanel; }
    QLabel* effectMessage() const { return m_effectMessage; }

public Q_SLOTS:
    void on_btnOk_clicked();
    void on_btnCancel_clicked();
    void widgetsToLayer();
    void layerToWidgets();

private:
    MCanvas* m_canvas;
    int m_layerIndex;
    QLineEdit* m_name;
    QDoubleSpinBox* m_opacity;
    QCheckBox* m_visible;
    QCheckBox* m_locked;
    QComboBox* m_mask;
    MFieldPanel* m_effectPanel;
    QLabel* m_effectMessage;
};
