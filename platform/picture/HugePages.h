// SPDX-License-Identifier: GPL-3.0-or-later
// Memory for full-size pictures and whole files that the kernel hands over in 2 MiB pages.
#pragma once

#include <QImage>
#include <QSize>

#include <cstdlib>
#include <memory>

namespace lumaro::platform {

// A fresh allocation is given to a process one page on first touch. A 24-megapixel picture is 96 MB: 23,000
// faults of 4 KiB, which on a virtual machine cost more than decoding the JPEG (measured: 1,040 ms against
// 200 ms). Memory aligned to 2 MiB and marked for transparent huge pages takes 46 faults. Small sizes keep
// the ordinary allocation. Thread-safe; an image's memory goes back when the last copy of the image does.
class HugePages
{
public:
    struct Free
    {
        void operator()(char* memory) const { std::free(memory); }
    };
    using Block = std::unique_ptr<char[], Free>;

    static QImage image(QSize size, QImage::Format format);
    // `bytes` of uninitialised memory; null only when the system has none left.
    static Block block(qsizetype bytes);
    // A quarter turn of a large 32-bit image into such memory: 1 = 90° clockwise, 2 = 180°, 3 = 270°. A null
    // image when `image` is small or not 32-bit: the caller uses QImage::transformed then.
    static QImage rotated(const QImage& image, int quarterTurns);
};

} // namespace lumaro::platform
