// SPDX-License-Identifier: MIT
#pragma once

#include "ui/FormDialog.h"

// frmGameCodes: a read-only reference of the % variables a message can hold.
class frmGameCodes : public FormDialog
{
    Q_OBJECT
public:
    frmGameCodes(ErrorLog &errors, Prompts &prompts, QWidget *parent);

    // The reference, line by line with CR LF behind each line.
    static QString reference();
};
