// SPDX-License-Identifier: MIT
#pragma once
#include <QObject>
class SimServer : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
};
