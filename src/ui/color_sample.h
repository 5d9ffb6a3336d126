#pragma once

#include <QAbstractButton>

#include "view3d/rgb.h"

namespace kelvane {

// A box in a colour. A click, or the space bar, opens the colour picker ("CommonDialog1"), from
// which it takes another.
class ColorSample : public QAbstractButton {
    Q_OBJECT

public:
    static constexpr int kRoom = 3; // pixels around the colour, for the mark of the focus

    // The purpose stands as the picker's title and, with the colour, as tool tip and accessible
    // name.
    explicit ColorSample(const QString& purpose, QWidget* parent = nullptr);

    Rgb Color() const { return m_color; }
    void SetColor(Rgb color);

    QSize sizeHint() const override;

Q_SIGNALS:
    void colorChanged();
    void colorPicked(); // by the user, after colorChanged; also when it is the same again

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void Pick();
    void Describe();

    QString m_purpose;
    Rgb m_color;
};

// A band from one colour to another.
class GradientBar : public QWidget {
    Q_OBJECT

public:
    explicit GradientBar(QWidget* parent = nullptr);

    void SetColors(Rgb from, Rgb to);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Rgb m_from;
    Rgb m_to;
};

} // namespace kelvane
