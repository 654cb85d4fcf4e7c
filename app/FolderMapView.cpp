// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FolderMapView.h"

#include "app/InBackground.h"
#include "browse/state/LMRModeState.h"

#include <QDir>
#include <QHeaderView>

namespace lumaro::app {

namespace {

bool isInside(const QString& folder, const QString& root)
{
    const QString cleanRoot = QDir::cleanPath(root);
    const QString clean = QDir::cleanPath(folder);
    return clean == cleanRoot ||
           clean.startsWith(cleanRoot.endsWith(QLatin1Char('/')) ? cleanRoot : cleanRoot + QLatin1Char('/'));
}

} // namespace

FolderMapView::FolderMapView(browse::LMRModeState& state, QWidget* parent)
    : QTreeWidget(parent), m_state(state)
{
    setColumnCount(2);
    setHeaderLabels({tr("文件夹"), tr("图片")});
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
    header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    setFocusPolicy(Qt::ClickFocus);
    setUniformRowHeights(true);
    connect(this, &QTreeWidget::itemClicked, this, &FolderMapView::openItem);
    connect(&state, &browse::LMRModeState::folderChanged, this, &FolderMapView::follow);
    connect(&state, &browse::LMRModeState::navigationChanged, this, &FolderMapView::follow);
}

QStringList FolderMapView::folders() const
{
    QStringList folders;
    for (QTreeWidgetItemIterator it(const_cast<FolderMapView*>(this)); *it; ++it)
        folders << (*it)->data(0, Qt::UserRole).toString();
    return folders;
}

QString FolderMapView::markedFolder() const
{
    const QTreeWidgetItem* item = currentItem();
    return item ? item->data(0, Qt::UserRole).toString() : QString();
}

void FolderMapView::showEvent(QShowEvent* event)
{
    QTreeWidget::showEvent(event);
    follow();
}

void FolderMapView::follow()
{
    if (!isVisible())
        return; // walked when the waterfall is shown
    const QString folder = m_state.currentFolder().value_or(QString());
    QString root = folder;
    if (m_state.isInDeepMode() && m_state.baseDirectory())
        root = *m_state.baseDirectory();
    else if (!m_root.isEmpty() && isInside(folder, m_root))
        root = m_root;
    if (root == m_root || root == m_walking) {
        mark();
        return;
    }
    m_walking = root;
    if (root.isEmpty()) {
        clear();
        m_items.clear();
        m_root.clear();
        return;
    }
    struct Walk
    {
        QList<browse::FolderTreeEntry> entries;
        bool truncated = false;
    };
    inBackground(
        this,
        [root] {
            Walk walk;
            walk.entries = browse::FolderTree::walk(root, 20000, &walk.truncated);
            return walk;
        },
        [this, root](const Walk& walk) { walked(root, walk.entries, walk.truncated); });
}

void FolderMapView::walked(const QString& root, const QList<browse::FolderTreeEntry>& entries, bool truncated)
{
    if (root != m_walking)
        return; // another root was asked for meanwhile
    m_walking.clear();
    m_root = root;
    setUpdatesEnabled(false);
    clear();
    m_items.clear();
    QList<QTreeWidgetItem*> parents; // the last item of each depth
    for (const browse::FolderTreeEntry& entry : entries) {
        QTreeWidgetItem* parent =
            entry.depth > 0 && entry.depth <= parents.size() ? parents.at(entry.depth - 1) : nullptr;
        auto* item = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(this);
        item->setText(0, QDir(entry.path).dirName());
        item->setText(1, entry.readable ? QString::number(entry.pictureCount) : tr("无法读取"));
        item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
        item->setData(0, Qt::UserRole, entry.path);
        item->setToolTip(0, entry.path);
        m_items.insert(QDir::cleanPath(entry.path), item);
        parents.resize(entry.depth + 1);
        parents[entry.depth] = item;
    }
    if (truncated) {
        auto* more = new QTreeWidgetItem(this);
        more->setText(0, tr("……文件夹太多，其余未列出"));
        more->setFlags(Qt::NoItemFlags);
    }
    expandAll();
    setUpdatesEnabled(true);
    mark();
    Q_EMIT mapShown(root);
}

void FolderMapView::mark()
{
    const QString folder = QDir::cleanPath(m_state.currentFolder().value_or(QString()));
    for (auto it = m_items.cbegin(); it != m_items.cend(); ++it) {
        QFont font = it.value()->font(0);
        font.setBold(it.key() == folder);
        it.value()->setFont(0, font);
    }
    if (QTreeWidgetItem* current = m_items.value(folder)) {
        setCurrentItem(current);
        scrollToItem(current);
    }
}

void FolderMapView::openItem(QTreeWidgetItem* item)
{
    const QString folder = item ? item->data(0, Qt::UserRole).toString() : QString();
    if (folder.isEmpty())
        return;
    if (m_state.isInDeepMode()) {
        const qsizetype at = m_state.recursiveDirectoryList().indexOf(folder);
        if (at >= 0) {
            if (at != m_state.currentDeepIndex())
                Q_EMIT moveRequested(int(at) - m_state.currentDeepIndex());
            return;
        }
    }
    Q_EMIT openRequested(folder);
}

} // namespace lumaro::app
