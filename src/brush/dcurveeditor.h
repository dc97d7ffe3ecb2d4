#pragma once

#include <QDialog>

class MBrush;
class MCurve;
class MCurveWidget;
class QComboBox;
class QDoubleSpinBox;
class QListWidget;
class QPushButton;

// Edits the curves of one setting of a brush, one input at a time. The dialog
// works on a copy of the brush; Ok, or Save on closing, writes it back.
class DCurveEditor : public QDialog
{
    Q_OBJECT

public:
    enum CloseAnswer
    {
        SaveAnswer,
        DiscardAnswer,
        CancelAnswer
    };

    // The background of inputs that have a curve on the setting.
    static QColor curveMark() { return QColor(255, 220, 200); }

    DCurveEditor(MBrush* brush, int setting, QWidget* parent = nullptr);

    int setting() const { return m_setting; }
    int currentBrushInput() const { return m_input; }
    // The private copy being edited.
    MBrush* workingBrush() const { return m_brush; }
    bool isModified() const { return m_modified; }
    MCurveWidget* curveWidget() const { return m_curveWidget; }

public Q_SLOTS:
    void setCurrentBrushInput(int input);
    void on_addCurveBtn_clicked();
    void on_removeCurveBtn_clicked();
    void on_btnAddPoint_clicked();
    void on_btnRemovePoint_clicked();
    void on_btnReset_clicked();
    void on_invertXBtn_clicked();
    void on_invertYBtn_clicked();
    void on_formulaComboBox_activated(int index);
    void on_initTypeComboBox_activated(int index);
    void on_yMinSpinBox_valueChanged(double value);
    void on_yMaxSpinBox_valueChanged(double value);
    void on_moduloSpinBox_valueChanged(double value);
    void on_inputList_currentRowChanged(int row);
    void on_btnOk_clicked();
    // With changes pending, asks whether to save them first.
    void reject() override;

protected:
    // "Do you want to save modifications?"
    virtual CloseAnswer askToSave();

private:
    MCurve* currentCurve() const;
    void writeBack();
    void curveToWidgets();
    void markInputs();
    void setModified();

    MBrush* m_source;
    MBrush* m_brush;
    int m_setting;
    int m_input = -1;
    bool m_modified = false;
    QListWidget* m_inputList;
    MCurveWidget* m_curveWidget;
    QDoubleSpinBox* m_xMin;
    QDoubleSpinBox* m_xMax;
    QDoubleSpinBox* m_yMin;
    QDoubleSpinBox* m_yMax;
    QDoubleSpinBox* m_modulo;
    QComboBox* m_initType;
    QComboBox* m_formula;
    QPushButton* m_addCurve;
    QPushButton* m_removeCurve;
    QList<QWidget*> m_curveControls;
};
