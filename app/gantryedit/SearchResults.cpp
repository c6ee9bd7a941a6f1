#include "app/gantryedit/SearchResults.h"

#include "build/log/BuildLogModel.h"

#include <QHeaderView>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int PathRole = Qt::UserRole;
constexpr int LineRole = Qt::UserRole + 1;
constexpr int ColumnRole = Qt::UserRole + 2;
/// More than anyone looks at; the log has them all.
constexpr int MostRows = 20'000;

} // namespace

SearchResults::SearchResults(BuildLogModel& log, QWidget* parent)
    : QDockWidget(tr("Search Results"), parent),
      m_log(log),
      m_tree(new QTreeWidget(this))
{
    setObjectName(u"SearchResults"_s);
    m_tree->setHeaderLabels({tr("File"), tr("Line"), tr("Text")});
    m_tree->setRootIsDecorated(false);
    m_tree->setUniformRowHeights(true);
    m_tree->setAlternatingRowColors(true);
    m_tree->header()->setStretchLastSection(true);
    setWidget(m_tree);
    connect(m_tree, &QTreeWidget::itemActivated, this, &SearchResults::choose);
    connect(m_tree, &QTreeWidget::itemClicked, this, &SearchResults::choose);
}

void SearchResults::refresh(const QString& summary)
{
    m_tree->clear();
    QList<QTreeWidgetItem*> items;
    DiagnosticData hit;
    for (bool more = m_log.getFirstDiagnostic(hit); more && items.size() < MostRows;
         more = m_log.getNextDiagnostic(hit)) {
        auto* item =
            new QTreeWidgetItem({hit.path.fileName(), QString::number(hit.line), hit.message});
        item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
        item->setToolTip(0, hit.path.osPath());
        item->setData(0, PathRole, hit.path.osPath());
        item->setData(0, LineRole, hit.line);
        item->setData(0, ColumnRole, hit.column);
        items.append(item);
    }
    m_tree->addTopLevelItems(items);
    m_tree->resizeColumnToContents(0);
    m_tree->resizeColumnToContents(1);
    setWindowTitle(tr("Search Results: %1").arg(summary));
    show();
}

void SearchResults::locate(int step)
{
    const int rows = m_tree->topLevelItemCount();
    if (rows == 0)
        return;
    QTreeWidgetItem* const current = m_tree->currentItem();
    const int row = current ? m_tree->indexOfTopLevelItem(current) + step : step > 0 ? 0 : -1;
    QTreeWidgetItem* const item = m_tree->topLevelItem((row + rows) % rows);
    m_tree->setCurrentItem(item);
    choose(item);
}

void SearchResults::choose(QTreeWidgetItem* item)
{
    emit chosen(Path(item->data(0, PathRole).toString()), item->data(0, LineRole).toInt(),
                item->data(0, ColumnRole).toInt());
}
