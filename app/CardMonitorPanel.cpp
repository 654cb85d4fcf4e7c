// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CardMonitorPanel.h"

#include "app/CardImportDialog.h"
#include "app/ToolHost.h"
#include "cards/CardReco.h"
#include "platform/volumes/RemovableVolumeMonitor.h"
#include "platform/volumes/UDisksMountEvents.h"

#include <QFileDialog>
#include <QFutureWatcher>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>

#include <optional>

namespace lumaro::app {

CardMonitorPanel::CardMonitorPanel(ToolHost& host, QWidget* parent)
    : QWidget(parent), m_host(host), m_monitor(new platform::RemovableVolumeMonitor(
                                         platform::RemovableVolumeMonitor::systemRemovableVolumes(), this)),
      m_cards(new QListWidget(this)), m_importButton(new QPushButton(QStringLiteral("导入…"), this))
{
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("存储卡"), this));
    layout->addWidget(m_cards, 1);
    auto* buttons = new QHBoxLayout;
    auto* other = new QPushButton(QStringLiteral("从文件夹导入…"), this);
    buttons->addWidget(m_importButton);
    buttons->addWidget(other);
    layout->addLayout(buttons);
    m_importButton->setEnabled(false);

    connect(m_cards, &QListWidget::currentRowChanged, this,
            [this](int row) { m_importButton->setEnabled(row >= 0); });
    connect(m_cards, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { openImport(item->data(Qt::UserRole).toString()); });
    connect(m_importButton, &QPushButton::clicked, this, [this] {
        if (QListWidgetItem* item = m_cards->currentItem())
            openImport(item->data(Qt::UserRole).toString());
    });
    connect(other, &QPushButton::clicked, this, [this] {
        const QString folder =
            QFileDialog::getExistingDirectory(m_host.dialogParent(), QStringLiteral("选择存储卡"));
        if (!folder.isEmpty())
            openImport(folder);
    });
    connect(m_monitor, &platform::RemovableVolumeMonitor::volumeMounted, this,
            [this](const platform::MountedVolume& volume) { addVolume(volume, true); });
    connect(m_monitor, &platform::RemovableVolumeMonitor::volumeUnmounted, this,
            &CardMonitorPanel::removeVolume);
    m_monitor->startWithEvents(new platform::UDisksMountEvents(m_monitor));
    for (const platform::MountedVolume& volume : m_monitor->volumes())
        addVolume(volume, false);
}

void CardMonitorPanel::addVolume(const platform::MountedVolume& volume, bool offer)
{
    auto* item = new QListWidgetItem(volume.name + QStringLiteral("  ·  识别中…"), m_cards);
    item->setData(Qt::UserRole, volume.rootPath);
    item->setToolTip(volume.rootPath);
    const QString root = volume.rootPath;
    const QString name = volume.name;
    // A watcher owned by the panel: when the panel goes first, the watcher goes with it and the late result
    // is simply not delivered (a continuation with a context object asserts in Qt 6.4 when the context dies
    // first).
    using Recognition = std::optional<cards::CardRecognition>;
    auto* watcher = new QFutureWatcher<Recognition>(this);
    connect(watcher, &QFutureWatcher<Recognition>::finished, this, [this, watcher, root, name, offer] {
        const Recognition recognition = watcher->result();
        watcher->deleteLater();
        for (int row = 0; row < m_cards->count(); ++row) {
            QListWidgetItem* item = m_cards->item(row);
            if (item->data(Qt::UserRole).toString() != root)
                continue;
            item->setText(
                name + QStringLiteral("  ·  ") +
                (recognition ? cards::familyName(recognition->cameraType) : QStringLiteral("未识别")));
            if (recognition)
                item->setToolTip(recognition->matchInformation);
        }
        if (offer && recognition)
            openImport(root);
    });
    watcher->setFuture(QtConcurrent::run([root] { return cards::CardReco::recognize(root); }));
}

void CardMonitorPanel::removeVolume(const QString& rootPath)
{
    for (int row = m_cards->count() - 1; row >= 0; --row) {
        if (m_cards->item(row)->data(Qt::UserRole).toString() == rootPath)
            delete m_cards->takeItem(row);
    }
}

void CardMonitorPanel::openImport(const QString& mountPath)
{
    auto* dialog = new CardImportDialog(mountPath, m_host.dialogParent());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->show();
}

} // namespace lumaro::app
