// SPDX-License-Identifier: MIT
#include "ui/FormDialog.h"

#include "core/ErrorLog.h"
#include "ui/FittingFont.h"
#include "ui/Twips.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

FormDialog::FormDialog(ErrorLog &errors, Prompts &prompts, QWidget *parent, const QString &name, const QString &caption,
                       int widthTwips, int heightTwips)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint)
    , m_errors(errors)
    , m_prompts(prompts)
{
    setObjectName(name);
    setWindowTitle(caption);
    setFixedSize(Twips::px(widthTwips), Twips::px(heightTwips));
}

void FormDialog::finishForm(QPushButton *defaultAndCancel)
{
    // The face of the main window's choice: the first under which every caption fits.
    QList<QWidget *> captioned;
    for (QWidget *control : findChildren<QWidget *>()) {
        const auto *label = qobject_cast<const QLabel *>(control);
        if (!control->isHidden() && !(label && label->wordWrap()) && !FittingFont::caption(control).isEmpty())
            captioned.append(control);
    }
    setFont(FittingFont::choose(FittingFont::candidates(font()),
                                [&](const QFont &f) { return FittingFont::captionsFit(captioned, f); }));

    for (QPushButton *button : findChildren<QPushButton *>()) {
        button->setAutoDefault(false);
        button->setDefault(false);
    }
    m_cancelButton = defaultAndCancel;
    if (defaultAndCancel)
        defaultAndCancel->setDefault(true);
}

QComboBox *FormDialog::editableCombo(QWidget *parent, QStringView name, int left, int top, int width)
{
    auto *box = Twips::place<QComboBox>(parent, name, left, top, width, 330);
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert); // Enter must not grow the list
    // The default completer ignores case and puts its item in place of the typed text when
    // the box is left; the text is compared exactly.
    box->setCompleter(nullptr);
    return box;
}

void FormDialog::showText(QComboBox *box, const QString &text)
{
    box->setCurrentIndex(box->findText(text));
    box->setEditText(text);
}

void FormDialog::run(const QString &routine, const std::function<void()> &handler)
{
    m_errors.guarded(routine, handler);
}

void FormDialog::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        if (m_cancelButton)
            m_cancelButton->click();
        return; // without a cancel button Escape does nothing
    }
    QDialog::keyPressEvent(event);
}
