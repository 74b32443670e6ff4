// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ClipboardContent.h"

#include "X11Connection.h"
#include "X11Selection.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <algorithm>
#include <array>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype sizeLimit = 128LL * 1024 * 1024;
constexpr qsizetype targetsLimit = 200;
constexpr QByteArrayView utf8Text = "UTF8_STRING";
constexpr QByteArrayView latin1Text = "STRING";

/// Targets that describe the transfer, have side effects, or name the owner's resources. The other text targets are
/// left out because the toolkit derives them from "text/plain".
constexpr std::array<QByteArrayView, 12> leftOut{
    "TARGETS",         "MULTIPLE", "TIMESTAMP", "SAVE_TARGETS", "DELETE", "INSERT_SELECTION",
    "INSERT_PROPERTY", "LENGTH",   "PIXMAP",    "BITMAP",       "TEXT",   "COMPOUND_TEXT"};

/// Returns the forms unchanged, including those that QMimeData would parse and rewrite.
class KeptMimeData final : public QMimeData
{
public:
    explicit KeptMimeData(QList<ClipboardContent::Form> forms)
        : m_forms(std::move(forms))
    {}

    [[nodiscard]] QStringList formats() const override
    {
        QStringList names;
        for (const ClipboardContent::Form& form : m_forms) {
            names.push_back(form.name);
        }
        return names;
    }

    [[nodiscard]] bool hasFormat(const QString& name) const override { return formats().contains(name); }

protected:
    [[nodiscard]] QVariant retrieveData(const QString& name, QMetaType) const override
    {
        const auto form = std::ranges::find(m_forms, name, &ClipboardContent::Form::name);
        return form != m_forms.cend() ? QVariant(form->bytes) : QVariant();
    }

private:
    QList<ClipboardContent::Form> m_forms;
};

struct Target
{
    xcb_atom_t atom;
    QByteArray name;
};

QList<Target> targetsToKeep(X11Connection& connection, const QList<xcb_atom_t>& atoms, const QDeadlineTimer& deadline)
{
    QList<Target> kept;
    const QList<QByteArray> names = connection.atomNames(atoms, deadline);
    for (qsizetype i = 0; i < atoms.size(); ++i) {
        const bool wanted = std::ranges::find(leftOut, QByteArrayView(names[i])) == leftOut.end();
        const bool first = std::ranges::find(kept, atoms[i], &Target::atom) == kept.end();
        if (wanted && first && !names[i].isEmpty()) {
            kept.push_back({atoms[i], names[i]});
        }
    }
    return kept;
}

/// Text goes first, in its best form, under the name from which the toolkit derives the others.
void addForm(QList<ClipboardContent::Form>& forms, const QByteArray& name, const QByteArray& bytes)
{
    const QString plain = u"text/plain"_s;
    const bool text = name == utf8Text || name == latin1Text;
    const QString formName = text ? plain : QString::fromLatin1(name);
    const QByteArray content = name == latin1Text ? QString::fromLatin1(bytes).toUtf8() : bytes;
    const auto present = std::ranges::find(forms, formName, &ClipboardContent::Form::name);
    if (present == forms.end()) {
        forms.push_back({formName, content});
    } else if (name == utf8Text) {
        present->bytes = content;
    }
}

QString reasonOf(SelectionAnswer::Outcome outcome)
{
    return outcome == SelectionAnswer::Outcome::TooLarge
               ? u"the clipboard holds too much to be kept"_s
               : u"the clipboard's owner does not hand out its content in time"_s;
}

std::variant<ClipboardContent, QString> contentOf(const QList<Target>& targets, X11Selection& selection,
                                                  const QDeadlineTimer& deadline)
{
    ClipboardContent content{.forms = {}, .owned = true};
    qsizetype room = sizeLimit;
    for (const Target& target : targets) {
        const SelectionAnswer answer = selection.read(target.atom, deadline, room);
        // The owner cannot convert this now, and would refuse again.
        if (answer.outcome == SelectionAnswer::Outcome::Refused) {
            continue;
        }
        if (answer.outcome != SelectionAnswer::Outcome::Answered) {
            return reasonOf(answer.outcome);
        }
        if (answer.format == 8) {
            addForm(content.forms, target.name, answer.bytes);
            room -= answer.bytes.size();
        } else if (target.name.contains('/')) {
            // The toolkit can offer bytes only. A target without a slash describes the owner; it is not content.
            return u"the clipboard holds "_s + QString::fromLatin1(target.name) + u", which cannot be kept"_s;
        }
    }
    return content;
}

} // namespace

std::variant<ClipboardContent, QString> ownClipboardContent()
{
    const QClipboard* const clipboard = QGuiApplication::clipboard();
    if (!clipboard->ownsClipboard()) {
        return u"the clipboard is changing hands"_s;
    }
    ClipboardContent content{.forms = {}, .owned = true};
    if (const QMimeData* const data = clipboard->mimeData()) {
        for (const QString& name : data->formats()) {
            content.forms.push_back({name, data->data(name)});
        }
    }
    return content;
}

std::variant<ClipboardContent, QString> clipboardContent(X11Connection& connection, X11Selection& selection,
                                                         std::uint32_t ours, const QDeadlineTimer& deadline)
{
    const xcb_window_t owner = selection.owner(deadline);
    if (owner == XCB_WINDOW_NONE) {
        return ClipboardContent();
    }
    if (connection.sameClient(owner, ours)) {
        return ownClipboardContent();
    }
    QList<xcb_atom_t> targets = selection.targets(deadline);
    if (targets.size() > targetsLimit) {
        return u"the clipboard holds too many kinds of things to be kept"_s;
    }
    const bool told = !targets.isEmpty();
    if (!told) {
        targets = {connection.atom(utf8Text.toByteArray(), deadline), XCB_ATOM_STRING};
    }
    auto content = contentOf(targetsToKeep(connection, targets, deadline), selection, deadline);
    if (const auto* const found = std::get_if<ClipboardContent>(&content); found && found->forms.isEmpty() && !told) {
        return u"the clipboard's owner does not say what it holds"_s;
    }
    return content;
}

std::unique_ptr<QMimeData> mimeDataOf(const ClipboardContent& content)
{
    return std::make_unique<KeptMimeData>(content.forms);
}

} // namespace lapsa
