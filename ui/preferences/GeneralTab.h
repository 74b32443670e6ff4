// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaSettings.h"
#include "ScrollPage.h"

#include <QList>

#include <functional>

namespace lapsa {

class Card;
class FormSection;
class LapsaStore;

/// The preferences that do not belong to a single rule or folder, in sections.
class GeneralTab final : public ScrollPage
{
    Q_OBJECT

public:
    /// The store must outlive the tab.
    GeneralTab(LapsaStore& store, const QString& name, QWidget* parent = nullptr);

    /// Shows the current settings.
    void refresh();

private:
    [[nodiscard]] FormSection* makeGeneralSection(QWidget* page);
    [[nodiscard]] FormSection* makeNotificationsSection(QWidget* page);
    [[nodiscard]] FormSection* makeRecoverySection(QWidget* page);
    void addToggle(Card& card, const QString& text, bool LapsaSettings::*field);
    [[nodiscard]] QWidget* makeThemePicker();
    [[nodiscard]] QWidget* makeRecoveryToggle();
    [[nodiscard]] QWidget* makeRetention();

    LapsaStore& m_store;
    /// One per control; each shows its setting.
    QList<std::function<void()>> m_refreshers;
};

} // namespace lapsa
