// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/KeyBindingRow.h"

#include "browse/hotkeys/HotkeyManager.h"
#include "browse/hotkeys/ViewerHotkeys.h"
#include "platform/Log.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>

namespace lumaro::app {

namespace {
const QString kEditor = QStringLiteral("HotkeyEditorNew");
}

KeyRecorderButton::KeyRecorderButton(QWidget* parent) : QPushButton(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setMinimumWidth(150);
    connect(this, &QPushButton::clicked, this, [this] {
        platform::Log::line(kEditor, QStringLiteral("点击事件，设置焦点"));
        setFocus(Qt::MouseFocusReason);
        m_listener.clearCapturedKey();
        m_listener.startListening();
    });
    connect(&m_listener, &browse::KeyListener::listeningChanged, this, &KeyRecorderButton::refresh);
    connect(&m_listener, &browse::KeyListener::capturedKeyChanged, this, [this] {
        if (const auto& key = m_listener.capturedKey())
            platform::Log::line(kEditor, QStringLiteral("从KeyListener接收到按键: ") + key->displayText());
        refresh();
    });
    refresh();
}

void KeyRecorderButton::reset()
{
    m_listener.stopListening();
    m_listener.clearCapturedKey();
    refresh();
}

void KeyRecorderButton::refresh()
{
    if (m_listener.isListening() || !m_listener.capturedKey())
        setText(m_listener.promptText());
    else
        setText(m_listener.capturedKey()->displayText());
}

void KeyRecorderButton::keyPressEvent(QKeyEvent* event)
{
    if (!m_listener.isListening()) {
        QPushButton::keyPressEvent(event);
        return;
    }
    platform::Log::line(kEditor, QStringLiteral("收到按键事件: ") + event->text() +
                                     QStringLiteral(" key=0x") + QString::number(event->key(), 16));
    if (m_listener.capture(event->key(), event->modifiers())) {
        platform::Log::line(kEditor,
                            QStringLiteral("捕获到按键: ") + m_listener.capturedKey()->displayText());
        m_listener.stopListening();
    }
    event->accept();
}

bool KeyRecorderButton::focusNextPrevChild(bool next)
{
    if (m_listener.isListening())
        return false; // QWidget::event then hands the Tab to keyPressEvent
    return QPushButton::focusNextPrevChild(next);
}

void KeyRecorderButton::focusOutEvent(QFocusEvent* event)
{
    if (m_listener.isListening()) {
        platform::Log::line(kEditor, QStringLiteral("窗口失去焦点"));
        m_listener.stopListening();
    }
    QPushButton::focusOutEvent(event);
}

KeyBindingRow::KeyBindingRow(browse::HotkeyAction action, browse::HotkeyManager& manager, QWidget* parent)
    : KeyBindingRow(
          Binding{[action, &manager] { return manager.hotkey(action); },
                  [action, &manager](const browse::Hotkey& hotkey) -> std::optional<QString> {
                      const auto owner = manager.action(hotkey);
                      if (!owner || *owner == action)
                          return std::nullopt;
                      return tr("与“%1”冲突").arg(browse::displayName(*owner));
                  },
                  [action, &manager](const browse::Hotkey& hotkey) { manager.setHotkey(action, hotkey); }},
          browse::displayName(action), browse::actionDescription(action), browse::symbolColor(action), parent)
{
    connect(&manager, &browse::HotkeyManager::hotkeysChanged, this, &KeyBindingRow::refresh);
}

KeyBindingRow::KeyBindingRow(browse::ViewerAction action, browse::ViewerHotkeys& keys, QWidget* parent)
    : KeyBindingRow(
          Binding{[action, &keys] { return keys.hotkey(action); },
                  [action, &keys](const browse::Hotkey& hotkey) { return keys.clash(action, hotkey); },
                  [action, &keys](const browse::Hotkey& hotkey) { keys.set(action, hotkey); }},
          browse::displayName(action), browse::displayName(action), QColor(), parent)
{
    connect(&keys, &browse::ViewerHotkeys::hotkeysChanged, this, &KeyBindingRow::refresh);
}

KeyBindingRow::KeyBindingRow(Binding binding, const QString& name, const QString& description,
                             const QColor& colour, QWidget* parent)
    : QWidget(parent), m_bindingStore(std::move(binding)), m_binding(new QLabel(this)),
      m_clash(new QLabel(this)), m_recorder(new KeyRecorderButton(this)),
      m_save(new QPushButton(tr("保存"), this)), m_cancel(new QPushButton(tr("取消"), this))
{
    auto* dot = new QLabel(this);
    dot->setText(colour.isValid() ? QStringLiteral("●") : QStringLiteral("◆"));
    if (colour.isValid())
        dot->setStyleSheet(QStringLiteral("color: %1;").arg(colour.name()));
    auto* nameLabel = new QLabel(name, this);
    nameLabel->setToolTip(description);
    nameLabel->setMinimumWidth(110);
    auto* descriptionLabel = new QLabel(description == name ? QString() : description, this);
    descriptionLabel->setStyleSheet(QStringLiteral("color: gray;"));
    m_binding->setMinimumWidth(90);
    m_clash->setStyleSheet(QStringLiteral("color: #d03030;"));
    m_clash->hide();
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 2, 4, 2);
    layout->addWidget(dot);
    layout->addWidget(nameLabel);
    layout->addWidget(descriptionLabel, 1);
    layout->addWidget(m_binding);
    layout->addWidget(m_clash);
    layout->addWidget(m_recorder);
    layout->addWidget(m_save);
    layout->addWidget(m_cancel);
    connect(m_save, &QPushButton::clicked, this, &KeyBindingRow::save);
    connect(m_cancel, &QPushButton::clicked, this, &KeyBindingRow::cancel);
    connect(&m_recorder->listener(), &browse::KeyListener::capturedKeyChanged, this, &KeyBindingRow::refresh);
    connect(&m_recorder->listener(), &browse::KeyListener::listeningChanged, this, &KeyBindingRow::refresh);
    refresh();
}

QString KeyBindingRow::bindingText() const
{
    return m_binding->text();
}

QString KeyBindingRow::clashText() const
{
    return m_clash->text();
}

void KeyBindingRow::save()
{
    const auto& captured = m_recorder->listener().capturedKey();
    if (!captured || !clashText().isEmpty())
        return;
    m_bindingStore.store(*captured);
    m_recorder->reset();
    refresh();
}

void KeyBindingRow::cancel()
{
    m_recorder->reset();
    refresh();
}

void KeyBindingRow::refresh()
{
    m_binding->setText(m_bindingStore.current().displayText());
    const auto& captured = m_recorder->listener().capturedKey();
    const auto clash = captured ? m_bindingStore.clash(*captured) : std::nullopt;
    const bool clashes = clash.has_value();
    m_clash->setText(clash.value_or(QString()));
    m_clash->setVisible(clashes);
    const bool pending = captured.has_value();
    m_save->setEnabled(pending && !clashes);
    m_cancel->setEnabled(pending || m_recorder->listener().isListening());
}

} // namespace lumaro::app
