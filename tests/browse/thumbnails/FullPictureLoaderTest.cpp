// SPDX-License-Identifier: GPL-3.0-or-later
// The loupe's full-size decodes: the picture on screen is decoded alone before the one ahead, and a picture
// that could not be read is tried again once the folder is read again.
#include "browse/thumbnails/FullPictureLoader.h"

#include "tests/browse/thumbnails/ScriptedDecodes.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace lumaro::browse {
namespace {

using testing::waitUntil;

struct ScriptedDecoder : ScriptedDecodes
{
    FullPictureLoader::DecodeFunction function()
    {
        return [this](const QString& path, int) { return decode(path, path); };
    }
};

TEST(FullPictureLoaderTest, ThePictureOnScreenIsDecodedAloneBeforeTheOneAhead)
{
    ScriptedDecoder decoder;
    decoder.heldPath = QStringLiteral("/f/1.jpg");
    FullPictureLoader loader(decoder.function());
    loader.request(QStringLiteral("/f/1.jpg"), {QStringLiteral("/f/2.jpg")});
    ASSERT_TRUE(decoder.started.tryAcquire(1, 5000));
    EXPECT_EQ(loader.runningCount(), 1) << "the one ahead takes a core from the picture on screen";
    decoder.release.release();
    ASSERT_TRUE(waitUntil([&] { return loader.image(QStringLiteral("/f/2.jpg")).has_value(); }));
    EXPECT_TRUE(loader.image(QStringLiteral("/f/1.jpg")).has_value());
    EXPECT_EQ(decoder.decoded(), (QStringList{QStringLiteral("/f/1.jpg"), QStringLiteral("/f/2.jpg")}));
}

TEST(FullPictureLoaderTest, AFailureIsTriedAgainAfterARefreshOnly)
{
    ScriptedDecoder decoder;
    const QString path = QStringLiteral("/f/copying.jpg");
    decoder.setFailing({path}); // still being copied in
    FullPictureLoader loader(decoder.function());
    loader.request(path);
    ASSERT_TRUE(waitUntil([&] { return loader.hasFailed(path); }));
    decoder.setFailing({}); // the copy ends
    loader.request(path);
    EXPECT_EQ(loader.runningCount(), 0) << "a failure is not retried at every key press";

    loader.refresh();
    loader.request(path);
    ASSERT_TRUE(waitUntil([&] { return loader.image(path).has_value(); }));
    EXPECT_FALSE(loader.hasFailed(path));
    EXPECT_EQ(decoder.decoded().size(), 2);
}

} // namespace
} // namespace lumaro::browse
