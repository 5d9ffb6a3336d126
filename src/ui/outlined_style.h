#pragma once

#include <QProxyStyle>

namespace kelvane {

// Fusion, alike everywhere, with tick boxes and radio buttons whose outline is seen on any ground.
class OutlinedStyle : public QProxyStyle {
    Q_OBJECT

public:
    OutlinedStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
};

// A new one, for the application to take.
QStyle* MakeOutlinedStyle();

} // namespace kelvane
