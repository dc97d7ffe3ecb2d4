#pragma once

#include <QDialog>
#include <QPointer>

class MFieldPanel;
class MShader;
class MShaderObject;
class QPushButton;

// The settings of the effect on one object (a layer): a panel of the effect's
// parameters bound to the object's values, with buttons to preview, apply or
// remove the effect. Opening it puts the effect on the object.
class DShaderParams : public QDialog
{
    Q_OBJECT

public:
    DShaderParams(MShader* shader, MShaderObject* object, QWidget* parent = nullptr);

    MFieldPanel* panel() const { return m_panel; }

Q_SIGNALS:
    // A parameter changed, or a preview is asked: the view should redraw.
    void shaderValuesChanged();
    // The effect (or its removal) should be applied to the object now.
    void applyShader();

public Q_SLOTS:
    void on_previewButton_clicked();
    void on_removeButton_clicked();
    void on_applyButton_clicked();

private:
    QPointer<MShaderObject> m_object;
    MFieldPanel* m_panel;
};
