#pragma once

#include <QColor>
#include <QPushButton>

// A button that shows a colour and lets the user choose another.
class MColorEdit : public QPushButton
{
    Q_OBJECT
    Q_PROPERTY(QColor color READ color WRITE set_color NOTIFY colorChanged USER true)
    Q_PROPERTY(bool showAlpha READ showAlpha WRITE set_showAlpha NOTIFY showAlphaChanged)

public:
    explicit MColorEdit(QWidget* parent = nullptr);

    QColor color() const { return m_color; }
    bool showAlpha() const { return m_showAlpha; }

    QSize sizeHint() const override;

public Q_SLOTS:
    void set_color(const QColor& color);
    void set_showAlpha(bool showAlpha);
    // Asks the user for a colour and takes it unless they cancel.
    void chooseColor();

Q_SIGNALS:
    void colorChanged(const QColor& color);
    void showAlphaChanged(bool showAlpha);

protected:
    void paintEvent(QPaintEvent* event) override;
    // The colour the user picks, invalid when they cancel.
    virtual QColor askColor(const QColor& current);

private:
    QColor m_color;
    bool m_showAlpha = true;
};
