// SPDX-License-Identifier: GPL-3.0-or-later
// The window speaks Chinese: error texts that the OS and the picture libraries give in English, said in Chinese.
#pragma once

#include <QString>

namespace lumaro::platform {

// Any thread. Known English phrases (strerror texts, exiv2 and libjpeg messages) are replaced by their Chinese
// meaning wherever they occur, so a path or a file name around them stays as it was. A text with nothing Chinese
// left in it is an unknown library message: it is kept, in brackets, after "未知错误", for a bug report.
QString chineseErrorText(const QString& text);

} // namespace lumaro::platform
