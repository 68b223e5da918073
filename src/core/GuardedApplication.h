// SPDX-License-Identifier: MIT
#pragma once

#include "core/ErrorLog.h"

#include <QEvent>
#include <QObject>

#include <exception>

// The application object with the last net: a failure that no routine caught for is
// recorded as fatal and ends the program, instead of taking the process down unrecorded.
// Base is QApplication for the window, QCoreApplication for the service.
template<typename Base>
class GuardedApplication final : public Base
{
public:
    using Base::Base;
    // Where the failure is recorded; set once the engine is built.
    ErrorLog *errors = nullptr;

    bool notify(QObject *receiver, QEvent *event) override
    {
        try {
            return Base::notify(receiver, event);
        } catch (...) {
            if (errors)
                errors->ReportError(true, QStringLiteral("Unexpected error in an event handler"));
            std::terminate();
        }
    }
};
