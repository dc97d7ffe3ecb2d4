#pragma once

#include <QColor>
#include <QDialog>
#include <QHash>
#include <QKeySequence>
#include <QPointer>
#include <QVariant>
#include <QVector>

class MSettingItem;
class QAction;
class QPushButton;
class QStackedWidget;
class QTableWidget;
class QTreeWidget;
class QTreeWidgetItem;

// The settings dialog: one page per category of the settings table, with an
// editor per setting, and a page for the shortcuts of a widget's named actions.
// Nothing reaches the store or the actions before "Ok".
class DSettings : public QDialog
{
    Q_OBJECT

public:
    explicit DSettings(QWidget* actionsWidget, QWidget* parent = nullptr);

    // Whether a setting that takes effect only at the next start has changed.
    bool needRestart() const { return m_needRestart; }

    // The shortcut the named action gets on "Ok".
    QKeySequence pendingShortcut(const QString& actionName) const;
    // Gives the named action a new shortcut, pending until "Ok". A shortcut that
    // another action holds moves only when askReplace agrees; false when
    // nothing changed.
    bool assignShortcut(const QString& actionName, const QKeySequence& sequence);

Q_SIGNALS:
    void settingsChanged();

public Q_SLOTS:
    void on_btnOk_clicked();
    void on_BtnCancel_clicked();
    void editColor();
    void openPage(QTreeWidgetItem* item);
    void editShortcut();
    void resetShortcut();
    void resetAllShortcuts();
    void copyShortcuts();
    void setNeedRestart();

protected:
    // The questions put to the user, apart so that they can be answered
    // without a modal loop.
    virtual bool askReplace(const QKeySequence& sequence, const QString& actionDescription);
    // The colour chosen, invalid when the user cancels.
    virtual QColor askColor(const QColor& current, const QString& title);
    // False when the user cancels; an empty sequence removes the shortcut.
    virtual bool askShortcut(const QString& actionDescription, QKeySequence& sequence);

private:
    struct ShortcutRow
    {
        QPointer<QAction> action;
        QString name;
        QString description;
        QKeySequence sequence;
    };

    QWidget* buildSettingsPage(const QString& category);
    QWidget* buildShortcutsPage();
    QWidget* createEditor(const MSettingItem& item, const QVariant& value, QWidget* parent);
    QVariant editorValue(const MSettingItem& item) const;
    void writeSetting(const MSettingItem& item, const QVariant& value);
    void applyShortcuts();

    int shortcutRow(const QString& actionName) const;
    int currentShortcutRow() const;
    bool assignShortcut(int row, const QKeySequence& sequence);
    void showShortcut(int row, const QKeySequence& sequence);
    void filterShortcuts(const QString& text);

    static void showColor(QPushButton* button, const QColor& color);

    QPointer<QWidget> m_actionsWidget;
    QTreeWidget* m_tree = nullptr;
    QStackedWidget* m_pages = nullptr;
    QTableWidget* m_shortcutTable = nullptr;
    QHash<QString, QWidget*> m_editors;
    // What each editor showed when the dialog opened, to tell the user's edits.
    QHash<QString, QVariant> m_loaded;
    QVector<ShortcutRow> m_shortcuts;
    bool m_needRestart = false;
};
