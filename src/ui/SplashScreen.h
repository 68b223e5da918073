// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

// frmSplash: the picture that stands on the screen while the program loads. No logic.
class frmSplash : public QWidget
{
    Q_OBJECT
public:
    explicit frmSplash(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};
