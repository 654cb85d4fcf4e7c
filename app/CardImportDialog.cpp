// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CardImportDialog.h"

#include "cards/CardImportService.h"
#include "cards/CardReco.h"
#include "cards/ImportLocation.h"
#include "platform/QSettingsStore.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <QFutureWatcher>
#include <QtConcurrent/QtConcurrentRun>

namespace lumaro::app {

namespace {

QString recognitionText(const QString& mountPath)
{
    const auto recognition = cards::CardReco::recognize(mountPath);
    if (!recognition)
        return QStringLiteral("未识别的存储卡：") + mountPath;
    const cards::DigitalCardStats stats = cards::CardReco::statistics(mountPath, recognition->cameraType);
    QString text = cards::familyName(recognition->cameraType) + QStringLiteral("\n") + recognition->matchInformation;
    if (!stats.cameraMakeModel.isEmpty())
        text += QStringLiteral("\n") + stats.cameraMakeModel;
    text += QStringLiteral("\nJPG: %1").arg(stats.jpgCount);
    if (!stats.rawFormat.isEmpty())
        text += QStringLiteral(", %1: %2").arg(stats.rawFormat).arg(stats.rawCount);
    text += QStringLiteral(", %1: %2").arg(stats.videoFormat).arg(stats.videoCount);
    return text;
}

} // namespace

CardImportDialog::CardImportDialog(const QString& mountPath, QWidget* parent)
    : QDialog(parent)
    , m_service(new cards::CardImportService(this))
    , m_location(cards::ImportLocation(platform::QSettingsStore::shared()).path())
    , m_recognition(new QLabel(QStringLiteral("正在识别存储卡…"), this))
    , m_files(new QLabel(QStringLiteral("正在扫描…"), this))
    , m_locationLabel(new QLabel(this))
    , m_importButton(new QPushButton(QStringLiteral("导入"), this))
    , m_progress(new QProgressBar(this))
    , m_status(new QLabel(this))
{
    setWindowTitle(QStringLiteral("导入存储卡"));
    auto* layout = new QVBoxLayout(this);
    m_recognition->setWordWrap(true);
    m_files->setWordWrap(true);
    m_status->setWordWrap(true);
    m_status->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(m_recognition);
    layout->addWidget(m_files);
    layout->addWidget(new QLabel(QStringLiteral("选择导入位置："), this));
    auto* locationRow = new QHBoxLayout;
    auto* change = new QPushButton(QStringLiteral("更改…"), this);
    locationRow->addWidget(m_locationLabel, 1);
    locationRow->addWidget(change);
    layout->addLayout(locationRow);
    m_progress->setRange(0, 1000);
    layout->addWidget(m_progress);
    layout->addWidget(m_status);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->addButton(m_importButton, QDialogButtonBox::AcceptRole);
    layout->addWidget(buttons);

    connect(change, &QPushButton::clicked, this, &CardImportDialog::chooseLocation);
    connect(buttons, &QDialogButtonBox::rejected, this, &CardImportDialog::reject);
    connect(m_importButton, &QPushButton::clicked, this, [this] {
        if (m_service->startImport(m_data, m_location))
            refresh();
    });
    connect(m_service, &cards::CardImportService::changed, this, &CardImportDialog::refresh);
    connect(m_service, &cards::CardImportService::scanned, this, &CardImportDialog::showScan);

    // Recognition reads the card (and a picture's EXIF): off the main thread like the scan.
    // The watcher dies with the dialog, so a late result is dropped rather than delivered to a closed dialog.
    auto* watcher = new QFutureWatcher<QString>(this);
    connect(watcher, &QFutureWatcher<QString>::finished, this,
            [this, watcher] { m_recognition->setText(watcher->result()); });
    watcher->setFuture(QtConcurrent::run([mountPath] { return recognitionText(mountPath); }));
    m_service->scan(mountPath);
    refresh();
}

void CardImportDialog::showScan(const cards::ImportData& data)
{
    m_data = data;
    m_scanned = true;
    m_files->setText(cards::CardImportService::describe(data.newFiles));
    refresh();
}

void CardImportDialog::chooseLocation()
{
    const QString folder = QFileDialog::getExistingDirectory(this, QStringLiteral("选择导入位置："), m_location);
    if (folder.isEmpty())
        return;
    m_location = folder;
    cards::ImportLocation(platform::QSettingsStore::shared()).setPath(folder);
    refresh();
}

void CardImportDialog::refresh()
{
    m_locationLabel->setText(m_location.isEmpty() ? QStringLiteral("（未设置）") : m_location);
    const bool importing = m_service->isImporting();
    m_importButton->setEnabled(m_scanned && !importing && !m_location.isEmpty() && !m_data.newFiles.isEmpty());
    m_progress->setVisible(importing || m_service->importProgress() > 0);
    m_progress->setValue(int(m_service->importProgress() * 1000));
    m_status->setText(m_service->importStatus());
}

void CardImportDialog::reject()
{
    m_service->cancel();
    QDialog::reject();
}

} // namespace lumaro::app
