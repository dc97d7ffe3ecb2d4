#pragma once

#include <QList>
#include <QPointer>
#include <QString>
#include <QWidget>

class MListWidget;
class MShader;
class MShaderFilterModel;
class QAction;
class QComboBox;
class QLineEdit;
class QMenu;

// The effects panel: the effects and brush engines with their thumbnails,
// filtered by kind and by a search text. A double click hands an effect to the
// current layer, an engine to the current brush, through the owner.
class MShaderWidget : public QWidget
{
    Q_OBJECT

public:
    static constexpr qreal itemWidth = 150.0;
    static constexpr qreal itemHeight = 50.0;

    explicit MShaderWidget(QWidget* parent = nullptr);

    MListWidget* listWidget() const { return m_list; }
    MShaderFilterModel* model() const { return m_model; }
    QComboBox* filterCombo() const { return m_filterCombo; }
    QLineEdit* searchEdit() const { return m_searchEdit; }
    // The effect of the current row, null when none is shown.
    MShader* currentShader() const;

    // The owner's actions of the context menu, in order.
    void setContextActions(const QList<QAction*>& actions);
    // The menu as a right click shows it; the caller owns it.
    QMenu* createContextMenu(QWidget* parent = nullptr) const;

Q_SIGNALS:
    void effectActivated(const QString& id);
    void engineActivated(const QString& id);

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void onDoubleClick();

    MShaderFilterModel* m_model;
    MListWidget* m_list;
    QComboBox* m_filterCombo;
    QLineEdit* m_searchEdit;
    QList<QPointer<QAction>> m_actions;
};
