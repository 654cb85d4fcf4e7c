// SPDX-License-Identifier: GPL-3.0-or-later
// The child folders of the folder shown, as cards: cover, picture count, dates, colour tags.
#pragma once

#include "browse/folders/FolderCard.h"

#include <QHash>
#include <QListWidget>

namespace lumaro::browse {
class FolderCardScanner;
class FolderCardService;
class ThumbnailCache;
class ThumbnailLoader;
} // namespace lumaro::browse

namespace lumaro::library {
class FavourManager;
}

namespace lumaro::app {

// Main thread. The cards are worked out by FolderCardService off the main thread (from its cache when the
// folders did not change); a folder is listed by name at once and its card fills in when it arrives. Covers
// are decoded by a loader of their own (so the grid's thumbnails are never evicted for them), the cards on
// screen first. The cover is the first favourite of the folder, else its first picture. Enter or a double
// click opens a card; the arrow keys move between cards while the list has the focus.
class FolderCardList : public QListWidget
{
    Q_OBJECT
public:
    // `scanner`: where the cards are worked out and cached (the folder panel's own by default).
    explicit FolderCardList(library::FavourManager* favourites, QWidget* parent = nullptr,
                            std::shared_ptr<browse::FolderCardScanner> scanner = {});
    ~FolderCardList() override;

    void showFolder(const QString& parent);
    // Cards of folders from anywhere, in the given order, under `key`; a card is titled by `titles` where it
    // names the folder, else by the folder's name. Always worked out again (the folders on disk may have
    // changed), from the scanner's cache where they did not.
    void showFolders(const QString& key, const QStringList& folders,
                     const QHash<QString, QString>& titles = {});
    QStringList folders() const;
    // The card of `folder` once it has arrived.
    std::optional<browse::FolderCard> card(const QString& folder) const;
    bool isBusy() const;
    // What the card of `folder` is titled: its title from showFolders(), else the folder's name.
    QString titleOf(const QString& folder) const;
    // Whether the cover of `folder` is drawn (tests and the first-screen measure read it).
    bool hasCover(const QString& folder) const { return m_covered.contains(folder); }

Q_SIGNALS:
    void openRequested(const QString& folder);
    void cardsComplete(const QString& parent);

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    void listed(const QString& parent, const QStringList& subfolders);
    void cardsArrived(const QString& parent, const QList<browse::FolderCard>& cards);
    void coverArrived(const QString& path, const QImage& image);
    void requestVisibleCovers();
    QString describe(const browse::FolderCard& card) const;
    void clearCards();

    library::FavourManager* m_favourites;
    browse::FolderCardService* m_service;
    std::unique_ptr<browse::ThumbnailCache> m_coverCache;
    browse::ThumbnailLoader* m_covers;
    QString m_parent;
    QHash<QString, QListWidgetItem*> m_items; // folder → its card
    QHash<QString, browse::FolderCard> m_cards;
    QHash<QString, QString> m_titles;  // folder → the title its card shows instead of its name
    QHash<QString, QString> m_coverOf; // cover picture → folder
    QSet<QString> m_covered;
    bool m_coversRequested = false;
};

} // namespace lumaro::app
