// SPDX-License-Identifier: MIT
#include "HeadlessView.h"

void HeadlessView::setEnabled(Control control, bool on)
{
    enabled[control] = on;
    enableLog.append({control, on});
}

void HeadlessView::setProgress(int minimum, int maximum, int value)
{
    progressMin = minimum;
    progressMax = maximum;
    progressValue = value;
}

void HeadlessView::messageBox(const QString &text)
{
    boxes.append(text);
    if (onBox)
        onBox(text);
}

bool HeadlessView::question(const QString &text)
{
    questions.append(text);
    return answers.isEmpty() ? false : answers.takeFirst();
}
