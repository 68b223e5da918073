// SPDX-License-Identifier: MIT
#include "ui/FittingFont.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QFontMetrics>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QStyle>
#include <QStyleOptionButton>

namespace FittingFont {

QList<QFont> candidates(const QFont &base)
{
    QList<QFont> fonts;
    const auto add = [&](const QString &family, int pixels) {
        QFont font = base;
        if (!family.isEmpty())
            font.setFamilies({family});
        font.setPixelSize(pixels);
        fonts.append(font);
    };
    for (int pixels : {11, 10}) {
        add(QStringLiteral("DejaVu Sans Condensed"), pixels);
        add(QStringLiteral("Liberation Sans Narrow"), pixels);
        add(QString(), pixels);
    }
    add(QString(), 9);
    return fonts;
}

QString caption(const QWidget *control)
{
    if (const auto *label = qobject_cast<const QLabel *>(control))
        return label->text();
    if (const auto *button = qobject_cast<const QAbstractButton *>(control))
        return button->text();
    if (const auto *frame = qobject_cast<const QGroupBox *>(control))
        return frame->title();
    return {};
}

int captionRoom(const QWidget *control)
{
    const QStyle *style = control->style();
    if (qobject_cast<const QPushButton *>(control))
        return control->width() - 2 * style->pixelMetric(QStyle::PM_ButtonMargin, nullptr, control)
            - 2 * style->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, control);
    const bool check = qobject_cast<const QCheckBox *>(control);
    if (check || qobject_cast<const QRadioButton *>(control)) {
        QStyleOptionButton option;
        option.initFrom(control);
        return style->subElementRect(check ? QStyle::SE_CheckBoxContents : QStyle::SE_RadioButtonContents, &option,
                                     control)
            .width();
    }
    if (const auto *label = qobject_cast<const QLabel *>(control))
        return control->width() - 2 * label->margin() - qMax(0, label->indent());
    return control->width();
}

bool captionsFit(const QList<QWidget *> &controls, const QFont &font)
{
    const QFontMetrics metrics(font);
    for (const QWidget *control : controls) {
        QString text = caption(control);
        if (!qobject_cast<const QLabel *>(control))
            text.remove(QRegularExpression(QStringLiteral("&(?!&)"))); // a mnemonic's mark takes no room
        if (metrics.horizontalAdvance(text) > captionRoom(control))
            return false;
    }
    return true;
}

} // namespace FittingFont
