#include "editor/widget/CodeEdit.h"

#include "projects/settings/EnvironmentSettings.h"

#include <QFontDatabase>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr double PrintPointSize = 8;

/// What a page that is white can bear: colours for a dark window would hardly be seen.
const CodeEditColorScheme& schemeForPaper(const CodeEditColorScheme& scheme)
{
    return scheme.isDark() ? colorSchemes().first() : scheme;
}

} // namespace

void CodeEdit::initParameters(PrintParameters& parameters)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setFamily(m_fonts.base().family());
    font.setPointSizeF(PrintPointSize);
    if (parameters.device)
        font = QFont(font, parameters.device);
    m_printing = Printing{CodeEditFonts(font), parameters};
}

void CodeEdit::beginPrinting(const PrintParameters& parameters)
{
    if (!m_printing)
        m_printing.emplace();
    m_printing->parameters = parameters;
}

int CodeEdit::totalPages() const
{
    if (!m_printing)
        return 0;
    const int linesPerPage = std::max(
        1, static_cast<int>(m_printing->parameters.pageHeight) / m_printing->fonts.lineHeight());
    return (m_editor.count() - 1 + linesPerPage) / linesPerPage;
}

void CodeEdit::render(int page, QPainter& painter)
{
    const CodeEditFonts& fonts = m_printing->fonts;
    const CodeEditColorScheme& scheme = schemeForPaper(s_scheme);
    const LinePainter::Look look{&fonts, &scheme, Qt::black, m_editor.settings().tabSize,
                                 m_showWhitespace};
    const int linesPerPage =
        std::max(1, static_cast<int>(m_printing->parameters.pageHeight) / fonts.lineHeight());
    const int first = page * linesPerPage;
    const int last = std::min(first + linesPerPage, m_editor.count());
    for (int line = first; line < last; ++line) {
        const StyledLine styled = styledLine(line);
        painter.save();
        painter.translate(0, double(line - first) * fonts.lineHeight());
        LinePainter(styled, look).draw(painter, 0, 0, m_printing->parameters.pageWidth, {});
        painter.restore();
    }
}

void CodeEdit::endPrinting() { m_printing.reset(); }

namespace {

/// Of a name as settings have it, such as "A4" or "C5 Envelope".
QPageSize pageSizeNamed(const QString& name)
{
    QString key = name;
    key.replace(u" Envelope"_s, u"E"_s);
    for (int id = 0; id <= QPageSize::LastPageSize; ++id) {
        const auto size = static_cast<QPageSize::PageSizeId>(id);
        if (QPageSize::key(size) == key || QPageSize::name(size) == name)
            return QPageSize(size);
    }
    return QPageSize(QPageSize::A4);
}

/// What the user has set of paper and margins.
void applyPageSettings(QPrinter& printer)
{
    if (!environment)
        return;
    printer.setPageSize(pageSizeNamed(environment->printingPageSize->toString()));
    printer.setPageOrientation(environment->printingOrientation->toInt() == 0
                                   ? QPageLayout::Portrait
                                   : QPageLayout::Landscape);
    const QMarginsF margins(
        environment->printingLeftMargin->toInt(), environment->printingTopMargin->toInt(),
        environment->printingRightMargin->toInt(), environment->printingBottomMargin->toInt());
    // Margins that leave no page aren't taken; those of the printer stay then.
    printer.setPageMargins(margins, QPageLayout::Millimeter);
}

void printTo(CodeEdit& edit, QPrinter& printer)
{
    QPainter painter;
    if (!painter.begin(&printer))
        return;
    const QRectF page = printer.pageRect(QPrinter::DevicePixel);
    PrintParameters parameters{page.width(), page.height(), &printer};
    edit.initParameters(parameters);
    edit.beginPrinting(parameters);
    const int pages = edit.totalPages();
    const int first = printer.fromPage() > 0 ? printer.fromPage() - 1 : 0;
    const int last = printer.toPage() > 0 ? std::min(printer.toPage(), pages) : pages;
    for (int number = first; number < last; ++number) {
        if (number > first)
            printer.newPage();
        edit.render(number, painter);
    }
    edit.endPrinting();
}

} // namespace

void CodeEdit::print()
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(fileName());
    applyPageSettings(printer);
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() == QDialog::Accepted)
        printTo(*this, printer);
}

void CodeEdit::printPreview()
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(fileName());
    applyPageSettings(printer);
    QPrintPreviewDialog dialog(&printer, this);
    connect(&dialog, &QPrintPreviewDialog::paintRequested, this,
            [this](QPrinter* to) { printTo(*this, *to); });
    dialog.exec();
}
