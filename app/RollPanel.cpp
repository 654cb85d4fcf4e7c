// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/RollPanel.h"

#include "app/InBackground.h"
#include "app/StorageAccountDialog.h"
#include "app/ToolHost.h"
#include "browse/state/LMRModeState.h"
#include "rolls/StorageAccounts.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QThreadPool>
#include <QVBoxLayout>

namespace lumaro::app {

namespace {

QString sizeText(qint64 bytes)
{
    return QStringLiteral("%1 MB").arg(double(bytes) / 1e6, 0, 'f', 1);
}

} // namespace

RollPanel::RollPanel(ToolHost& host, platform::Rclone rclone, QWidget* parent)
    : QWidget(parent), m_host(host), m_rclone(std::move(rclone)), m_destination(new QComboBox(this)),
      m_name(new QLineEdit(this)), m_budget(new QSpinBox(this)),
      m_originals(new QCheckBox(tr("包含原图"), this)),
      m_keepLocation(new QCheckBox(tr("保留位置信息 (GPS)"), this)),
      m_publish(new QPushButton(tr("发布"), this)), m_progress(new QProgressBar(this)),
      m_status(new QLabel(this)), m_rolls(new QListWidget(this)),
      m_unpublish(new QPushButton(tr("取消发布…"), this)), m_accounts(new QPushButton(tr("存储账户…"), this))
{
    m_destination->setEditable(true);
    m_destination->setToolTip(tr("rclone 远端和路径，例如 nextcloud:相册 或 s3:bucket/albums"));
    m_name->setPlaceholderText(tr("默认为文件夹名"));
    m_budget->setRange(0, 1'000'000);
    m_budget->setSuffix(QStringLiteral(" MB"));
    m_budget->setSpecialValueText(tr("不限"));
    m_progress->hide();
    m_status->setWordWrap(true);
    m_status->setTextInteractionFlags(Qt::TextBrowserInteraction);
    m_status->setOpenExternalLinks(true);

    auto* destination = new QHBoxLayout;
    destination->addWidget(m_destination, 1);
    destination->addWidget(m_accounts);
    auto* form = new QFormLayout;
    form->addRow(tr("发布到"), destination);
    form->addRow(tr("相册名"), m_name);
    form->addRow(tr("预算"), m_budget);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(m_originals);
    layout->addWidget(m_keepLocation);
    layout->addWidget(m_publish);
    layout->addWidget(m_progress);
    layout->addWidget(m_status);
    layout->addWidget(new QLabel(tr("已发布的相册"), this));
    layout->addWidget(m_rolls, 1);
    layout->addWidget(m_unpublish);

    connect(m_publish, &QPushButton::clicked, this, [this] { isRunning() ? cancel() : publish(); });
    connect(m_unpublish, &QPushButton::clicked, this, &RollPanel::unpublishSelected);
    connect(m_accounts, &QPushButton::clicked, this, &RollPanel::showAccounts);
    listRolls();
    loadRemotes();
}

RollPanel::~RollPanel()
{
    cancel();
}

void RollPanel::loadRemotes()
{
    // Lumaro's own accounts, then the user's rclone config (`rclone listremotes` reads it: off the main
    // thread, so opening the window never waits).
    const QString typed = m_destination->currentText();
    m_destination->clear();
    m_destination->setEditText(typed);
    for (const rolls::StorageAccount& account : rolls::StorageAccounts::all())
        addDestination(account.name + QLatin1Char(':'));
    inBackground(
        this,
        [rclone = m_rclone] {
            return QString::fromUtf8(rclone.run({QStringLiteral("listremotes")}).output)
                .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        },
        [this](const QStringList& remotes) {
            for (const QString& remote : remotes)
                addDestination(remote.trimmed());
        });
}

void RollPanel::addDestination(const QString& remote)
{
    if (m_destination->findText(remote) < 0)
        m_destination->addItem(remote);
}

StorageAccountDialog* RollPanel::showAccounts()
{
    auto* dialog = new StorageAccountDialog(m_rclone, m_host.dialogParent());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &StorageAccountDialog::accountsChanged, this, &RollPanel::loadRemotes);
    dialog->open();
    return dialog;
}

void RollPanel::listRolls()
{
    m_rolls->clear();
    for (const rolls::PublishedRoll& roll : rolls::RollStore::all()) {
        auto* item = new QListWidgetItem(
            tr("%1 — %2 张, %3, %4").arg(roll.name).arg(roll.pictures).arg(sizeText(roll.bytes), roll.target),
            m_rolls);
        item->setData(Qt::UserRole, roll.target);
        item->setToolTip(roll.link.isEmpty() ? roll.folder : roll.link);
    }
    m_unpublish->setEnabled(m_rolls->count() > 0);
}

void RollPanel::publish()
{
    const auto folder = m_host.modeState().currentFolder();
    if (!folder) {
        m_status->setText(tr("请先打开一个文件夹"));
        return;
    }
    if (m_destination->currentText().trimmed().isEmpty()) {
        m_status->setText(tr("请先选择发布到哪里（rclone 远端:路径）"));
        return;
    }
    rolls::RollRequest request{*folder,
                               m_destination->currentText().trimmed(),
                               m_name->text().trimmed(),
                               {},
                               {m_originals->isChecked(), m_keepLocation->isChecked(), {}}};
    if (m_budget->value() > 0)
        request.budgetBytes = qint64(m_budget->value()) * 1'000'000;

    m_cancel = std::make_shared<std::atomic_bool>(false);
    m_publish->setText(tr("取消"));
    m_progress->setRange(0, 0);
    m_progress->show();
    m_status->setText(tr("正在准备: %1").arg(*folder));

    QPointer<RollPanel> self(this);
    const auto cancelled = m_cancel;
    const platform::Rclone rclone = m_rclone;
    QThreadPool::globalInstance()->start([self, cancelled, request, rclone] {
        QElapsedTimer sinceDraw;
        sinceDraw.start();
        const auto progress = [&](const rolls::RollProgress& step) {
            if (sinceDraw.elapsed() < 100 && step.done < step.total)
                return; // at most ten redraws a second
            sinceDraw.restart();
            QMetaObject::invokeMethod(
                qApp,
                [self, step] {
                    if (self && self->isRunning())
                        self->showProgress(step);
                },
                Qt::QueuedConnection);
        };
        // The accounts' secrets come from the keyring here, off the main thread, and only for this run.
        const rolls::PublishOutcome outcome =
            rolls::RollPublisher(rclone.with(rolls::StorageAccounts::environment(rclone)))
                .publish(request, progress, cancelled.get());
        QMetaObject::invokeMethod(
            qApp,
            [self, cancelled, outcome] {
                if (self && self->m_cancel == cancelled)
                    self->present(outcome);
            },
            Qt::QueuedConnection);
    });
}

void RollPanel::showProgress(const rolls::RollProgress& progress)
{
    // Bytes can pass an int's range; the bar shows thousandths.
    m_progress->setRange(0, 1000);
    m_progress->setValue(progress.total > 0 ? int(1000 * progress.done / progress.total) : 0);
    switch (progress.step) {
    case rolls::RollProgress::Step::preparing:
        m_status->setText(tr("正在准备预览: %1 / %2").arg(progress.done).arg(progress.total));
        break;
    case rolls::RollProgress::Step::sending:
        m_status->setText(tr("正在上传: %1 / %2").arg(sizeText(progress.done), sizeText(progress.total)));
        break;
    case rolls::RollProgress::Step::finishing:
        m_status->setText(tr("正在写入相册页面并清理已删除的图片…"));
        break;
    }
}

void RollPanel::cancel()
{
    if (m_cancel)
        *m_cancel = true;
    m_cancel.reset();
    m_publish->setText(tr("发布"));
    m_progress->hide();
}

void RollPanel::present(const rolls::PublishOutcome& outcome)
{
    cancel();
    QString text;
    switch (outcome.status) {
    case rolls::PublishStatus::published:
    case rolls::PublishStatus::partly:
        text = tr("✅ 已发布 %1 张到 %2").arg(outcome.roll.pictures).arg(outcome.roll.target);
        if (!outcome.roll.link.isEmpty())
            text += QStringLiteral("<br><a href=\"%1\">%1</a>").arg(outcome.roll.link.toHtmlEscaped());
        if (!outcome.failures.isEmpty())
            text += QStringLiteral("<br>") +
                    tr("⚠️ %1 张未能发布: %2")
                        .arg(outcome.failures.size())
                        .arg(outcome.failures.join(QStringLiteral("; ")).toHtmlEscaped());
        break;
    case rolls::PublishStatus::refused:
        text = tr("❌ 未发布，什么也没有上传: %1").arg(outcome.message.toHtmlEscaped());
        break;
    case rolls::PublishStatus::failed:
        text = tr("❌ 上传失败，线上相册保持原样: %1").arg(outcome.message.toHtmlEscaped());
        break;
    case rolls::PublishStatus::cancelled:
        text = tr("已取消");
        break;
    }
    m_status->setText(text);
    listRolls();
    Q_EMIT finished();
}

void RollPanel::unpublishSelected()
{
    const QListWidgetItem* item = m_rolls->currentItem();
    if (!item) {
        m_status->setText(tr("请先在列表中选择一个相册"));
        return;
    }
    const auto roll = rolls::RollStore::find(item->data(Qt::UserRole).toString());
    if (!roll)
        return listRolls();
    const auto answer = QMessageBox::question(m_host.dialogParent(), tr("取消发布"),
                                              tr("从 %1 删除相册 “%2”（%3 张）？本地图片不受影响。")
                                                  .arg(roll->target, roll->name)
                                                  .arg(roll->pictures));
    if (answer != QMessageBox::Yes)
        return;
    m_unpublish->setEnabled(false);
    m_status->setText(tr("正在删除线上相册: %1…").arg(roll->target));
    // The keyring and the store may take their time: off the main thread.
    inBackground(
        this,
        [rclone = m_rclone, roll = *roll] {
            QString error;
            const bool removed =
                rolls::RollPublisher(rclone.with(rolls::StorageAccounts::environment(rclone)))
                    .unpublish(roll, &error);
            return std::pair{removed, error};
        },
        [this, target = roll->target](const std::pair<bool, QString>& outcome) {
            m_status->setText(outcome.first ? tr("已删除线上相册: %1").arg(target)
                                            : tr("❌ 删除失败: %1").arg(outcome.second.toHtmlEscaped()));
            listRolls();
        });
}

} // namespace lumaro::app
