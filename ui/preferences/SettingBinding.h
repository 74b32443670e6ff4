// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Binding.h"
#include "LapsaSettings.h"
#include "LapsaStore.h"

#include <QUuid>

#include <algorithm>
#include <utility>

namespace lapsa {

/// Binds a control to one field of the settings. The store must outlive the binding.
template <typename T>
[[nodiscard]] Binding<T> settingBinding(LapsaStore& store, T LapsaSettings::*field)
{
    return {.read = [&store, field] { return store.settings().*field; },
            .write =
                [&store, field](T value) {
                    LapsaSettings settings = store.settings();
                    settings.*field = std::move(value);
                    store.setSettings(settings);
                }};
}

/// Binds a control to a field of one rule, which is looked up by its id each time. If the rule is gone, reading returns
/// `defaultValue` and writes are ignored: a card may briefly outlive its rule. The store must outlive the binding.
template <typename Rule, typename T>
[[nodiscard]] Binding<T> ruleBinding(LapsaStore& store, QList<Rule> LapsaSettings::*rules, const QUuid& id,
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
