// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CardImportDialog.h"

#include "cards/CardImportService.h"
#include "cards/CardReco.h"
#include "cards/ImportLocation.h"
#include "platform/QSettingsStore.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>

namespace lumaro::app {

namespace {

QString recognitionText(const QString& mountPath)
{
    const auto recognition = cards::CardReco::recognize(mountPath);
    if (!recognition) {
        const QString camera = cards::CardReco::cameraMakeModel(mountPath);
        return QStringLiteral("未识别的存储卡：") + mountPath +
               (camera.isEmpty() ? QString() : QStringLiteral("\n拍摄设备：") + camera);
    }
    const cards::DigitalCardStats stats = cards::CardReco::statistics(mountPath, recognition->cameraType);
    QString text =
        cards::familyName(recognition->cameraType) + QStringLiteral("\n") + recognition->matchInformation;
    if (!stats.cameraMakeModel.isEmpty())
        text += QStringLiteral("\n拍摄设备：") + stats.cameraMakeModel;
    text += QStringLiteral("\nJPG: %1").arg(stats.jpgCount);
    if (!stats.rawFormat.isEmpty())
        text += QStringLiteral(", %1: %2").arg(stats.rawFormat).arg(stats.rawCount);
    text += QStringLiteral(", %1: %2").arg(stats.videoFormat).arg(stats.videoCount);
    return text;
}

} // namespace

CardImportDialog::CardImportDialog(const QString& mountPath, QWidget* parent, const QString& storePath)
    : QDialog(parent), m_service(new cards::CardImportService(this, storePath)),
      m_location(cards::ImportLocation(platform::QSettingsStore::shared()).path()),
      m_recognition(new QLabel(QStringLiteral("正在识别存储卡…"), this)),
      m_files(new QLabel(QStringLiteral("正在扫描…"), this)),
      m_everything(new QCheckBox(QStringLiteral("全部重新导入（包括以前导入过的文件）"), this)),
      m_locationLabel(new QLabel(this)), m_importButton(new QPushButton(QStringLiteral("导入"), this)),
      m_progress(new QProgressBar(this)), m_status(new QLabel(this))
{
    setWindowTitle(QStringLiteral("导入存储卡"));
    setMinimumWidth(fontMetrics().averageCharWidth() * 60); // long paths wrap, short texts do not squeeze it
    auto* layout = new QVBoxLayout(this);
    m_recognition->setObjectName(QStringLiteral("recognition"));
    m_files->setObjectName(QStringLiteral("files"));
    m_importButton->setObjectName(QStringLiteral("import"));
    m_everything->setObjectName(QStringLiteral("everything"));
    m_recognition->setWordWrap(true);
    m_files->setWordWrap(true);
    m_status->setWordWrap(true);
    m_status->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(m_recognition);
    layout->addWidget(m_files);
    layout->addWidget(m_everything);
    m_everything->setVisible(false);
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
        if (!m_imported && m_service->startImport(m_data, m_location, m_everything->isChecked()))
            refresh();
    });
    connect(m_everything, &QCheckBox::toggled, this, [this] {
        m_files->setText(cards::CardImportService::describe(chosenFiles()));
        refresh();
    });
    connect(m_service, &cards::CardImportService::finished, this, &CardImportDialog::showOutcome);
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

const cards::NewFileInfo& CardImportDialog::chosenFiles() const
{
    return m_everything->isChecked() ? m_data.allFiles : m_data.newFiles;
}

void CardImportDialog::showScan(const cards::ImportData& data)
{
    m_data = data;
    m_scanned = true;
    m_files->setText(cards::CardImportService::describe(chosenFiles()));
    QStringList notes;
    if (data.lastImport.isValid())
        notes << QStringLiteral("这张存储卡上次导入于 %1，其中 %2 个文件已导入过")
                     .arg(QLocale().toString(data.lastImport, QLocale::ShortFormat))
                     .arg(data.newFiles.alreadyImportedCount);
    if (!data.resumeRoll.isEmpty())
        notes << QStringLiteral("上次导入被中断，将继续导入到：") + data.resumeRoll;
    if (!data.memoryError.isEmpty())
        notes << QStringLiteral("无法读取以前的导入记录（%1），卡上的文件都会导入")
                     .arg(data.memoryError);
    if (!data.allFiles.skippedEntries.isEmpty())
        notes << QStringLiteral("已跳过隐藏或系统项 %1 个（留在卡上）")
                     .arg(data.allFiles.skippedEntries.size());
    if (!notes.isEmpty())
        m_files->setText(m_files->text() + QStringLiteral("\n") + notes.join(QLatin1Char('\n')));
    m_everything->setVisible(data.newFiles.alreadyImportedCount > 0);
    refresh();
}

void CardImportDialog::showOutcome(const cards::ImportOutcome& outcome)
{
    m_imported = outcome.error.isEmpty();
    QString text = m_service->importStatus();
    if (outcome.failedCount > 0) {
        text += QStringLiteral("\n复制失败 %1 个：").arg(outcome.failedCount);
        for (const cards::FileFailure& failure : outcome.failures.mid(0, 10))
            text += QStringLiteral("\n") + QFileInfo(failure.source).fileName() + QStringLiteral("：") +
                    failure.error;
    }
    refresh();
    m_status->setText(text);
    adjustSize();
}

void CardImportDialog::chooseLocation()
{
    const QString folder =
        QFileDialog::getExistingDirectory(this, QStringLiteral("选择导入位置："), m_location);
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
    m_importButton->setEnabled(m_scanned && !importing && !m_imported && !m_location.isEmpty() &&
                               !chosenFiles().isEmpty());
    m_importButton->setText(m_imported ? QStringLiteral("已导入") : QStringLiteral("导入"));
    m_everything->setEnabled(!importing && !m_imported);
    m_progress->setVisible(importing || m_service->importProgress() > 0);
    m_progress->setValue(int(m_service->importProgress() * 1000));
    if (!m_imported)
        m_status->setText(m_service->importStatus());
    // The texts change length as the scan and the copy go on: the dialog follows them (not at every step of
    // the bar).
    if (!importing)
        adjustSize();
}

void CardImportDialog::reject()
{
    m_service->cancel();
    QDialog::reject();
}

} // namespace lumaro::app
