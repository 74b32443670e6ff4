// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AutoCleanFolderView.h"

#include "Card.h"
#include "DurationEditor.h"
#include "EditorLine.h"
#include "FolderTexts.h"
#include "Lanes.h"
#include "Localized.h"
#include "PushButton.h"
#include "TextLabel.h"
#include "Toggle.h"

#include <QEvent>
#include <QPointer>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int stackSpacing = 8;
constexpr int explanationSpacing = 2;
constexpr DurationEditor::Bounds lifespanBounds{.minTotalMinutes = minLifespanMinutes,
                                                .maxTotalMinutes = maxLifespanMinutes};

template <typename T>
Binding<T> folderBinding(LapsaStore& store, const QUuid& id, T LapsaAutoCleanFolderRule::*field)
{
    return ruleBinding(store, &LapsaSettings::autoCleanFolders, id, field, LapsaAutoCleanFolderRule().*field);
}

std::optional<LapsaAutoCleanFolderRule> ruleOf(const LapsaStore& store, const QUuid& id)
{
    const QList<LapsaAutoCleanFolderRule>& rules = store.settings().autoCleanFolders;
    const auto rule = std::ranges::find(rules, id, &LapsaAutoCleanFolderRule::id);
    return rule == rules.end() ? std::nullopt : std::optional(*rule);
}

/// A switch, and below it a line that explains its effect here.
QVBoxLayout* makeStack(Toggle* toggle, TextLabel* line)
{
    auto* const stack = new QVBoxLayout;
    stack->setSpacing(explanationSpacing);
    stack->addWidget(toggle);
    stack->addWidget(line);
    return stack;
}

} // namespace

AutoCleanFolderView::AutoCleanFolderView(LapsaStore& store, const QUuid& id, QWidget* parent)
    : QWidget(parent)
    , m_store(store)
    , m_id(id)
{
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    auto* const card = new Card(this);
    auto* const stack = new QWidget(card);
    makeControls(stack);
    card->addRow(stack);
    column->addWidget(card);
    // Large texts wrap, so the height depends on the width.
    card->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    refresh();
}

void AutoCleanFolderView::refresh()
{
    const QString path = folderBinding(m_store, m_id, &LapsaAutoCleanFolderRule::folderPath).read();
    m_enabled->setLabel(path.isEmpty() ? Localized::text(u"Folder not set"_s, u"Cartella non impostata"_s) : path);
    m_enabled->setToolTip(plainToolTip(path));
    m_lifespan->setAccessibleName(m_enabled->accessibleName());
    for (const BoundToggle& bound : m_toggles) {
        bound.toggle->showChecked(bound.setting.read());
    }
    refreshTexts();
    m_lifespan->refresh();
}

bool AutoCleanFolderView::eventFilter(QObject* watched, QEvent* event)
{
    // The switch is about to be used.
    if (watched == m_includeExisting && (event->type() == QEvent::Enter || event->type() == QEvent::FocusIn)) {
        look();
    }
    return QWidget::eventFilter(watched, event);
}

void AutoCleanFolderView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    look();
}

void AutoCleanFolderView::makeControls(QWidget* stack)
{
    auto* const column = new QVBoxLayout(stack);
    column->setContentsMargins({});
    column->setSpacing(stackSpacing);
    m_enabled = makeToggle({}, &LapsaAutoCleanFolderRule::enabled, stack);
    m_enabled->setTextStyle(headlineText);
    m_enabled->setElideMode(Qt::ElideMiddle);
    column->addWidget(m_enabled);
    m_includeExisting = makeToggle(Localized::text(u"Include existing files"_s, u"Includi file già presenti"_s),
                                   &LapsaAutoCleanFolderRule::includeExistingFiles, stack);
    m_includeExisting->installEventFilter(this);
    m_existingFiles = new TextLabel({}, captionText, ColorRole::Secondary, stack);
    column->addLayout(makeStack(m_includeExisting, m_existingFiles));
    m_byTheRules = new TextLabel({}, captionText, ColorRole::Secondary, stack);
    column->addLayout(
        makeStack(makeToggle(Localized::text(u"Apply file type rules"_s, u"Applica regole per tipo file"_s),
                             &LapsaAutoCleanFolderRule::applyFileTypeRules, stack),
                  m_byTheRules));
    const auto lifespan = folderBinding(m_store, m_id, &LapsaAutoCleanFolderRule::lifespanMinutes);
    m_lifespan = new DurationEditor(lifespan, lifespanBounds, stack);
    auto* const remove = new PushButton(Localized::text(u"Remove folder"_s, u"Rimuovi cartella"_s),
                                        PushButton::Kind::Destructive, stack);
    column->addLayout(new EditorLine(m_lifespan, remove));
    connect(remove, &PushButton::clicked, this, [this] { m_store.removeAutoCleanFolder(m_id); });
}

Toggle* AutoCleanFolderView::makeToggle(const QString& text, bool LapsaAutoCleanFolderRule::*field, QWidget* stack)
{
    auto* const toggle = new Toggle(text, stack);
    m_toggles.push_back({toggle, folderBinding(m_store, m_id, field)});
    connect(toggle, &Toggle::switched, this, m_toggles.constLast().setting.write);
    return toggle;
}

void AutoCleanFolderView::look()
{
    const auto rule = ruleOf(m_store, m_id);
    if (!rule || rule->folderPath.isEmpty() || std::exchange(m_looking, true)) {
        return;
    }
    m_store.lanes().look(rule->folderPath, [view = QPointer(this), rule = *rule](LaneJob&) -> Lanes::Report {
        // One more than the maximum shows that there are more.
        return [view, files = watchedFolder::fileNames(rule, folderTexts::mostFiles + 1)] {
            if (view) {
                view->showFiles(files);
            }
        };
    });
}

void AutoCleanFolderView::showFiles(const std::optional<QStringList>& files)
{
    m_looking = false;
    m_looked = true;
    m_files = files;
    refreshTexts();
}

void AutoCleanFolderView::refreshTexts()
{
    const LapsaAutoCleanFolderRule rule = ruleOf(m_store, m_id).value_or(LapsaAutoCleanFolderRule());
    const QString existing = existingFilesText(rule);
    m_existingFiles->setText(existing);
    // Reserve the line before the folder is listed, so that nothing moves then.
    m_existingFiles->setVisible(!rule.folderPath.isEmpty());
    m_includeExisting->setAccessibleDescription(existing);

    const QString byTheRules =
        rule.applyFileTypeRules ? folderTexts::byTheRules(m_store.settings().defaultExpirationMinutes) : QString();
    m_byTheRules->setText(byTheRules);
    m_byTheRules->setVisible(rule.applyFileTypeRules);
    // Dimmed, not disabled: its value applies as soon as the rules do not.
    m_lifespan->setDimmed(rule.applyFileTypeRules);
    m_lifespan->setAccessibleDescription(byTheRules);
}

QString AutoCleanFolderView::existingFilesText(const LapsaAutoCleanFolderRule& rule) const
{
    if (!m_looked || rule.folderPath.isEmpty()) {
        return {};
    }
    if (!m_files) {
        return Localized::text(u"This folder cannot be read now."_s, u"Questa cartella ora non è leggibile."_s);
    }
    const bool certain = rule.enabled && rule.includeExistingFiles && !m_store.settings().pauseAllCountdowns;
    return folderTexts::existingFiles(watchedFolder::outlook(m_store, rule, *m_files),
                                      certain ? folderTexts::Certainty::Will : folderTexts::Certainty::Would);
}

} // namespace lapsa
