// SPDX-License-Identifier: GPL-3.0-or-later
// Text recognition in a picture: one best candidate per recognised line.
#pragma once

#include <QImage>
#include <QString>
#include <QStringList>

#include <memory>

namespace lumaro::platform {

struct TextRecognition
{
    QStringList lines; // top to bottom, each trimmed and non-empty
    QString error;     // empty on success
};

// One recogniser per thread, initialised once (loading the language data is the slow part).
class TextRecognizer
{
public:
    virtual ~TextRecognizer() = default;
    virtual TextRecognition recognize(const QImage& image) = 0;
};

// English and simplified Chinese; nullptr when the engine or its language data is missing (logged once).
std::unique_ptr<TextRecognizer> makeTextRecognizer();

} // namespace lumaro::platform
