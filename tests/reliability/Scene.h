// SPDX-License-Identifier: GPL-3.0-or-later
// A photographer's afternoon in miniature: a shoot folder of identified JPEGs, a RAW folder, a card, a
// sandboxed home for lumaro-cli, and an inventory over all of them.
#pragma once

#include "tests/reliability/CliSandbox.h"
#include "tests/reliability/Inventory.h"

#include <QStringList>
#include <QTemporaryDir>

namespace lumaro::testing {

class Scene
{
public:
    // Where the folders live; an empty one is a folder of the scene (all on one volume).
    struct Layout
    {
        QString card;
        QString shoot;
        QString raw; // RAW_PICK is made beside it
        QString imports;
    };
    explicit Scene(const Layout& layout = {});

    QString root() const { return m_dir.path(); }
    QString shoot() const { return m_layout.shoot; }
    QString raw() const { return m_layout.raw; }
    QString rawPick() const;
    QString card() const { return m_layout.card; }
    QString imports() const { return m_layout.imports; }
    QString favouriteCopies() const
    {
        return root() + QStringLiteral("/sandbox/home/Pictures/Lumaro/Favourites");
    }
    const CliSandbox& cli() const { return m_cli; }
    Inventory& inventory() { return m_inventory; }

    // Writes an identified picture; returns its path. `id` becomes part of nothing but its content.
    QString addJpeg(const QString& folder, const QString& name, const QString& id);
    QString addRaw(const QString& folder, const QString& name, const QString& id, int size = 0);
    // A vision index run for `folder` (default: the shoot), marking every picture of `names` with `mark`, as
    // `index` would have written it (grouping reads it).
    void writeVisionIndex(const QStringList& names, const QString& mark = QStringLiteral("MARK_STRUCTURE"),
                          const QString& folder = {});
    // The canon R layout on the card, with `count` JPG and RAW pairs in DCIM/100CANON.
    void fillCard(int count, int rawSize = 0);
    // Turns the favourites copy on (copies go to favouriteCopies()).
    void enableFavouriteCopies();

    QStringList ids() const { return m_ids; }
    QStringList shootPictures() const;

private:
    QString add(const QString& folder, const QString& name, const QString& id, const QByteArray& bytes);

    QTemporaryDir m_dir;
    Layout m_layout;
    CliSandbox m_cli;
    Inventory m_inventory;
    QStringList m_ids;
    int m_shade = 0;
};

// "1 2 3" style dump of counts, for failure messages.
QString describe(const QMap<QString, QMap<QString, int>>& counts);

} // namespace lumaro::testing
