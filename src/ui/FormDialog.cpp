// SPDX-License-Identifier: MIT
#include "ui/FormDialog.h"

#include "core/Engine.h"
#include "ui/Twips.h"

#include <QKeyEvent>
#include <QPushButton>

FormDialog::FormDialog(Engine &engine, QWidget *parent, const QString &name, const QString &caption,
                       int widthTwips, int heightTwips)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint)
    , m_engine(engine)
{
    setObjectName(name);
    setWindowTitle(caption);
    Twips::useFormFont(this);
    setFixedSize(Twips::px(widthTwips), Twips::px(heightTwips));
}

void FormDialog::settleButtons(QPushButton *defaultAndCancel)
{
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
