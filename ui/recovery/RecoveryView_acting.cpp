// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AlertDialog.h"
#include "Announcer.h"
#include "AppPaths.h"
#include "LapsaItem.h"
#include "LapsaStore.h"
#include "Localized.h"
#include "RecoveryDelegate.h"
#include "RecoveryListView.h"
#include "RecoveryMessages.h"
#include "RecoveryView.h"
#include "TextLabel.h"

#include <QMenu>
#include <QPointer>

namespace lapsa {

using namespace Qt::StringLiterals;

using Button = RecoveryRowLayout::Button;

QList<LapsaRecoveryItem> RecoveryView::recordsAt(const QList<int>& rows) const
{
    QList<LapsaRecoveryItem> records;
    for (const int row : rows) {
        if (!m_model.isUnderWay(row)) {
            records.push_back(m_model.recordAt(row));
        }
    }
    return records;
}

void RecoveryView::act(Button button, const QList<int>& rows)
{
    switch (button) {
    case Button::PutBack:
        putBack(recordsAt(rows));
        break;
    case Button::Delete:
        askToDelete(recordsAt(rows));
        break;
    case Button::Stop:
        for (const int row : rows) {
            m_environment.store.stopRecoveryAction(m_model.recordAt(row).id);
        }
        break;
    case Button::None:
        break;
    }
}

void RecoveryView::putBack(const QList<LapsaRecoveryItem>& records)
{
    if (records.isEmpty()) {
        return;
    }
    say({}, false);
    m_environment.store.putBackItems(records, [view = QPointer(this), records](const QList<RecoveryResult>& results) {
        if (view) {
            const recoveryMessages::Message message = recoveryMessages::putBack(records, results);
            view->say(message.text, message.failed);
            view->m_overview.lookAgain();
            view->refresh();
        }
    });
    m_list->viewport()->update();
}

void RecoveryView::askToDelete(const QList<LapsaRecoveryItem>& records)
{
    if (records.isEmpty() || m_question != nullptr) {
        return;
    }
    const QString title = records.size() == 1 ? Localized::text(u"Delete “%1” now?"_s, u"Eliminare ora “%1”?"_s)
                                                    .arg(singleLine(records.constFirst().displayName))
                                              : Localized::text(u"Delete %1 files now?"_s, u"Eliminare ora %1 file?"_s)
                                                    .arg(Localized::number(records.size()));
    m_question =
        new AlertDialog({.message = title,
                         .information = Localized::text(u"Nothing brings this back."_s, u"Non si può più annullare."_s),
                         .action = Localized::text(u"Delete now"_s, u"Elimina ora"_s),
                         .cancel = Localized::text(u"Cancel"_s, u"Annulla"_s)},
                        this);
    m_question->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_question, &QDialog::accepted, this, [this, records] { deleteForGood(records); });
    m_question->open();
}

void RecoveryView::deleteForGood(const QList<LapsaRecoveryItem>& records)
{
    say({}, false);
    m_environment.store.deleteRecoveryItems(
        records, [view = QPointer(this), records](const QList<RecoveryResult>& results) {
            if (view) {
                const recoveryMessages::Message message = recoveryMessages::deleted(records, results);
                view->say(message.text, message.failed);
                view->m_overview.lookAgain();
                view->refresh();
            }
        });
    m_list->viewport()->update();
}

QString RecoveryView::pathAt(int row) const
{
    const std::optional<RecoveryCopy> copy = m_model.copyAt(row);
    return copy ? AppPaths::recoveryDirectory().toLocalFile() + u'/' + copy->name : QString();
}

void RecoveryView::showMenu(const QPoint& place)
{
    const QList<int> rows = m_list->selectedRows();
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setFont(fontFor(bodyText));
    // The rows may be others by the time something is chosen.
    const QList<LapsaRecoveryItem> records = recordsAt(rows);
    menu->addAction(RecoveryDelegate::putBackText(), this, [this, records] { putBack(records); });
    if (const QString path = rows.size() == 1 ? pathAt(rows.constFirst()) : QString(); !path.isEmpty()) {
        menu->addAction(Localized::text(u"Reveal in Finder"_s, u"Mostra nel Finder"_s), this, [this, path] {
            LapsaItem copy;
            copy.path = path;
            m_environment.store.reveal(copy);
        });
    }
    menu->addSeparator();
    menu->addAction(Localized::text(u"Delete now…"_s, u"Elimina ora…"_s), this,
                    [this, records] { askToDelete(records); });
    for (QAction* const action : menu->actions()) {
        action->setEnabled(!records.isEmpty());
    }
    menu->popup(place);
}

/// An empty text takes the message away.
void RecoveryView::say(const QString& text, bool failed)
{
    m_message->setText(text);
    m_message->setRole(failed ? ColorRole::Danger : ColorRole::Secondary);
    m_message->setVisible(!text.isEmpty());
    if (!text.isEmpty()) {
        m_announcer->announce(text);
    }
}

} // namespace lapsa
