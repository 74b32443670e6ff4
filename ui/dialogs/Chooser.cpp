// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Chooser.h"

#include "ChooserModel.h"
#include "ChooserPathRow.h"
#include "ChooserPlaces.h"
#include "FocusRing.h"
#include "FolderWatch.h"
#include "Localized.h"
#include "Material.h"
#include "PathCompleter.h"
#include "PushButton.h"
#include "TextLabel.h"
#include "TypedPath.h"
#include "WaitingLine.h"

#include <QAction>
#include <QDir>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QShortcut>
#include <QTreeView>
#include <QVBoxLayout>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize filesExtent(760, 520);
constexpr QSize folderExtent(640, 460);
constexpr QSize leastExtent(480, 340);
constexpr int margin = 20;
constexpr int spacing = 12;
constexpr int buttonSpacing = 10;
constexpr QSize iconExtent(20, 20);

} // namespace

Chooser::Chooser(const ChooserEnvironment& environment, const ChooserPurpose& purpose, const QString& startFolder,
                 QWidget* parent)
    : QDialog(parent)
    , m_environment(environment)
    , m_oneFolder(purpose.oneFolder)
    , m_model(new ChooserModel(environment.lanes, purpose.oneFolder, this))
    , m_typed(new TypedPath(environment.lanes, this))
    , m_path(new ChooserPathRow(this))
{
    setWindowTitle(purpose.title);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setMinimumSize(leastExtent);
    resize(purpose.oneFolder ? folderExtent : filesExtent);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(spacing);
    column->addWidget(m_path);
    column->addLayout(makeListRow(), 1);
    column->addLayout(makeFieldRow(purpose.fieldLabel));
    column->addLayout(makeButtonRow());
    makeShortcuts();
    new FocusRing(*this);
    new FolderWatch(environment.mainQueue, *m_model, *this);
    m_field->setFocus();
    connectParts();
    showWay({.folder = startFolder.isEmpty() ? QDir::homePath() : QDir::cleanPath(startFolder)});
}

void Chooser::connectParts()
{
    connect(m_model, &ChooserModel::grew, this, &Chooser::noteGrowth);
    connect(m_model, &ChooserModel::noFolder, this, &Chooser::leaveMissingFolder);
    connect(m_typed, &TypedPath::answered, this, &Chooser::noteTyped);
    connect(m_field, &QLineEdit::textEdited, m_names, &QTreeView::clearSelection);
    connect(m_field, &QLineEdit::textChanged, this, &Chooser::textChanged);
    connect(m_field, &QLineEdit::returnPressed, this, &Chooser::openTyped);
    connect(m_names->selectionModel(), &QItemSelectionModel::selectionChanged, this, &Chooser::fillField);
    connect(m_names, &QTreeView::doubleClicked, this, &Chooser::enterSelected);
    connect(m_places, &ChooserPlaces::chosen, this, &Chooser::goTo);
    connect(m_path, &ChooserPathRow::back, this, &Chooser::goBack);
    connect(m_path, &ChooserPathRow::forward, this, &Chooser::goForward);
    connect(m_path, &ChooserPathRow::up, this, &Chooser::goUp);
}

bool Chooser::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_names && event->type() == QEvent::KeyPress) {
        switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            enterSelected();
            return true;
        case Qt::Key_Backspace:
            goUp();
            return true;
        default:
            break;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void Chooser::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    // The window manager draws the window's edge: the ground's own hairline is moved outside.
    material::paintWindow(painter, rect().adjusted(-1, -1, 1, 1), 0, palette());
}

QHBoxLayout* Chooser::makeListRow()
{
    m_places = new ChooserPlaces(m_environment.lanes, this);
    m_names = new QTreeView(this);
    setUpNames();
    auto* const row = new QHBoxLayout;
    row->setSpacing(spacing);
    row->addWidget(m_places);
    row->addWidget(m_names, 1);
    return row;
}

void Chooser::setUpNames()
{
    m_names->setObjectName(u"treeView"_s);
    m_names->setAccessibleName(Localized::text(u"Contents"_s, u"Contenuto"_s));
    m_names->setFont(fontFor(bodyText));
    m_names->setModel(m_model);
    m_names->setIconSize(iconExtent);
    m_names->setRootIsDecorated(false);
    m_names->setItemsExpandable(false);
    m_names->setExpandsOnDoubleClick(false);
    m_names->setUniformRowHeights(true);
    m_names->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_names->setDragDropMode(QAbstractItemView::NoDragDrop);
    m_names->setSelectionMode(m_oneFolder ? QAbstractItemView::SingleSelection : QAbstractItemView::ExtendedSelection);
    m_names->setAllColumnsShowFocus(true);
    m_names->setSortingEnabled(true);
    m_names->sortByColumn(ChooserModel::Name, Qt::AscendingOrder);
    m_names->setColumnHidden(ChooserModel::Size, m_oneFolder);
    QHeaderView& header = *m_names->header();
    header.setFont(fontFor(calloutText));
    header.setStretchLastSection(false);
    header.setSectionsMovable(false);
    header.setSectionResizeMode(QHeaderView::ResizeToContents);
    header.setSectionResizeMode(ChooserModel::Name, QHeaderView::Stretch);
    m_names->installEventFilter(this);
}

QHBoxLayout* Chooser::makeFieldRow(const QString& label)
{
    auto* const text = new TextLabel(label, bodyText, ColorRole::Primary, this);
    m_field = new QLineEdit(this);
    m_field->setObjectName(u"fileNameEdit"_s);
    m_field->setFont(fontFor(bodyText));
    m_field->setAccessibleName(QString(label).remove(u':'));
    m_completer = new PathCompleter(m_environment.lanes, m_oneFolder, *m_field);
    text->setBuddy(m_field);
    auto* const row = new QHBoxLayout;
    row->setSpacing(buttonSpacing);
    row->addWidget(text);
    row->addWidget(m_field, 1);
    return row;
}

QHBoxLayout* Chooser::makeButtonRow()
{
    auto* const cancel = new PushButton(Localized::text(u"Cancel"_s, u"Annulla"_s), PushButton::Kind::Plain, this);
    m_add = new PushButton(Localized::text(u"Add"_s, u"Aggiungi"_s), PushButton::Kind::Default, this);
    connect(cancel, &PushButton::clicked, this, &Chooser::reject);
    connect(m_add, &PushButton::clicked, this, &Chooser::addAsked);
    m_waiting = new WaitingLine(m_environment.mainQueue, this);
    auto* const row = new QHBoxLayout;
    row->setSpacing(buttonSpacing);
    row->addWidget(m_waiting, 1);
    row->addWidget(cancel);
    row->addWidget(m_add);
    return row;
}

void Chooser::makeShortcuts()
{
    const auto shortcut = [this](const QKeySequence& keys, void (Chooser::*asked)()) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, asked);
    };
    shortcut(Qt::ALT | Qt::Key_Left, &Chooser::goBack);
    shortcut(Qt::ALT | Qt::Key_Right, &Chooser::goForward);
    shortcut(Qt::ALT | Qt::Key_Up, &Chooser::goUp);
    auto* const hidden = new QAction(Localized::text(u"Show hidden files"_s, u"Mostra file nascosti"_s), this);
    hidden->setCheckable(true);
    hidden->setShortcut(Qt::CTRL | Qt::Key_H);
    hidden->setShortcutContext(Qt::WindowShortcut);
    connect(hidden, &QAction::toggled, m_model, &ChooserModel::setHiddenShown);
    connect(hidden, &QAction::toggled, m_completer, &PathCompleter::setHiddenShown);
    m_names->addAction(hidden);
    m_names->setContextMenuPolicy(Qt::ActionsContextMenu);
}

} // namespace lapsa
