// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaAutoCleanFolderRule.h"
#include "SettingBinding.h"

#include <QStringList>
#include <QWidget>

#include <optional>

namespace lapsa {

class DurationEditor;
class TextLabel;
class Toggle;

/// One watched folder as a card. It finds its rule by the id, so it may outlive the rule.
class AutoCleanFolderView final : public QWidget
{
    Q_OBJECT

public:
    AutoCleanFolderView(LapsaStore& store, const QUuid& id, QWidget* parent = nullptr);

    [[nodiscard]] const QUuid& id() const { return m_id; }

    /// Shows the rule as it is now, without reading the disk.
    void refresh();
    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    struct BoundToggle
    {
        Toggle* toggle = nullptr;
        Binding<bool> setting;
    };

    void makeControls(QWidget* stack);
    [[nodiscard]] Toggle* makeToggle(const QString& text, bool LapsaAutoCleanFolderRule::*field, QWidget* stack);
    /// Has the folder listed on a lane, and then shows how many files it has. Only one look is under way at a time.
    void look();
    void showFiles(const std::optional<QStringList>& files);
    void refreshTexts();
    [[nodiscard]] QString existingFilesText(const LapsaAutoCleanFolderRule& rule) const;

    LapsaStore& m_store;
    QUuid m_id;
    QList<BoundToggle> m_toggles;
    Toggle* m_enabled = nullptr;
    Toggle* m_includeExisting = nullptr;
    TextLabel* m_existingFiles = nullptr;
    TextLabel* m_byTheRules = nullptr;
    DurationEditor* m_lifespan = nullptr;
    bool m_looking = false;
    bool m_looked = false;
    /// The files in the folder at the last look; no value if it could not be listed.
    std::optional<QStringList> m_files;
};

} // namespace lapsa
