// SPDX-License-Identifier: GPL-3.0-or-later
// The shooting report handed on: a self-contained HTML page (inline SVG, no script) and a PDF.
#pragma once

#include "report/ShootingReport.h"

#include <QString>

#include <optional>

namespace lumaro::report {

// Thread-safe, blocking (the PDF paints with QPainter, which Qt allows off the GUI thread for a QPdfWriter).
// Files are written through a temporary file and renamed into place, so a failed export leaves the old file.
class ReportExport
{
public:
    static QString html(const ShootingReport& report);
    // nullopt on success, else the reason.
    static std::optional<QString> writeHtml(const ShootingReport& report, const QString& path);
    static std::optional<QString> writePdf(const ShootingReport& report, const QString& path);
    // Whether `path` holds a report this class wrote (its marker is in the file), so that writing the report
    // again may replace it; any other existing file is someone's work and is left alone.
    static bool isReportFile(const QString& path);

    static inline const QString marker = QStringLiteral("Lumaro shooting report");
};

} // namespace lumaro::report
