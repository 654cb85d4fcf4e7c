// SPDX-License-Identifier: GPL-3.0-or-later
// The folder-card cache file of a parent with two child folders, as a crash, another version or a hand edit
// may leave it. "@PARENT@", "@SIG_A@" and "@SIG_B@" in the input stand for the parent's path and the
// children's real signatures, so the fuzzer reaches entries the scan trusts. Every card must be of the folder
// asked for, name exactly its pictures and count them; a second scan must give the same cards (what was kept
// reads back).
#include "browse/folders/FolderCardScanner.h"
#include "fuzz/FuzzScratch.h"
#include "platform/FileTagStore.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

using namespace lumaro;

namespace {

class NoTags : public platform::FileTagStore
{
public:
    std::optional<QStringList> tags(const QString&, QString* = nullptr) const override
    {
        return QStringList();
    }
    bool setTags(const QString&, const QStringList&, QString* = nullptr) override { return false; }
};

struct Setup
{
    QString parent;
    QStringList children;
    QList<browse::FolderCard> truth;
    QByteArray signatureA;
    QByteArray signatureB;
};

// Two folders of pictures (their bytes do not matter: dates fall back to file times) and the cache a first,
// cold scan writes of them.
const Setup& setup()
{
    static const Setup made = [] {
        Setup setup;
        setup.parent = fuzz::FuzzScratch::path(QStringLiteral("shoots"));
        fuzz::FuzzScratch::write(QStringLiteral("shoots/a/1.jpg"), "one");
        fuzz::FuzzScratch::write(QStringLiteral("shoots/a/2.jpg"), "two");
        fuzz::FuzzScratch::write(QStringLiteral("shoots/b/IMG_0001.png"), "three");
        setup.children = {setup.parent + QStringLiteral("/a"), setup.parent + QStringLiteral("/b")};
        NoTags tags;
        browse::FolderCardScanner scanner(&tags, fuzz::FuzzScratch::path(QStringLiteral("cache")));
        setup.truth = scanner.scan(setup.parent, setup.children);
        QFile cache(scanner.cacheFile(setup.parent));
        if (!cache.open(QIODevice::ReadOnly))
            std::abort();
        const QJsonObject cards = QJsonDocument::fromJson(cache.readAll()).object().value("cards").toObject();
        setup.signatureA = cards.value("a").toObject().value("signature").toString().toLatin1();
        setup.signatureB = cards.value("b").toObject().value("signature").toString().toLatin1();
        return setup;
    }();
    return made;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const Setup& known = setup();
    QByteArray cacheBytes = fuzz::bytesOf(data, size);
    cacheBytes.replace("@PARENT@", known.parent.toUtf8())
        .replace("@SIG_A@", known.signatureA)
        .replace("@SIG_B@", known.signatureB);
    NoTags tags;
    browse::FolderCardScanner scanner(&tags, fuzz::FuzzScratch::path(QStringLiteral("cache")));
    QFile cache(scanner.cacheFile(known.parent));
    if (!cache.open(QIODevice::WriteOnly | QIODevice::Truncate))
        std::abort();
    cache.write(cacheBytes);
    cache.close();

    const QList<browse::FolderCard> cards = scanner.scan(known.parent, known.children);
    fuzz::require(cards.size() == known.children.size(), "one card per folder asked for");
    for (qsizetype i = 0; i < cards.size(); ++i) {
        fuzz::require(cards.at(i).path == known.children.at(i), "a card is of the folder asked for");
        fuzz::require(cards.at(i).names == known.truth.at(i).names,
                      "a card names exactly its folder's pictures");
        fuzz::require(cards.at(i).pictureCount == known.truth.at(i).pictureCount,
                      "a card counts its pictures");
        fuzz::require(cards.at(i).firstTaken <= cards.at(i).lastTaken, "first taken no later than last");
    }
    fuzz::require(scanner.scan(known.parent, known.children) == cards, "the cards read back as kept");
    return 0;
}
