#include "shell/windows/MiniToolbar.h"

#include "editor/widget/CodeEdit.h"
#include "shell/actions/GUIBuilder.h"

#include <QMouseEvent>
#include <QToolButton>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int IconSize = 18;
/// Between the pointer and the buttons.
constexpr int Gap = 12;
/// A pointer that goes further away has no use for them.
constexpr int Reach = 140;

int distance(const QRect& rect, QPoint point)
{
    const int dx = std::max({rect.left() - point.x(), point.x() - rect.right(), 0});
    const int dy = std::max({rect.top() - point.y(), point.y() - rect.bottom(), 0});
    return std::max(dx, dy);
}

} // namespace

MiniToolbar::MiniToolbar(CodeEdit& edit) : WidgetStrip(edit.viewport()), m_edit(edit)
{
    setFrameShape(QFrame::StyledPanel);
    setBackgroundRole(QPalette::Window);
    setAutoFillBackground(true);
    setCursor(Qt::ArrowCursor);
    guiBuilder->populate(this, u"EditorMiniPalette"_s);
    for (QToolButton* button : findChildren<QToolButton*>()) {
        button->setFocusPolicy(Qt::NoFocus);
        button->setIconSize(QSize(IconSize, IconSize));
        connect(button, &QToolButton::clicked, this, &QWidget::hide);
    }
    hide();
    edit.installEventFilter(this);
    edit.viewport()->installEventFilter(this);
    connect(&edit, &CodeEdit::miniToolbarRequested, this, &MiniToolbar::showAt);
    connect(&edit, &CodeEdit::finished, this, &QWidget::hide);
}

void MiniToolbar::showAt(QPoint point)
{
    adjustSize();
    const QSize room = parentWidget()->size() - size();
    int y = point.y() - height() - Gap;
    if (y < 0)
        y = point.y() + m_edit.fonts().lineHeight() + Gap;
    move(std::clamp(point.x() - Gap, 0, std::max(0, room.width())),
         std::min(y, std::max(0, room.height())));
    show();
    raise();
}

bool MiniToolbar::eventFilter(QObject* object, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::FocusOut:
    case QEvent::MouseButtonPress:
    case QEvent::Wheel:
    case QEvent::Resize: hide(); break;
    case QEvent::MouseMove:
        if (distance(geometry(), static_cast<QMouseEvent*>(event)->position().toPoint()) > Reach)
            hide();
        break;
    default: break;
    }
    return WidgetStrip::eventFilter(object, event);
}
