// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaFileTypeRule.h"
#include "SettingBinding.h"

#include <QWidget>

class QLineEdit;

namespace lapsa {

class DurationEditor;
class PushButton;
class Toggle;

/// One file type rule as a card. It finds the rule by its id, so it may outlive the rule.
class FileTypeRuleView final : public QWidget
{
    Q_OBJECT

public:
    FileTypeRuleView(LapsaStore& store, const QUuid& id, QWidget* parent = nullptr);

    [[nodiscard]] const QUuid& id() const { return m_id; }

    /// Shows the rule as it is now. It does not disturb a text that is being typed.
    void refresh();
    /// Puts the focus where a new rule is filled in.
    void focusExtensions();

private:
    void makeControls(QWidget* stack);

    LapsaStore& m_store;
    QUuid m_id;
    Binding<bool> m_enabled;
    Binding<QString> m_extensionsCSV;
    Toggle* m_toggle = nullptr;
    QLineEdit* m_extensions = nullptr;
    DurationEditor* m_lifespan = nullptr;
    PushButton* m_remove = nullptr;
};

} // namespace lapsa
