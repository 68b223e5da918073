// SPDX-License-Identifier: MIT
#include "ui/Twips.h"

namespace Twips {

int px(int twips)
{
    return qRound(static_cast<double>(twips) / perPixel);
}

QFrame *line(QWidget *parent, QStringView name, int x1, int y, int x2)
{
    auto *f = place<QFrame>(parent, name, x1, y, x2 - x1, 0);
    f->resize(f->width(), 2);
    f->setFrameShape(QFrame::HLine);
    f->setFrameShadow(QFrame::Sunken);
    return f;
}

} // namespace Twips
