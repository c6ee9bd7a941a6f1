#include "editor/widget/DiagnosticPopup.h"

#include "base/DiagnosticData.h"

#include <QGraphicsOpacityEffect>
#include <QHBoxLayout>
#include <QLabel>

using namespace Qt::Literals::StringLiterals;

DiagnosticPopup::DiagnosticPopup(QWidget* parent)
    : QFrame(parent),
      m_label(new QLabel(this)),
      m_effect(new QGraphicsOpacityEffect(this))
{
    setObjectName(u"DiagnosticPopup"_s);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->addWidget(m_label);
    m_label->setTextFormat(Qt::PlainText);
    m_effect->setOpacity(1.0);
    setGraphicsEffect(m_effect);
    hide();
}

void DiagnosticPopup::setBold(bool bold)
{
    QFont font = m_label->font();
    font.setBold(bold);
    m_label->setFont(font);
}

void DiagnosticPopup::setOpacity(double opacity) { m_effect->setOpacity(opacity); }

void DiagnosticPopup::showMessage(const DiagnosticData& diagnostic, QPoint corner, int lineHeight)
{
    const bool isError = diagnostic.level >= DiagnosticData::Error;
    const bool isWarning = diagnostic.level == DiagnosticData::Warning;
    setStyleSheet(u"#DiagnosticPopup { background: %1; border: 1px solid %2; border-radius: 4px; } "
                  "QLabel { color: #202020; }"_s.arg(isError         ? u"#ffe3e0"_s
                                                         : isWarning ? u"#fff3cf"_s
                                                                     : u"#e4f0ff"_s,
                                                     isError         ? u"#d04030"_s
                                                         : isWarning ? u"#c79a1c"_s
                                                                     : u"#5b8fd0"_s));
    m_label->setText(diagnostic.message);
    setOpacity(1.0);
    adjustSize();
    // Above the line where there is no room below it.
    int y = corner.y() + lineHeight + 2;
    if (y + height() > parentWidget()->height())
        y = corner.y() - height() - 2;
    move(corner.x(), std::max(0, y));
    show();
    raise();
}
