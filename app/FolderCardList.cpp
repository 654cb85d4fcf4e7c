// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FolderCardList.h"

#include "browse/folders/FolderCardService.h"
#include "browse/thumbnails/ThumbnailCache.h"
#include "browse/thumbnails/ThumbnailLoader.h"
#include "library/FavourManager.h"

#include <QDateTime>
#include <QDir>
#include <QPainter>
#include <QTimer>

namespace lumaro::app {

namespace {

const QSize kCoverSize(128, 96);

QIcon coverIcon(const QImage& image)
{
    QPixmap pixmap(kCoverSize);
    pixmap.fill(QColor(0x3a, 0x3a, 0x3a));
    if (!image.isNull()) {
        const QImage scaled = image.scaled(kCoverSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        QPainter painter(&pixmap);
        painter.drawImage((kCoverSize.width() - scaled.width()) / 2,
                          (kCoverSize.height() - scaled.height()) / 2, scaled);
    }
    return QIcon(pixmap);
}

QString dayOf(qint64 msecs)
{
    return QDateTime::fromMSecsSinceEpoch(msecs).toString(QStringLiteral("yyyy-MM-dd"));
}

const QList<QPair<QString, QString>>& colourWords()
{
    static const QList<QPair<QString, QString>> words{
        {QStringLiteral("red"), QStringLiteral("红")},    {QStringLiteral("yellow"), QStringLiteral("黄")},
        {QStringLiteral("orange"), QStringLiteral("橙")}, {QStringLiteral("green"), QStringLiteral("绿")},
        {QStringLiteral("blue"), QStringLiteral("蓝")},   {QStringLiteral("purple"), QStringLiteral("紫")}};
    return words;
}

} // namespace

FolderCardList::FolderCardList(library::FavourManager* favourites, QWidget* parent,
                               std::shared_ptr<browse::FolderCardScanner> scanner)
    : QListWidget(parent), m_favourites(favourites),
      m_service(new browse::FolderCardService(std::move(scanner), this)),
      m_coverCache(std::make_unique<browse::ThumbnailCache>())
{
    browse::ThumbnailLoader::Options options;
    options.thumbnailSide = kCoverSize.width() * 2;
    options.threads = 1;
    m_covers = new browse::ThumbnailLoader(*m_coverCache, {}, options, this);
    setViewMode(QListView::IconMode);
    setIconSize(kCoverSize);
    setGridSize(QSize(kCoverSize.width() + 40, kCoverSize.height() + 78));
    setResizeMode(QListView::Adjust);
    setMovement(QListView::Static);
    setWordWrap(true);
    setUniformItemSizes(true);
    setMinimumHeight(kCoverSize.height() * 3);
    setSelectionMode(QAbstractItemView::SingleSelection);
    // Arrow keys and Enter stay here while the cards have the focus; the culling keys still reach the
    // pictures.
    setProperty("lumaroTakesNavigationKeys", true);
    connect(m_service, &browse::FolderCardService::listed, this, &FolderCardList::listed);
    connect(m_service, &browse::FolderCardService::cardsReady, this, &FolderCardList::cardsArrived);
    connect(m_service, &browse::FolderCardService::finished, this, &FolderCardList::cardsComplete);
    connect(m_covers, &browse::ThumbnailLoader::thumbnailReady, this, &FolderCardList::coverArrived);
    connect(this, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { Q_EMIT openRequested(item->data(Qt::UserRole).toString()); });
}

FolderCardList::~FolderCardList() = default;

void FolderCardList::showFolder(const QString& parent)
{
    if (parent == m_parent)
        return;
    m_parent = parent;
    m_titles.clear();
    clearCards();
    m_covers->setFolder(parent);
    m_service->show(parent);
}

void FolderCardList::showFolders(const QString& key, const QStringList& folders,
                                 const QHash<QString, QString>& titles)
{
    m_parent = key;
    m_titles = titles;
    clearCards();
    m_covers->setFolder(key);
    m_service->showFolders(key, folders);
}

void FolderCardList::clearCards()
{
    clear();
    m_items.clear();
    m_cards.clear();
    m_coverOf.clear();
    m_covered.clear();
}

QString FolderCardList::titleOf(const QString& folder) const
{
    return m_titles.value(folder, QDir(folder).dirName());
}

QStringList FolderCardList::folders() const
{
    QStringList folders;
    for (int i = 0; i < count(); ++i)
        folders << item(i)->data(Qt::UserRole).toString();
    return folders;
}

std::optional<browse::FolderCard> FolderCardList::card(const QString& folder) const
{
    const auto found = m_cards.constFind(folder);
    return found == m_cards.cend() ? std::nullopt : std::optional(*found);
}

bool FolderCardList::isBusy() const
{
    return m_service->isBusy();
}

void FolderCardList::listed(const QString& parent, const QStringList& subfolders)
{
    if (parent != m_parent)
        return;
    setUpdatesEnabled(false);
    const QIcon blank = coverIcon({});
    for (const QString& folder : subfolders) {
        auto* card = new QListWidgetItem(blank, titleOf(folder), this);
        card->setData(Qt::UserRole, folder);
        card->setTextAlignment(Qt::AlignHCenter | Qt::AlignTop);
        m_items.insert(folder, card);
    }
    setUpdatesEnabled(true);
}

QString FolderCardList::describe(const browse::FolderCard& card) const
{
    QString text = titleOf(card.path) + QLatin1Char('\n');
    if (!card.readable)
        return text + tr("无法读取");
    text += tr("%1 张").arg(card.pictureCount);
    if (card.firstTaken > 0) {
        const QString first = dayOf(card.firstTaken);
        const QString last = dayOf(card.lastTaken);
        text += QLatin1Char('\n') + (first == last ? first
                                                   : first + QStringLiteral(" – ") +
                                                         last.mid(first.left(5) == last.left(5) ? 5 : 0));
    }
    QStringList colours;
    for (const auto& [name, word] : colourWords()) {
        if (const int n = card.colourCounts.value(name))
            colours << word + QString::number(n);
    }
    if (!colours.isEmpty())
        text += QLatin1Char('\n') + colours.join(QLatin1Char(' '));
    return text;
}

void FolderCardList::cardsArrived(const QString& parent, const QList<browse::FolderCard>& cards)
{
    if (parent != m_parent)
        return;
    QSet<QString> favourites;
    if (m_favourites) {
        for (const library::FavourRecord& record : m_favourites->records()) {
            if (record.isFavour)
                favourites.insert(record.filePath);
        }
    }
    setUpdatesEnabled(false);
    for (const browse::FolderCard& card : cards) {
        QListWidgetItem* item = m_items.value(card.path);
        if (!item)
            continue;
        m_cards.insert(card.path, card);
        item->setText(describe(card));
        item->setToolTip(card.path);
        const QString cover = card.coverPath([&](const QString& path) { return favourites.contains(path); });
        if (!cover.isEmpty())
            m_coverOf.insert(cover, card.path);
    }
    setUpdatesEnabled(true);
    requestVisibleCovers();
}

void FolderCardList::requestVisibleCovers()
{
    if (m_coversRequested)
        return;
    if (!isVisible())
        return; // asked again when shown
    m_coversRequested = true;
    // Once per turn of the event loop, after the layout has placed the cards.
    QTimer::singleShot(0, this, [this] {
        m_coversRequested = false;
        QStringList visible;
        const QRect shown = viewport()->rect();
        for (auto it = m_coverOf.cbegin(); it != m_coverOf.cend(); ++it) {
            const QListWidgetItem* card = m_items.value(it.value());
            if (!card || m_covered.contains(it.value()) || !visualItemRect(card).intersects(shown))
                continue;
            // The loader skips what its cache holds: a cover decoded on an earlier visit is taken from there.
            if (const auto cached = m_covers->thumbnail(it.key()))
                coverArrived(it.key(), *cached);
            else
                visible << it.key();
        }
        if (!visible.isEmpty())
            m_covers->requestThumbnails(visible);
    });
}

void FolderCardList::coverArrived(const QString& path, const QImage& image)
{
    const QString folder = m_coverOf.value(path);
    QListWidgetItem* card = m_items.value(folder);
    if (!card)
        return;
    card->setIcon(coverIcon(image));
    m_covered.insert(folder);
}

void FolderCardList::showEvent(QShowEvent* event)
{
    QListWidget::showEvent(event);
    requestVisibleCovers();
}

void FolderCardList::resizeEvent(QResizeEvent* event)
{
    QListWidget::resizeEvent(event);
    requestVisibleCovers();
}

void FolderCardList::scrollContentsBy(int dx, int dy)
{
    QListWidget::scrollContentsBy(dx, dy);
    requestVisibleCovers();
}

} // namespace lumaro::app
