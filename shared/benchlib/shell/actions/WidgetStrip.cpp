#include "shell/actions/WidgetStrip.h"

#include <QHBoxLayout>
#include <QToolButton>

WidgetStrip::WidgetStrip(QWidget* parent) : QFrame(parent), m_layout(new QHBoxLayout(this))
{
    m_layout->setContentsMargins(2, 2, 2, 2);
    m_layout->setSpacing(2);
}

void WidgetStrip::addWidget(QWidget* widget, int stretch) { m_layout->addWidget(widget, stretch); }

void WidgetStrip::addAction(QAction* action)
{
    auto* button = new QToolButton(this);
    button->setAutoRaise(true);
    button->setDefaultAction(action);
    m_layout->addWidget(button);
}

void WidgetStrip::addSpace(int width) { m_layout->addSpacing(width); }

void WidgetStrip::addSplit()
{
    auto* line = new QFrame(this);
    line->setFrameShape(QFrame::VLine);
    line->setFrameShadow(QFrame::Sunken);
    m_layout->addWidget(line);
}
