// SPDX-License-Identifier: GPL-3.0-or-later
// Scene words (outdoor, landscape, sky, indoor, structure) implied by ImageNet and COCO labels.
#pragma once

#include <QString>
#include <QStringList>

namespace lumaro::vision {

// Thread-safe lookups in a fixed table.
class SceneWordTable
{
public:
    // The scene words a label implies ("lakeside" → outdoor, landscape); empty for most labels.
    static QStringList sceneWordsFor(const QString& identifier);
    // ImageNet labels that name an open-air place, or a thing seen only in one (a park bench, a barn, a
    // pole, a canoe): a classifier spreads a view of fields or a forest path thinly over many of them, so
    // they count together. Landforms are the part of them that makes a landscape.
    static bool isOpenAir(const QString& identifier);
    static bool isLandform(const QString& identifier);
    // ImageNet labels of a room, hall or shop, or of a fitting seen only inside one (a shoji, a bannister,
    // a studio couch): an interior spreads itself over them as a view does over the open-air ones.
    static bool isInterior(const QString& identifier);
    // A COCO object that says what kind of room or place a picture shows only when it fills a good part of
    // it (a dining table under a plate of food does not make a furniture picture).
    static bool needsLargeBox(const QString& cocoLabel);
    // COCO objects never used as words: people are counted by the person signal, and books on a shelf
    // would turn a living room into a document.
    static bool isIgnoredObject(const QString& cocoLabel);
    // Clothing is a people word only while somebody wears it.
    static bool isWornItem(const QString& identifier);
};

} // namespace lumaro::vision
