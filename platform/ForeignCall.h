// SPDX-License-Identifier: GPL-3.0-or-later
// The one way platform code calls into a picture or model library that may throw (exiv2, libraw, libheif,
// OpenCV, Tesseract): whatever it throws stops here and becomes that call's failure.
#pragma once

#include <QString>

#include <exception>
#include <utility>

namespace lumaro::platform {

// Runs `call` and returns its result; if it throws anything at all, returns `failed(reason)` instead. A
// damaged file makes these libraries throw more than their own error types (exiv2 throws std::overflow_error
// on offsets that wrap, OpenCV cv::Exception on an assertion, any of them std::bad_alloc on a size read from
// a header), and an exception that leaves a pool thread ends the process. Any thread.
template <typename Call, typename Failed>
auto guardedForeignCall(Call&& call, Failed&& failed) -> decltype(call())
{
    try {
        return std::forward<Call>(call)();
    } catch (const std::exception& error) {
        return std::forward<Failed>(failed)(QString::fromUtf8(error.what()));
    } catch (...) {
        return std::forward<Failed>(failed)(QStringLiteral("unknown exception"));
    }
}

} // namespace lumaro::platform
