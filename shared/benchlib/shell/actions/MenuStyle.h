#pragma once

#include <QProxyStyle>

/// The desktop's style, but that the icon of a selected entry of a menu is drawn as selected: the
/// mode that styles ask for is also that of a tool button under the pointer, on another ground.
class MenuStyle : public QProxyStyle {
    Q_OBJECT
public:
    using QProxyStyle::QProxyStyle;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};
