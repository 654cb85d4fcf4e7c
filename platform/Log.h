// SPDX-License-Identifier: GPL-3.0-or-later
// One line per event, "Tag - message", on standard output, or into a sink that a test or the CLI installs.
#pragma once

#include <QString>

#include <functional>

namespace lumaro::platform {

// Thread-safe. The sink is process-wide; setSink(nullptr) restores standard output.
class Log
{
public:
    using Sink = std::function<void(const QString& line)>;

    static void line(const QString& tag, const QString& message);
    // For lines that carry no tag of their own ("PERF-SUMMARY-TCACHE: …").
    static void raw(const QString& text);
    static void setSink(Sink sink);
    static void toStandardError();
    static void silence();
};

} // namespace lumaro::platform
