// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/GroupingPanel.h"

#include "app/ToolHost.h"
#include "browse/state/FileSystemService.h"
#include "browse/state/LMRModeState.h"
#include "vision/NameGroupingService.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QThreadPool>
#include <QVBoxLayout>

namespace lumaro::app {

namespace {

// Enough lines to see what happened; the whole list of a 10,000-file folder would only slow the panel down.
constexpr qsizetype kShownLines = 500;

QString detailsOf(const vision::NameWorkResult& result)
{
    QStringList lines;
    for (const QString& failure : result.failures)
        lines << QStringLiteral("失败: ") + failure;
    for (const QString& name : result.skipped)
        lines << QStringLiteral("跳过: ") + name;
    for (const vision::NameRename& rename : result.renames) {
        if (lines.size() >= kShownLines) {
            lines << QStringLiteral("…");
            break;
        }
        lines << rename.from + QStringLiteral(" -> ") + rename.to;
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace

GroupingPanel::GroupingPanel(ToolHost& host, QWidget* parent)
    : QWidget(parent)
    , m_host(host)
    , m_groupButton(new QPushButton(tr("文件名分组"), this))
    , m_cleanButton(new QPushButton(tr("清除分组前缀"), this))
    , m_dryRun(new QCheckBox(tr("只预览，不重命名"), this))
    , m_status(new QLabel(this))
    , m_details(new QPlainTextEdit(this))
{
    m_groupButton->setToolTip(tr("按文件名和 Vision 分类把相关的图片分组，在文件名前加上 _G 编号 _"));
    m_cleanButton->setToolTip(tr("去掉文件名前的 _G 编号 _，恢复原来的文件名"));
    m_status->setWordWrap(true);
    m_details->setReadOnly(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_groupButton);
    layout->addWidget(m_cleanButton);
    layout->addWidget(m_dryRun);
    layout->addWidget(m_status);
    layout->addWidget(m_details, 1);
    connect(m_groupButton, &QPushButton::clicked, this, [this] { start(Task::group); });
    connect(m_cleanButton, &QPushButton::clicked, this, [this] { start(Task::clean); });
}

void GroupingPanel::start(Task task)
{
    const browse::LMRModeState& state = m_host.modeState();
    const std::optional<QString> folder = state.currentFolder();
    if (!folder) {
        m_status->setText(tr("请先选择文件夹"));
        return;
    }
    vision::NameWorkOptions options;
    options.dryRun = m_dryRun->isChecked();
    // The stored token names the authorised folder; a folder below it is reached by its path.
    if (state.authorizedDirectory() == folder && state.folderBookmarkData())
        options.folderToken = *state.folderBookmarkData();

    setBusy(true);
    m_status->setText(task == Task::group ? tr("正在分组…") : tr("正在清除前缀…"));
    m_details->clear();
    QPointer<GroupingPanel> self(this);
    const QString path = *folder;
    QThreadPool::globalInstance()->start([self, task, path, options] {
        const QStringList names = browse::FileSystemService::shared().loadImageFileNames(path);
        const vision::NameGroupingService service;
        const vision::NameWorkResult result = task == Task::group ? service.groupFiles(path, names, options)
                                                                  : service.cleanPrefixes(path, names, options);
        QMetaObject::invokeMethod(
            qApp, [self, path, result] {
                if (self)
                    self->showResult(path, result);
            },
            Qt::QueuedConnection);
    });
}

void GroupingPanel::showResult(const QString& folder, const vision::NameWorkResult& result)
{
    setBusy(false);
    m_status->setText(result.message);
    m_details->setPlainText(detailsOf(result));
    if (!result.dryRun && !result.renames.isEmpty() && m_host.modeState().currentFolder() == folder)
        m_host.reloadCurrentFolder();
}

void GroupingPanel::setBusy(bool busy)
{
    m_groupButton->setEnabled(!busy);
    m_cleanButton->setEnabled(!busy);
}

} // namespace lumaro::app
