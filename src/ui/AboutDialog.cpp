// SPDX-License-Identifier: MIT
#include "ui/AboutDialog.h"

#include "ui/Prompts.h"
#include "ui/Twips.h"

#include <QApplication>
#include <QDesktopServices>
#include <QLabel>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QUrl>

using Twips::place;

namespace {

QPixmap aboutPicture(QSize size)
{
    QPixmap picture(size);
    QPainter p(&picture);
    QLinearGradient night(0, 0, 0, size.height());
    night.setColorAt(0, QColor(10, 14, 40));
    night.setColorAt(1, Qt::black);
    p.fillRect(picture.rect(), night);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QColor(200, 160, 0), 1));
    p.drawRect(picture.rect().adjusted(5, 5, -6, -6));
    QFont big = p.font();
    big.setPixelSize(64);
    big.setBold(true);
    p.setFont(big);
    p.setPen(Qt::yellow);
    p.drawText(picture.rect(), Qt::AlignCenter, QStringLiteral("Q"));
    return picture;
}

} // namespace

const QString frmAbout::siteAddress = QStringLiteral("https://www.ea.com/games/medal-of-honor");
const QStringList frmAbout::sysInfoPrograms{QStringLiteral("hardinfo2"), QStringLiteral("hardinfo"),
                                            QStringLiteral("kinfocenter"), QStringLiteral("gnome-system-monitor")};

frmAbout::frmAbout(ErrorLog &errors, Prompts &prompts, QWidget *parent)
    : FormDialog(errors, prompts, parent, QStringLiteral("frmAbout"), QString(), 7380, 4560)
{
    Picture1 = place<QLabel>(this, u"Picture1", 0, 0, 2760, 4560);
    Picture1->setPixmap(aboutPicture(Picture1->size()));

    lblTitle = place<QLabel>(this, u"lblTitle", 2940, 180, 4260, 480);
    QFont title = lblTitle->font();
    title.setPointSizeF(13.5);
    title.setBold(true);
    lblTitle->setFont(title);
    QPalette blue = lblTitle->palette();
    blue.setColor(QPalette::WindowText, Qt::blue);
    lblTitle->setPalette(blue);

    Label1 = place<QLabel>(this, u"Label1", u"Because some folks you just don't want around", 2940, 720, 4260, 300);
    QFont tag(QStringLiteral("Arial"));
    tag.setPointSizeF(8.25);
    Label1->setFont(tag);
    Twips::line(this, u"Line2", 2940, 1110, 7200);
    lblVersion = place<QLabel>(this, u"lblVersion", 2940, 1230, 4260, 300);

    lblDescription = place<QLabel>(this, u"lblDescription", u"Visit the web site of Medal of Honor", 2940, 1620,
                                   4260, 300);
    lblDescription->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QFont link = lblDescription->font();
    link.setUnderline(true);
    lblDescription->setFont(link);
    lblDescription->setPalette(blue);
    lblDescription->setCursor(Qt::PointingHandCursor);
    Twips::line(this, u"Line1", 2940, 2040, 7200);

    lblDisclaimer = place<QLabel>(this, u"lblDisclaimer",
                                  u"Quorvane is free software under the MIT licence. It comes with no warranty of "
                                  u"any kind; use it at your own risk.",
                                  2940, 2160, 4260, 780);
    lblDisclaimer->setWordWrap(true);
    lblDisclaimer->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    Label2 = place<QLabel>(this, u"Label2", u"Questions and reports go to the project's issue tracker.", 2940, 3060,
                           2520, 780);
    Label2->setWordWrap(true);
    Label2->setAlignment(Qt::AlignLeft | Qt::AlignTop);

    cmdOK = place<QPushButton>(this, u"cmdOK", u"OK", 5580, 3120, 1620, 375);
    cmdSysInfo = place<QPushButton>(this, u"cmdSysInfo", u"&System Info...", 5580, 3600, 1620, 375);
    finishForm(cmdOK);
    setTabOrder(cmdOK, cmdSysInfo);
    cmdOK->setFocus();
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdSysInfo, &QPushButton::clicked, this, &frmAbout::StartSysInfo);
    Form_Load();
}

void frmAbout::Form_Load()
{
    const QString title = QStringLiteral("Quorvane");
    setWindowTitle(QStringLiteral("About ") + title);
    lblVersion->setText(QStringLiteral("Version ") + QStringLiteral(QUORVANE_VERSION));
    lblTitle->setText(title);
}

void frmAbout::StartSysInfo()
{
    // Where there is no system information tool of the classic kind, the first of the usual
    // desktop ones that is installed stands in for it.
    for (const QString &program : sysInfoPrograms) {
        const QString path = QStandardPaths::findExecutable(program);
        if (!path.isEmpty() && QProcess::startDetached(path, {}))
            return;
    }
    m_prompts.information(this, QStringLiteral("System Information Is Unavailable At This Time"));
}

void frmAbout::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && lblDescription->geometry().contains(event->position().toPoint()))
        lblDescription_Click();
    else
        FormDialog::mousePressEvent(event);
}

void frmAbout::lblDescription_Click()
{
    // Whether a browser came up or not, the box closes.
    QDesktopServices::openUrl(QUrl(siteAddress));
    accept();
}
