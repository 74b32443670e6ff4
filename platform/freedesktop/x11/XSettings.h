// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "X11ManagerWatch.h"

#include <QAbstractNativeEventFilter>
#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QVariant>

#include <cstdint>

namespace lapsa {

using XSettingsValues = QHash<QByteArray, QVariant>;

/// The integers and texts of `_XSETTINGS_SETTINGS` (XSETTINGS specification 0.5); what precedes the damage if the
/// property is damaged.
[[nodiscard]] XSettingsValues xSettingsOf(const QByteArray& property);

/// The settings of X11 desktops whose settings daemon shares them by XSETTINGS, live. Empty on every other platform.
class XSettings final : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    XSettings();
    ~XSettings() override;

    [[nodiscard]] QVariant value(const QByteArray& name) const { return m_values.value(name); }

signals:
    void changed();

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    void findDaemon();
    void read();

    X11ManagerWatch m_daemonWatch;
    XSettingsValues m_values;
    std::uint32_t m_daemon = 0;
    std::uint32_t m_property = 0;
};

} // namespace lapsa
