// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StorageAccountDialog.h"

#include "app/InBackground.h"
#include "rolls/StorageAccounts.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

namespace lumaro::app {

namespace {

struct Field
{
    const char* key; // rclone's option for the backend
    const char* label;
    const char* example;
};

struct Backend
{
    const char* type; // rclone's backend
    const char* title;
    QList<Field> fields;
    const char* secretLabel;
};

const QList<Backend>& backends()
{
    static const QList<Backend> all{
        {"webdav",
         "WebDAV（Nextcloud、ownCloud…）",
         {{"url", "地址", "https://cloud.example.com/remote.php/dav/files/ann"},
          {"vendor", "服务类型", "nextcloud / owncloud / other"},
          {"user", "用户名", ""}},
         "密码"},
        {"sftp",
         "SFTP",
         {{"host", "主机", "nas.local"}, {"port", "端口", "22"}, {"user", "用户名", ""}},
         "密码"},
        {"s3",
         "S3 兼容存储",
         {{"provider", "提供商", "AWS / Minio / Wasabi / Other"},
          {"endpoint", "端点", "https://s3.example.com"},
          {"region", "区域", ""},
          {"access_key_id", "Access Key ID", ""}},
         "Secret Access Key"},
        {"b2", "Backblaze B2", {{"account", "Key ID", ""}}, "Application Key"},
    };
    return all;
}

const Backend& backendOf(const QString& type)
{
    for (const Backend& backend : backends())
        if (type == QLatin1String(backend.type))
            return backend;
    return backends().constFirst();
}

} // namespace

StorageAccountDialog::StorageAccountDialog(platform::Rclone rclone, QWidget* parent)
    : QDialog(parent), m_rclone(std::move(rclone)), m_accounts(new QListWidget(this)),
      m_name(new QLineEdit(this)), m_type(new QComboBox(this)), m_form(new QFormLayout),
      m_secretLabel(new QLabel(this)), m_secret(new QLineEdit(this)),
      m_add(new QPushButton(tr("添加"), this)), m_remove(new QPushButton(tr("删除所选"), this)),
      m_check(new QPushButton(tr("检查连接"), this)), m_status(new QLabel(this))
{
    setWindowTitle(tr("存储账户"));
    m_name->setPlaceholderText(tr("字母、数字和 _，例如 nas 或 my_cloud"));
    for (const Backend& backend : backends())
        m_type->addItem(tr(backend.title), QString::fromLatin1(backend.type));
    m_secret->setEchoMode(QLineEdit::Password);
    m_status->setWordWrap(true);

    auto* form = new QFormLayout;
    form->addRow(tr("名称"), m_name);
    form->addRow(tr("类型"), m_type);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_check);
    buttons->addWidget(m_remove);
    buttons->addStretch();
    auto* close = new QDialogButtonBox(QDialogButtonBox::Close, this);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(tr("Lumaro 中的账户（rclone 配置里已有的远端可直接使用）"), this));
    layout->addWidget(m_accounts, 1);
    layout->addLayout(buttons);
    layout->addWidget(new QLabel(tr("新账户（密码只保存在桌面钥匙环中）"), this));
    layout->addLayout(form);
    layout->addLayout(m_form);
    layout->addWidget(m_add);
    layout->addWidget(m_status);
    layout->addWidget(close);

    connect(m_type, &QComboBox::currentIndexChanged, this, &StorageAccountDialog::showFieldsOfType);
    connect(m_add, &QPushButton::clicked, this, &StorageAccountDialog::addAccount);
    connect(m_remove, &QPushButton::clicked, this, &StorageAccountDialog::removeSelected);
    connect(m_check, &QPushButton::clicked, this, &StorageAccountDialog::checkSelected);
    connect(close, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_accounts, &QListWidget::currentRowChanged, this, [this] { setBusy(m_busy); });
    showFieldsOfType();
    listAccounts();
}

void StorageAccountDialog::showFieldsOfType()
{
    // The secret's row outlives a change of type: taken out (removeRow would delete it), put back last.
    if (m_form->indexOf(m_secret) >= 0)
        m_form->takeRow(m_secret);
    while (m_form->rowCount() > 0)
        m_form->removeRow(0);
    m_fields.clear();
    const Backend& backend = backendOf(m_type->currentData().toString());
    for (const Field& field : backend.fields) {
        auto* edit = new QLineEdit(this);
        edit->setPlaceholderText(QString::fromUtf8(field.example));
        m_form->addRow(tr(field.label), edit);
        m_fields.insert(QString::fromLatin1(field.key), edit);
    }
    m_secretLabel->setText(tr(backend.secretLabel));
    m_form->addRow(m_secretLabel, m_secret);
}

void StorageAccountDialog::listAccounts()
{
    m_accounts->clear();
    for (const rolls::StorageAccount& account : rolls::StorageAccounts::all()) {
        QStringList said;
        for (auto it = account.options.cbegin(); it != account.options.cend(); ++it)
            said << it.key() + QLatin1Char('=') + it.value();
        auto* item = new QListWidgetItem(
            QStringLiteral("%1:  (%2)  %3").arg(account.name, account.type, said.join(QLatin1Char(' '))),
            m_accounts);
        item->setData(Qt::UserRole, account.name);
    }
    setBusy(m_busy);
}

QString StorageAccountDialog::selectedName() const
{
    const QListWidgetItem* item = m_accounts->currentItem();
    return item ? item->data(Qt::UserRole).toString() : QString();
}

void StorageAccountDialog::setBusy(bool busy, const QString& saying)
{
    m_busy = busy;
    m_add->setEnabled(!busy);
    m_remove->setEnabled(!busy && m_accounts->currentItem());
    m_check->setEnabled(!busy && m_accounts->currentItem());
    if (!saying.isEmpty())
        m_status->setText(saying);
}

void StorageAccountDialog::addAccount()
{
    if (m_busy)
        return;
    rolls::StorageAccount account{m_name->text().trimmed(), m_type->currentData().toString(), {}};
    for (auto it = m_fields.cbegin(); it != m_fields.cend(); ++it)
        if (const QString value = it.value()->text().trimmed(); !value.isEmpty())
            account.options.insert(it.key(), value);
    const QString secret = m_secret->text();
    // The keyring may take a moment (or ask to be unlocked): off the main thread.
    changeInBackground(
        tr("正在保存 %1…").arg(account.name),
        [account, secret] {
            Done done;
            done.ok = rolls::StorageAccounts::add(account, secret, &done.message);
            return done;
        },
        [this, name = account.name](const Done& done) {
            if (!done.ok)
                return tr("❌ 未保存: %1").arg(done.message);
            m_name->clear();
            m_secret->clear();
            for (QLineEdit* edit : std::as_const(m_fields))
                edit->clear();
            return tr("已添加账户 %1，可发布到 %1:路径").arg(name);
        });
}

void StorageAccountDialog::removeSelected()
{
    const QString name = selectedName();
    if (m_busy || name.isEmpty())
        return;
    // Asked without a nested event loop: the dialog stays live, and the answer comes back here.
    auto* ask = new QMessageBox(QMessageBox::Question, tr("删除账户"),
                                tr("删除账户 %1 及其保存在钥匙环中的密码？已发布的相册不受影响。").arg(name),
                                QMessageBox::Yes | QMessageBox::No, this);
    ask->setAttribute(Qt::WA_DeleteOnClose);
    connect(ask->button(QMessageBox::Yes), &QAbstractButton::clicked, this, [this, name] { remove(name); });
    ask->open();
}

void StorageAccountDialog::remove(const QString& name)
{
    changeInBackground(
        tr("正在删除 %1…").arg(name),
        [name] {
            Done done;
            done.ok = rolls::StorageAccounts::remove(name, &done.message);
            return done;
        },
        [name](const Done& done) {
            return done.ok ? tr("已删除账户 %1").arg(name) : tr("❌ 未删除: %1").arg(done.message);
        });
}

void StorageAccountDialog::changeInBackground(const QString& saying, std::function<Done()> work,
                                              std::function<QString(const Done&)> outcome)
{
    setBusy(true, saying);
    inBackground(this, std::move(work), [this, outcome = std::move(outcome)](const Done& done) {
        const QString said = outcome(done);
        listAccounts();
        setBusy(false, said);
        if (done.ok)
            Q_EMIT accountsChanged();
        Q_EMIT idle();
    });
}

void StorageAccountDialog::checkSelected()
{
    const QString name = selectedName();
    if (m_busy || name.isEmpty())
        return;
    setBusy(true, tr("正在连接 %1…").arg(name));
    inBackground(
        this,
        [rclone = m_rclone, name] {
            QStringList problems;
            const platform::Rclone signedIn =
                rclone.with(rolls::StorageAccounts::environment(rclone, &problems));
            const platform::RcloneResult listed =
                signedIn.run({QStringLiteral("lsd"), name + QLatin1Char(':'),
                              QStringLiteral("--low-level-retries"), QStringLiteral("1")});
            Done done{listed.ok(), listed.ok() ? QString() : listed.reason()};
            if (!problems.isEmpty())
                done.message += QStringLiteral(" (") + problems.join(QStringLiteral("; ")) + QLatin1Char(')');
            return done;
        },
        [this, name](const Done& done) {
            setBusy(false, done.ok ? tr("✅ %1 可以连接").arg(name)
                                   : tr("❌ %1 无法连接: %2").arg(name, done.message));
            Q_EMIT idle();
        });
}

} // namespace lumaro::app
