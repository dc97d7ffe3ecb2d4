#pragma once

#include "lists/mlistwidget.h"

#include <QPointer>

class QAction;
class QMenu;

// The brush list with thumbnails, on the list of every brush. Its context menu
// edits or resets the current brush, and carries up to two actions of the owner.
class MBrushListWidget : public MListWidget
{
    Q_OBJECT

public:
    static constexpr qreal itemWidth = 150.0;
    static constexpr qreal itemHeight = 60.0;

    explicit MBrushListWidget(QWidget* parent = nullptr);

    QAction* editSettingsAction() const { return m_editSettings; }
    QAction* resetSettingsAction() const { return m_resetSettings; }
    // Actions of the owner shown after the list's own; either may be null.
    void setExtraActions(QAction* first, QAction* second);
    // The menu as a right click shows it; the caller owns it.
    QMenu* createContextMenu(QWidget* parent = nullptr) const;

public Q_SLOTS:
    // Runs the settings dialog on the current brush.
    void editSettings();
    // Drops the current brush's unsaved changes: it is read again from its file.
    void resetSettings();

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    QAction* m_editSettings;
    QAction* m_resetSettings;
    QPointer<QAction> m_extra1;
    QPointer<QAction> m_extra2;
};
