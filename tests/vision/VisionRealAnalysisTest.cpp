// SPDX-License-Identifier: GPL-3.0-or-later
// The installed models on real photos: what a user's own folder would get.
#include "vision/VisionPictureAnalyzer.h"

#include "tests/support/TempFolder.h"

#include <QDir>

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
    static VisionRecognitionResult analyze(const char* photo)
    {
        const auto result = s_analyzer->analyze(QDir(s_photos).filePath(QString::fromLatin1(photo)));
        EXPECT_TRUE(result) << photo;
        return result.value_or(VisionRecognitionResult{});
    }

    static inline VisionPictureAnalyzer* s_analyzer = nullptr;
    static inline QString s_photos;
};

TEST_F(RealAnalysis, APersonPhotoReachesAPeopleMark)
{
    for (const char* photo : {"astronaut.png", "messi5.jpg"}) {
        const VisionRecognitionResult r = analyze(photo);
        EXPECT_TRUE(r.classificationMark.startsWith(QStringLiteral("MARK_PEOPLE"))) << photo << " → "
                                                                                   << r.classificationMark.toStdString();
    }
}

TEST_F(RealAnalysis, TheDogPhotoIsADiverseDog)
{
    const VisionRecognitionResult r = analyze("dog.jpg");
    EXPECT_TRUE(r.classificationMark == QStringLiteral("MARK_DIVERSE_MALAMUTE")
                || r.classificationMark == QStringLiteral("MARK_DIVERSE_SIBERIAN_HUSKY")
                || r.classificationMark == QStringLiteral("MARK_DIVERSE_ESKIMO_DOG"))
        << r.classificationMark.toStdString();
    EXPECT_FALSE(r.recognizedObjects.contains(QStringLiteral("person")));
    EXPECT_EQ(r.recognizedObjects, r.sceneClassification);
    EXPECT_EQ(r.pixelWidth, 768);
    EXPECT_EQ(r.pixelHeight, 576);
}

TEST_F(RealAnalysis, TheTextImageGivesItsLines)
{
    const VisionRecognitionResult r = analyze("imageTextN.png");
    ASSERT_GE(r.recognizedText.size(), 2) << r.recognizedText.join(QLatin1Char('|')).toStdString();
    for (const QString& line : r.recognizedText)
        EXPECT_EQ(line, line.trimmed());
}

TEST_F(RealAnalysis, AnimalsAndThingsGetTheirLabel)
{
    EXPECT_EQ(analyze("eagle.jpg").classificationMark, QStringLiteral("MARK_DIVERSE_BALD_EAGLE"));
    EXPECT_EQ(analyze("coffee.png").recognizedObjects.value(0), QStringLiteral("espresso"));
}

} // namespace

namespace {

TEST_F(RealAnalysis, ACatsFaceOrAMotorbikesLampsAreNoPerson)
{
    for (const char* photo : {"chelsea.png", "motorcycle_left.png", "horses.jpg"}) {
        const VisionRecognitionResult r = analyze(photo);
        EXPECT_FALSE(r.recognizedObjects.contains(QStringLiteral("person"))) << photo;
        EXPECT_TRUE(r.classificationMark.startsWith(QStringLiteral("MARK_DIVERSE_"))) << photo << " → "
                                                                                     << r.classificationMark.toStdString();
    }
}

} // namespace
