// SPDX-License-Identifier: GPL-3.0-or-later
// scripts/fetch-models.sh without the network: bad usage is refused before anything is installed (exit 2), and a
// file that is not the verified one is never put in place (exit 1).
#include "tests/support/TempFolder.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

namespace lumaro::testing {
namespace {

struct UsageCase
{
    const char* name;
    QStringList arguments; // "SOURCE": a folder with the right COCO label list and a corrupt face model
    int exitCode;
};

TEST(FetchModels, RefusesBadUsageAndUnverifiedFilesWithoutInstallingAnything)
{
    const UsageCase cases[] = {
        {"unknown group after a valid one", {"--from", "SOURCE", "objects", "bogus"}, 2},
        {"unknown option", {"--frm", "SOURCE"}, 2},
        {"missing source folder", {"--from", "/nonexistent/models", "face"}, 2},
        {"corrupt file in the source", {"--from", "SOURCE", "face"}, 1},
    };
    for (const UsageCase& c : cases) {
        TempFolder source;
        source.write(QStringLiteral("face/face_detection_yunet_2022mar.onnx"), "not the model");
        source.makeFolder(QStringLiteral("detect"));
        ASSERT_TRUE(QFile::copy(QStringLiteral(LUMARO_SOURCE_DIR "/scripts/modelconv/coco80_labels.txt"),
                                source.filePath(QStringLiteral("detect/coco80_labels.txt"))));
        TempFolder dest;
        QStringList arguments{QStringLiteral(LUMARO_SOURCE_DIR "/scripts/fetch-models.sh"), QStringLiteral("--dest"),
                              dest.path()};
        for (const QString& argument : c.arguments)
            arguments << (argument == QLatin1String("SOURCE") ? source.path() : argument);
        QProcess fetch;
        fetch.setProcessChannelMode(QProcess::MergedChannels);
        fetch.start(QStringLiteral("bash"), arguments);
        ASSERT_TRUE(fetch.waitForFinished(60'000)) << c.name;
        EXPECT_EQ(fetch.exitCode(), c.exitCode) << c.name << ": " << fetch.readAll().toStdString();
        EXPECT_TRUE(QDir(dest.path()).isEmpty()) << c.name;
    }
}

} // namespace
} // namespace lumaro::testing
