#include "shell/actions/MenuStyle.h"

#include <QPainter>
#include <QStyleOptionMenuItem>

void MenuStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const
{
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    constexpr State selectedAndEnabled = State_Selected | State_Enabled;
    if (element != CE_MenuItem || !item || item->icon.isNull()
        || (item->state & selectedAndEnabled) != selectedAndEnabled) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    QStyleOptionMenuItem selected = *item;
    const int size = proxy()->pixelMetric(PM_SmallIconSize, option, widget);
    selected.icon = item->icon.pixmap(QSize(size, size), painter->device()->devicePixelRatioF(),
                                      QIcon::Selected);
    QProxyStyle::drawControl(element, &selected, painter, widget);
}
