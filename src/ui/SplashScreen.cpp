// SPDX-License-Identifier: MIT
#include "ui/SplashScreen.h"

#include <QPainter>

frmSplash::frmSplash(QWidget *parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("frmSplash"));
    setFixedSize(4290 / 15, 3105 / 15); // 4290 x 3105 twips
    setAutoFillBackground(true);
    QPalette pal = palette();
    pal.setColor(QPalette::Window, Qt::black);
    setPalette(pal);
}

void frmSplash::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.fillRect(rect(), Qt::black);
    p.setRenderHint(QPainter::Antialiasing);

    // A frame of thin yellow lines around the name.
    p.setPen(QPen(QColor(200, 160, 0), 1));
    p.drawRect(rect().adjusted(6, 6, -7, -7));

    QFont title = font();
    title.setPixelSize(40);
    title.setBold(true);
    p.setFont(title);
    p.setPen(Qt::yellow);
    const QRect top(0, 0, width(), height() * 2 / 3);
    p.drawText(top, Qt::AlignHCenter | Qt::AlignBottom, QStringLiteral("Quorvane"));

    QFont version = font();
    version.setPixelSize(16);
    p.setFont(version);
    p.setPen(Qt::white);
    const QRect bottom(0, height() * 2 / 3 + 8, width(), height() / 3 - 8);
    p.drawText(bottom, Qt::AlignHCenter | Qt::AlignTop, QStringLiteral(QUORVANE_VERSION));
}
