// SPDX-License-Identifier: GPL-3.0-or-later
// Everything a set of folders holds, each picture known by the identity it carries and checked against its
// original.
#pragma once

#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

namespace lumaro::testing {

struct Instance
{
    QString area;
    QString path;
    QString id;          // empty: no identity found (a foreign file, or one written only in part)
    bool intact = false; // the identity of an original, and that original's picture data byte for byte
};

// Areas are folders scanned recursively; `_index` folders and, below an area's root, dot-folders (a card's
// .Trash-<uid>) are their own concern and left out. Files with a picture or RAW suffix are instances; JSON
// files anywhere below a root (the `_index` files included) must parse.
class Inventory
{
public:
    void addOriginal(const QString& id, const QByteArray& bytes);
    void addArea(const QString& area, const QString& root);

    QList<Instance> scan() const;
    // JSON files below the roots that do not parse, with the parser's reason.
    QStringList brokenJson() const;

    // Number of instances per area and identity.
    static QMap<QString, QMap<QString, int>> count(const QList<Instance>& instances);
    // Instances that are not intact, as readable lines.
    static QStringList damaged(const QList<Instance>& instances);

private:
    QHash<QString, QByteArray> m_payloads;
    QList<QPair<QString, QString>> m_areas;
};

bool hasPictureSuffix(const QString& name);

} // namespace lumaro::testing
