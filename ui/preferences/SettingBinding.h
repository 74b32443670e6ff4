// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaSettings.h"
#include "LapsaStore.h"

#include <QUuid>

#include <algorithm>
#include <functional>
#include <utility>

namespace lapsa {

/// One control's line to one field of the settings: read whenever it is shown, written through at once. It copies
/// nothing; the store outlives it.
template <typename T>
struct SettingBinding
{
    std::function<T()> read;
    std::function<void(T)> write;
};

template <typename T>
[[nodiscard]] SettingBinding<T> settingBinding(LapsaStore& store, T LapsaSettings::*field)
{
    return {.read = [&store, field] { return store.settings().*field; },
            .write =
                [&store, field](T value) {
                    LapsaSettings settings = store.settings();
                    settings.*field = std::move(value);
                    store.setSettings(settings);
                }};
}

/// A field of one rule, found by the rule's id each time. Of a rule that is gone `defaultValue` is read, and what is
/// written to it is lost: a row may outlive its rule for a moment.
template <typename Rule, typename T>
[[nodiscard]] SettingBinding<T> ruleBinding(LapsaStore& store, QList<Rule> LapsaSettings::*rules, const QUuid& id,
                                            T Rule::*field, const T& defaultValue)
{
    return {.read =
                [&store, rules, id, field, defaultValue] {
                    const QList<Rule>& list = store.settings().*rules;
                    const auto rule = std::ranges::find(list, id, &Rule::id);
                    return rule == list.end() ? defaultValue : (*rule).*field;
                },
            .write =
                [&store, rules, id, field](T value) {
                    LapsaSettings settings = store.settings();
                    QList<Rule>& list = settings.*rules;
                    const auto rule = std::ranges::find(list, id, &Rule::id);
                    if (rule != list.end()) {
                        (*rule).*field = std::move(value);
                        store.setSettings(settings);
                    }
                }};
}

} // namespace lapsa
