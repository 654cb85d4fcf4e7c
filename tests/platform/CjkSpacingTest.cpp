// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/vision/TextRecognizer.h"

#include <gtest/gtest.h>

using lumaro::platform::withoutCjkSpacing;

namespace {

TEST(CjkSpacing, SpacesAroundChinesePunctuationAndBetweenHanGoLatinSpacesStay)
{
    const std::pair<const char*, const char*> cases[] = {
        {"讨论 ， 成员们", "讨论，成员们"},
        {"会 议 纪 要 ： 第三季度", "会议纪要：第三季度"},
        {"（ 见附件 ） 。", "（见附件）。"},
        {"Hello world, 你好 世界", "Hello world, 你好世界"},
        {"Total 4.50 元", "Total 4.50 元"},
        // The reader's ASCII marks in Chinese text
        {"时间 : 六月八日星期六) 上午九点", "时间：六月八日星期六）上午九点"},
        {"欢迎全家一起参加 !", "欢迎全家一起参加！"},
        {"请穿运动鞋, 自带水杯.", "请穿运动鞋，自带水杯。"},
        {"(见附件) 下载", "（见附件）下载"},
        {"版本 2.0 发布. 下载", "版本 2.0 发布。下载"},
        {"ID: 1029384756", "ID: 1029384756"},
        {"Note: 中文, ok", "Note: 中文，ok"},
        {"抖音号:40918273", "抖音号：40918273"},
    };
    for (const auto& [in, out] : cases)
        EXPECT_EQ(withoutCjkSpacing(QString::fromUtf8(in)), QString::fromUtf8(out)) << in;
}

} // namespace
