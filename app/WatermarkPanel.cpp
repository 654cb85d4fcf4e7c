// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WatermarkPanel.h"

#include "app/InBackground.h"
#include "app/ToolHost.h"
#include "browse/state/LMRModeState.h"
#include "vision/WatermarkService.h"
#include "vision/WatermarkSorter.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace lumaro::app {

namespace {

constexpr qsizetype kShownLines = 500;

QString readingLines(const QList<vision::WatermarkResult>& results)
{
    QStringList lines;
    for (const vision::WatermarkResult& r : results.mid(0, kShownLines))
        lines << r.fileName + QStringLiteral("  →  ") +
                     (r.isIdentified()    ? r.identifier
                      : r.error.isEmpty() ? QStringLiteral("（未读到）")
                                          : r.error);
    return lines.join(QLatin1Char('\n'));
}

QString sortLines(const vision::WatermarkSortReport& report, bool dryRun)
{
    QStringList lines;
    for (const vision::WatermarkMove& move : report.moved.mid(0, kShownLines))
        lines << (dryRun ? QStringLiteral("将移到 ") : QString()) + move.folder + QLatin1Char('/') +
                     move.fileName;
    for (const QString& skipped : report.skipped)
        lines << QStringLiteral("跳过（重名）: ") + skipped;
    for (const QString& failure : report.failures)
        lines << QStringLiteral("失败: ") + failure;
    return lines.join(QLatin1Char('\n'));
}

} // namespace

WatermarkPanel::WatermarkPanel(ToolHost& host, QWidget* parent)
    : QWidget(parent), m_host(host), m_readButton(new QPushButton(QStringLiteral("读取水印标识"), this)),
      m_allPictures(new QCheckBox(QStringLiteral("读取全部图片（不只人像）"), this)),
      m_cancelButton(new QPushButton(QStringLiteral("取消"), this)), m_progress(new QProgressBar(this)),
      m_target(new QLineEdit(this)), m_copy(new QCheckBox(QStringLiteral("复制，不移动"), this)),
      m_previewButton(new QPushButton(QStringLiteral("预览分拣"), this)),
      m_sortButton(new QPushButton(QStringLiteral("按标识分拣"), this)),
      m_undoButton(new QPushButton(QStringLiteral("撤销上次分拣"), this)), m_status(new QLabel(this)),
      m_details(new QPlainTextEdit(this))
{
    m_readButton->setToolTip(
        QStringLiteral("从四角和底边读取 @用户名 或 ID 号（需要先分析此文件夹，或勾选读取全部图片）"));
    m_target->setPlaceholderText(QStringLiteral("分拣到（留空：当前文件夹）"));
    auto* choose = new QPushButton(QStringLiteral("选择…"), this);
    m_status->setWordWrap(true);
    m_details->setReadOnly(true);
    m_progress->setVisible(false);
    m_cancelButton->setVisible(false);
    auto* targetRow = new QHBoxLayout;
    targetRow->addWidget(m_target, 1);
    targetRow->addWidget(choose);
    auto* sortRow = new QHBoxLayout;
    sortRow->addWidget(m_previewButton);
    sortRow->addWidget(m_sortButton);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_readButton);
    layout->addWidget(m_allPictures);
    layout->addWidget(m_progress);
    layout->addWidget(m_cancelButton);
    layout->addLayout(targetRow);
    layout->addWidget(m_copy);
    layout->addLayout(sortRow);
    layout->addWidget(m_undoButton);
    layout->addWidget(m_status);
    layout->addWidget(m_details, 1);

    connect(m_readButton, &QPushButton::clicked, this, &WatermarkPanel::read);
    connect(m_cancelButton, &QPushButton::clicked, this, [this] {
        if (m_cancel)
            m_cancel->store(true);
        m_status->setText(QStringLiteral("正在取消…"));
    });
    connect(choose, &QPushButton::clicked, this, [this] {
        const QString dir = QFileDialog::getExistingDirectory(m_host.dialogParent(), QStringLiteral("分拣到"),
                                                              m_target->text());
        if (!dir.isEmpty())
            m_target->setText(dir);
    });
    connect(m_previewButton, &QPushButton::clicked, this, [this] { sort(true); });
    connect(m_sortButton, &QPushButton::clicked, this, [this] { sort(false); });
    connect(m_undoButton, &QPushButton::clicked, this, &WatermarkPanel::undo);
    connect(&m_host.modeState(), &browse::LMRModeState::folderChanged, this, &WatermarkPanel::forget);
    forget();
}

WatermarkPanel::~WatermarkPanel()
{
    if (m_cancel)
        m_cancel->store(true);
}

void WatermarkPanel::forget()
{
    m_results.clear();
    m_readFolder.clear();
    m_previewButton->setEnabled(false);
    m_sortButton->setEnabled(false);
    m_undoButton->setEnabled(!m_lastLog.isEmpty());
}

void WatermarkPanel::setBusy(bool busy)
{
    m_readButton->setEnabled(!busy);
    m_allPictures->setEnabled(!busy);
    m_undoButton->setEnabled(!busy && !m_lastLog.isEmpty());
    m_previewButton->setEnabled(!busy && !m_results.isEmpty());
    m_sortButton->setEnabled(!busy && !m_results.isEmpty());
    m_progress->setVisible(busy);
    m_cancelButton->setVisible(busy);
}

void WatermarkPanel::read()
{
    const browse::LMRModeState& state = m_host.modeState();
    const std::optional<QString> folder = state.currentFolder();
    if (!folder) {
        m_status->setText(QStringLiteral("请先打开一个文件夹"));
        return;
    }
    forget();
    const QStringList names = state.imageFiles();
    m_cancel = std::make_shared<std::atomic<bool>>(false);
    m_progress->setRange(0, std::max<int>(1, int(names.size())));
    m_progress->setValue(0);
    m_status->setText(QStringLiteral("正在读取水印…"));
    m_details->clear();
    setBusy(true);
    QPointer<WatermarkPanel> self(this);
    auto cancel = m_cancel;
    const bool all = m_allPictures->isChecked();
    const QString path = *folder;
    inBackground(
        this,
        [self, cancel, path, names, all] {
            vision::WatermarkRunOptions options;
            options.allPictures = all;
            options.cancel = cancel.get();
            options.progress = [self](int done, int total) {
                QMetaObject::invokeMethod(
                    qApp,
                    [self, done, total] {
                        if (!self)
                            return;
                        self->m_progress->setRange(0, std::max(1, total));
                        self->m_progress->setValue(done);
                    },
                    Qt::QueuedConnection);
            };
            return vision::WatermarkService().run(path, names, options);
        },
        [this, path](const vision::WatermarkRunResult& run) {
            m_cancel.reset();
            const std::optional<QString> shown = m_host.modeState().currentFolder();
            if (!shown || *shown != path) {
                setBusy(false);
                m_status->setText(QStringLiteral("文件夹已切换，结果已丢弃"));
                return;
            }
            if (run.noVisionIndex)
                m_status->setText(
                    QStringLiteral("没有 Vision 索引：请先在“图像分析”里分析此文件夹，或勾选读取全部图片"));
            else if (run.noReader)
                m_status->setText(QStringLiteral("❌ 文字识别不可用（缺少 PP-OCR 模型）"));
            else if (run.indexFolderRefused)
                m_status->setText(QStringLiteral("无法写入 _index（同名文件挡住了，或文件夹只读）"));
            else if (run.cancelled)
                m_status->setText(QStringLiteral("已取消，没有写入结果文件"));
            else {
                m_results = run.results;
                m_readFolder = path;
                m_status->setText(QStringLiteral("✅ 读取 %1 张，%2 张有标识，%3 张失败")
                                      .arg(run.results.size())
                                      .arg(run.identified())
                                      .arg(run.failed));
                m_details->setPlainText(readingLines(run.results));
            }
            setBusy(false);
        });
}

void WatermarkPanel::sort(bool dryRun)
{
    const std::optional<QString> folder = m_host.modeState().currentFolder();
    if (!folder || *folder != m_readFolder || m_results.isEmpty()) {
        m_status->setText(QStringLiteral("请先读取此文件夹的水印"));
        return;
    }
    vision::WatermarkSortOptions options;
    options.targetFolder = m_target->text().trimmed().isEmpty() ? *folder : m_target->text().trimmed();
    options.copy = m_copy->isChecked();
    options.dryRun = dryRun;
    if (QFileInfo(options.targetFolder).exists() && !QFileInfo(options.targetFolder).isDir()) {
        m_status->setText(QStringLiteral("分拣目标是一个文件，不是文件夹"));
        return;
    }
    m_status->setText(dryRun ? QStringLiteral("正在预览…") : QStringLiteral("正在分拣…"));
    m_progress->setRange(0, 0);
    setBusy(true);
    m_cancelButton->setVisible(false); // a sort is renames: short, and stopping it halfway helps nobody
    const QString path = *folder;
    const QList<vision::WatermarkResult> results = m_results;
    inBackground(
        this, [path, results, options] { return vision::WatermarkSorter().sort(path, results, options); },
        [this, dryRun](const vision::WatermarkSortReport& report) {
            setBusy(false);
            m_details->setPlainText(sortLines(report, dryRun));
            if (report.logRefused) {
                m_status->setText(QStringLiteral("❌ 无法写入分拣记录，没有移动任何图片"));
                return;
            }
            m_status->setText(QStringLiteral("%1 %2 张，%3 张没有标识留在原处，%4 张跳过，%5 张失败")
                                  .arg(dryRun ? QStringLiteral("将分拣") : QStringLiteral("✅ 已分拣"))
                                  .arg(report.moved.size())
                                  .arg(report.unidentified.size())
                                  .arg(report.skipped.size())
                                  .arg(report.failures.size()));
            if (!dryRun) {
                m_lastLog = report.logPath;
                m_undoButton->setEnabled(!m_lastLog.isEmpty());
                m_host.reloadCurrentFolder();
            }
        });
}

void WatermarkPanel::undo()
{
    if (m_lastLog.isEmpty())
        return;
    setBusy(true);
    m_progress->setRange(0, 0);
    m_cancelButton->setVisible(false);
    const QString log = m_lastLog;
    inBackground(
        this, [log] { return vision::WatermarkSorter().undo(log); },
        [this](const vision::WatermarkUndoReport& report) {
            setBusy(false);
            if (!report.error.isEmpty()) {
                m_status->setText(QStringLiteral("❌ 无法撤销: ") + report.error);
                return;
            }
            m_lastLog.clear();
            m_undoButton->setEnabled(false);
            m_status->setText(QStringLiteral("✅ 已放回 %1 张，%2 张已在原处，%3 张因重名留下")
                                  .arg(report.restored)
                                  .arg(report.alreadyBack)
                                  .arg(report.conflicts.size()));
            m_details->setPlainText(report.conflicts.join(QLatin1Char('\n')));
            m_host.reloadCurrentFolder();
        });
}

} // namespace lumaro::app
