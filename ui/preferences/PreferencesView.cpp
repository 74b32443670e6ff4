// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PreferencesView.h"

#include "Accessibility.h"
#include "FocusRing.h"
#include "FoldersTab.h"
#include "GeneralTab.h"
#include "LapsaStore.h"
#include "Localized.h"
#include "Material.h"
#include "RulesTab.h"
#include "ScrollPage.h"
#include "SettingsStore.h"
#include "SymbolTabBar.h"

#include <QEvent>
#include <QHideEvent>
#include <QPainter>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int topMargin = 16;
constexpr int tabsToPage = 4;

} // namespace

PreferencesView::PreferencesView(LapsaStore& store, FolderPicker& folderPicker, MainQueue& mainQueue, QWidget* parent)
    : QWidget(parent)
    , m_store(store)
    , m_tabs(new SymbolTabBar(this))
    , m_pages(new QStackedWidget(this))
{
    installAccessibility();
    setFixedSize(extent);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, topMargin, 0, 0);
    column->setSpacing(tabsToPage);
    column->addLayout(makeTabs());
    column->addWidget(m_pages, 1);
    m_general = new GeneralTab(store, m_tabs->tabText(static_cast<int>(Tab::General)), m_pages);
    m_rules = new RulesTab(store, m_pages);
    m_folders = new FoldersTab(store, folderPicker, mainQueue, m_pages);
    for (QWidget* const page :
         {static_cast<QWidget*>(m_general), static_cast<QWidget*>(m_rules), static_cast<QWidget*>(m_folders)}) {
        m_pages->addWidget(page);
    }
    new FocusRing(*this);

    connect(m_general, &GeneralTab::recoveryRequested, this, &PreferencesView::recoveryRequested);
    connect(m_tabs, &QTabBar::currentChanged, m_pages, &QStackedWidget::setCurrentIndex);
    connect(&m_store, &LapsaStore::willChange, this, &PreferencesView::noteChange);
    connect(&m_store.settingsStore(), &SettingsStore::settingsChanged, this, &PreferencesView::noteChange);
    makeShortcuts();
}

void PreferencesView::showTab(Tab tab)
{
    m_tabs->setCurrentIndex(static_cast<int>(tab));
}

bool PreferencesView::showingFolderPicker() const
{
    return m_folders->showingFolderPicker();
}

void PreferencesView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    // The window manager draws the window's edge: the ground's own hairline is moved outside.
    material::paintWindow(painter, rect().adjusted(-1, -1, 1, 1), 0, palette());
}

bool PreferencesView::event(QEvent* event)
{
    if (event->type() == QEvent::ApplicationFontChange) {
        noteChange(); // refresh once the controls have their new sizes
    }
    return QWidget::event(event);
}

void PreferencesView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    m_general->watchRecovery(true);
    refresh();
}

void PreferencesView::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (!event->spontaneous()) {
        m_general->watchRecovery(false);
    }
}

QLayout* PreferencesView::makeTabs()
{
    m_tabs->setAccessibleName(Localized::preferences());
    m_tabs->addTab(u"gearshape"_s, Localized::text(u"General"_s, u"Generale"_s));
    m_tabs->addTab(u"doc.badge.gearshape"_s, Localized::fileTypeRules());
    m_tabs->addTab(u"folder.badge.gearshape"_s, Localized::text(u"Folders"_s, u"Cartelle"_s));
    auto* const row = new QHBoxLayout;
    row->setContentsMargins(ScrollPage::margin, 0, ScrollPage::margin, 0);
    row->addStretch();
    row->addWidget(m_tabs);
    row->addStretch();
    return row;
}

void PreferencesView::makeShortcuts()
{
    const auto onKeys = [this](const QKeySequence& keys, auto action) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
    };
    const auto step = [this](int by) {
        m_tabs->setCurrentIndex((m_tabs->currentIndex() + by + m_tabs->count()) % m_tabs->count());
    };
    onKeys(Qt::Key_Escape, [this] { window()->close(); });
    onKeys(Qt::CTRL | Qt::Key_W, [this] { window()->close(); });
    onKeys(Qt::CTRL | Qt::Key_PageDown, [step] { step(1); });
    onKeys(Qt::CTRL | Qt::Key_PageUp, [step] { step(-1); });
}

/// Called before or during a change: the state is read once, on the next turn, however many changes there were.
void PreferencesView::noteChange()
{
    if (std::exchange(m_changeNoted, true)) {
        return;
    }
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_changeNoted = false;
            if (isVisible()) {
                refresh();
            }
        },
        Qt::QueuedConnection);
}

void PreferencesView::refresh()
{
    m_general->refresh();
    m_rules->refresh();
    m_folders->refresh();
    applyTheme();
}

void PreferencesView::applyTheme()
{
    const LapsaTheme theme = m_store.settings().theme;
    if (m_appliedTheme != theme) {
        m_appliedTheme = theme;
        m_store.applyAppTheme(theme);
    }
}

} // namespace lapsa
