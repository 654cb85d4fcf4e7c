// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/WatermarkService.h"

#include "tests/support/TempFolder.h"
#include "tests/support/WatermarkStamp.h"
#include "tests/vision/FakeVisionBackends.h"
#include "tests/vision/VisionIndexFixture.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace lumaro::vision;
using namespace lumaro::testing;

namespace {

WatermarkService readingLines(QStringList lines)
{
    return WatermarkService(
        [lines] { return std::make_unique<WatermarkReader>(std::make_unique<FakeTextRecognizer>(lines)); });
}

QJsonObject onlyResultsFile(const TempFolder& folder)
{
    const QStringList files =
        QDir(folder.filePath(QStringLiteral("_index"))).entryList({QStringLiteral("watermark_index_*.json")});
    EXPECT_EQ(files.size(), 1);
    return QJsonDocument::fromJson(folder.read(QStringLiteral("_index/") + files.value(0))).object();
}

} // namespace

TEST(WatermarkService, ReadsOnlyThePeoplePicturesOfTheVisionIndex)
{
    TempFolder folder;
    for (const char* name : {"p1.jpg", "p2.jpg", "cat.jpg"})
        folder.writePicture(QString::fromLatin1(name), {200, 150});
    writeVisionIndex(folder, QStringLiteral("vision_index_0101000000_x.json"),
                     QStringLiteral("2024-01-01T00:00:00Z"),
                     {{QStringLiteral("p1.jpg"), QStringLiteral("MARK_PEOPLE_PORTRAIT")},
                      {QStringLiteral("p2.jpg"), QStringLiteral("MARK_PEOPLE")},
                      {QStringLiteral("cat.jpg"), QStringLiteral("MARK_DIVERSE_TABBY")}});
    const QStringList names{QStringLiteral("cat.jpg"), QStringLiteral("p1.jpg"), QStringLiteral("p2.jpg")};
    const WatermarkRunResult run =
        readingLines({QStringLiteral("小红书"), QStringLiteral("@lily_chen")}).run(folder.path(), names);
    ASSERT_EQ(run.results.size(), 2);
    EXPECT_EQ(run.results[0].fileName, QStringLiteral("p1.jpg"));
    EXPECT_EQ(run.results[0].identifier, QStringLiteral("@lily_chen"));
    const QJsonObject file = onlyResultsFile(folder);
    EXPECT_EQ(file.value(QStringLiteral("identified")).toInt(), 2);
    EXPECT_EQ(file.value(QStringLiteral("results"))
                  .toArray()[1]
                  .toObject()
                  .value(QStringLiteral("text"))
                  .toString(),
              QStringLiteral("@lily_chen"));

    const WatermarkRunResult all = readingLines({}).run(folder.path(), names, {true, {}, nullptr});
    EXPECT_EQ(all.results.size(), 3);
    EXPECT_EQ(all.identified(), 0);
}

TEST(WatermarkService, StopsBeforeReadingWhenItCouldNotKeepItsResults)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("p.jpg"));
    EXPECT_TRUE(readingLines({}).run(folder.path(), {QStringLiteral("p.jpg")}).noVisionIndex);
    folder.write(QStringLiteral("_index"), "a plain file");
    const WatermarkRunResult blocked =
        readingLines({}).run(folder.path(), {QStringLiteral("p.jpg")}, {true, {}, nullptr});
    EXPECT_TRUE(blocked.indexFolderRefused);
    EXPECT_EQ(folder.read(QStringLiteral("_index")), "a plain file");
}

TEST(WatermarkService, APictureThatCannotBeDecodedIsCountedAndTheRunGoesOn)
{
    TempFolder folder;
    folder.write(QStringLiteral("broken.jpg"), "not a picture");
    folder.writePicture(QStringLiteral("fine.jpg"));
    const WatermarkRunResult run =
        readingLines({QStringLiteral("ID: 12345678")})
            .run(folder.path(), {QStringLiteral("broken.jpg"), QStringLiteral("fine.jpg")},
                 {true, {}, nullptr});
    EXPECT_EQ(run.failed, 1);
    EXPECT_EQ(run.identified(), 1);
    EXPECT_FALSE(run.indexPath.isEmpty());
}

// The real line reader on photos stamped the way platforms stamp them.
TEST(WatermarkService, ReadsRealStampsOnRealPhotos)
{
    const QString models = sharedModelsDir();
    if (models.isEmpty())
        GTEST_SKIP() << "no models: ../shared/models is not beside the checkout";
    qputenv("LUMARO_MODELS_DIR", models.toUtf8());
    const QDir photos(QDir(models).filePath(QStringLiteral("test-images")));
    TempFolder folder;
    const auto stamp = [&](const char* photo, const char* name, const char* text, WatermarkStyle style) {
        QImage picture(photos.filePath(QString::fromLatin1(photo)));
        picture = picture.scaled(1080, 1080, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        if (*text)
            picture = stampWatermark(picture, QString::fromUtf8(text), style);
        picture.save(folder.filePath(QString::fromLatin1(name)), "JPEG", 90);
    };
    stamp("messi5.jpg", "a.jpg", "@k.tanaka", {StampPlace::topLeft, 0.5, 0.02, true, false});
    stamp("basketball1.png", "b.jpg", "号：55102937", {StampPlace::bottomCentre, 0.7, 0.025, false, true});
    stamp("astronaut.png", "c.jpg", "@橘子汽水", {StampPlace::bottomRight, 0.6, 0.02, false, false});
    stamp("chelsea.png", "d.jpg", "", {});
    // A photographed page fills the corners with lines: the stamp is still read as a line of its own.
    stamp("imageTextN.png", "e.jpg", "号：55102937", {StampPlace::bottomRight, 0.7, 0.025, true, false});
    const WatermarkRunResult run =
        WatermarkService().run(folder.path(),
                               {QStringLiteral("a.jpg"), QStringLiteral("b.jpg"), QStringLiteral("c.jpg"),
                                QStringLiteral("d.jpg"), QStringLiteral("e.jpg")},
                               {true, {}, nullptr});
    ASSERT_EQ(run.results.size(), 5);
    EXPECT_EQ(run.results[4].identifier, QStringLiteral("55102937"));
    EXPECT_EQ(run.results[0].identifier, QStringLiteral("@k.tanaka"));
    EXPECT_EQ(run.results[1].identifier, QStringLiteral("55102937"));
    EXPECT_EQ(run.results[2].identifier, QStringLiteral("@橘子汽水"));
    EXPECT_FALSE(run.results[3].isIdentified()) << run.results[3].identifier.toStdString();
}

TEST(WatermarkReader, AnIdentifierReadOnceAndNotAgainIsLeftUnread)
{
    // The first region reads a stamp; every later reading, the confirming one included, sees nothing there.
    class ReadsOnce final : public lumaro::platform::TextRecognizer
    {
    public:
        lumaro::platform::TextRecognition recognize(const QImage&) override
        {
            return {m_calls++ == 0 ? QStringList{QStringLiteral("@lily_ehen")} : QStringList{}, {}};
        }

    private:
        int m_calls = 0;
    };
    WatermarkReader reader(std::make_unique<ReadsOnce>());
    QImage picture(400, 300, QImage::Format_RGB32);
    picture.fill(Qt::gray);
    const WatermarkReading reading = reader.read(picture);
    EXPECT_FALSE(reading.found);
    EXPECT_EQ(reading.lines, QStringList{QStringLiteral("@lily_ehen")});
}
