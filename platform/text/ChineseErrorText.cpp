// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/text/ChineseErrorText.h"

#include <QList>
#include <QPair>

namespace lumaro::platform {

namespace {

// Longer phrases first, so that a phrase containing a shorter one is matched whole.
const QList<QPair<QString, QString>>& phrases()
{
    static const QList<QPair<QString, QString>> table{
        {QStringLiteral("not a TIFF-structured file"), QStringLiteral("不是有效的 TIFF 结构文件（文件可能已损坏）")},
        {QStringLiteral("This does not look like a JPEG image"), QStringLiteral("这不像是 JPEG 图片")},
        {QStringLiteral("The file contains data of an unknown image type"), QStringLiteral("文件内容不是可识别的图片格式")},
        {QStringLiteral("contains data of an unknown image type"), QStringLiteral("不是可识别的图片格式")},
        {QStringLiteral("Premature end of JPEG file"), QStringLiteral("JPEG 文件不完整（可能被截断）")},
        {QStringLiteral("Failed to open the data source"), QStringLiteral("无法打开文件")},
        {QStringLiteral("Failed to read image data"), QStringLiteral("无法读取图片数据")},
        {QStringLiteral("Failed to read input data"), QStringLiteral("无法读取文件数据（文件可能已损坏或不完整）")},
        {QStringLiteral("Invalid cross-device link"), QStringLiteral("不能跨磁盘直接移动")},
        {QStringLiteral("No such file or directory"), QStringLiteral("文件或文件夹不存在")},
        {QStringLiteral("Device or resource busy"), QStringLiteral("文件正被占用")},
        {QStringLiteral("Operation not supported"), QStringLiteral("此文件系统不支持该操作")},
        {QStringLiteral("Operation not permitted"), QStringLiteral("不允许此操作")},
        {QStringLiteral("No space left on device"), QStringLiteral("磁盘空间不足")},
        {QStringLiteral("Read-only file system"), QStringLiteral("磁盘是只读的")},
        {QStringLiteral("Input/output error"), QStringLiteral("读写出错（磁盘或存储卡可能有问题）")},
        {QStringLiteral("Disk quota exceeded"), QStringLiteral("超出磁盘配额")},
        {QStringLiteral("File name too long"), QStringLiteral("文件名太长")},
        {QStringLiteral("Permission denied"), QStringLiteral("没有权限")},
        {QStringLiteral("Unsupported image format"), QStringLiteral("不支持的图片格式")},
        {QStringLiteral("not a JPEG file"), QStringLiteral("不是 JPEG 文件")},
        {QStringLiteral("Is a directory"), QStringLiteral("这是一个文件夹")},
        {QStringLiteral("File exists"), QStringLiteral("已有同名文件")},
        {QStringLiteral("Unknown error"), QStringLiteral("未知错误")},
        {QStringLiteral("timed out"), QStringLiteral("操作超时")},
        {QStringLiteral("corrupted"), QStringLiteral("已损坏")},
        {QStringLiteral("corrupt"), QStringLiteral("已损坏")},
    };
    return table;
}

bool hasChinese(const QString& text)
{
    for (const QChar c : text) {
        if (c.unicode() >= 0x4E00 && c.unicode() <= 0x9FFF)
            return true;
    }
    return false;
}

} // namespace

QString chineseErrorText(const QString& text)
{
    QString result = text;
    for (const auto& [english, chinese] : phrases())
        result.replace(english, chinese, Qt::CaseInsensitive);
    if (result.trimmed().isEmpty())
        return QStringLiteral("未知错误");
    if (!hasChinese(result))
        return QStringLiteral("未知错误（%1）").arg(text);
    return result;
}

} // namespace lumaro::platform
