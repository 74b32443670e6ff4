// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaRecoveryItem.h"
#include "RecoveryWork.h"

#include <QList>
#include <QString>

/// What the Recovery window says after something was done.
namespace lapsa::recoveryMessages {

struct Message
{
    /// Empty if there is nothing to say.
    QString text;
    /// Whether something was not done.
    bool failed = false;

    friend bool operator==(const Message&, const Message&) = default;
};

/// "report.zip is back in ~/Downloads.", with its name if that is another one now; else one sentence why it is not.
/// `asked` are the records, in any order.
[[nodiscard]] Message putBack(const QList<LapsaRecoveryItem>& asked, const QList<RecoveryResult>& results);

/// Why something was not deleted. Nothing to say if all went well.
[[nodiscard]] Message deleted(const QList<LapsaRecoveryItem>& asked, const QList<RecoveryResult>& results);

} // namespace lapsa::recoveryMessages
