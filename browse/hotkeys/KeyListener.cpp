// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/hotkeys/KeyListener.h"

#include "platform/KeyNames.h"
#include "platform/Log.h"

namespace lumaro::browse {

using platform::Log;

namespace {
const QString kTag = QStringLiteral("KeyListener");
}

void KeyListener::startListening()
{
    Log::line(kTag, QStringLiteral("开始监听按键"));
    if (m_isListening)
        return;
    m_isListening = true;
    Q_EMIT listeningChanged();
}

void KeyListener::stopListening()
{
    if (!m_isListening)
        return;
    m_isListening = false;
    Q_EMIT listeningChanged();
}

bool KeyListener::capture(int qtKey, Qt::KeyboardModifiers modifiers, const QString& eventDescription)
{
    if (!m_isListening)
        return false;
    const QString description = eventDescription.isEmpty()
        ? QStringLiteral("key=0x%1 modifiers=0x%2").arg(qtKey, 0, 16).arg(int(modifiers), 0, 16)
        : eventDescription;
    Log::line(kTag, QStringLiteral("捕获到QKeyEvent: ") + description);
    const auto name = platform::keyName(qtKey);
    if (!name) {
        Log::line(kTag, QStringLiteral("未知的keyCode: 0x%1").arg(qtKey, 0, 16));
        return false;
    }
    m_capturedKey = Hotkey(*name, modifiers);
    Log::line(kTag, QStringLiteral("转换后的热键: ") + m_capturedKey->displayText());
    Q_EMIT capturedKeyChanged();
    return true;
}

void KeyListener::clearCapturedKey()
{
    if (!m_capturedKey)
        return;
    m_capturedKey.reset();
    Q_EMIT capturedKeyChanged();
}

} // namespace lumaro::browse
