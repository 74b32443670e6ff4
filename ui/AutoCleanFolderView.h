// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaAutoCleanFolderRule.h"
#include "SettingBinding.h"

#include <QWidget>

namespace lapsa {

class DurationEditor;
class Toggle;

/// One watched folder as a card, bound to its rule by its id: safe to be there when the rule is gone.
class AutoCleanFolderView final : public QWidget
{
    Q_OBJECT

public:
    AutoCleanFolderView(LapsaStore& store, const QUuid& id, QWidget* parent = nullptr);

    [[nodiscard]] const QUuid& id() const { return m_id; }

    /// Shows the folder as its rule is now.
    void refresh();

private:
    struct BoundToggle
    {
        Toggle* toggle = nullptr;
        SettingBinding<bool> setting;
    };

    void makeControls(QWidget* stack);
    [[nodiscard]] Toggle* makeToggle(const QString& text, bool LapsaAutoCleanFolderRule::*field, QWidget* stack);

    LapsaStore& m_store;
    QUuid m_id;
    QList<BoundToggle> m_toggles;
    Toggle* m_enabled = nullptr;
    DurationEditor* m_lifespan = nullptr;
};

} // namespace lapsa
