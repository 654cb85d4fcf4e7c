// SPDX-License-Identifier: GPL-3.0-or-later
// A place to drop a folder on, with a button that opens a folder chooser: how the pairing panels get their folders.
#pragma once

#include <QFrame>
#include <QString>

class QLabel;

namespace lumaro::app {

// Main thread only. A drop is accepted when one of its URLs is a local folder (the first such is taken); files and
// remote URLs are refused and logged. The chooser opens at `startFolder()`.
class FolderDropZone : public QFrame
{
    Q_OBJECT
public:
    struct Texts
    {
        QString title;        // "JPG文件夹（保留范围）"
        QString dropHint;     // "拖拽JPG文件夹到此处 或 点击下方按钮选择"
        QString dialogTitle;  // "选择JPG文件夹"
        QString dialogPrompt; // "选择包含JPG文件的文件夹"
        QString chosenPrefix; // "JPG文件夹已设置："
        QString logKind;      // "JPG" or "RAW", for the drop's log lines
    };

    explicit FolderDropZone(Texts texts, QWidget* parent = nullptr);

    void setStartFolder(const QString& folder) { m_startFolder = folder; }
    void showFolder(const QString& folder);

Q_SIGNALS:
    void folderChosen(const QString& folder);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void choose();

    Texts m_texts;
    QString m_startFolder;
    QLabel* m_chosen;
};

} // namespace lumaro::app
