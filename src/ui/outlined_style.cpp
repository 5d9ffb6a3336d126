#include "ui/outlined_style.h"

#include <QPainter>
#include <QStyleOption>

namespace kelvane {

OutlinedStyle::OutlinedStyle()
    : QProxyStyle("Fusion")
{
}

void OutlinedStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                  QPainter* painter, const QWidget* widget) const
{
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element != PE_IndicatorCheckBox && element != PE_IndicatorRadioButton)
        return;
    QColor line = option->palette.color(QPalette::WindowText);
    line.setAlphaF(0.35F);
    painter->save();
    painter->setPen(line);
    painter->setBrush(Qt::NoBrush);
    if (element == PE_IndicatorCheckBox) {
        painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
    } else {
        painter->setRenderHint(QPainter::Antialiasing);
        painter->drawEllipse(QRectF(option->rect).adjusted(1, 1, -1, -1));
    }
    painter->restore();
}

QStyle* MakeOutlinedStyle()
{
    return new OutlinedStyle;
}

} // namespace kelvane
