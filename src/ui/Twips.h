// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>
#include <QString>
#include <QStringView>
#include <QWidget>

// Controls at places kept in twips, 15 to the pixel, as the forms were drawn.
namespace Twips {

constexpr int perPixel = 15;
int px(int twips);
inline int fromPixels(int pixels) { return pixels * perPixel; }

template<typename W>
W *place(QWidget *parent, QStringView name, int left, int top, int width, int height)
{
    auto *w = new W(parent);
    w->setObjectName(name.toString());
    w->setGeometry(px(left), px(top), px(width), px(height));
    return w;
}

template<typename W>
W *place(QWidget *parent, QStringView name, QStringView caption, int left, int top, int width, int height)
{
    W *w = place<W>(parent, name, left, top, width, height);
    w->setText(caption.toString());
    return w;
}

// A level line two pixels thick, etched.
QFrame *line(QWidget *parent, QStringView name, int x1, int y, int x2);

} // namespace Twips
