// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/text/ChineseErrorText.h"

#include <gtest/gtest.h>

using lumaro::platform::chineseErrorText;

TEST(ChineseErrorText, LibraryAndSystemTextsAreSaidInChineseAroundTheirPaths)
{
    const struct
    {
        const char* given;
        const char* shown;
    } cases[] = {
        {"/cards/A/IMG_1.CR2: not a TIFF-structured file", "/cards/A/IMG_1.CR2: 不是有效的 TIFF 结构文件（文件可能已损坏）"},
        {"/p/x.jpg: The file contains data of an unknown image type", "/p/x.jpg: 文件内容不是可识别的图片格式"},
        {"Permission denied", "没有权限"},
        {"rename: No space left on device", "rename: 磁盘空间不足"},
        {"没有写入权限: /p/a.jpg", "没有写入权限: /p/a.jpg"},
        {"", "未知错误"},
        {"Something exiv2 never said before", "未知错误（Something exiv2 never said before）"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(chineseErrorText(QString::fromUtf8(c.given)), QString::fromUtf8(c.shown)) << c.given;
}
