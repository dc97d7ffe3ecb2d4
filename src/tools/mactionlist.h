#pragma once

#include "lists/mtablemodel.h"

class QWidget;

// The named actions of a window as a table of MAction rows, for the shortcut
// page of the settings dialog.
class MActionList : public MTableModel
{
    Q_OBJECT

public:
    explicit MActionList(QObject* parent = nullptr);

    // Replaces the rows by one per QAction child of the window that has an
    // object name and a description: its tool tip, or its text where the tool
    // tip is empty, trimmed, without a trailing "...". Answers the row count.
    int rebuild(QWidget* window);

    // The text a row shows for an action.
    static QString describe(const QAction* action);
};
