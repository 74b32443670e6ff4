// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractNativeEventFilter>
#include <QByteArray>
#include <QObject>

#include <cstdint>

namespace lapsa {

/// Reports when the owner of a manager selection of the screen named by DISPLAY changes, for example "_NET_WM_CM_S" for
/// the compositing manager. Uses the toolkit's connection; reports nothing without one.
class X11ManagerWatch final : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    explicit X11ManagerWatch(const QByteArray& selection);
    ~X11ManagerWatch() override;

signals:
    void ownerChanged();

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

    std::uint32_t m_selection = 0;
    std::uint8_t m_event = 0;
};

} // namespace lapsa
