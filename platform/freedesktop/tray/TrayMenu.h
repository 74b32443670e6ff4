// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "StatusItem.h"

#include <QMenu>

namespace lapsa {

/// A status item's menu as our own window, for trays that do not show it themselves. Its shortcuts work while it is
/// open.
class TrayMenu final : public QMenu
{
    Q_OBJECT

public:
    explicit TrayMenu(const QList<StatusMenuEntry>& entries);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace lapsa
