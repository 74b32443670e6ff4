// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusServiceWatcher>
#include <QObject>

#include <optional>

namespace lapsa {

/// Whether KWin composites windows, live. On X11, it stays the compositing manager when its drawing fails, and for two
/// seconds when it is suspended.
class KWinCompositing final : public QObject
{
    Q_OBJECT

public:
    KWinCompositing();

    /// Nothing until KWin has answered, and without KWin.
    [[nodiscard]] std::optional<bool> active() const { return m_active; }

signals:
    void activeChanged();

private slots:
    void compositingToggled(bool active);

private:
    void ask();
    void setActive(std::optional<bool> active);

    QDBusServiceWatcher m_watcher;
    std::optional<bool> m_active;
    /// Counts the questions, so that outdated answers are ignored.
    int m_question = 0;
};

} // namespace lapsa
