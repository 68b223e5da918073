// SPDX-License-Identifier: MIT
#include "SimServer.h"
