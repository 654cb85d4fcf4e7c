// SPDX-License-Identifier: GPL-3.0-or-later
// Loading an ONNX network for the OpenCV backends without letting an exception out; private to them.
#pragma once

#include <QByteArray>
#include <QString>

#include <opencv2/dnn.hpp>

#include <optional>

namespace lumaro::platform::detail {

// The network of the file, or nullopt with the reason logged under "VISION_INDEX" (unreadable file, a graph
// OpenCV cannot import, or an empty net).
std::optional<cv::dnn::Net> loadOnnxNetwork(const QString& path);
// The same from bytes already in memory (a graph edited before import).
std::optional<cv::dnn::Net> loadOnnxNetwork(const QByteArray& bytes, const QString& nameForLog);

// Logs once per process and signal that a signal is left out because its model file is not installed
// (`relativePath` inside the models folder), so a run says what it is missing and goes on.
void reportMissingModel(const QString& signal, const QString& relativePath);

// The installed file's full path, or empty after reportMissingModel().
QString installedModel(const QString& signal, const QString& relativePath);

} // namespace lumaro::platform::detail
