// SPDX-License-Identifier: MIT
#include "ui/Prompts.h"

#include "core/Text.h"

#include <QGuiApplication>

#include <cstdio>

void Prompts::information(QWidget *parent, const QString &text)
{
    ask(parent, text, QMessageBox::Ok, QMessageBox::Ok);
}

bool Prompts::question(QWidget *parent, const QString &text)
{
    return ask(parent, text, QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes;
}

QString Prompts::unattendedLine(const QString &text)
{
    return QStringLiteral("Quorvane: ") + Text::oneLine(text);
}

bool Prompts::nobodyToAsk()
{
    const QString platform = QGuiApplication::platformName();
    return platform == u"offscreen" || platform == u"minimal";
}

QMessageBox::StandardButton Prompts::ask(QWidget *parent, const QString &text, QMessageBox::StandardButtons buttons,
                                         QMessageBox::StandardButton defaultButton)
{
    if (nobodyToAsk()) {
        const QByteArray line = unattendedLine(text).toLocal8Bit() + '\n';
        std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stderr);
        std::fflush(stderr);
        return defaultButton;
    }
    QString shown = text;
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    QMessageBox box(QMessageBox::NoIcon, QStringLiteral("Quorvane"), shown, buttons, parent);
    box.setDefaultButton(defaultButton);
    const int answer = box.exec();
    // Closing a Yes/No box by its title bar counts as No.
    return answer == QMessageBox::Yes || answer == QMessageBox::Ok ? static_cast<QMessageBox::StandardButton>(answer)
                                                                    : defaultButton;
}
