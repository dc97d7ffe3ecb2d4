#pragma once

#include <QColor>
#include <QObject>
#include <QPen>

// How an outline is stroked: colour, width, pen style and dash pattern. Tools
// draw their guide lines with one, and shapes and texts their outlines.
class MStrokeStyle : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QColor strokeColor READ strokeColor WRITE set_strokeColor NOTIFY strokeColorChanged)
    Q_PROPERTY(double strokeSize READ strokeSize WRITE set_strokeSize NOTIFY strokeSizeChanged)
    Q_PROPERTY(int strokeStyle READ strokeStyle WRITE set_strokeStyle NOTIFY strokeStyleChanged)
    Q_PROPERTY(double dashLength READ dashLength WRITE set_dashLength NOTIFY dashLengthChanged)
    Q_PROPERTY(double dashSpace READ dashSpace WRITE set_dashSpace NOTIFY dashSpaceChanged)

public:
    // The values of Qt::PenStyle.
    enum StrokeStyle
    {
        NoStyle = 0,
        SolidLine = 1,
        DashLine = 2,
        DotLine = 3,
        DashDotLine = 4,
        DashDotDotLine = 5,
        CustomDashLine = 6
    };
    Q_ENUM(StrokeStyle)

    explicit MStrokeStyle(QObject* parent = nullptr);

    QColor strokeColor() const { return m_strokeColor; }
    double strokeSize() const { return m_strokeSize; }
    int strokeStyle() const { return m_strokeStyle; }
    double dashLength() const { return m_dashLength; }
    double dashSpace() const { return m_dashSpace; }

    // Width, style and colour; a dashed style also gets the dash pattern when
    // the dash length is above 0.
    QPen pen() const;

public Q_SLOTS:
    void set_strokeColor(const QColor& value);
    void set_strokeSize(double value);
    void set_strokeStyle(int value);
    void set_dashLength(double value);
    void set_dashSpace(double value);

Q_SIGNALS:
    void strokeColorChanged(const QColor& value);
    void strokeSizeChanged(double value);
    void strokeStyleChanged(int value);
    void dashLengthChanged(double value);
    void dashSpaceChanged(double value);

private:
    QColor m_strokeColor = QColor(Qt::darkGray);
    double m_strokeSize = 1.0;
    int m_strokeStyle = SolidLine;
    double m_dashLength = 5.0;
    double m_dashSpace = 5.0;
};
