// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QVariant>

class QDBusMessage;
class QDBusVariant;

namespace lapsa {

/// A desktop setting as its settings portal (`org.freedesktop.portal.Settings`) reports it, live.
class PortalSetting final : public QObject
{
    Q_OBJECT

public:
    PortalSetting(QString group, QString key);

    /// Invalid until the portal has answered, without a portal, and if the portal does not know the setting.
    [[nodiscard]] const QVariant& value() const { return m_value; }

signals:
    void valueChanged();

private slots:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void ownerChanged(const QString& newOwner);
    void ask(const QString& method);
    void answer(const QDBusMessage& reply, const QString& method);
    void setValue(QVariant value);

    QString m_group;
    QString m_key;
    QDBusServiceWatcher m_watcher;
    /// Counts the questions, so that outdated answers are ignored.
    int m_question = 0;
    QVariant m_value;
};

} // namespace lapsa
