// SPDX-License-Identifier: GPL-3.0-or-later
// The kind of picture read from the installed classifier's description: the weights were fitted to the
// description this program computes, so a change of layer, of its numbers' scale or of the preparation of
// the picture shows here as the wrong kind for photos whose kind is plain.
#include "vision/PictureKind.h"

#include "vision/VisionPictureAnalyzer.h"

#include "platform/vision/AnalysisImage.h"
#include "platform/vision/SceneClassifier.h"
#include "tests/support/TempFolder.h"

#include <QDir>

#include <gtest/gtest.h>

using namespace lumaro;
using vision::PictureKind;

namespace {

TEST(PictureKind, ADescriptionOfAnotherSizeHasNoKind)
{
    EXPECT_FALSE(vision::pictureKindOf({}));
    EXPECT_FALSE(vision::pictureKindOf(std::vector<float>(1000, 1.f)));
    EXPECT_FALSE(vision::pictureKindOf(std::vector<float>(1280, 1.f))); // the centre alone
}

TEST(PictureKind, SharesAddUpToOneWhateverTheNumbers)
{
    for (const float value : {-128.f, 0.f, 127.f, 1e6f}) {
        const auto kinds = vision::pictureKindOf(std::vector<float>(2560, value));
        ASSERT_TRUE(kinds);
        float sum = 0.f;
        for (const float share : kinds->shares) {
            EXPECT_GE(share, 0.f);
            sum += share;
        }
        EXPECT_NEAR(sum, 1.f, 1e-5f) << value;
    }
}

struct PhotoKind
{
    const char* photo;
    PictureKind kind;
};

class PictureKindOfPhotos : public ::testing::TestWithParam<PhotoKind>
{
};

TEST_P(PictureKindOfPhotos, IsThePlainKind)
{
    const QString models = lumaro::testing::sharedModelsDir();
    if (models.isEmpty())
        GTEST_SKIP() << "no models: ../shared/models is not beside the checkout";
    qputenv("LUMARO_MODELS_DIR", models.toUtf8());
    const auto classifier = platform::makeSceneClassifier();
    ASSERT_TRUE(classifier);
    const QString path =
        QDir(models).filePath(QStringLiteral("test-images/") + QLatin1String(GetParam().photo));
    const auto decoded =
        platform::AnalysisImageReader::read(path, vision::VisionPictureAnalyzer::kDecodeSide);
    ASSERT_TRUE(decoded);
    const auto kinds = vision::pictureKindOf(classifier->classify(decoded->image).description);
    ASSERT_TRUE(kinds) << "the classifier gave no description of the size the weights were fitted to";
    EXPECT_EQ(int(kinds->likeliest()), int(GetParam().kind));
    EXPECT_GT(kinds->of(GetParam().kind), 0.5f);
}

INSTANTIATE_TEST_SUITE_P(Table, PictureKindOfPhotos,
                         ::testing::Values(PhotoKind{"dog.jpg", PictureKind::thing},
                                           PhotoKind{"orange.jpg", PictureKind::thing},
                                           PhotoKind{"building.jpg", PictureKind::structure},
                                           PhotoKind{"astronaut.png", PictureKind::people},
                                           PhotoKind{"imageTextN.png", PictureKind::document}),
                         [](const auto& info) {
                             std::string name = info.param.photo;
                             return name.substr(0, name.find('.'));
                         });

} // namespace
