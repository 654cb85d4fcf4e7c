// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/VisionIndexService.h"

#include "vision/VisionIndexFile.h"
#include "vision/VisionIndexNaming.h"
#include "vision/VisionIndexReader.h"
#include "vision/VisionMarkLoader.h"

#include "platform/NotificationCenter.h"

#include "tests/support/LogCapture.h"
#include "tests/support/ResidentMemory.h"
#include "tests/support/TempFolder.h"
#include "tests/vision/FakeVisionBackends.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace lumaro::vision;
using lumaro::platform::SceneObservation;
using lumaro::testing::FakeSceneClassifier;
using lumaro::testing::FakeTextRecognizer;
using lumaro::testing::LogCapture;
using lumaro::testing::TempFolder;

namespace {

VisionIndexService::AnalyzerFactory fakes(std::vector<SceneObservation> observations, QStringList text = {},
                                          QString classifierError = {})
{
    return [=] {
        VisionBackends backends;
        backends.classifier = std::make_unique<FakeSceneClassifier>(observations, classifierError);
        backends.recognizer = std::make_unique<FakeTextRecognizer>(text);
        return std::make_unique<VisionPictureAnalyzer>(std::move(backends));
    };
}

QJsonObject readJson(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QJsonDocument::fromJson(file.readAll()).object();
}

struct LimitCase
{
    qsizetype pictures;
    int processors;
    int expected;
};

class ConcurrencyLimit : public ::testing::TestWithParam<LimitCase>
{
};

TEST_P(ConcurrencyLimit, DependsOnPicturesAndProcessors)
{
    const LimitCase& c = GetParam();
    EXPECT_EQ(VisionIndexService::concurrencyLimit(c.pictures, c.processors), c.expected)
        << c.pictures << " pictures on " << c.processors << " processors";
}

INSTANTIATE_TEST_SUITE_P(Table, ConcurrencyLimit,
                         ::testing::Values(LimitCase{0, 10, 4}, LimitCase{99, 10, 4}, LimitCase{100, 10, 8},
                                           LimitCase{999, 10, 8}, LimitCase{1000, 10, 10},
                                           LimitCase{1000, 2, 6}, LimitCase{100, 2, 4}, LimitCase{500, 6, 6},
                                           LimitCase{5000, 32, 12}, LimitCase{99, 2, 4}));

TEST(VisionIndexNaming, FolderKeyCleansTheNameAndAppendsABase36Hash)
{
    const QString key = VisionIndexNaming::folderKey(QStringLiteral("/photos/2024/My Trip #1"));
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^my-trip--1_[0-9a-z]+$")).match(key).hasMatch())
        << key.toStdString();
    EXPECT_EQ(key, VisionIndexNaming::folderKey(QStringLiteral("/photos/2024/My Trip #1/")));
    EXPECT_NE(key, VisionIndexNaming::folderKey(QStringLiteral("/photos/2025/My Trip #1")));
    EXPECT_EQ(VisionIndexNaming::runStamp(QDateTime(QDate(2026, 3, 9), QTime(7, 5, 4))),
              QStringLiteral("0309070504"));
    EXPECT_EQ(VisionIndexNaming::indexFileName(QStringLiteral("0309070504"), QStringLiteral("a_1")),
              QStringLiteral("vision_index_0309070504_a_1.json"));
}

TEST(VisionPictureAnalyzer, KeepsTheFirstTenAboveTwoTenths)
{
    std::vector<SceneObservation> eleven;
    for (int i = 0; i < 11; ++i)
        eleven.push_back({QStringLiteral("label_%1").arg(i), 0.9f - 0.01f * float(i)});
    const auto kept = VisionPictureAnalyzer::keptObservations(eleven);
    ASSERT_EQ(kept.size(), 10u);
    EXPECT_EQ(kept.back().identifier, QStringLiteral("label_9"));

    // The cut is on the first ten as returned, then the threshold: a good 11th never moves up.
    const auto exact = VisionPictureAnalyzer::keptObservations(
        {{QStringLiteral("a"), 0.5f}, {QStringLiteral("b"), 0.2f}, {QStringLiteral("c"), 0.2000001f}});
    ASSERT_EQ(exact.size(), 2u);
    EXPECT_EQ(exact[1].identifier, QStringLiteral("c"));
}

TEST(VisionIndexService, WritesIndexAndSummaryReadBackKeyByKey)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("a.jpg"), {300, 200});
    folder.writePicture(QStringLiteral("b.png"), {100, 300});
    VisionIndexService service(fakes({{QStringLiteral("menu"), 0.6f},
                                      {QStringLiteral("envelope"), 0.3f},
                                      {QStringLiteral("tiny"), 0.2f}},
                                     {QStringLiteral("TOTAL 12.00"), QStringLiteral("谢谢")}),
                               2);
    int notified = 0;
    QObject receiver;
    QObject::connect(&lumaro::platform::NotificationCenter::shared(),
                     &lumaro::platform::NotificationCenter::posted, &receiver,
                     [&](const QString& name, const QVariantMap&) {
                         notified += name == QStringLiteral("VisionIndexDidUpdate");
                     });
    LogCapture log;
    const VisionIndexRunResult run =
        service.run(folder.path(), {QStringLiteral("a.jpg"), QStringLiteral("b.png")});
    EXPECT_TRUE(log.contains(QStringLiteral("VISION_INDEX - 图像数量: 2")));
    EXPECT_TRUE(log.contains(QStringLiteral("VISION_INDEX - 并发数设置: 4 (CPU核心数: 2)")));
    ASSERT_FALSE(run.indexPath.isEmpty());
    EXPECT_TRUE(log.contains(QStringLiteral("VISION_INDEX - 保存成功: ") + run.indexPath));
    EXPECT_TRUE(log.contains(QStringLiteral("VISION_INDEX - 摘要保存成功: ") + run.summaryPath));
    EXPECT_TRUE(QFileInfo(run.indexPath).fileName().startsWith(QStringLiteral("vision_index_")));
    EXPECT_EQ(QFileInfo(run.indexPath).dir().dirName(), QStringLiteral("_index"));

    const QJsonObject index = readJson(run.indexPath);
    QStringList keys = index.keys();
    keys.sort();
    EXPECT_EQ(keys, (QStringList{"generatedAt", "results", "sourceFolderName", "sourceFolderPath",
                                 "totalImages", "totalObjects", "totalScenes", "totalText"}));
    EXPECT_EQ(index[QStringLiteral("sourceFolderPath")].toString(), folder.path());
    EXPECT_EQ(index[QStringLiteral("sourceFolderName")].toString(), QFileInfo(folder.path()).fileName());
    EXPECT_TRUE(
        QDateTime::fromString(index[QStringLiteral("generatedAt")].toString(), Qt::ISODate).isValid());
    EXPECT_EQ(index[QStringLiteral("totalImages")].toInt(), 2);
    EXPECT_EQ(index[QStringLiteral("totalObjects")].toInt(), 4);
    EXPECT_EQ(index[QStringLiteral("totalScenes")].toInt(), 4);
    EXPECT_EQ(index[QStringLiteral("totalText")].toInt(), 4);
    const QJsonArray results = index[QStringLiteral("results")].toArray();
    ASSERT_EQ(results.size(), 2);
    for (const QJsonValue& value : results) {
        const QJsonObject r = value.toObject();
        QStringList resultKeys = r.keys();
        resultKeys.sort();
        EXPECT_EQ(resultKeys, (QStringList{"classification", "confidence", "fileName", "filePath", "objects",
                                           "pixelHeight", "pixelWidth", "scene", "text"}));
        const bool isA = r[QStringLiteral("fileName")].toString() == QStringLiteral("a.jpg");
        EXPECT_EQ(r[QStringLiteral("filePath")].toString(),
                  folder.filePath(r[QStringLiteral("fileName")].toString()));
        EXPECT_EQ(r[QStringLiteral("pixelWidth")].toInt(), isA ? 300 : 100);
        EXPECT_EQ(r[QStringLiteral("pixelHeight")].toInt(), isA ? 200 : 300);
        // Half the mean of the kept confidences: (0.6 + 0.3) / 4.
        EXPECT_NEAR(r[QStringLiteral("confidence")].toDouble(), 0.225, 1e-6);
        EXPECT_EQ(r[QStringLiteral("classification")].toString(), QStringLiteral("MARK_DOCUMENTS"));
        EXPECT_EQ(r[QStringLiteral("objects")].toArray(), QJsonArray({"menu", "envelope"}));
        EXPECT_EQ(r[QStringLiteral("scene")].toArray(), QJsonArray({"menu", "envelope"}));
        EXPECT_EQ(r[QStringLiteral("text")].toArray(), QJsonArray({"TOTAL 12.00", "谢谢"}));
    }

    const QJsonObject summary = readJson(run.summaryPath);
    EXPECT_EQ(
        summary[QStringLiteral("tagSummaries")].toArray().first().toObject()[QStringLiteral("count")].toInt(),
        2);
    EXPECT_EQ(summary[QStringLiteral("imageTags")].toObject()[QStringLiteral("b.png")].toArray(),
              QJsonArray({"menu", "envelope"}));
    EXPECT_EQ(summary[QStringLiteral("sourceFolderPath")].toString(), folder.path());
    EXPECT_TRUE(summary[QStringLiteral("sourceURL")].toString().startsWith(QStringLiteral("file:///")));

    EXPECT_TRUE(lumaro::testing::waitUntil([&] { return notified == 2; }));
    const auto back = VisionIndexReader::resultFor(folder.path(), QStringLiteral("b.png"));
    ASSERT_TRUE(back);
    EXPECT_EQ(back->classificationMark, QStringLiteral("MARK_DOCUMENTS"));
    EXPECT_EQ(folder.read(QStringLiteral(".hidden")), QByteArrayLiteral("_index\n"));
}

TEST(VisionIndexService, EleventhObservationIsNeverStored)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("p.jpg"));
    std::vector<SceneObservation> eleven;
    for (int i = 0; i < 11; ++i)
        eleven.push_back({QStringLiteral("label_%1").arg(i), 0.5f});
    VisionIndexService service(fakes(eleven), 2);
    const VisionIndexRunResult run = service.run(folder.path(), {QStringLiteral("p.jpg")});
    ASSERT_EQ(run.results.size(), 1);
    EXPECT_EQ(run.results[0].recognizedObjects.size(), 10);
    EXPECT_FALSE(run.results[0].recognizedObjects.contains(QStringLiteral("label_10")));
    EXPECT_EQ(run.results[0].classificationMark, QStringLiteral("MARK_DIVERSE_LABEL_0"));
}

TEST(VisionIndexService, APlainIndexFileStopsTheRun)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("p.jpg"));
    folder.write(QStringLiteral("_index"), QByteArrayLiteral("mine"));
    VisionIndexService service(fakes({{QStringLiteral("menu"), 0.9f}}), 2);
    LogCapture log;
    const VisionIndexRunResult run = service.run(folder.path(), {QStringLiteral("p.jpg")});
    EXPECT_TRUE(run.indexFolderRefused);
    EXPECT_TRUE(run.indexPath.isEmpty());
    EXPECT_TRUE(log.contains(QStringLiteral("VISION_INDEX - _index 路径存在但不是目录")));
    EXPECT_EQ(folder.read(QStringLiteral("_index")), QByteArrayLiteral("mine"));
}

TEST(VisionIndexService, BrokenPicturesAreLoggedCountedAndLeftOut)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("good.jpg"), {640, 480});
    const QByteArray whole = folder.read(QStringLiteral("good.jpg"));
    folder.write(QStringLiteral("cut short.jpg"), whole.left(whole.size() / 2));
    folder.write(QStringLiteral("not a picture.png"), QByteArrayLiteral("hello"));
    VisionIndexService service(fakes({{QStringLiteral("menu"), 0.9f}}), 2);
    LogCapture log;
    int calls = 0;
    VisionIndexRunOptions options;
    options.onPictureFinished = [&](const VisionRecognitionResult*, int done, int total) {
        ++calls;
        EXPECT_EQ(total, 3);
        EXPECT_LE(done, 3);
    };
    const VisionIndexRunResult run = service.run(
        folder.path(),
        {QStringLiteral("good.jpg"), QStringLiteral("cut short.jpg"), QStringLiteral("not a picture.png")},
        options);
    EXPECT_EQ(calls, 3);
    EXPECT_EQ(run.failed, 2);
    ASSERT_EQ(run.results.size(), 1);
    EXPECT_EQ(run.results[0].fileName, QStringLiteral("good.jpg"));
    EXPECT_TRUE(log.contains(QStringLiteral("VISION_INDEX - 识别失败: cut short.jpg")));
    EXPECT_TRUE(log.contains(QStringLiteral("VISION_INDEX - 识别失败: not a picture.png")));
    EXPECT_EQ(readJson(run.indexPath)[QStringLiteral("totalImages")].toInt(), 1);
}

TEST(VisionIndexService, ABackendErrorEmptiesOnlyItsPart)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("p.jpg"));
    VisionIndexService service(fakes({}, {QStringLiteral("line")}, QStringLiteral("model broke")), 2);
    LogCapture log;
    const VisionIndexRunResult run = service.run(folder.path(), {QStringLiteral("p.jpg")});
    ASSERT_EQ(run.results.size(), 1);
    EXPECT_TRUE(log.contains(QStringLiteral("VISION_INDEX - 场景分类错误: model broke")));
    EXPECT_TRUE(run.results[0].recognizedObjects.isEmpty());
    EXPECT_EQ(run.results[0].recognizedText, QStringList{QStringLiteral("line")});
    EXPECT_EQ(run.results[0].confidence, 0.0);
    EXPECT_EQ(run.results[0].classificationMark, QStringLiteral("MARK_UNTAG"));
}

// Counts the classifiers alive and the workers inside one at a time, so a test sees how many analysers a run
// holds, whether it lets them go, and whether a shared backend is ever entered twice at once.
class CountedClassifier final : public lumaro::platform::SceneClassifier
{
public:
    CountedClassifier(std::atomic<int>& alive, std::atomic<int>& mostInside)
        : m_alive(alive), m_mostInside(mostInside)
    {
        ++m_alive;
    }
    ~CountedClassifier() override { --m_alive; }
    lumaro::platform::SceneClassification classify(const QImage& image) override
    {
        const int inside = ++m_inside;
        m_mostInside = std::max(m_mostInside.load(), inside);
        // Long enough for another worker to arrive while this one is inside.
        const QImage work = image.scaled(image.size() * 8);
        --m_inside;
        return {{{QStringLiteral("menu"), work.isNull() ? 0.f : 0.9f}}, {}};
    }

private:
    std::atomic<int>& m_alive;
    std::atomic<int>& m_mostInside;
    std::atomic<int> m_inside{0};
};

TEST(VisionIndexService, TheWorkersShareOneAnalyserOneBackendCallAtATimeReleasedWhenTheRunEnds)
{
    TempFolder folder;
    QStringList names;
    for (int i = 0; i < 12; ++i)
        names << QFileInfo(folder.writePicture(QStringLiteral("p%1.png").arg(i))).fileName();
    std::atomic<int> alive{0}, made{0}, mostInside{0};
    VisionIndexService service(
        [&] {
            ++made;
            VisionBackends backends;
            backends.classifier = std::make_unique<CountedClassifier>(alive, mostInside);
            return std::make_unique<VisionPictureAnalyzer>(std::move(backends));
        },
        2);
    const VisionIndexRunResult run = service.run(folder.path(), names);
    EXPECT_EQ(run.results.size(), 12);
    EXPECT_EQ(made.load(), 1); // four pictures admitted at a time, one set of models
    EXPECT_EQ(mostInside.load(), 1);
    EXPECT_EQ(alive.load(), 0);
}

// A model's working memory as the analysis leaves it in the heap: many blocks, each followed by a small one
// that outlives the run (as a picture's result does), so freeing the blocks alone shrinks no heap.
class HeapHoldingClassifier final : public lumaro::platform::SceneClassifier
{
public:
    HeapHoldingClassifier(std::vector<std::unique_ptr<char[]>>& outliving)
    {
        constexpr size_t kBlock = 64 << 10;
        for (int i = 0; i < 2400; ++i) { // 150 MB
            m_blocks.emplace_back(new char[kBlock]);
            std::fill_n(m_blocks.back().get(), kBlock, char(i));
            outliving.emplace_back(new char[32]);
        }
    }
    lumaro::platform::SceneClassification classify(const QImage&) override { return {}; }

private:
    std::vector<std::unique_ptr<char[]>> m_blocks;
};

TEST(VisionIndexService, TheAnalysersMemoryGoesBackToTheSystemWhenTheRunEnds)
{
    if (lumaro::testing::kHeapIsSanitized)
        GTEST_SKIP() << "the address sanitizer keeps freed blocks in a quarantine of its own";
    TempFolder folder;
    const QStringList names{QFileInfo(folder.writePicture(QStringLiteral("p.png"))).fileName()};
    std::vector<std::unique_ptr<char[]>> outliving;
    VisionIndexService service(
        [&] {
            VisionBackends backends;
            backends.classifier = std::make_unique<HeapHoldingClassifier>(outliving);
            return std::make_unique<VisionPictureAnalyzer>(std::move(backends));
        },
        2);
    const qint64 before = lumaro::testing::residentBytes();
    ASSERT_EQ(service.run(folder.path(), names).results.size(), 1);
    const qint64 kept = lumaro::testing::residentBytes() - before;
    // The outliving blocks keep one page each, about 10 MB; the freed 150 MB must not stay.
    EXPECT_LT(kept, 40 << 20) << kept / (1 << 20) << " MB kept after the run";
}

TEST(VisionIndexService, ACancelledRunWritesNothing)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("p.jpg"));
    std::atomic<bool> cancel{true};
    VisionIndexRunOptions options;
    options.cancel = &cancel;
    VisionIndexService service(fakes({{QStringLiteral("menu"), 0.9f}}), 2);
    const VisionIndexRunResult run = service.run(folder.path(), {QStringLiteral("p.jpg")}, options);
    EXPECT_TRUE(run.cancelled);
    EXPECT_TRUE(run.indexPath.isEmpty());
    // Not even the folder or the file managers' hiding entry: the picture folder is as it was.
    EXPECT_FALSE(QFileInfo::exists(folder.filePath(QStringLiteral("_index"))));
    EXPECT_FALSE(QFileInfo::exists(folder.filePath(QStringLiteral(".hidden"))));
}

TEST(VisionIndexReader, TheNewestRunThatHasThePictureWins)
{
    TempFolder folder;
    const auto write = [&](const QString& name, const QString& at, const QString& fileName,
                           const QString& mark) {
        VisionRecognitionResult r;
        r.fileName = fileName;
        r.classificationMark = mark;
        VisionIndexFileData data{{r}, QDateTime::fromString(at, Qt::ISODate), folder.path()};
        folder.makeFolder(QStringLiteral("_index"));
        ASSERT_TRUE(VisionIndexFile::write(folder.filePath(QStringLiteral("_index/") + name), data));
    };
    // File names in the opposite order of the times: the time decides, not the name.
    write(QStringLiteral("vision_index_1231235959_x_1.json"), QStringLiteral("2026-01-01T00:00:00Z"),
          QStringLiteral("a.jpg"), QStringLiteral("MARK_OUTDOOR"));
    write(QStringLiteral("vision_index_0101000000_x_1.json"), QStringLiteral("2026-01-02T00:00:00Z"),
          QStringLiteral("a.jpg"), QStringLiteral("MARK_PEOPLE"));
    write(QStringLiteral("vision_index_0101000001_x_1.json"), QStringLiteral("2026-01-03T00:00:00Z"),
          QStringLiteral("b.jpg"), QStringLiteral("MARK_TOOLS"));
    EXPECT_EQ(VisionIndexReader::resultFor(folder.path(), QStringLiteral("a.jpg"))->classificationMark,
              QStringLiteral("MARK_PEOPLE"));
    EXPECT_FALSE(VisionIndexReader::resultFor(folder.path(), QStringLiteral("c.jpg")));
    const auto latest = VisionIndexReader::latestResults(folder.path());
    EXPECT_EQ(latest.size(), 2);
    EXPECT_EQ(latest.value(QStringLiteral("a.jpg")).classificationMark, QStringLiteral("MARK_PEOPLE"));
    EXPECT_EQ(latest.value(QStringLiteral("b.jpg")).classificationMark, QStringLiteral("MARK_TOOLS"));
}

TEST(VisionIndexReader, ARunDatedInTheFutureNeverWinsAndGroupedNamesAreFound)
{
    TempFolder folder;
    folder.makeFolder(QStringLiteral("_index"));
    const auto write = [&](const QString& name, const QDateTime& at, const QString& fileName,
                           const QString& mark) {
        VisionRecognitionResult r;
        r.fileName = fileName;
        r.classificationMark = mark;
        ASSERT_TRUE(VisionIndexFile::write(folder.filePath(QStringLiteral("_index/") + name),
                                           {{r}, at, folder.path()}));
    };
    const QDateTime now = QDateTime::currentDateTimeUtc();
    write(QStringLiteral("vision_index_9912312359_x_1.json"),
          QDateTime(QDate(2099, 1, 1), QTime(0, 0), Qt::UTC), QStringLiteral("a.jpg"),
          QStringLiteral("MARK_TOOLS"));
    write(QStringLiteral("vision_index_0101000000_x_1.json"), now.addSecs(-60), QStringLiteral("a.jpg"),
          QStringLiteral("MARK_PEOPLE"));
    // Grouping renamed the picture after the run: it is found under its new name, and the old one.
    EXPECT_EQ(VisionIndexReader::resultFor(folder.path(), QStringLiteral("_G01_a.jpg"))->classificationMark,
              QStringLiteral("MARK_PEOPLE"));
    EXPECT_EQ(VisionIndexReader::resultFor(folder.path(), QStringLiteral("a.jpg"))->classificationMark,
              QStringLiteral("MARK_PEOPLE"));
    const auto latest = VisionIndexReader::latestResults(folder.path());
    EXPECT_EQ(latest.value(VisionIndexReader::lookupName(QStringLiteral("_G01_a.jpg"))).classificationMark,
              QStringLiteral("MARK_PEOPLE"));
    const auto marks = VisionMarkLoader::load(folder.path(), QStringLiteral("EDIT1_NAMEWORK"));
    ASSERT_TRUE(marks);
    EXPECT_EQ(marks->markByFileName.value(QStringLiteral("a.jpg")), QStringLiteral("MARK_PEOPLE"));
}

TEST(VisionIndexReader, HostileIndexFilesAreSkippedWithoutReadingThem)
{
    TempFolder folder;
    folder.makeFolder(QStringLiteral("_index"));
    VisionRecognitionResult r;
    r.fileName = QStringLiteral("a.jpg");
    r.classificationMark = QStringLiteral("MARK_OUTDOOR");
    ASSERT_TRUE(
        VisionIndexFile::write(folder.filePath(QStringLiteral("_index/vision_index_0101000000_x_1.json")),
                               {{r}, QDateTime::currentDateTimeUtc().addSecs(-60), folder.path()}));
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/zero"),
                            folder.filePath(QStringLiteral("_index/vision_index_zero.json"))));
    ASSERT_EQ(
        ::mkfifo(
            QFile::encodeName(folder.filePath(QStringLiteral("_index/vision_index_fifo.json"))).constData(),
            0600),
        0);
    QFile big(folder.filePath(QStringLiteral("_index/vision_index_big.json")));
    ASSERT_TRUE(big.open(QIODevice::WriteOnly));
    ASSERT_TRUE(big.resize(VisionIndexFile::kMaxBytes + 1)); // sparse: costs no disk
    big.close();
    QStringList unreadable;
    const auto found = VisionIndexReader::resultFor(folder.path(), QStringLiteral("a.jpg"), &unreadable);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->classificationMark, QStringLiteral("MARK_OUTDOOR"));
    EXPECT_TRUE(unreadable.contains(big.fileName())) << unreadable.join(QLatin1Char(' ')).toStdString();
    EXPECT_TRUE(VisionMarkLoader::load(folder.path(), QStringLiteral("EDIT1_NAMEWORK")));
}

} // namespace

#include "platform/vision/AnalysisImage.h"

namespace {

TEST(AnalysisImageReader, JpegsDecodeAtAFreeFractionAndKeepTheirOwnSize)
{
    TempFolder folder;
    const QString jpeg = folder.writePicture(QStringLiteral("big.jpg"), {3000, 2000});
    const QString png = folder.writePicture(QStringLiteral("big.png"), {3000, 2000});
    const auto fromJpeg = lumaro::platform::AnalysisImageReader::read(jpeg, 700);
    ASSERT_TRUE(fromJpeg);
    EXPECT_EQ(fromJpeg->image.size(), QSize(750, 500)); // a quarter: decoded in one pass
    EXPECT_EQ(fromJpeg->pixelSize, QSize(3000, 2000));
    const auto fromPng = lumaro::platform::AnalysisImageReader::read(png, 700);
    ASSERT_TRUE(fromPng);
    EXPECT_EQ(fromPng->image.width(), 700);
    EXPECT_NEAR(fromPng->image.height(), 467, 1);
    EXPECT_EQ(fromPng->pixelSize, QSize(3000, 2000));
}

} // namespace
