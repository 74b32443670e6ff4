// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaSettings.h"
#include "RecoveryOverview.h"
#include "ScrollPage.h"

#include <QList>

#include <functional>

namespace lapsa {

class Card;
class FormSection;
class LapsaStore;
class TextLabel;

/// The preferences that do not belong to a single rule or folder, in sections.
class GeneralTab final : public ScrollPage
{
    Q_OBJECT

public:
    /// The store must outlive the tab.
    GeneralTab(LapsaStore& store, const QString& name, QWidget* parent = nullptr);

    /// Shows the current settings.
    void refresh();
    /// Whether to look what is in Recovery: only while the window is shown.
    void watchRecovery(bool watched);

signals:
    /// The user wants to see what is in Recovery.
    void recoveryRequested();

private:
    [[nodiscard]] FormSection* makeGeneralSection(QWidget* page);
    [[nodiscard]] FormSection* makeNotificationsSection(QWidget* page);
    [[nodiscard]] FormSection* makeRecoverySection(QWidget* page);
    void addToggle(Card& card, const QString& text, bool LapsaSettings::*field);
    [[nodiscard]] QWidget* makeThemePicker();
    [[nodiscard]] QWidget* makeRecoveryToggle();
    [[nodiscard]] QWidget* makeRetention();
    [[nodiscard]] QWidget* makeRecoveryContent();
    void refreshRecoveryContent();

    LapsaStore& m_store;
    RecoveryOverview m_recovery;
    QWidget* m_recoveryRow = nullptr;
    TextLabel* m_recoveryText = nullptr;
    /// One per control; each shows its setting.
    QList<std::function<void()>> m_refreshers;
};

} // namespace lapsa
