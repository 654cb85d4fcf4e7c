// SPDX-License-Identifier: GPL-3.0-or-later
// Prints the scene classifier's description of each picture named, as the analysis computes it: one line
// per picture, its path, a tab, and the numbers separated by spaces. bench/train-picture-kind.py fits the
// picture kinds to these. A picture that cannot be read or described is named on stderr.
//   picture_kind_features PICTURE...
#include "vision/VisionPictureAnalyzer.h"

#include "platform/vision/AnalysisImage.h"
#include "platform/vision/SceneClassifier.h"

#include <cstdio>

int main(int argc, char** argv)
{
    using namespace lumaro;
    const std::unique_ptr<platform::SceneClassifier> classifier = platform::makeSceneClassifier();
    if (!classifier) {
        std::fprintf(stderr, "picture_kind_features: no scene classifier installed\n");
        return 2;
    }
    int failed = 0;
    for (int i = 1; i < argc; ++i) {
        const QString path = QString::fromLocal8Bit(argv[i]);
        QString error;
        const auto decoded =
            platform::AnalysisImageReader::read(path, vision::VisionPictureAnalyzer::kDecodeSide, &error);
        const platform::SceneClassification seen =
            decoded ? classifier->classify(decoded->image) : platform::SceneClassification{};
        if (!decoded || seen.description.empty()) {
            std::fprintf(stderr, "picture_kind_features: %s: %s\n", argv[i],
                         qPrintable(decoded ? seen.error : error));
            ++failed;
            continue;
        }
        std::printf("%s\t", argv[i]);
        for (size_t k = 0; k < seen.description.size(); ++k)
            std::printf(k ? " %g" : "%g", double(seen.description[k]));
        std::printf("\n");
    }
    return failed ? 1 : 0;
}
