// SPDX-License-Identifier: MIT
#include "core/RuntimeError.h"

RuntimeError::RuntimeError(int number, QString description, QString source, int lastSystemError)
    : m_number(number)
    , m_description(std::move(description))
    , m_source(std::move(source))
    , m_lastSystemError(lastSystemError)
    , m_what(m_description.toUtf8())
{
}
