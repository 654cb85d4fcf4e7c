// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FolderDropZone.h"

#include "platform/Log.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QVBoxLayout>

namespace lumaro::app {

using platform::Log;

FolderDropZone::FolderDropZone(Texts texts, QWidget* parent)
    : QFrame(parent)
    , m_texts(std::move(texts))
    , m_chosen(new QLabel(this))
{
    setAcceptDrops(true);
    setFrameShape(QFrame::StyledPanel);
    setFrameShadow(QFrame::Sunken);
    auto* layout = new QVBoxLayout(this);
    auto* title = new QLabel(m_texts.title, this);
    title->setStyleSheet(QStringLiteral("font-weight: bold"));
    auto* hint = new QLabel(m_texts.dropHint, this);
    hint->setAlignment(Qt::AlignCenter);
    hint->setWordWrap(true);
    auto* button = new QPushButton(m_texts.dialogTitle, this);
    m_chosen->setWordWrap(true);
    m_chosen->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(title);
    layout->addWidget(hint);
    layout->addWidget(button);
    layout->addWidget(m_chosen);
    connect(button, &QPushButton::clicked, this, &FolderDropZone::choose);
}

void FolderDropZone::showFolder(const QString& folder)
{
    m_chosen->setText(folder.isEmpty() ? QString() : m_texts.chosenPrefix + folder);
}

void FolderDropZone::choose()
{
    QFileDialog dialog(this, m_texts.dialogTitle, m_startFolder);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly, true);
    dialog.setLabelText(QFileDialog::Accept, QStringLiteral("选择"));
    dialog.setToolTip(m_texts.dialogPrompt);
    dialog.setWindowTitle(m_texts.dialogPrompt);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return;
    const QString folder = dialog.selectedFiles().constFirst();
    showFolder(folder);
    Q_EMIT folderChosen(folder);
}

void FolderDropZone::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void FolderDropZone::dropEvent(QDropEvent* event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    Log::raw(QStringLiteral("🔄 ") + m_texts.logKind + QStringLiteral("拖拽处理开始，providers数量: ")
             + QString::number(urls.size()));
    for (const QUrl& url : urls) {
        Log::raw(QStringLiteral("🔍 检查provider: ") + url.toString());
        if (!url.isLocalFile()) {
            Log::raw(QStringLiteral("❌ provider不支持文件URL类型"));
            continue;
        }
        Log::raw(QStringLiteral("✅ provider支持文件URL类型"));
        const QString path = url.toLocalFile();
        Log::raw(QStringLiteral("📦 拖拽项加载成功: ") + path);
        if (!QFileInfo(path).isDir()) {
            Log::raw(QStringLiteral("❌ 拖拽项不是有效的目录: item=") + path);
            continue;
        }
        Log::raw(QStringLiteral("✅ 直接获取到目录URL: ") + path);
        event->acceptProposedAction();
        showFolder(path);
        Q_EMIT folderChosen(path);
        return;
    }
    Log::raw(QStringLiteral("❌ 没有找到有效的拖拽项"));
    event->ignore();
}

} // namespace lumaro::app
