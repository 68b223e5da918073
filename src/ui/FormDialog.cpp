// SPDX-License-Identifier: MIT
#include "ui/FormDialog.h"

#include "core/Engine.h"
#include "ui/FittingFont.h"
#include "ui/Twips.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

FormDialog::FormDialog(Engine &engine, QWidget *parent, const QString &name, const QString &caption,
                       int widthTwips, int heightTwips)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint)
    , m_engine(engine)
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

void FormDialog::run(const QString &routine, const std::function<void()> &handler)
{
    m_engine.guarded(routine, handler);
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
