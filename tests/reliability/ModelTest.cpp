// SPDX-License-Identifier: GPL-3.0-or-later
// A random culling session against an oracle: delete, restore, rotate, tag, group, ungroup, import, pick and
// clean across two shoot folders, a RAW folder and a card on a second volume, every picture found again by
// the identity it carries and checked after every step. Reproducible from LUMARO_RELIABILITY_SEED;
// LUMARO_MODEL_STEPS long.
#include "tests/reliability/RunLength.h"
#include "tests/reliability/Scene.h"
#include "tests/reliability/Volume.h"

#include "platform/ExifOrientation.h"
#include "platform/XattrTagStore.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <memory>
#include <random>

using namespace lumaro::testing;

namespace {

const QStringList kColours{QStringLiteral("red"),   QStringLiteral("yellow"), QStringLiteral("orange"),
                           QStringLiteral("green"), QStringLiteral("blue"),   QStringLiteral("purple")};

QString withoutGroupPrefix(const QString& name)
{
    static const QRegularExpression prefix(QStringLiteral("^_G\\d+_"));
    return QString(name).remove(prefix);
}

int turnedLeft(int orientation)
{
    // The EXIF orientation after a quarter turn to the left: 1 → 8 → 3 → 6 → 1.
    switch (orientation) {
    case 1:
        return 8;
    case 8:
        return 3;
    case 3:
        return 6;
    default:
        return 1;
    }
}

// What the oracle knows of one picture.
struct Picture
{
    QString id;
    QString area;   // shoot, shoot2, raw or card: where it lives when not trashed
    QString folder; // its folder there
    QString name;   // its name without a group prefix
    bool jpeg = true;
    bool trashed = false;
    QString trashedFrom; // the full path it had when it went to the Trash
    int orientation = 1;
    QSet<QString> tags;
};

class Session
{
public:
    Session(Scene& scene, quint32 seed) : m_scene(scene), m_random(seed) {}

    void add(const Picture& picture) { m_pictures.append(picture); }
    int steps() const { return m_steps; }
    int checks() const { return m_checks; }

    void step()
    {
        ++m_steps;
        switch (std::uniform_int_distribution<int>(0, 9)(m_random)) {
        case 0:
        case 1:
            remove();
            break;
        case 2:
            restore();
            break;
        case 3:
            rotate();
            break;
        case 4:
            tag();
            break;
        case 5:
            group(true);
            break;
        case 6:
            group(false);
            break;
        case 7:
            importCard();
            break;
        case 8:
            pick();
            break;
        default:
            clean();
            break;
        }
    }

    // Every picture where the oracle says, exactly once, intact, turned and tagged as asked; copies counted.
    void check()
    {
        const QList<Instance> instances = m_scene.inventory().scan();
        m_checks += int(instances.size());
        ASSERT_EQ(Inventory::damaged(instances), QStringList()) << m_last;
        ASSERT_EQ(m_scene.inventory().brokenJson(), QStringList()) << m_last;
        const auto counts = Inventory::count(instances);
        for (const Picture& p : m_pictures) {
            int places = 0;
            for (const QString& area :
                 {QStringLiteral("shoot"), QStringLiteral("shoot2"), QStringLiteral("raw"),
                  QStringLiteral("card"), QStringLiteral("trash"), QStringLiteral("cardTrash")})
                places += counts.value(area).value(p.id);
            ASSERT_EQ(places, 1) << m_last << " " << p.id.toStdString() << ": "
                                 << describe(counts).toStdString();
            const QString trashArea =
                p.area == QStringLiteral("card") ? QStringLiteral("cardTrash") : QStringLiteral("trash");
            ASSERT_EQ(counts.value(p.trashed ? trashArea : p.area).value(p.id), 1)
                << m_last << " " << p.id.toStdString() << ": " << describe(counts).toStdString();
            ASSERT_EQ(counts.value(QStringLiteral("imports")).value(p.id), m_imported.value(p.id))
                << m_last << " " << p.id.toStdString();
            ASSERT_EQ(counts.value(QStringLiteral("pick")).value(p.id), m_picked.contains(p.id) ? 1 : 0)
                << m_last << " " << p.id.toStdString();
            if (p.trashed)
                continue;
            const QString path = currentPath(p);
            ASSERT_FALSE(path.isEmpty())
                << m_last << " " << p.id.toStdString() << " not at its name " << p.name.toStdString();
            if (p.jpeg) {
                ASSERT_EQ(lumaro::platform::ExifOrientation::read(path), p.orientation)
                    << m_last << " " << path.toStdString();
            }
            const QStringList tags =
                lumaro::platform::XattrTagStore::shared().tags(path).value_or(QStringList());
            ASSERT_EQ(QSet<QString>(tags.begin(), tags.end()), p.tags) << m_last << " " << path.toStdString();
        }
    }

private:
    // The file of a picture that is not trashed, found by its name with or without a group prefix.
    QString currentPath(const Picture& p) const
    {
        for (const QString& name : QDir(p.folder).entryList(QDir::Files)) {
            if (withoutGroupPrefix(name) == p.name)
                return p.folder + QLatin1Char('/') + name;
        }
        return {};
    }

    Picture* any(const std::function<bool(const Picture&)>& fits)
    {
        QList<Picture*> candidates;
        for (Picture& p : m_pictures) {
            if (fits(p))
                candidates.append(&p);
        }
        if (candidates.isEmpty())
            return nullptr;
        return candidates.at(std::uniform_int_distribution<qsizetype>(0, candidates.size() - 1)(m_random));
    }

    CliRun run(const QStringList& arguments)
    {
        m_last = arguments.join(QLatin1Char(' ')).toStdString();
        const CliRun result = m_scene.cli().run(arguments);
        m_last += " -> exit " + std::to_string(result.exitCode) + " " + result.errText().toStdString();
        return result;
    }

    void remove()
    {
        Picture* p = any([](const Picture& q) { return !q.trashed; });
        if (!p)
            return;
        const QString path = currentPath(*p);
        if (run({QStringLiteral("trash"), QStringLiteral("-q"), path}).exitCode == 0) {
            p->trashed = true;
            p->trashedFrom = path;
        }
        expectedOk();
    }

    void restore()
    {
        Picture* p = any([](const Picture& q) { return q.trashed; });
        if (!p)
            return;
        if (run({QStringLiteral("trash"), QStringLiteral("--restore"), QStringLiteral("-q"), p->trashedFrom})
                .exitCode == 0)
            p->trashed = false;
        expectedOk();
    }

    void rotate()
    {
        Picture* p = any([](const Picture& q) { return !q.trashed && q.jpeg; });
        if (!p)
            return;
        if (run({QStringLiteral("rotate"), QStringLiteral("-q"), currentPath(*p)}).exitCode == 0)
            p->orientation = turnedLeft(p->orientation);
        expectedOk();
    }

    void tag()
    {
        Picture* p = any([](const Picture& q) { return !q.trashed; });
        if (!p)
            return;
        const QString colour =
            kColours.at(std::uniform_int_distribution<qsizetype>(0, kColours.size() - 1)(m_random));
        if (run({QStringLiteral("tags"), QStringLiteral("-q"), currentPath(*p), QStringLiteral("--toggle"),
                 colour})
                .exitCode == 0) {
            if (!p->tags.remove(colour))
                p->tags.insert(colour);
        }
        expectedOk();
    }

    void group(bool on)
    {
        const QString folder = std::uniform_int_distribution<int>(0, 1)(m_random)
                                   ? m_scene.shoot()
                                   : m_scene.root() + QStringLiteral("/shoot2");
        run({on ? QStringLiteral("group") : QStringLiteral("ungroup"), QStringLiteral("-q"), folder});
        expectedOk();
    }

    void importCard()
    {
        if (run({QStringLiteral("import"), QStringLiteral("-q"), m_scene.card(), QStringLiteral("--to"),
                 m_scene.imports()})
                .exitCode != 0)
            return expectedOk();
        // The card's own Trash stays on the card, and a file imported before (same path, size and time) is not
        // copied again; a rotated picture is a new file.
        for (const Picture& p : m_pictures) {
            if (p.area != QStringLiteral("card") || p.trashed)
                continue;
            const QFileInfo file(currentPath(p));
            const QString identity = file.filePath() + QLatin1Char('|') + QString::number(file.size())
                                   + QLatin1Char('|') + QString::number(file.lastModified().toMSecsSinceEpoch());
            if (!m_importedFiles.contains(identity)) {
                m_importedFiles.insert(identity);
                ++m_imported[p.id];
            }
        }
    }

    // RAW files whose name without extension matches a shoot JPEG's, case ignored.
    QSet<QString> pairedRaws() const
    {
        QSet<QString> stems;
        for (const QString& name : QDir(m_scene.shoot()).entryList(QDir::Files)) {
            if (name.endsWith(QStringLiteral(".JPG")) || name.endsWith(QStringLiteral(".jpg")))
                stems.insert(QFileInfo(name).completeBaseName().toLower());
        }
        QSet<QString> paired;
        for (const Picture& p : m_pictures) {
            if (p.area == QStringLiteral("raw") && !p.trashed &&
                stems.contains(QFileInfo(p.name).completeBaseName().toLower()))
                paired.insert(p.id);
        }
        return paired;
    }

    void pick()
    {
        const QSet<QString> paired = pairedRaws();
        const CliRun result = run({QStringLiteral("pick"), QStringLiteral("-q"), QStringLiteral("--jpg"),
                                   m_scene.shoot(), QStringLiteral("--raw"), m_scene.raw()});
        if (result.exitCode == 0)
            m_picked.unite(paired);
        EXPECT_TRUE(result.exitCode == 0 || (paired.isEmpty() && result.exitCode == 2)) << m_last;
    }

    void clean()
    {
        const QSet<QString> paired = pairedRaws();
        const CliRun result =
            run({QStringLiteral("clean"), QStringLiteral("-q"), QStringLiteral("--jpg"), m_scene.shoot(),
                 QStringLiteral("--raw"), m_scene.raw(), QStringLiteral("--yes")});
        if (paired.size() < 4) {
            EXPECT_EQ(result.exitCode, 2) << m_last;
            return;
        }
        EXPECT_EQ(result.exitCode, 0) << m_last;
        for (Picture& p : m_pictures) {
            if (p.area == QStringLiteral("raw") && !p.trashed && !paired.contains(p.id)) {
                p.trashed = true;
                p.trashedFrom = p.folder + QLatin1Char('/') + p.name;
            }
        }
    }

    void expectedOk() { EXPECT_NE(m_last.find(" -> exit 0 "), std::string::npos) << m_last; }

    Scene& m_scene;
    std::mt19937 m_random;
    QList<Picture> m_pictures;
    QHash<QString, int> m_imported;
    QSet<QString> m_importedFiles;
    QSet<QString> m_picked;
    std::string m_last = "set-up";
    int m_steps = 0;
    int m_checks = 0;
};

TEST(ModelBased, ARandomCullingSessionKeepsEveryPictureWhereTheOracleSays)
{
    const quint32 seed = reliabilitySeed();
    const int steps = runLength("LUMARO_MODEL_STEPS", 25);
    // The card on a second volume when this process may mount one; else a folder (same volume).
    QTemporaryDir mounts;
    std::unique_ptr<Volume> card;
    if (Volume::canMount(nullptr))
        card = std::make_unique<Volume>(mounts.filePath(QStringLiteral("card")), 8 << 20);
    Scene scene({card && card->isMounted() ? card->path() : QString(), {}, {}, {}});
    const QString shoot2 = scene.root() + QStringLiteral("/shoot2");
    scene.inventory().addArea(QStringLiteral("shoot2"), shoot2);
    Session session(scene, seed);

    QStringList shootNames, shoot2Names;
    for (int i = 1; i <= 8; ++i) {
        const QString name = QStringLiteral("IMG_%1.JPG").arg(i, 4, 10, QLatin1Char('0'));
        scene.addJpeg(scene.shoot(), name, QStringLiteral("shoot-%1").arg(i));
        session.add({QStringLiteral("shoot-%1").arg(i), QStringLiteral("shoot"), scene.shoot(), name});
        shootNames.append(name);
    }
    for (int i = 1; i <= 4; ++i) {
        const QString name = QStringLiteral("DSC_%1.JPG").arg(i, 4, 10, QLatin1Char('0'));
        scene.addJpeg(shoot2, name, QStringLiteral("second-%1").arg(i));
        session.add({QStringLiteral("second-%1").arg(i), QStringLiteral("shoot2"), shoot2, name});
        shoot2Names.append(name);
    }
    for (int i : {1, 2, 3, 4, 5, 6, 20, 21}) {
        const QString name = QStringLiteral("IMG_%1.CR2").arg(i, 4, 10, QLatin1Char('0'));
        scene.addRaw(scene.raw(), name, QStringLiteral("raw-%1").arg(i));
        session.add({QStringLiteral("raw-%1").arg(i), QStringLiteral("raw"), scene.raw(), name, false});
    }
    scene.fillCard(2);
    for (int i = 1; i <= 2; ++i) {
        const QString folder = scene.card() + QStringLiteral("/DCIM/100CANON");
        session.add({QStringLiteral("card-jpg-%1").arg(i), QStringLiteral("card"), folder,
                     QStringLiteral("IMG_%1.JPG").arg(i, 4, 10, QLatin1Char('0'))});
        session.add({QStringLiteral("card-raw-%1").arg(i), QStringLiteral("card"), folder,
                     QStringLiteral("IMG_%1.CR2").arg(i, 4, 10, QLatin1Char('0')), false});
    }
    scene.writeVisionIndex(shootNames);
    scene.writeVisionIndex(shoot2Names, QStringLiteral("MARK_STRUCTURE"), shoot2);

    session.check();
    for (int i = 0; i < steps && !HasFailure(); ++i) {
        session.step();
        session.check();
    }
    std::printf("reliability: model seed %u: %d steps, %d file checks, card on %s\n", seed, session.steps(),
                session.checks(), card && card->isMounted() ? "a second volume" : "the same volume");
}

} // namespace
