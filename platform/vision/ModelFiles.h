// SPDX-License-Identifier: GPL-3.0-or-later
// Finds a model file by its path inside a models folder ("classification/mobilenetv2-12-int8.onnx").
#pragma once

#include <QString>

namespace lumaro::platform {

// Thread-safe. Looks in AppPaths::modelSearchDirs(), first match wins.
class ModelFiles
{
public:
    // Full path of the first existing file, or empty.
    static QString find(const QString& relativePath);
};

} // namespace lumaro::platform
