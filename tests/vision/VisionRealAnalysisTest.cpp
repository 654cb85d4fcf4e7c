// SPDX-License-Identifier: GPL-3.0-or-later
// The installed models on real photos and on pages made here (turned 5–15°, noisy, blurred): the mark a
// photographer expects per picture, and the characters read per text picture. One analyser, loaded once,
// serves every case.
#include "vision/VisionPictureAnalyzer.h"

#include "tests/support/TempFolder.h"

#include <QDir>
#include <QFont>
#include <QPainter>
#include <QRandomGenerator>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace lumaro::vision;

namespace {

class RealAnalysis : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        const QString models = lumaro::testing::sharedModelsDir();
        if (models.isEmpty())
            return;
        qputenv("LUMARO_MODELS_DIR", models.toUtf8());
        s_photos = QDir(models).filePath(QStringLiteral("test-images"));
        s_analyzer = VisionPictureAnalyzer::withInstalledModels().release();
    }
    static void TearDownTestSuite()
    {
        delete s_analyzer;
        s_analyzer = nullptr;
    }
    void SetUp() override
    {
        if (!s_analyzer)
            GTEST_SKIP() << "no models: ../shared/models is not beside the checkout";
    }
    static VisionRecognitionResult analyze(const QString& path)
    {
        const auto result = s_analyzer->analyze(path);
        EXPECT_TRUE(result) << path.toStdString();
        return result.value_or(VisionRecognitionResult{});
    }
    static VisionRecognitionResult analyzePhoto(const char* photo)
    {
        return analyze(QDir(s_photos).filePath(QString::fromLatin1(photo)));
    }

    static inline VisionPictureAnalyzer* s_analyzer = nullptr;
    static inline QString s_photos;
};

struct PhotoCase
{
    const char* photo;
    const char* markPattern; // a regular expression the mark must match in full
};

const PhotoCase kPhotos[] = {
    {"astronaut.png", "MARK_PEOPLE.*"},
    {"messi5.jpg", "MARK_PEOPLE.*"},
    {"basketball1.png", "MARK_PEOPLE.*"},
    {"dog.jpg", "MARK_DIVERSE_(MALAMUTE|SIBERIAN_HUSKY|ESKIMO_DOG|DOG)"},
    {"eagle.jpg", "MARK_DIVERSE_(BALD_EAGLE|BIRD)"},
    {"horses.jpg", "MARK_DIVERSE_.*"},
    {"chelsea.png", "MARK_DIVERSE_.*"},
    {"motorcycle_left.png", "MARK_DIVERSE_.*"},
    {"orange.jpg", "MARK_DIVERSE_.*"},
    {"coffee.png", "MARK_DIVERSE_ESPRESSO"},
    {"building.jpg", "MARK_STRUCTURE"},
    {"imageTextN.png", "MARK_DOCUMENTS"},
};

TEST_F(RealAnalysis, EachPhotoGetsTheMarkAPhotographerExpects)
{
    for (const PhotoCase& c : kPhotos) {
        const VisionRecognitionResult r = analyzePhoto(c.photo);
        EXPECT_TRUE(QRegularExpression(QStringLiteral("^(%1)$").arg(QString::fromLatin1(c.markPattern)))
                        .match(r.classificationMark)
                        .hasMatch())
            << c.photo << " → " << r.classificationMark.toStdString() << " ("
            << r.recognizedObjects.join(QStringLiteral(", ")).toStdString() << ")";
        EXPECT_EQ(r.recognizedObjects, r.sceneClassification) << c.photo;
        // People only where there are people.
        EXPECT_EQ(r.recognizedObjects.contains(QStringLiteral("person")),
                  QString::fromLatin1(c.markPattern).startsWith(QStringLiteral("MARK_PEOPLE")))
            << c.photo;
    }
}

// The classifier's classes of one kind name that kind beside the surest class, so a dog of an unsure
// breed or a table of mixed dishes is still named.
TEST_F(RealAnalysis, AnimalsAndFoodAreNamedByTheirKind)
{
    EXPECT_TRUE(analyzePhoto("dog.jpg").recognizedObjects.contains(QStringLiteral("animal")));
    EXPECT_TRUE(analyzePhoto("coffee.png").recognizedObjects.contains(QStringLiteral("food")));
    EXPECT_FALSE(analyzePhoto("building.jpg").recognizedObjects.contains(QStringLiteral("animal")));
}

// A thumbnail-sized picture is too small for the face network's blocks; it is still a picture, never a
// failure.
TEST_F(RealAnalysis, PicturesSmallerThanTheNetworksBlocksAreAnalysed)
{
    lumaro::testing::TempFolder folder;
    for (const QSize size : {QSize(48, 32), QSize(32, 48), QSize(8, 8), QSize(400, 20)}) {
        QImage picture(size, QImage::Format_RGB32);
        picture.fill(QColor(190, 90, 60));
        const QString path =
            folder.filePath(QStringLiteral("small-%1x%2.jpg").arg(size.width()).arg(size.height()));
        ASSERT_TRUE(picture.save(path, "JPEG"));
        EXPECT_TRUE(s_analyzer->analyze(path)) << path.toStdString();
    }
}

int editDistance(const QString& a, const QString& b)
{
    std::vector<int> row(size_t(b.size()) + 1);
    for (size_t j = 0; j < row.size(); ++j)
        row[j] = int(j);
    for (qsizetype i = 1; i <= a.size(); ++i) {
        int diagonal = row[0];
        row[0] = int(i);
        for (qsizetype j = 1; j <= b.size(); ++j) {
            const int up = row[size_t(j)];
            row[size_t(j)] =
                std::min({up + 1, row[size_t(j) - 1] + 1, diagonal + (a[i - 1] == b[j - 1] ? 0 : 1)});
            diagonal = up;
        }
    }
    return row.back();
}

// Share of the true characters read right, white space ignored (the line reader drops some between words).
double characterAccuracy(const QStringList& truth, const QStringList& read)
{
    static const QRegularExpression space(QStringLiteral("\\s"));
    const QString want = truth.join(QString()).remove(space);
    const QString got = read.join(QString()).remove(space);
    return std::max(0.0, 1.0 - double(editDistance(want, got)) / double(want.size()));
}

// A page of `lines` in `family`, turned by `degrees`, with grain and a slight blur, as a JPEG.
QString madePage(lumaro::testing::TempFolder& folder, const QString& name, const QStringList& lines,
                 const QString& family, double degrees)
{
    QFont font(family);
    font.setPixelSize(30);
    QImage page(1100, 70 + 52 * int(lines.size()), QImage::Format_RGB32);
    page.fill(Qt::white);
    {
        QPainter painter(&page);
        painter.setFont(font);
        painter.setPen(QColor(32, 32, 32));
        for (int i = 0; i < lines.size(); ++i)
            painter.drawText(60, 70 + 52 * i, lines[i]);
    }
    QImage turned = page.transformed(QTransform().rotate(degrees), Qt::SmoothTransformation);
    QImage framed(turned.size() + QSize(80, 80), QImage::Format_RGB32);
    framed.fill(Qt::white);
    {
        QPainter painter(&framed);
        painter.drawImage(40, 40, turned.convertToFormat(QImage::Format_ARGB32));
    }
    QRandomGenerator grain(7);
    for (int y = 0; y < framed.height(); ++y) {
        QRgb* line = reinterpret_cast<QRgb*>(framed.scanLine(y));
        for (int x = 0; x < framed.width(); ++x) {
            const int noise = int(grain.bounded(25)) - 12;
            const QColor c(line[x]);
            line[x] = qRgb(std::clamp(c.red() + noise, 0, 255), std::clamp(c.green() + noise, 0, 255),
                           std::clamp(c.blue() + noise, 0, 255));
        }
    }
    const QImage blurred =
        framed.scaled(framed.size() * 0.8, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const QString path = folder.filePath(name);
    EXPECT_TRUE(blurred.save(path, "JPEG", 90));
    return path;
}

struct PageCase
{
    const char* name;
    const char* family;
    double degrees;
    QStringList lines;
};

TEST_F(RealAnalysis, TiltedPagesAreDocumentsAndTheirTextIsRead)
{
    const PageCase pages[] = {
        {"en_7.jpg",
         "DejaVu Serif",
         7,
         {QStringLiteral("The harbour was quiet before dawn, and the boats"),
          QStringLiteral("rocked gently against the wooden pier. A gull walked"),
          QStringLiteral("along the railing, looking for scraps left by the crew."),
          QStringLiteral("By six o'clock the market opened and the first buyers"),
          QStringLiteral("came with baskets, asking for mackerel and squid.")}},
        {"zh_-12.jpg",
         "Noto Sans CJK SC",
         -12,
         {QStringLiteral("春天的早晨，公园里已经有很多人在散步。"),
          QStringLiteral("湖边的柳树发了新芽，风一吹就轻轻摆动。"),
          QStringLiteral("几位老人在亭子里下棋，旁边围着看热闹的人。"),
          QStringLiteral("孩子们在草地上放风筝，笑声传得很远。"),
          QStringLiteral("三、讨论，成员们一致同意增加两名测试人员。")}},
        {"en_-15.jpg",
         "DejaVu Sans",
         -15,
         {QStringLiteral("Meeting notes, Tuesday 14 March"),
          QStringLiteral("1. The printer on the second floor is broken."),
          QStringLiteral("2. Budget review moves to Friday at 10:30."),
          QStringLiteral("3. Send your travel receipts this month."),
          QStringLiteral("Questions go to Maria or Tom in the office.")}},
        // Each price far from its dish: turned, a price sits lower than the next dish, and read a line late
        // the text is out of order.
        {"zh_menu_-9.jpg",
         "Noto Sans CJK SC",
         -9,
         {QStringLiteral("春风小面馆  价目表"), QStringLiteral("牛肉拉面                    二十二元"),
          QStringLiteral("番茄鸡蛋面                  十六元"), QStringLiteral("炸酱面                      十八元"),
          QStringLiteral("凉拌黄瓜                    八元"), QStringLiteral("本店营业时间：上午十点至晚上九点。")}},
    };
    lumaro::testing::TempFolder folder;
    for (const PageCase& page : pages) {
        const VisionRecognitionResult r = analyze(madePage(folder, QString::fromLatin1(page.name), page.lines,
                                                           QString::fromLatin1(page.family), page.degrees));
        EXPECT_TRUE(r.classificationMark.startsWith(QStringLiteral("MARK_DOCUMENTS")))
            << page.name << " → " << r.classificationMark.toStdString();
        EXPECT_GE(characterAccuracy(page.lines, r.recognizedText), 0.9)
            << page.name << ": " << r.recognizedText.join(QLatin1Char('|')).toStdString();
        for (const QString& line : r.recognizedText) {
            EXPECT_EQ(line, line.trimmed());
            EXPECT_FALSE(line.contains(QStringLiteral(" ，"))) << line.toStdString();
        }
    }
}

} // namespace
