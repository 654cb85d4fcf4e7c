// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/VisionPanel.h"

#include "app/ToolHost.h"

#include "browse/state/LMRModeState.h"
#include "platform/NotificationCenter.h"
#include "vision/VisionIndexReader.h"
#include "vision/VisionIndexService.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QThreadPool>
#include <QVBoxLayout>

namespace lumaro::app {

VisionPanel::VisionPanel(ToolHost& host, QWidget* parent)
    : QWidget(parent), m_host(host), m_analyseButton(new QPushButton(QStringLiteral("分析此文件夹"), this)),
      m_cancelButton(new QPushButton(QStringLiteral("取消"), this)), m_progress(new QProgressBar(this)),
      m_status(new QLabel(this)), m_mark(new QLabel(this)), m_tags(new QPlainTextEdit(this))
{
    m_status->setWordWrap(true);
    m_mark->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_tags->setReadOnly(true);
    m_progress->setVisible(false);
    m_cancelButton->setVisible(false);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_analyseButton);
    layout->addWidget(m_progress);
    layout->addWidget(m_cancelButton);
    layout->addWidget(m_status);
    layout->addWidget(new QLabel(QStringLiteral("当前图片的分类"), this));
    layout->addWidget(m_mark);
    layout->addWidget(m_tags, 1);

    connect(m_analyseButton, &QPushButton::clicked, this, &VisionPanel::start);
    connect(m_cancelButton, &QPushButton::clicked, this, [this] {
        if (m_cancel)
            m_cancel->store(true);
        m_status->setText(QStringLiteral("正在取消…"));
    });
    browse::LMRModeState& state = m_host.modeState();
    connect(&state, &browse::LMRModeState::selectionChanged, this, &VisionPanel::showSelection);
    connect(&state, &browse::LMRModeState::folderChanged, this, [this] {
        // A finished run's outcome was about the folder left behind; a run still going goes on saying so.
        if (!m_cancel)
            m_status->clear();
        forgetIndex();
        showSelection();
    });
    connect(&platform::NotificationCenter::shared(), &platform::NotificationCenter::posted, this,
            [this](const QString& name, const QVariantMap& info) {
                if (name == platform::notifications::visionIndexDidUpdate)
                    takeUpdate(info);
            });
    showSelection();
}

void VisionPanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    showSelection();
}

void VisionPanel::forgetIndex()
{
    m_cache.clear();
    m_cachedFolder.clear();
    m_loadingFolder.clear();
    ++m_loadGeneration;
}

void VisionPanel::loadIndex(const QString& folder)
{
    if (m_loadingFolder == folder)
        return;
    m_loadingFolder = folder;
    const quint64 generation = ++m_loadGeneration;
    QPointer<VisionPanel> self(this);
    QThreadPool::globalInstance()->start([self, folder, generation] {
        auto results = vision::VisionIndexReader::latestResults(folder);
        QMetaObject::invokeMethod(
            qApp,
            [self, folder, generation, results = std::move(results)] {
                if (!self || self->m_loadGeneration != generation)
                    return;
                self->m_loadingFolder.clear();
                self->m_cachedFolder = folder;
                // Pictures a running analysis reported while the files were read keep their newer result.
                for (auto it = results.constBegin(); it != results.constEnd(); ++it) {
                    if (!self->m_cache.contains(it.key()))
                        self->m_cache.insert(it.key(), it.value());
                }
                self->showSelection();
            },
            Qt::QueuedConnection);
    });
}

void VisionPanel::takeUpdate(const QVariantMap& info)
{
    const std::optional<QString> folder = m_host.modeState().currentFolder();
    if (!folder || info.value(QStringLiteral("folderPath")).toString() != *folder)
        return;
    const auto result = vision::VisionIndexService::resultFromUpdate(info);
    if (!result)
        return;
    m_cache.insert(vision::VisionIndexReader::lookupName(result->fileName), *result);
    showSelection();
}

VisionPanel::~VisionPanel()
{
    if (m_cancel)
        m_cancel->store(true);
}

void VisionPanel::setBusy(bool busy)
{
    m_analyseButton->setEnabled(!busy);
    m_progress->setVisible(busy);
    m_cancelButton->setVisible(busy);
}

void VisionPanel::start()
{
    const browse::LMRModeState& state = m_host.modeState();
    const std::optional<QString> folder = state.currentFolder();
    if (!folder) {
        m_status->setText(QStringLiteral("请先打开一个文件夹"));
        return;
    }
    const QStringList names = state.imageFiles();
    m_cancel = std::make_shared<std::atomic<bool>>(false);
    m_progress->setRange(0, std::max<int>(1, int(names.size())));
    m_progress->setValue(0);
    m_status->setText(QStringLiteral("正在分析 %1 张图片…").arg(names.size()));
    setBusy(true);

    QPointer<VisionPanel> self(this);
    auto cancel = m_cancel;
    const QString path = *folder;
    QThreadPool::globalInstance()->start([self, cancel, path, names] {
        vision::VisionIndexRunOptions options;
        options.cancel = cancel.get();
        options.onPictureFinished = [self](const vision::VisionRecognitionResult*, int done, int) {
            QMetaObject::invokeMethod(
                qApp,
                [self, done] {
                    if (self)
                        self->m_progress->setValue(done);
                },
                Qt::QueuedConnection);
        };
        const vision::VisionIndexRunResult run =
            vision::VisionIndexService::shared().run(path, names, options);
        QMetaObject::invokeMethod(
            qApp,
            [self, path, run] {
                if (self)
                    self->finish(path, run);
            },
            Qt::QueuedConnection);
    });
}

void VisionPanel::finish(const QString& folder, const vision::VisionIndexRunResult& run)
{
    setBusy(false);
    m_cancel.reset();
    if (run.cancelled)
        m_status->setText(QStringLiteral("已取消，没有写入索引文件"));
    else if (run.indexFolderRefused)
        m_status->setText(QStringLiteral("无法写入 _index（同名文件挡住了，或文件夹只读）"));
    else if (run.indexPath.isEmpty())
        m_status->setText(QStringLiteral("❌ 索引文件保存失败"));
    else
        m_status->setText(
            QStringLiteral("✅ 已分析 %1 张，失败 %2 张").arg(run.results.size()).arg(run.failed));
    if (m_host.modeState().currentFolder() != folder) // the photographer has moved on to another folder
        m_status->setText(QFileInfo(folder).fileName() + QStringLiteral("：") + m_status->text());
    if (folder == m_cachedFolder || folder == m_loadingFolder)
        forgetIndex();
    showSelection();
}

void VisionPanel::showSelection()
{
    const browse::LMRModeState& state = m_host.modeState();
    const std::optional<QString> folder = state.currentFolder();
    const std::optional<int> index = state.selectedImageIndex();
    if (!folder || !index || *index < 0 || *index >= state.imageFiles().size()) {
        m_mark->setText(QStringLiteral("—"));
        m_tags->clear();
        return;
    }
    const auto found =
        m_cache.constFind(vision::VisionIndexReader::lookupName(state.imageFiles().at(*index)));
    if (*folder != m_cachedFolder && found == m_cache.constEnd()) {
        // Read lazily: a hidden panel never touches the folder's index files.
        if (isVisible())
            loadIndex(*folder);
        m_mark->setText(isVisible() ? QStringLiteral("正在读取分析结果…") : QStringLiteral("—"));
        m_tags->clear();
        return;
    }
    if (found == m_cache.constEnd()) {
        m_mark->setText(QStringLiteral("尚未分析"));
        m_tags->clear();
        return;
    }
    m_mark->setText(found->classificationMark);
    QString details = QStringLiteral("标签: ") + found->recognizedObjects.join(QStringLiteral(", "));
    if (!found->recognizedText.isEmpty())
        details += QStringLiteral("\n\n文字:\n") + found->recognizedText.join(QLatin1Char('\n'));
    m_tags->setPlainText(details);
}

} // namespace lumaro::app
