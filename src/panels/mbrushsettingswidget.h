#pragma once

#include <QPointer>
#include <QWidget>

class MBrush;
class MFieldPanel;

// The brush settings panel: the quick settings of the current brush of the
// brush list, edited in place. Edits change the brush in memory, as the
// brush settings dialog's "keep" does; saving stays the dialog's job.
class MBrushSettingsWidget : public QWidget
{
    Q_OBJECT

public:
    explicit MBrushSettingsWidget(QWidget* parent = nullptr);

    MFieldPanel* panel() const { return m_panel; }
    MBrush* brush() const { return m_brush; }

public Q_SLOTS:
    // Shows the current brush of the list, or nothing when there is none.
    void showCurrentBrush();

private:
    void onValueChanged();

    MFieldPanel* m_panel;
    QPointer<MBrush> m_brush;
};
