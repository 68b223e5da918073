// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QList>
#include <QString>

class QFontMetrics;
class QWidget;

// The places of the windows were drawn for a small, narrow sans-serif face. Faces differ
// from one desktop to the next, so the face is chosen at run time: the first candidate
// under which every caption fits the room its control gives it.
namespace FittingFont {

// Narrow faces at the size the places were drawn for, then plainer and smaller ones.
QList<QFont> candidates(const QFont &base);

// Pixels a control leaves for its caption: a button less its margins and frame, a check
// box or option button less its indicator, a label its whole width.
int captionRoom(const QWidget *control);
QString caption(const QWidget *control);

// The first candidate under which `fits` holds, or the last candidate.
template<typename Fits>
QFont choose(const QList<QFont> &fonts, Fits &&fits)
{
    for (const QFont &font : fonts) {
        if (fits(font))
            return font;
    }
    return fonts.last();
}

// Whether every caption of `controls` fits under `font`.
bool captionsFit(const QList<QWidget *> &controls, const QFont &font);

} // namespace FittingFont
