// SPDX-License-Identifier: GPL-3.0-or-later
// The file-name grouping tool: group the current folder's pictures under "_G<n>_" prefixes, or take them off.
#pragma once

#include "vision/NameWorkResult.h"

#include <QWidget>

class QCheckBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace lumaro::app {

class ToolHost;

// Main thread only. The renames run on a pool thread; one task at a time (the buttons are disabled meanwhile).
// When the task ends the result is shown, and the folder is listed again if it is still the one shown.
class GroupingPanel : public QWidget
{
    Q_OBJECT
public:
    explicit GroupingPanel(ToolHost& host, QWidget* parent = nullptr);

private:
    enum class Task { group, clean };
    void start(Task task);
    void showResult(const QString& folder, const vision::NameWorkResult& result);
    void setBusy(bool busy);

    ToolHost& m_host;
    QPushButton* m_groupButton;
    QPushButton* m_cleanButton;
    QCheckBox* m_dryRun;
    QLabel* m_status;
    QPlainTextEdit* m_details;
};

} // namespace lumaro::app
